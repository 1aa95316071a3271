#pragma once

#include "KnownHostNameMatch.h"
#include "KnownHostsDocument.h"

#include <QCryptographicHash>
#include <QHash>
#include <QList>
#include <QString>

#include <array>
#include <vector>

/// Which entries of a known_hosts document ssh would use for a looked-up name (see KnownHostNameMatch.h),
/// built once per document so that a lookup does not read every line again. Commented-out entries are
/// comments to ssh and are never found.
///
/// Plain names go into a hash table; lines with wildcards or negations are tried one by one; hashed names
/// keep their decoded salt and hash, and a lookup computes one HMAC for each of them. The index holds
/// record positions: it is valid for the document it was built from, kept current by telling it of
/// each record that changed, went or came, which costs one pass over the index instead of a rebuild.
class KnownHostNameIndex
{
public:
    KnownHostNameIndex() = default;
    explicit KnownHostNameIndex(const KnownHostsDocument& document);

    /// The positions of the records whose entries ssh would use for name, in ascending order.
    QList<qsizetype> recordsFor(QStringView name) const;

    /// The record at position is now record.
    void recordChanged(qsizetype position, const KnownHostsRecord& record);
    /// The record at position was removed; the ones after it moved up.
    void recordRemoved(qsizetype position);
    /// record was inserted at position; the ones from there on moved down.
    void recordInserted(qsizetype position, const KnownHostsRecord& record);

private:
    // HMAC-SHA1 with the salt as key, its two padded keys worked out once when the index is built
    // (RFC 2104), so a lookup hashes the name without setting up a keyed hash per entry.
    struct HashedRecord
    {
        qsizetype position;
        std::array<char, 64> innerPad;
        std::array<char, 64> outerPad;
        QByteArray hash;
    };

    static HashedRecord hashedRecord(qsizetype position, const HashedHostName& name);
    static bool matches(const HashedRecord& record, QByteArrayView nameUtf8, QCryptographicHash& sha1);
    struct PatternRecord
    {
        qsizetype position;
        QString hostsField;
    };

    void add(qsizetype position, const KnownHostsRecord& record);
    void add(qsizetype position, QStringView hostsField);
    /// Drops what the record at forgotten contributed (none for -1), and moves every position from
    /// firstMoved on by shift.
    void forgetAndMove(qsizetype forgotten, qsizetype firstMoved, qsizetype shift);

    QMultiHash<QString, qsizetype> m_plain;
    std::vector<PatternRecord> m_patterned;
    std::vector<HashedRecord> m_hashed;
};
