#pragma once

#include "KnownHostMarker.h"

#include <QString>
#include <QStringList>
#include <QStringView>
#include <QUuid>

#include <optional>

/// One host-key line of a known_hosts file, active or commented out. A plain value: the setters
/// enforce nothing (isHashed is not recomputed when hosts change), and equality compares all nine
/// fields, id and lineNumber included.
///
/// The text fields live in one string. An entry read from a file shares the file's text and points
/// into it, so a file of a million lines is not copied line by line; the views the accessors return
/// stay valid as long as the entry they came from, like a reference to a member would.
class KnownHostEntry
{
public:
    /// Where a field lies in the text an entry is made from.
    struct Span
    {
        qsizetype start = 0;
        qsizetype length = 0;
    };

    /// An empty entry with a null id; the parser always gives its entries a fresh id.
    KnownHostEntry() = default;
    KnownHostEntry(QUuid id, int lineNumber, std::optional<KnownHostMarker> marker, const QStringList& hosts,
        QStringView keyType, QStringView key, QStringView comment, bool isHashed, bool isCommentedOut);

    /// An entry whose hosts field (the hosts joined with ","), key type, key and comment are the given
    /// spans of text, in that order of position. text is shared, not copied; it must own its
    /// characters (not QString::fromRawData) and every span must fit in an int.
    static KnownHostEntry fromSpans(QUuid id, int lineNumber, std::optional<KnownHostMarker> marker,
        const QString& text, Span hostsField, Span keyType, Span key, Span comment, bool isHashed, bool isCommentedOut);

    /// Made when the entry is parsed; never written to the file and never changed.
    QUuid id() const { return m_id; }

    /// The 1-based line of the file the entry was read from (or will be written to, after renumbering).
    int lineNumber() const { return m_lineNumber; }
    void setLineNumber(int lineNumber) { m_lineNumber = lineNumber; }

    /// Absent for an ordinary entry.
    std::optional<KnownHostMarker> marker() const { return m_marker; }
    void setMarker(std::optional<KnownHostMarker> marker) { m_marker = marker; }

    /// The host patterns of the hosts field, split at commas and trimmed; hashed names stay as
    /// written. The entry keeps the hosts joined with ",", so a host set with a comma in it (which
    /// the file could not hold either) comes back as two, and empty hosts do not come back.
    QStringList hosts() const;
    void setHosts(const QStringList& hosts);
    /// The hosts joined with "," (as the file's hosts field has them); no allocation.
    QStringView hostsField() const { return field(m_hostsField); }
    /// The first host, or an empty view when there is none; no allocation.
    QStringView firstHost() const;

    /// The key-type field as written, e.g. "ssh-ed25519"; not checked against a list of types.
    QStringView keyType() const { return field(m_keyType); }
    void setKeyType(QStringView keyType);

    /// The key field as written (base64); never decoded.
    QStringView key() const { return field(m_key); }
    void setKey(QStringView key);

    /// The fields after the key joined with single blanks; empty when there are none.
    QStringView comment() const { return field(m_comment); }
    void setComment(QStringView comment);

    /// True when a host pattern begins with "|1|" or "|2|" (as read; not kept in step with setHosts).
    bool isHashed() const { return m_isHashed; }
    void setHashed(bool isHashed) { m_isHashed = isHashed; }

    /// True when the entry was read from a line beginning with "#"; written back behind "# ".
    bool isCommentedOut() const { return m_isCommentedOut; }
    void setCommentedOut(bool isCommentedOut) { m_isCommentedOut = isCommentedOut; }

    friend bool operator==(const KnownHostEntry& a, const KnownHostEntry& b);

private:
    // Offsets from m_start, so that an entry of a shared file stays small.
    struct Field
    {
        int offset = 0;
        int length = 0;
    };

    QStringView field(Field f) const { return QStringView(m_text).sliced(m_start + f.offset, f.length); }
    /// Gives the entry a text of its own holding exactly these four fields.
    void setFields(QStringView hostsField, QStringView keyType, QStringView key, QStringView comment);

    QUuid m_id;
    int m_lineNumber = 0;
    std::optional<KnownHostMarker> m_marker;
    bool m_isHashed = false;
    bool m_isCommentedOut = false;
    QString m_text;
    qsizetype m_start = 0;
    Field m_hostsField;
    Field m_keyType;
    Field m_key;
    Field m_comment;
};
