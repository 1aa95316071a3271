#include "SshConfigReach.h"

#include "OpenSSHLineWords.h"

#include <QStringView>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
// ssh's own pattern language: "*" for any run of characters, "?" for one, nothing else special.
// Backtracks only to the last "*", so a pattern full of stars costs no more than its length times the
// name's.
bool globMatches(QStringView pattern, QStringView name)
{
    qsizetype p = 0;
    qsizetype n = 0;
    qsizetype star = -1;
    qsizetype starName = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern.at(p) == u'*') {
            star = p++;
            starName = n;
        } else if (p < pattern.size() && (pattern.at(p) == u'?' || pattern.at(p).toLower() == name.at(n).toLower())) {
            ++p;
            ++n;
        } else if (star >= 0) {
            p = star + 1;
            n = ++starName;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern.at(p) == u'*')
        ++p;
    return p == pattern.size();
}
} // namespace

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
        return pattern.startsWith(u'!') || pattern.contains(u',') || globMatches(pattern, name);
    });
}
