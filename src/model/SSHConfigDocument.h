#pragma once

#include "GroupList.h"
#include "SSHGlobalItem.h"
#include "SSHHost.h"
#include "SSHHostItem.h"
#include "SSHOption.h"
#include "SSHParseError.h"

#include <QList>

/// The whole ssh client configuration file: the lines before the first host block, then the host
/// blocks in file order. A plain value: copying it copies everything, nothing refers to anything.
struct SSHConfigDocument
{
    /// The lines before the first host block, in file order; after parsing it ends with one comment
    /// per group label that no host followed.
    QList<SSHGlobalItem> globalItems;
    /// The host blocks, in file order.
    QList<SSHHost> hosts;

    /// Field by field, ids included.
    friend bool operator==(const SSHConfigDocument& a, const SSHConfigDocument& b)
    {
        return a.globalItems == b.globalItems && a.hosts == b.hosts;
    }
};
