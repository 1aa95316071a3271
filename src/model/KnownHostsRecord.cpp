#include "KnownHostsRecord.h"

#include "RandomUuid.h"

KnownHostsRecord::KnownHostsRecord(KnownHostsRecordKind kind)
    : m_id(createRandomUuid())
    , m_kind(std::move(kind))
{ }

KnownHostsRecord::KnownHostsRecord(QUuid id, KnownHostsRecordKind kind)
    : m_id(id)
    , m_kind(std::move(kind))
{ }
