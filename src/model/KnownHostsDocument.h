#pragma once

#include "KnownHostEntry.h"
#include "KnownHostMarker.h"
#include "KnownHostsParseError.h"
#include "KnownHostsRecord.h"
#include "KnownHostsRecordKind.h"

#include <QList>

/// A known_hosts file in memory: one record per line, in line order (record i came from line i + 1),
/// so the file can be written back line for line. Equality compares the records element by element,
/// identifiers included, so two parses of one text are not equal.
class KnownHostsDocument
{
public:
    KnownHostsDocument() = default;
    explicit KnownHostsDocument(QList<KnownHostsRecord> records)
        : m_records(std::move(records))
    { }

    const QList<KnownHostsRecord>& records() const { return m_records; }
    QList<KnownHostsRecord>& records() { return m_records; }
    void setRecords(QList<KnownHostsRecord> records) { m_records = std::move(records); }

    friend bool operator==(const KnownHostsDocument&, const KnownHostsDocument&) = default;

private:
    QList<KnownHostsRecord> m_records;
};
