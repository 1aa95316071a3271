#pragma once

#include "RandomUuid.h"
#include "SSHHostItem.h"

#include <QList>
#include <QStringList>
#include <QUuid>

/// One host block: its Host patterns, group labels, enabled flag and the lines after the Host line.
///
/// The id is fixed when the value is made and never written to the file; every other field can be
/// changed in place. A disabled host is one that stands commented out in the file.
struct SSHHost
{
    /// A new host with a fresh random id.
    explicit SSHHost(QStringList hostPatterns = {}, QStringList groupLabels = {}, bool enabled = true,
        QList<SSHHostItem> hostItems = {})
        : SSHHost(createRandomUuid(), std::move(hostPatterns), std::move(groupLabels), enabled, std::move(hostItems))
    { }

    /// A host with a caller-given id.
    SSHHost(QUuid id, QStringList hostPatterns, QStringList groupLabels, bool enabled, QList<SSHHostItem> hostItems)
        : patterns(std::move(hostPatterns))
        , groups(std::move(groupLabels))
        , isEnabled(enabled)
        , items(std::move(hostItems))
        , m_id(id)
    { }

    QUuid id() const { return m_id; }

    /// The patterns of the Host line, in order.
    QStringList patterns;
    /// Group labels, in order of first appearance.
    QStringList groups;
    /// False for a block that stands commented out in the file.
    bool isEnabled = true;
    /// The lines after the Host line, in file order.
    QList<SSHHostItem> items;

    /// Field by field, id included; groups are order-sensitive.
    friend bool operator==(const SSHHost& a, const SSHHost& b);

private:
    QUuid m_id;
};
