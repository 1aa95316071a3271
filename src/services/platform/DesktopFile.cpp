#include "DesktopFile.h"

#include "ServiceLog.h"

#include <QFile>
#include <QStringList>

std::optional<DesktopFile> DesktopFile::read(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        // Most of the files looked for are missing on any one system; only one that is there says something.
        if (file.exists())
            qCDebug(serviceLog) << "Desktop file not read:" << path << file.errorString();
        return std::nullopt;
    }
    return parse(file.readAll());
}

DesktopFile DesktopFile::parse(const QByteArray& content)
{
    DesktopFile file;
    Group* current = nullptr;
    for (const QString& rawLine : QString::fromUtf8(content).split(u'\n')) {
        const QString line = rawLine.trimmed();
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        if (line.startsWith(u'[') && line.endsWith(u']')) {
            current = &file.m_groups[line.mid(1, line.size() - 2)];
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (!current || equals <= 0)
            continue;
        const QString key = line.left(equals).trimmed();
        if (!current->contains(key))
            current->insert(key, line.mid(equals + 1).trimmed());
    }
    return file;
}

const DesktopFile::Group* DesktopFile::group(const QString& name) const
{
    const auto found = m_groups.constFind(name);
    return found == m_groups.cend() ? nullptr : &*found;
}

QStringList DesktopFile::listValue(const QString& groupName, const QString& key) const
{
    const Group* values = group(groupName);
    if (!values)
        return {};
    for (auto it = values->cbegin(); it != values->cend(); ++it) {
        if (it.key().compare(key, Qt::CaseInsensitive) == 0)
            return it.value().split(u';', Qt::SkipEmptyParts);
    }
    return {};
}
