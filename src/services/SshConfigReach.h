#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

/// Which lines of a client config can reach ssh's answer for one name, so that a check need not ask
/// ssh about a name whose reachable lines a save leaves as they are.
///
/// A line reaches a name when it is outside every Host block, or inside a Host block whose line the
/// name may match. "May": every doubt counts as a match (letter case is ignored, a negated pattern
/// never excludes), so a name is only ever left out when ssh cannot read its lines differently. Lines
/// are compared as ssh cuts them into words, so indentation, spacing, "=" and comments do not count.
/// An Include line counts as the line itself: both texts include the same files (whose own Match
/// lines the caller must look for, see SshConfigCopies::hasMatch()). A config with a
/// Match line is not judged at all (a Match block depends on more than the name, and "Match final"
/// makes ssh read the file again for another name): then every name may be reached by every line.
class SshConfigReach
{
public:
    explicit SshConfigReach(const QString& text);

    /// Whether linesFor() can tell names apart; false for a config with a Match line.
    bool judgesNames() const { return !m_hasMatch; }
    /// The lines that may reach name, as words, in file order; with every Host line that may match.
    QList<QStringList> linesFor(const QString& name) const;

    /// Whether ssh may answer differently for name after before is replaced by after.
    static bool mayDiffer(const SshConfigReach& before, const SshConfigReach& after, const QString& name);

private:
    struct Block
    {
        QStringList patterns;
        QList<QStringList> lines;
    };

    static bool mayMatch(const QStringList& patterns, const QString& name);
    static bool isPlainName(const QString& pattern);
    void index(qsizetype block);
    QList<qsizetype> blocksThatMayMatch(const QString& name) const;

    // The first block holds the lines before any Host line.
    QList<Block> m_blocks;
    // Blocks by the plain names of their Host line (in lower case), and the blocks whose Host line has
    // anything else, which every name must be tested against: a large config is mostly plain names, so
    // a name costs the few blocks that may match it rather than all of them.
    QHash<QString, QList<qsizetype>> m_blocksByName;
    QList<qsizetype> m_otherBlocks;
    bool m_hasMatch = false;
};
