#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <optional>

/// A file in the freedesktop desktop-entry format: desktop entries, mimeapps.list and mimeinfo.cache
/// alike. "[Group]" lines open groups and "Key=Value" lines give values, both trimmed of blanks; blank
/// lines, "#" comments and lines outside any group say nothing. Within a group the first value given
/// for a key counts, also when the group is opened again further down.
class DesktopFile
{
public:
    using Group = QHash<QString, QString>;

    /// The file at path, or nothing when it cannot be read.
    static std::optional<DesktopFile> read(const QString& path);
    /// The text of a file (UTF-8).
    static DesktopFile parse(const QByteArray& content);

    /// The group of that name, or nothing when the file has none.
    const Group* group(const QString& name) const;

    /// The entries of the ";"-separated list that the group gives for key, with the key compared
    /// ignoring case (MIME types are); empty when the group or key is missing.
    QStringList listValue(const QString& groupName, const QString& key) const;

private:
    QHash<QString, Group> m_groups;
};
