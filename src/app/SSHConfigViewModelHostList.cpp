// The host list: search, group filter, the group list and reordering.

#include "SSHConfigViewModel.h"

#include "GroupList.h"

#include "LoweredTextSearch.h"

#include <QCollator>
#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

bool optionMatches(const SSHHostItem& item, QStringView loweredQuery)
{
    const SSHOption* option = item.asOption();
    return option && LoweredTextSearch::containsInPair(option->key, option->value, loweredQuery);
}

} // namespace

QString SSHConfigViewModel::hostSearchQuery() const
{
    return m_searchText.trimmed().toLower();
}

QList<SSHHost> SSHConfigViewModel::filteredHosts() const
{
    const QString query = hostSearchQuery();
    QList<SSHHost> result;
    for (const SSHHost& host : m_document.hosts) {
        if (hostMatchesFilters(host, query))
            result.append(host);
    }
    return result;
}

bool SSHConfigViewModel::hostMatchesFilters(const SSHHost& host, QStringView loweredQuery) const
{
    if (m_selectedGroup != allGroupsFilter()) {
        const bool inGroup = std::any_of(host.groups.cbegin(), host.groups.cend(),
            [this](const QString& group) { return group.compare(m_selectedGroup, Qt::CaseInsensitive) == 0; });
        if (!inGroup)
            return false;
    }
    if (loweredQuery.isEmpty())
        return true;
    if (LoweredTextSearch::containsInJoined(host.patterns, loweredQuery)
        || LoweredTextSearch::containsInJoined(host.groups, loweredQuery))
        return true;
    return std::any_of(host.items.cbegin(), host.items.cend(),
        [loweredQuery](const SSHHostItem& item) { return optionMatches(item, loweredQuery); });
}

QStringList SSHConfigViewModel::availableGroups() const
{
    QStringList groups;
    for (const SSHHost& host : m_document.hosts) {
        for (const QString& group : host.groups)
            appendUniqueGroup(group, groups);
    }
    for (const SSHGlobalItem& item : m_document.globalItems) {
        if (!item.isComment())
            continue;
        if (const std::optional<QString> name = groupDeclarationName(item.text()))
            appendUniqueGroup(*name, groups);
    }
    QCollator collator { QLocale() };
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::stable_sort(groups.begin(), groups.end(),
        [&collator](const QString& a, const QString& b) { return collator.compare(a, b) < 0; });
    return groups;
}

std::optional<QString> SSHConfigViewModel::groupDeclarationName(QStringView commentText)
{
    QStringView text = commentText.trimmed();
    if (!text.startsWith(u'#'))
        return std::nullopt;
    text = text.mid(1).trimmed();
    if (!text.toString().toLower().startsWith(u"group:"_s))
        return std::nullopt;
    const QStringView name = text.mid(6).trimmed();
    if (name.isEmpty())
        return std::nullopt;
    return name.toString();
}

bool SSHConfigViewModel::canReorderHosts() const
{
    return m_searchText.trimmed().isEmpty() && m_selectedGroup == allGroupsFilter();
}

void SSHConfigViewModel::moveHosts(const QList<qsizetype>& fromOffsets, qsizetype toOffset)
{
    if (!canReorderHosts()) {
        setStatusMessage(u"Reorder kan alleen zonder actieve filters."_s);
        return;
    }
    const ConfigUndoState beforeMove = captureConfigState();
    const qsizetype count = m_document.hosts.size();
    QList<qsizetype> offsets;
    for (qsizetype offset : fromOffsets) {
        if (offset >= 0 && offset < count && !offsets.contains(offset))
            offsets.append(offset);
    }
    std::sort(offsets.begin(), offsets.end());
    toOffset = std::clamp<qsizetype>(toOffset, 0, count);
    // The moved hosts end up side by side where the destination falls once they are taken out.
    const qsizetype before
        = std::count_if(offsets.cbegin(), offsets.cend(), [toOffset](qsizetype o) { return o < toOffset; });
    const qsizetype target = toOffset - before;
    QList<QUuid> moving;
    for (qsizetype offset : offsets)
        moving.append(m_document.hosts.at(offset).id());
    bool moved = false;
    for (qsizetype i = 0; i < moving.size(); ++i) {
        const qsizetype current = positionOfHost(moving.at(i));
        // Each host goes right after the one placed before it; the first after the target-th host
        // that stays.
        qsizetype destination
            = i == 0 ? positionAfterStayingHosts(moving, target) : positionOfHost(moving.at(i - 1)) + 1;
        if (current < destination)
            --destination;
        moved = moveHost(current, destination) || moved;
    }
    if (moved)
        Q_EMIT documentChanged();
    setRawEditorDirty(true);
    refreshRawTextFromDocument();
    recordConfigStep(u"Hosts verplaatsen"_s, u"Hosts verplaatst"_s, beforeMove);
}

qsizetype SSHConfigViewModel::positionOfHost(const QUuid& id) const
{
    for (qsizetype i = 0; i < m_document.hosts.size(); ++i) {
        if (m_document.hosts.at(i).id() == id)
            return i;
    }
    return -1;
}

qsizetype SSHConfigViewModel::positionAfterStayingHosts(const QList<QUuid>& moving, qsizetype count) const
{
    if (count == 0)
        return 0;
    qsizetype staying = 0;
    for (qsizetype i = 0; i < m_document.hosts.size(); ++i) {
        if (!moving.contains(m_document.hosts.at(i).id()) && ++staying == count)
            return i + 1;
    }
    return m_document.hosts.size();
}

bool SSHConfigViewModel::moveHost(qsizetype from, qsizetype to)
{
    if (from == to)
        return false;
    Q_EMIT hostAboutToBeMoved(from, to);
    m_document.hosts.move(from, to);
    Q_EMIT hostMoved(from, to);
    return true;
}

std::optional<qsizetype> SSHConfigViewModel::selectedHostIndex() const
{
    if (!m_selectedHostID)
        return std::nullopt;
    for (qsizetype i = 0; i < m_document.hosts.size(); ++i) {
        if (m_document.hosts.at(i).id() == *m_selectedHostID)
            return i;
    }
    return std::nullopt;
}
