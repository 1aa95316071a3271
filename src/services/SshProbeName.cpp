#include "SshProbeName.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace
{
QString nameMatching(QString pattern)
{
    pattern.replace(u'*', u"tarnwick-probe"_s);
    pattern.replace(u'?', u'x');
    return pattern;
}

// ssh refuses such names itself or would read them as options; asking about them tells nothing.
bool askable(const QString& name)
{
    return !name.isEmpty() && !name.startsWith(u'-') && std::none_of(name.cbegin(), name.cend(), [](QChar c) {
        return c.isSpace() || c.category() == QChar::Other_Control;
    });
}
} // namespace

std::optional<SshProbeName> SshProbeName::forPattern(const QString& pattern)
{
    const QString positive = pattern.startsWith(u'!') ? pattern.mid(1) : pattern;
    const bool wildcard = positive.contains(u'*') || positive.contains(u'?');
    const QString asked = wildcard ? nameMatching(positive) : positive;
    if (!askable(asked))
        return std::nullopt;
    return SshProbeName { positive, asked };
}

QList<SshProbeName> SshProbeName::forPatterns(const QStringList& patterns, bool withEveryOtherHost)
{
    QList<SshProbeName> probes;
    QSet<QString> asked;
    auto add = [&](const QString& pattern) {
        std::optional<SshProbeName> probe = forPattern(pattern);
        if (probe && !asked.contains(probe->asked.toLower())) {
            asked.insert(probe->asked.toLower());
            probes.append(std::move(*probe));
        }
    };
    for (const QString& pattern : patterns)
        add(pattern);
    if (withEveryOtherHost)
        add(u"*"_s);
    return probes;
}
