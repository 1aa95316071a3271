#include "SSHHostKnownHostsName.h"

#include "KnownHostNameMatch.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

QString firstOptionValue(const SSHHost& host, QStringView key)
{
    for (const SSHHostItem& item : host.items) {
        const SSHOption* option = item.asOption();
        if (option && option->key.compare(key, Qt::CaseInsensitive) == 0)
            return option->value.trimmed();
    }
    return {};
}

std::optional<QString> firstPlainPattern(const SSHHost& host)
{
    for (const QString& pattern : host.patterns) {
        const QString trimmed = pattern.trimmed();
        if (!trimmed.isEmpty() && !trimmed.contains(u'*') && !trimmed.contains(u'?') && !trimmed.startsWith(u'!'))
            return trimmed;
    }
    return std::nullopt;
}

// The two tokens ssh expands in HostName.
QString expandHostName(QStringView hostName, const QString& typedName)
{
    QString expanded;
    for (qsizetype i = 0; i < hostName.size(); ++i) {
        if (hostName.at(i) == u'%' && i + 1 < hostName.size() && hostName.at(i + 1) == u'h') {
            expanded += typedName;
            ++i;
        } else if (hostName.at(i) == u'%' && i + 1 < hostName.size() && hostName.at(i + 1) == u'%') {
            expanded += u'%';
            ++i;
        } else {
            expanded += hostName.at(i);
        }
    }
    return expanded;
}

bool isPortNumber(const QString& text)
{
    return !text.isEmpty() && std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.isDigit(); });
}

} // namespace

std::optional<QString> knownHostLookupNameForConfigHost(const SSHHost& host)
{
    const std::optional<QString> typedName = firstPlainPattern(host);
    if (!host.isEnabled || !typedName)
        return std::nullopt;
    const QString alias = firstOptionValue(host, u"HostKeyAlias");
    if (!alias.isEmpty())
        return asciiLowered(alias);
    const QString hostName = firstOptionValue(host, u"HostName");
    const QString name = hostName.isEmpty() ? *typedName : expandHostName(hostName, *typedName);
    // ssh reads the port as a number, so "0022" is port 22.
    const QString portText = firstOptionValue(host, u"Port");
    const QString port = isPortNumber(portText) ? QString::number(portText.toInt()) : QString();
    return knownHostLookupName(asciiLowered(name), port);
}
