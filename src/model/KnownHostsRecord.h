#pragma once

#include "KnownHostsRecordKind.h"

#include <QUuid>

/// One line of a known_hosts file. Identified by id, which is made fresh when the record is
/// created and never changes; equality compares id and kind.
class KnownHostsRecord
{
public:
    /// A record with a fresh random id.
    explicit KnownHostsRecord(KnownHostsRecordKind kind = {});
    /// A record with the given id (for copies that must keep their identity).
    KnownHostsRecord(QUuid id, KnownHostsRecordKind kind);

    QUuid id() const { return m_id; }

    const KnownHostsRecordKind& kind() const { return m_kind; }
    /// Mutable access, so an entry can be changed in place: record.kind().entry()->setMarker(...).
    KnownHostsRecordKind& kind() { return m_kind; }
    void setKind(KnownHostsRecordKind kind) { m_kind = std::move(kind); }

    friend bool operator==(const KnownHostsRecord&, const KnownHostsRecord&) = default;

private:
    QUuid m_id;
    KnownHostsRecordKind m_kind;
};
