#pragma once

#include "DesktopFile.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// The "[Desktop Entry]" group of a freedesktop desktop entry file.
class DesktopEntry
{
public:
    /// Reads the file at path; nothing when it cannot be read or has no "[Desktop Entry]" group.
    static std::optional<DesktopEntry> read(const QString& path);
    /// Parses the text of a desktop entry file (UTF-8); nothing without a "[Desktop Entry]" group.
    static std::optional<DesktopEntry> parse(const QByteArray& content);

    /// The value of key with the string escapes (\s \n \t \r \\) resolved; nothing when absent.
    std::optional<QString> value(const QString& key) const;
    /// The value of key for the locale named like "nl_NL", "sr_RS@latin" or "de_DE.UTF-8", tried as
    /// lang_COUNTRY@MODIFIER, lang_COUNTRY, lang@MODIFIER, lang and then the unlocalized key.
    std::optional<QString> localizedValue(const QString& key, const QString& localeName) const;
    /// True only when key's value is "true".
    bool isTrue(const QString& key) const;

    /// The locale whose messages the user reads (LC_ALL, LC_MESSAGES, LANG), else the system locale's name.
    static QString messagesLocaleName();

private:
    explicit DesktopEntry(DesktopFile::Group values);
    static std::optional<DesktopEntry> fromFile(const DesktopFile& file);

    DesktopFile::Group m_values;
};
