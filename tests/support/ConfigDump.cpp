#include "ConfigDump.h"

using namespace Qt::StringLiterals;

namespace
{
QString quoted(const QString& text)
{
    return u'"' + text + u'"';
}

QString dumpGlobalItem(const SSHGlobalItem& item)
{
    switch (item.kind()) {
    case SSHGlobalItem::Kind::Directive:
        return u"global directive "_s + quoted(item.text());
    case SSHGlobalItem::Kind::Comment:
        return u"global comment "_s + quoted(item.text());
    case SSHGlobalItem::Kind::Blank:
        break;
    }
    return u"global blank"_s;
}

QString dumpHostItem(const SSHHostItem& item)
{
    if (const SSHOption* option = item.asOption())
        return u"  option "_s + quoted(option->key) + u' ' + quoted(option->value);
    if (item.isComment())
        return u"  comment "_s + quoted(item.commentText());
    return u"  blank"_s;
}

QString joinQuoted(const QStringList& texts)
{
    QStringList parts;
    for (const QString& text : texts)
        parts.append(quoted(text));
    return u'[' + parts.join(u", ") + u']';
}
} // namespace

QStringList dumpIgnoringIds(const SSHConfigDocument& document)
{
    QStringList lines;
    for (const SSHGlobalItem& item : document.globalItems)
        lines.append(dumpGlobalItem(item));
    for (const SSHHost& host : document.hosts) {
        lines.append((host.isEnabled ? u"host "_s : u"disabled host "_s) + joinQuoted(host.patterns) + u" groups "_s
            + joinQuoted(host.groups));
        for (const SSHHostItem& item : host.items)
            lines.append(dumpHostItem(item));
    }
    return lines;
}

QStringList dumpErrors(const QList<SSHParseError>& errors)
{
    QStringList lines;
    for (const SSHParseError& error : errors)
        lines.append(QString::number(error.line()) + u": "_s + error.message());
    return lines;
}
