// "Zoek host": the known_hosts entries ssh would use for a host name, hashed names included.

#include "SSHConfigViewModel.h"

#include "KnownHostNameMatch.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{

QString foundSentence(qsizetype count, const QString& name)
{
    if (count == 0)
        return u"Geen known_hosts entry gevonden voor "_s + name + u"."_s;
    if (count == 1)
        return u"1 known_hosts entry gevonden voor "_s + name + u"."_s;
    return QString::number(count) + u" known_hosts entries gevonden voor "_s + name + u"."_s;
}

} // namespace

void SSHConfigViewModel::connectHostLookup()
{
    // The index follows each record that changes, goes or comes; the answers given are redone.
    connect(this, &SSHConfigViewModel::knownHostRecordsChanged, this,
        [this](qsizetype first, qsizetype last, bool lineNumberOnly) {
            if (!m_knownHostNameIndex || lineNumberOnly)
                return;
            for (qsizetype position = first; position <= last; ++position)
                m_knownHostNameIndex->recordChanged(position, m_knownHostsDocument.records().at(position));
        });
    connect(this, &SSHConfigViewModel::knownHostRecordRemoved, this, [this](qsizetype position) {
        if (m_knownHostNameIndex)
            m_knownHostNameIndex->recordRemoved(position);
    });
    connect(this, &SSHConfigViewModel::knownHostRecordInserted, this, [this](qsizetype position) {
        if (m_knownHostNameIndex)
            m_knownHostNameIndex->recordInserted(position, m_knownHostsDocument.records().at(position));
    });
    connect(this, &SSHConfigViewModel::knownHostsDocumentChanged, this, [this] { m_knownHostLookupAnswers.clear(); });
    // A reload gives every entry a new id, so a lookup in progress is asked again.
    connect(this, &SSHConfigViewModel::knownHostsReset, this, [this] {
        // The document changed before this signal, but the index hears of it only afterwards.
        forgetKnownHostNameIndex();
        // The entry a pasted warning pointed at has a new id now, if it is still there at all.
        dismissHostKeyChange();
        if (m_knownHostLookup)
            setKnownHostLookup(
                KnownHostLookup { m_knownHostLookup->name, knownHostEntryIDsForName(m_knownHostLookup->name) });
    });
}

std::optional<QString> SSHConfigViewModel::knownHostLookupNameForText(QStringView hostText)
{
    static const QRegularExpression bracketed(u"^\\[([^\\]]+)\\]:([0-9]+)$"_s);
    static const QRegularExpression hostColonPort(u"^([^:\\s]+):([0-9]+)$"_s);
    const QString text = hostText.trimmed().toString();
    if (text.isEmpty() || text.contains(u' '))
        return std::nullopt;
    for (const QRegularExpression* form : { &bracketed, &hostColonPort }) {
        const QRegularExpressionMatch match = form->match(text);
        if (match.hasMatch())
            return knownHostLookupName(asciiLowered(match.captured(1)), match.captured(2));
    }
    // One colon without a port number is a typing error; more are an IPv6 address, looked up as it is.
    if (text.count(u':') == 1 || text.startsWith(u'[') || text.contains(u'*') || text.contains(u'?')
        || text.startsWith(u'!'))
        return std::nullopt;
    return asciiLowered(text);
}

QList<QUuid> SSHConfigViewModel::knownHostEntryIDsForName(const QString& lookupName) const
{
    const auto cached = m_knownHostLookupAnswers.constFind(lookupName);
    if (cached != m_knownHostLookupAnswers.cend())
        return *cached;
    if (!m_knownHostNameIndex)
        m_knownHostNameIndex.emplace(m_knownHostsDocument);
    QList<QUuid> ids;
    for (const qsizetype position : m_knownHostNameIndex->recordsFor(lookupName))
        ids.append(m_knownHostsDocument.records().at(position).kind().entry()->id());
    m_knownHostLookupAnswers.insert(lookupName, ids);
    return ids;
}

void SSHConfigViewModel::forgetKnownHostNameIndex()
{
    m_knownHostNameIndex.reset();
    m_knownHostLookupAnswers.clear();
}

void SSHConfigViewModel::setKnownHostLookup(const std::optional<KnownHostLookup>& lookup)
{
    change(m_knownHostLookup, lookup, &SSHConfigViewModel::knownHostLookupChanged);
}

void SSHConfigViewModel::findKnownHostEntriesForHost(const QString& hostText)
{
    if (hostText.trimmed().isEmpty()) {
        clearKnownHostLookup();
        return;
    }
    const std::optional<QString> name = knownHostLookupNameForText(hostText);
    if (!name) {
        setStatusMessage(u"Geef een hostnaam, eventueel met poort (naam:poort), zonder jokertekens."_s);
        return;
    }
    showKnownHostLookup(*name);
}

void SSHConfigViewModel::showKnownHostLookup(const QString& lookupName)
{
    const QList<QUuid> ids = knownHostEntryIDsForName(lookupName);
    setKnownHostLookup(KnownHostLookup { lookupName, ids });
    if (!ids.isEmpty())
        setSelectedKnownHostEntryID(ids.constFirst());
    setStatusMessage(foundSentence(ids.size(), lookupName));
}

void SSHConfigViewModel::clearKnownHostLookup()
{
    setKnownHostLookup(std::nullopt);
}
