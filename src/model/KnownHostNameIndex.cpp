#include "KnownHostNameIndex.h"

#include "KnownHostNameMatch.h"

#include <algorithm>

KnownHostNameIndex::KnownHostNameIndex(const KnownHostsDocument& document)
{
    const QList<KnownHostsRecord>& records = document.records();
    for (qsizetype position = 0; position < records.size(); ++position)
        add(position, records.at(position));
}

void KnownHostNameIndex::recordChanged(qsizetype position, const KnownHostsRecord& record)
{
    forgetAndMove(position, position + 1, 0);
    add(position, record);
}

void KnownHostNameIndex::recordRemoved(qsizetype position)
{
    forgetAndMove(position, position + 1, -1);
}

void KnownHostNameIndex::recordInserted(qsizetype position, const KnownHostsRecord& record)
{
    forgetAndMove(-1, position, 1);
    add(position, record);
}

void KnownHostNameIndex::forgetAndMove(qsizetype forgotten, qsizetype firstMoved, qsizetype shift)
{
    for (auto it = m_plain.begin(); it != m_plain.end();) {
        if (it.value() == forgotten) {
            it = m_plain.erase(it);
            continue;
        }
        if (it.value() >= firstMoved)
            it.value() += shift;
        ++it;
    }
    auto forgetAndMoveIn = [=](auto& records) {
        std::erase_if(records, [forgotten](const auto& record) { return record.position == forgotten; });
        for (auto& record : records) {
            if (record.position >= firstMoved)
                record.position += shift;
        }
    };
    forgetAndMoveIn(m_patterned);
    forgetAndMoveIn(m_hashed);
}

void KnownHostNameIndex::add(qsizetype position, const KnownHostsRecord& record)
{
    const KnownHostEntry* entry = record.kind().entry();
    if (entry && !entry->isCommentedOut())
        add(position, entry->hostsField());
}

void KnownHostNameIndex::add(qsizetype position, QStringView hostsField)
{
    if (hostsField.startsWith(u'|')) {
        const HashedHostName hashed = parseHashedHostName(hostsField);
        if (hashed.isValid())
            m_hashed.push_back(hashedRecord(position, hashed));
        return;
    }
    if (!isLiteralHostsField(hostsField)) {
        m_patterned.push_back({ position, hostsField.toString() });
        return;
    }
    for (const QStringView host : hostsField.tokenize(u',', Qt::SkipEmptyParts))
        m_plain.insert(asciiLowered(host), position);
}

QList<qsizetype> KnownHostNameIndex::recordsFor(QStringView name) const
{
    QList<qsizetype> found = m_plain.values(asciiLowered(name));
    for (const PatternRecord& record : m_patterned) {
        if (knownHostsFieldMatches(record.hostsField, name))
            found.append(record.position);
    }
    const QByteArray nameBytes = name.toUtf8();
    QCryptographicHash sha1(QCryptographicHash::Sha1);
    for (const HashedRecord& record : m_hashed) {
        if (matches(record, nameBytes, sha1))
            found.append(record.position);
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

KnownHostNameIndex::HashedRecord KnownHostNameIndex::hashedRecord(qsizetype position, const HashedHostName& name)
{
    constexpr qsizetype blockSize = 64;
    // A key longer than the block is hashed first; ssh's salts are 20 bytes, but the file may say otherwise.
    const QByteArray key
        = name.salt.size() > blockSize ? QCryptographicHash::hash(name.salt, QCryptographicHash::Sha1) : name.salt;
    HashedRecord record { position, {}, {}, name.hash };
    for (qsizetype i = 0; i < blockSize; ++i) {
        const char keyByte = i < key.size() ? key.at(i) : '\0';
        record.innerPad[size_t(i)] = char(keyByte ^ 0x36);
        record.outerPad[size_t(i)] = char(keyByte ^ 0x5c);
    }
    return record;
}

bool KnownHostNameIndex::matches(const HashedRecord& record, QByteArrayView nameUtf8, QCryptographicHash& sha1)
{
    sha1.reset();
    sha1.addData(QByteArrayView(record.innerPad.data(), qsizetype(record.innerPad.size())));
    sha1.addData(nameUtf8);
    const QByteArray inner = sha1.result();
    sha1.reset();
    sha1.addData(QByteArrayView(record.outerPad.data(), qsizetype(record.outerPad.size())));
    sha1.addData(inner);
    return sha1.resultView() == record.hash;
}
