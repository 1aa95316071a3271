#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/// A name to ask ssh about, and how to show it: a plain name stands for itself; a wildcard pattern is
/// shown as written and asked about through a made-up name it matches ("*.corp.example" through
/// "tarnwick-probe.corp.example"); a negated pattern ("!bastion") through the name it excludes.
struct SshProbeName
{
    QString shown;
    QString asked;

    friend bool operator==(const SshProbeName&, const SshProbeName&) = default;

    /// The probe for pattern, or none for a pattern ssh would not take as a host name (empty, with
    /// blanks, control characters or a leading "-").
    static std::optional<SshProbeName> forPattern(const QString& pattern);
    /// One probe per pattern, each asked name once (ignoring case, as ssh does), in the given order,
    /// and with withEveryOtherHost a last one, "*", for a name no pattern mentions. Patterns ssh would not take as a
    /// host name (empty, with blanks, control characters or a leading "-") are skipped.
    static QList<SshProbeName> forPatterns(const QStringList& patterns, bool withEveryOtherHost);
};
