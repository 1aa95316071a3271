#include "SshConfigReach.h"

#include "KnownHostNameMatch.h"
#include "OpenSSHLineWords.h"

#include <QStringView>

#include <algorithm>

using namespace Qt::StringLiterals;

SshConfigReach::SshConfigReach(const QString& text)
{
    m_blocks.append(Block());
    for (const QStringView line : QStringView(text).split(u'\n')) {
        QStringList words = OpenSSHLineWords::split(line);
        if (words.isEmpty())
            continue;
        words.first() = words.first().toLower();
        if (words.first() == u"match"_s)
            m_hasMatch = true;
        if (words.first() == u"host"_s) {
            m_blocks.append(Block { words.mid(1), {} });
            index(m_blocks.size() - 1);
        }
        m_blocks.last().lines.append(words);
    }
}

void SshConfigReach::index(qsizetype block)
{
    const QStringList& patterns = m_blocks.at(block).patterns;
    if (patterns.isEmpty() || !std::all_of(patterns.cbegin(), patterns.cend(), &SshConfigReach::isPlainName)) {
        m_otherBlocks.append(block);
        return;
    }
    for (const QString& pattern : patterns) {
        QList<qsizetype>& blocks = m_blocksByName[pattern.toLower()];
        if (blocks.isEmpty() || blocks.last() != block)
            blocks.append(block);
    }
}

bool SshConfigReach::isPlainName(const QString& pattern)
{
    return !pattern.startsWith(u'!') && !pattern.contains(u'*') && !pattern.contains(u'?') && !pattern.contains(u',');
}

QList<qsizetype> SshConfigReach::blocksThatMayMatch(const QString& name) const
{
    QList<qsizetype> blocks = m_blocksByName.value(name.toLower());
    for (const qsizetype block : m_otherBlocks) {
        if (m_blocks.at(block).patterns.isEmpty() || mayMatch(m_blocks.at(block).patterns, name))
            blocks.append(block);
    }
    std::sort(blocks.begin(), blocks.end());
    return blocks;
}

QList<QStringList> SshConfigReach::linesFor(const QString& name) const
{
    // The lines before the first Host line reach every name.
    QList<QStringList> lines = m_blocks.first().lines;
    for (const qsizetype block : blocksThatMayMatch(name))
        lines += m_blocks.at(block).lines;
    return lines;
}

bool SshConfigReach::mayDiffer(const SshConfigReach& before, const SshConfigReach& after, const QString& name)
{
    if (!before.judgesNames() || !after.judgesNames())
        return true;
    return before.linesFor(name) != after.linesFor(name);
}

bool SshConfigReach::mayMatch(const QStringList& patterns, const QString& name)
{
    return std::any_of(patterns.cbegin(), patterns.cend(), [&](const QString& pattern) {
        // A list in one word is not a list to ssh today; should a version read it as one, it still counts.
        return pattern.startsWith(u'!') || pattern.contains(u',') || knownHostPatternMatches(pattern, name);
    });
}
