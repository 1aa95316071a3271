#include "DesktopEntry.h"

#include <QLocale>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace
{
QString unescaped(const QString& raw)
{
    QString result;
    result.reserve(raw.size());
    for (qsizetype index = 0; index < raw.size(); ++index) {
        const QChar character = raw[index];
        if (character != u'\\' || index + 1 == raw.size()) {
            result.append(character);
            continue;
        }
        switch (raw[++index].unicode()) {
        case u's':
            result.append(u' ');
            break;
        case u'n':
            result.append(u'\n');
            break;
        case u't':
            result.append(u'\t');
            break;
        case u'r':
            result.append(u'\r');
            break;
        case u'\\':
            result.append(u'\\');
            break;
        default:
            result.append(character).append(raw[index]);
            break;
        }
    }
    return result;
}

/// The keys to try for a locale, most specific first, as the desktop entry format orders them.
QStringList localeKeys(QString localeName)
{
    QString modifier;
    if (const qsizetype at = localeName.indexOf(u'@'); at >= 0) {
        modifier = localeName.mid(at);
        localeName.truncate(at);
    }
    if (const qsizetype dot = localeName.indexOf(u'.'); dot >= 0)
        localeName.truncate(dot);
    const QString language = localeName.section(u'_', 0, 0);
    const bool hasCountry = localeName.contains(u'_');

    QStringList keys;
    if (hasCountry && !modifier.isEmpty())
        keys << localeName + modifier;
    if (hasCountry)
        keys << localeName;
    if (!modifier.isEmpty())
        keys << language + modifier;
    if (!language.isEmpty() && language != u"C"_s && language != u"POSIX"_s)
        keys << language;
    return keys;
}
} // namespace

DesktopEntry::DesktopEntry(DesktopFile::Group values)
    : m_values(std::move(values))
{ }

std::optional<DesktopEntry> DesktopEntry::read(const QString& path)
{
    const std::optional<DesktopFile> file = DesktopFile::read(path);
    return file ? fromFile(*file) : std::nullopt;
}

std::optional<DesktopEntry> DesktopEntry::parse(const QByteArray& content)
{
    return fromFile(DesktopFile::parse(content));
}

std::optional<DesktopEntry> DesktopEntry::fromFile(const DesktopFile& file)
{
    const DesktopFile::Group* group = file.group(u"Desktop Entry"_s);
    if (!group)
        return std::nullopt;
    return DesktopEntry(*group);
}

std::optional<QString> DesktopEntry::value(const QString& key) const
{
    const auto found = m_values.constFind(key);
    if (found == m_values.cend())
        return std::nullopt;
    return unescaped(*found);
}

std::optional<QString> DesktopEntry::localizedValue(const QString& key, const QString& localeName) const
{
    for (const QString& locale : localeKeys(localeName)) {
        if (std::optional<QString> found = value(key + u'[' + locale + u']'))
            return found;
    }
    return value(key);
}

bool DesktopEntry::isTrue(const QString& key) const
{
    return value(key) == u"true"_s;
}

QString DesktopEntry::messagesLocaleName()
{
    for (const char* variable : { "LC_ALL", "LC_MESSAGES", "LANG" }) {
        QString name = qEnvironmentVariable(variable);
        if (!name.isEmpty())
            return name;
    }
    return QLocale::system().name();
}
