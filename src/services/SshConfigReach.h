#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <utility>

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
    SshConfigReach();
    explicit SshConfigReach(QStringView text);

    /// Reads more of the config: the lines of text, which starts where a line starts. A large config
    /// can be read a part at a time.
    void read(QStringView text);

    /// Whether mayDiffer() can tell names apart; false for a config with a Match line.
    bool judgesNames() const { return !m_hasMatch; }

    /// Whether ssh may answer differently for name after before is replaced by after.
    static bool mayDiffer(const SshConfigReach& before, const SshConfigReach& after, const QString& name);

private:
    // A Host line and the lines after it, up to the next Host line: a stretch of m_lines. Only blocks
    // whose Host line has more than plain names keep their patterns.
    struct Block
    {
        QStringList patterns;
        qsizetype start = 0;
        qsizetype size = 0;
    };
    // A plain name of a block's Host line, as the hash of its lower-case form.
    using NameEntry = std::pair<size_t, qsizetype>;

    static bool mayMatch(const QStringList& patterns, const QString& name);
    static bool isPlainName(const QString& pattern);
    static size_t keyOf(const QString& name);
    void startBlock(QStringList patterns, QList<NameEntry>& names);
    QList<qsizetype> blocksThatMayMatch(const QString& name) const;
    // The lines that may reach name, block by block, in file order; with every Host line that may match.
    QList<QStringView> linesFor(const QString& name) const;

    // Every line as its words, each word as its length (two characters) and itself, each line ended by
    // LF, so that two stretches are equal when ssh reads their lines the same way. One text for the
    // whole config keeps a config of 10,000 hosts to a handful of allocations, quick to build and free.
    QString m_lines;
    // The first block holds the lines before any Host line.
    QList<Block> m_blocks;
    // The blocks by the plain names of their Host line, sorted, and the blocks whose Host line has
    // anything else, which every name must be tested against: a large config is mostly plain names, so
    // a name costs the few blocks that may match it rather than all of them. Two names with one hash
    // share their blocks, which can only make a name reach more lines, never fewer.
    QList<NameEntry> m_blocksByName;
    QList<qsizetype> m_otherBlocks;
    bool m_hasMatch = false;
};
