#pragma once

#include <QList>
#include <QString>

/// One setting that ssh answers differently for one host: the keyword as `ssh -G` prints it (or
/// "known_hosts" for a host-key answer), with the value for the file on disk and for what a save would
/// write. An empty value means ssh gives no value at all.
struct SshSettingChange
{
    QString keyword;
    QString before;
    QString after;

    friend bool operator==(const SshSettingChange&, const SshSettingChange&) = default;
};

/// A host name (or, for a wildcard pattern, the pattern) whose answer from ssh changes with the save.
struct SshHostChange
{
    QString name;
    QList<SshSettingChange> changes;

    friend bool operator==(const SshHostChange&, const SshHostChange&) = default;
};

/// What OpenSSH said about one save: every host whose answer changes, in the order the names were
/// found; or, when the check could not be made at all, why (a Dutch sentence) in problem.
struct SshCheckResult
{
    QList<SshHostChange> hosts;
    QString problem;

    friend bool operator==(const SshCheckResult&, const SshCheckResult&) = default;
};
