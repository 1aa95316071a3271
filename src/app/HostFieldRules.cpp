#include "HostFieldRules.h"

using namespace Qt::StringLiterals;

namespace
{

bool isAsciiDigits(QStringView text)
{
    if (text.isEmpty())
        return false;
    for (QChar c : text) {
        if (c < u'0' || c > u'9')
            return false;
    }
    return true;
}

bool isHashedHostName(QStringView trimmed)
{
    return trimmed.startsWith(u"|1|"_s) || trimmed.startsWith(u"|2|"_s);
}

bool isUsableHostField(QStringView element)
{
    const QStringView trimmed = element.trimmed();
    if (trimmed.isEmpty() || isHashedHostName(trimmed))
        return false;
    if (parseBracketedHostPort(trimmed))
        return true;
    const qsizetype at = trimmed.indexOf(u'@');
    if (at > 0) {
        const QStringView afterAt = trimmed.mid(at + 1);
        return parseBracketedHostPort(afterAt).has_value() || isPlainHostName(afterAt);
    }
    return isPlainHostName(trimmed);
}

} // namespace

bool isPlainHostName(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    return !trimmed.isEmpty() && !trimmed.contains(u'*') && !trimmed.contains(u'?') && !trimmed.startsWith(u'!');
}

std::optional<BracketedHostPort> parseBracketedHostPort(QStringView text)
{
    if (!text.startsWith(u'['))
        return std::nullopt;
    const qsizetype close = text.indexOf(u']', 1);
    if (close < 0 || close + 1 >= text.size() || text.at(close + 1) != u':')
        return std::nullopt;
    const QStringView host = text.mid(1, close - 1).trimmed();
    const QStringView port = text.mid(close + 2).trimmed();
    if (host.isEmpty() || !isAsciiDigits(port))
        return std::nullopt;
    return BracketedHostPort { host.toString(), port.toString() };
}

std::optional<QString> chosenKnownHostField(const QStringList& hosts)
{
    for (const QString& element : hosts) {
        if (isUsableHostField(element))
            return element;
    }
    return std::nullopt;
}
