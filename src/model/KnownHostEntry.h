#pragma once

#include "KnownHostMarker.h"

#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>

/// One host-key line of a known_hosts file, active or commented out. A plain value: the setters
/// enforce nothing (isHashed is not recomputed when hosts change), and equality compares all nine
/// fields, id and lineNumber included.
class KnownHostEntry
{
public:
    /// An empty entry with a null id; the parser always gives its entries a fresh id.
    KnownHostEntry() = default;
    KnownHostEntry(QUuid id, int lineNumber, std::optional<KnownHostMarker> marker, QStringList hosts,
                   QString keyType, QString key, QString comment, bool isHashed, bool isCommentedOut);

    /// Made when the entry is parsed; never written to the file and never changed.
    QUuid id() const { return m_id; }

    /// The 1-based line of the file the entry was read from (or will be written to, after renumbering).
    int lineNumber() const { return m_lineNumber; }
    void setLineNumber(int lineNumber) { m_lineNumber = lineNumber; }

    /// Absent for an ordinary entry.
    std::optional<KnownHostMarker> marker() const { return m_marker; }
    void setMarker(std::optional<KnownHostMarker> marker) { m_marker = marker; }

    /// The host patterns of the hosts field, split at commas and trimmed; hashed names stay as written.
    const QStringList& hosts() const { return m_hosts; }
    void setHosts(QStringList hosts) { m_hosts = std::move(hosts); }

    /// The key-type field as written, e.g. "ssh-ed25519"; not checked against a list of types.
    const QString& keyType() const { return m_keyType; }
    void setKeyType(QString keyType) { m_keyType = std::move(keyType); }

    /// The key field as written (base64); never decoded.
    const QString& key() const { return m_key; }
    void setKey(QString key) { m_key = std::move(key); }

    /// The fields after the key joined with single blanks; empty when there are none.
    const QString& comment() const { return m_comment; }
    void setComment(QString comment) { m_comment = std::move(comment); }

    /// True when a host pattern begins with "|1|" or "|2|" (as read; not kept in step with setHosts).
    bool isHashed() const { return m_isHashed; }
    void setHashed(bool isHashed) { m_isHashed = isHashed; }

    /// True when the entry was read from a line beginning with "#"; written back behind "# ".
    bool isCommentedOut() const { return m_isCommentedOut; }
    void setCommentedOut(bool isCommentedOut) { m_isCommentedOut = isCommentedOut; }

    friend bool operator==(const KnownHostEntry&, const KnownHostEntry&) = default;

private:
    QUuid m_id;
    int m_lineNumber = 0;
    std::optional<KnownHostMarker> m_marker;
    bool m_isHashed = false;
    bool m_isCommentedOut = false;
    QStringList m_hosts;
    QString m_keyType;
    QString m_key;
    QString m_comment;
};
