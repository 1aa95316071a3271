#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QStringView>

/// Copies of a client config that `ssh -G` may read without running anything of the user's.
///
/// ssh runs the command of every "Match exec" criterion while it reads a config, even for -G. In each
/// copy such a criterion is replaced by one that needs no command and gives a fixed answer ("host *"
/// for true, "!host *" for false), so a config can be evaluated once as if every command succeeded and
/// once as if every one failed. Included files may hold such criteria too, so every Include is resolved
/// as ssh resolves it for the user's own config (relative to ~/.ssh, with ~ and wildcards expanded) and
/// pointed at a rewritten copy; nested includes stop at ssh's own depth limit.
///
/// Along the way the copies collect what a check needs to ask ssh about: the patterns of every Host
/// line and of every "Match host" and "Match originalhost" list, in the order they were found.
class SshConfigCopies
{
public:
    /// Copies go into directory, which must exist and should be private to the user.
    explicit SshConfigCopies(QString directory);

    /// Writes text, rewritten for execAnswer, as the file named fileName in the directory, and
    /// returns its path, or an empty text when it cannot be written.
    QString write(const QString& fileName, QStringView text, bool execAnswer);
    /// The same, adding to the end of the file: the text of a large config can be copied a part at a
    /// time, each part starting where a line starts.
    QString append(const QString& fileName, QStringView text, bool execAnswer);

    /// Whether any text written so far (included files too) has a "Match exec" criterion.
    bool hasExec() const { return m_hasExec; }
    /// Whether any text written so far (included files too) has a Match line.
    bool hasMatch() const { return m_hasMatch; }
    /// Every host pattern found so far, each once, in the order found.
    const QStringList& hostPatterns() const { return m_hostPatterns; }

private:
    QString writeRewritten(const QString& fileName, QStringView text, bool execAnswer, bool append);
    QString rewrite(QStringView text, bool execAnswer, int depth);
    QString rewriteLine(QStringView line, bool execAnswer, int depth);
    QString rewriteMatch(const QStringList& words, bool execAnswer);
    QString rewriteInclude(const QStringList& words, bool execAnswer, int depth);
    QString copyOfIncluded(const QString& path, bool execAnswer, int depth);
    void notePatterns(const QString& patternList, QChar separator);

    QString m_directory;
    QHash<QString, QString> m_includedCopies;
    QStringList m_hostPatterns;
    QSet<QString> m_seenPatterns;
    bool m_hasExec = false;
    bool m_hasMatch = false;
};
