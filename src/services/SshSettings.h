#pragma once

#include "SshCheckResult.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

/// The effective settings `ssh -G` prints for one host: one "keyword value" line each, some keywords
/// (IdentityFile, LocalForward, SendEnv, ...) on several lines.
class SshSettings
{
public:
    SshSettings() = default;
    /// Reads ssh's output; lines without a keyword are skipped.
    static SshSettings fromOutput(const QByteArray& output);

    /// The values of keyword in output order, joined with ", "; empty when ssh prints none.
    QString value(const QString& keyword) const;
    /// Every keyword whose value differs, in keyword order.
    static QList<SshSettingChange> changes(const SshSettings& before, const SshSettings& after);

private:
    QMap<QString, QStringList> m_values;
};
