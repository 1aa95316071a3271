#pragma once

#include "OpenSSHCheck.h"
#include "SshConfigCopies.h"
#include "SshConfigReach.h"
#include "SshProbeName.h"

#include <QSet>

#include <optional>

/// Asks `ssh -G` what a config save changes: the text on disk and the text a save would write go to
/// two private files (with "Match exec" answered without running anything, and includes resolved as
/// for the user's own config, see SshConfigCopies), and for every name on every Host line of either
/// text (one probe per pattern, plus the names of "Match host" and "Match originalhost" lists) ssh
/// prints the effective settings of both; every name whose settings differ is reported with each
/// differing keyword. A config with "Match exec" is evaluated twice, with every exec false and with
/// every exec true, so a difference that depends on a command is still seen; keywords that differ only
/// in the second pass carry " (als Match exec slaagt)".
///
/// ssh is not asked about a name whose reachable lines the save leaves as they are (SshConfigReach),
/// which keeps the number of runs near the number of names an edit touches.
///
/// Canonicalisation is switched off on the command line, so no name is looked up: that also hides a
/// change to CanonicalizeHostname itself.
class SshConfigCheck : public OpenSSHCheck
{
    Q_OBJECT

public:
    using OpenSSHCheck::OpenSSHCheck;

    /// Starts the check of replacing textOnDisk by textToSave; finished() follows. Two equal texts, a
    /// missing ssh, or more than 5,000 names to ask about report at once without running anything.
    void start(const QString& textOnDisk, const QString& textToSave);

private:
    // One pass: the two files as evaluated with one answer for every "Match exec", and how much of
    // each text is copied so far.
    struct Pass
    {
        QString before;
        QString after;
        QString keywordSuffix;
        qsizetype copiedBefore = 0;
        qsizetype copiedAfter = 0;
    };

    // What the steps of start() build up for the last one.
    struct Preparation
    {
        Preparation(const QString& directory, QString onDisk, QString toSave);

        SshConfigCopies copies;
        QString textOnDisk;
        QString textToSave;
        // Every "Match exec" false, then every one true.
        QList<Pass> passes;
        std::optional<SshConfigReach> reachBefore;
        std::optional<SshConfigReach> reachAfter;
        qsizetype readBefore = 0;
        qsizetype readAfter = 0;
        qsizetype weighed = 0;
        QSet<QString> askedNames;
        QList<SshProbeName> probes;
    };

    bool copyPart(Preparation& preparation, qsizetype pass, bool onDisk);
    static bool readPart(Preparation& preparation, bool onDisk);
    static bool weighProbes(Preparation& preparation);
    bool mayAskAbout(const Preparation& preparation);
    void askAbout(const Preparation& preparation);
    ProcessQueue::Job askSsh(const QString& configPath, const QString& name) const;
};
