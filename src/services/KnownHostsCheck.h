#pragma once

#include "OpenSSHCheck.h"
#include "SshProbeName.h"

#include <QHash>
#include <QStringView>

/// Asks `ssh-keygen -F` what a known_hosts save changes. Only lines whose text differs between the
/// file on disk and the text a save would write can change an answer, so only the host names on those
/// lines are asked about (a wildcard pattern through a name it matches; hashed names cannot be asked
/// about and are skipped). For each name, the keys ssh-keygen finds in the two files (with their
/// markers) are compared; a name whose answer differs is reported under the keyword "known_hosts".
class KnownHostsCheck : public OpenSSHCheck
{
    Q_OBJECT

public:
    using OpenSSHCheck::OpenSSHCheck;

    /// Starts the check of replacing textOnDisk by textToSave; finished() follows. Two equal texts, a
    /// missing ssh-keygen, or more than 5,000 names to ask about report at once without running anything.
    void start(const QString& textOnDisk, const QString& textToSave);

    /// The host patterns of the lines that are not in both texts equally often, each once.
    static QStringList patternsOnChangedLines(const QString& textOnDisk, const QString& textToSave);

    /// How often each line is in the text on disk, less how often it is in the text to save.
    using LineBalance = QHash<QStringView, qsizetype>;
    /// The host patterns of the lines whose balance is not zero, each once.
    static QStringList patternsOnChangedLines(const LineBalance& balance);

private:
    // What the steps of start() build up for the last one.
    struct Preparation
    {
        QString textOnDisk;
        QString textToSave;
        QStringView differingOnDisk;
        QStringView differingToSave;
        qsizetype countedOnDisk = 0;
        qsizetype countedToSave = 0;
        LineBalance balance;
        QList<SshProbeName> probes;
        QString onDiskPath;
        QString toSavePath;
        qsizetype writtenOnDisk = 0;
        qsizetype writtenToSave = 0;
    };

    static bool countPart(LineBalance& balance, QStringView text, qsizetype& counted, qsizetype weight);
    bool mayAskAbout(const QList<SshProbeName>& probes);
    bool placeCopies(Preparation& preparation);
    bool writePart(Preparation& preparation, bool onDisk);
    void askAbout(const Preparation& preparation);
};
