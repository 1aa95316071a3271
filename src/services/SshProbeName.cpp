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

QList<SshProbeName> SshProbeName::forPatterns(const QStringList& patterns, bool withEveryOtherHost)
{
    QList<SshProbeName> probes;
    QSet<QString> asked;
    auto add = [&](const QString& shownAs, const QString& name) {
        if (askable(name) && !asked.contains(name.toLower())) {
            asked.insert(name.toLower());
            probes.append({ shownAs, name });
        }
    };
    for (const QString& pattern : patterns) {
        const QString positive = pattern.startsWith(u'!') ? pattern.mid(1) : pattern;
        const bool wildcard = positive.contains(u'*') || positive.contains(u'?');
        add(positive, wildcard ? nameMatching(positive) : positive);
    }
    if (withEveryOtherHost)
        add(u"*"_s, nameMatching(u"*"_s));
    return probes;
}
