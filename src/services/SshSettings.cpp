#include "SshSettings.h"

#include <QSet>

using namespace Qt::StringLiterals;

SshSettings SshSettings::fromOutput(const QByteArray& output)
{
    SshSettings settings;
    for (const QByteArray& rawLine : output.split('\n')) {
        const QString line = QString::fromUtf8(rawLine).trimmed();
        if (line.isEmpty())
            continue;
        const qsizetype blank = line.indexOf(u' ');
        const QString keyword = blank < 0 ? line : line.first(blank);
        settings.m_values[keyword].append(blank < 0 ? QString() : line.mid(blank + 1));
    }
    return settings;
}

QString SshSettings::value(const QString& keyword) const
{
    return m_values.value(keyword).join(u", "_s);
}

QList<SshSettingChange> SshSettings::changes(const SshSettings& before, const SshSettings& after)
{
    QStringList keywords = before.m_values.keys() + after.m_values.keys();
    keywords.sort();
    keywords.removeDuplicates();
    QList<SshSettingChange> changes;
    for (const QString& keyword : std::as_const(keywords)) {
        if (before.m_values.value(keyword) != after.m_values.value(keyword))
            changes.append({ keyword, before.value(keyword), after.value(keyword) });
    }
    return changes;
}
