#include "HostDetailRules.h"

using namespace Qt::StringLiterals;

const QStringList& HostDetailRules::commonOptionKeys()
{
    static const QStringList keys { u"HostName"_s, u"User"_s, u"Port"_s, u"IdentityFile"_s };
    return keys;
}

QStringList HostDetailRules::patternsFromText(QStringView text)
{
    QStringList patterns;
    qsizetype start = -1;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        const bool boundary = i == text.size() || text.at(i).isSpace();
        if (boundary && start >= 0) {
            patterns.append(text.mid(start, i - start).toString());
            start = -1;
        } else if (!boundary && start < 0) {
            start = i;
        }
    }
    if (patterns.isEmpty())
        patterns.append(u"*"_s);
    return patterns;
}

QString HostDetailRules::patternsText(const QStringList& patterns)
{
    return patterns.join(u' ');
}

QStringList HostDetailRules::groupsFromText(QStringView text)
{
    QStringList groups;
    for (QStringView piece : text.split(u',')) {
        const QStringView trimmed = piece.trimmed();
        if (!trimmed.isEmpty())
            groups.append(trimmed.toString());
    }
    return groups;
}

QString HostDetailRules::groupsText(const QStringList& groups)
{
    return groups.join(u", "_s);
}

qsizetype HostDetailRules::firstOptionIndex(const SSHHost& host, QStringView key)
{
    for (qsizetype i = 0; i < host.items.size(); ++i) {
        const SSHOption* option = host.items.at(i).asOption();
        if (option && QStringView(option->key).compare(key, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

QString HostDetailRules::optionValue(const SSHHost& host, QStringView key)
{
    const qsizetype index = firstOptionIndex(host, key);
    return index < 0 ? QString() : host.items.at(index).asOption()->value;
}

bool HostDetailRules::setOptionValue(SSHHost& host, const QString& value, const QString& key)
{
    const QString trimmed = value.trimmed();
    const qsizetype index = firstOptionIndex(host, key);
    if (index < 0) {
        if (trimmed.isEmpty())
            return false;
        host.items.append(SSHHostItem::option(SSHOption(key, trimmed)));
        return true;
    }
    if (trimmed.isEmpty()) {
        host.items.removeAt(index);
        return true;
    }
    const QUuid id = host.items.at(index).asOption()->id();
    host.items[index] = SSHHostItem::option(SSHOption(id, key, trimmed));
    return true;
}

QList<SSHOption> HostDetailRules::extraOptions(const SSHHost& host)
{
    QList<SSHOption> extras;
    for (const SSHHostItem& item : host.items) {
        const SSHOption* option = item.asOption();
        if (option && !commonOptionKeys().contains(option->key, Qt::CaseInsensitive))
            extras.append(*option);
    }
    return extras;
}
