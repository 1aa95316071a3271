#include "SshConfigReach.h"

#include "KnownHostNameMatch.h"
#include "OpenSSHLineWords.h"

#include <QStringView>

#include <algorithm>

using namespace Qt::StringLiterals;

SshConfigReach::SshConfigReach()
{
    m_blocks.append(Block());
}

SshConfigReach::SshConfigReach(QStringView text)
    : SshConfigReach()
{
    read(text);
}

void SshConfigReach::read(QStringView text)
{
    QList<NameEntry> names;
    for (const QStringView line : text.split(u'\n')) {
        QStringList words = OpenSSHLineWords::split(line);
        if (words.isEmpty())
            continue;
        words.first() = words.first().toLower();
        if (words.first() == u"match"_s)
            m_hasMatch = true;
        if (words.first() == u"host"_s)
            startBlock(words.mid(1), names);
        for (const QString& word : std::as_const(words)) {
            const auto size = static_cast<quint32>(word.size());
            m_lines += QChar(static_cast<char16_t>(size >> 16));
            m_lines += QChar(static_cast<char16_t>(size & 0xFFFF));
            m_lines += word;
        }
        m_lines += u'\n';
        m_blocks.last().size = m_lines.size() - m_blocks.last().start;
    }
    // Parts are read in file order, so the names of this part only need merging in.
    std::sort(names.begin(), names.end());
    const auto middle = m_blocksByName.size();
    m_blocksByName.append(names);
    std::inplace_merge(m_blocksByName.begin(), m_blocksByName.begin() + middle, m_blocksByName.end());
}

void SshConfigReach::startBlock(QStringList patterns, QList<NameEntry>& names)
{
    const qsizetype block = m_blocks.size();
    const bool plain
        = !patterns.isEmpty() && std::all_of(patterns.cbegin(), patterns.cend(), &SshConfigReach::isPlainName);
    if (plain) {
        for (const QString& pattern : std::as_const(patterns))
            names.append({ keyOf(pattern), block });
        patterns.clear();
    } else {
        m_otherBlocks.append(block);
    }
    m_blocks.append(Block { std::move(patterns), m_lines.size(), 0 });
}

size_t SshConfigReach::keyOf(const QString& name)
{
    return qHash(name.toLower());
}

bool SshConfigReach::isPlainName(const QString& pattern)
{
    return !pattern.startsWith(u'!') && !pattern.contains(u'*') && !pattern.contains(u'?') && !pattern.contains(u',');
}

QList<qsizetype> SshConfigReach::blocksThatMayMatch(const QString& name) const
{
    const size_t key = keyOf(name);
    const auto byKey = [](const NameEntry& a, const NameEntry& b) { return a.first < b.first; };
    const auto [from, to]
        = std::equal_range(m_blocksByName.cbegin(), m_blocksByName.cend(), NameEntry { key, 0 }, byKey);
    QList<qsizetype> blocks;
    for (auto it = from; it != to; ++it)
        blocks.append(it->second);
    for (const qsizetype block : m_otherBlocks) {
        if (m_blocks.at(block).patterns.isEmpty() || mayMatch(m_blocks.at(block).patterns, name))
            blocks.append(block);
    }
    std::sort(blocks.begin(), blocks.end());
    blocks.erase(std::unique(blocks.begin(), blocks.end()), blocks.end());
    return blocks;
}

QList<QStringView> SshConfigReach::linesFor(const QString& name) const
{
    // The lines before the first Host line reach every name.
    QList<qsizetype> blocks = blocksThatMayMatch(name);
    blocks.prepend(0);
    QList<QStringView> lines;
    for (const qsizetype block : std::as_const(blocks))
        lines.append(QStringView(m_lines).sliced(m_blocks.at(block).start, m_blocks.at(block).size));
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
