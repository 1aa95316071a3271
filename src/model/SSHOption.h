#pragma once

#include "RandomUuid.h"

#include <QString>
#include <QUuid>

/// One keyword line of a host block, for example "HostName 10.0.0.5".
///
/// The id is fixed when the value is made and never written to the file; key and value can be
/// changed in place. The value is kept verbatim (quotes, "=" and inner runs of blanks included).
struct SSHOption
{
    /// A new option with a fresh random id.
    explicit SSHOption(QString optionKey = {}, QString optionValue = {})
        : SSHOption(createRandomUuid(), std::move(optionKey), std::move(optionValue))
    { }

    /// An option with a caller-given id, for callers that rebuild an option they already know.
    SSHOption(QUuid id, QString optionKey, QString optionValue)
        : key(std::move(optionKey))
        , value(std::move(optionValue))
        , m_id(id)
    { }

    QUuid id() const { return m_id; }

    /// The keyword as written, with its letter case.
    QString key;
    /// The rest of the line, trimmed; may be empty.
    QString value;

    /// Field by field, id included; text compares as canonically equivalent Unicode.
    friend bool operator==(const SSHOption& a, const SSHOption& b);

private:
    QUuid m_id;
};
