#include "GroupList.h"

void appendUniqueGroup(const QString& label, QStringList& groups)
{
    // QString::trimmed strips exactly the separator categories, tab, LF, VT, FF, CR and NEL.
    const QString trimmed = label.trimmed();
    if (trimmed.isEmpty())
        return;
    for (const QString& existing : std::as_const(groups)) {
        if (existing.compare(trimmed, Qt::CaseInsensitive) == 0)
            return;
    }
    groups.append(trimmed);
}

void appendUniqueGroups(const QStringList& labels, QStringList& groups)
{
    for (const QString& label : labels)
        appendUniqueGroup(label, groups);
}

QString allGroupsFilter()
{
    return QStringLiteral("All");
}
