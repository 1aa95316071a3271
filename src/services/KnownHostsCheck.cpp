#include "KnownHostsCheck.h"

#include <QFile>
#include <QHash>
#include <QSet>

#include <optional>

using namespace Qt::StringLiterals;

using Outcome = ProcessQueue::Outcome;

namespace
{
// Beyond this many names a check would keep ssh-keygen busy for minutes: it is skipped and says so.
constexpr qsizetype maxNames = 5000;

// ssh-keygen ends lines at LF; a line differs when it is not in both texts equally often.
QStringList changedLines(const QString& textOnDisk, const QString& textToSave)
{
    QHash<QStringView, qsizetype> balance;
    for (const QStringView line : QStringView(textOnDisk).split(u'\n'))
        ++balance[line];
    for (const QStringView line : QStringView(textToSave).split(u'\n'))
        --balance[line];
    QStringList changed;
    for (auto it = balance.cbegin(); it != balance.cend(); ++it) {
        if (it.value() != 0)
            changed.append(it.key().toString());
    }
    changed.sort();
    return changed;
}

// OpenSSH's reading: any first field starting with "@" is a marker (known or not), the hosts follow.
QStringList hostPatternsOf(const QString& line)
{
    const QStringList fields = line.simplified().split(u' ', Qt::SkipEmptyParts);
    if (fields.isEmpty() || fields.first().startsWith(u'#'))
        return {};
    const QString hosts = fields.first().startsWith(u'@') ? fields.value(1) : fields.first();
    QStringList patterns;
    for (const QString& pattern : hosts.split(u',', Qt::SkipEmptyParts)) {
        if (!pattern.startsWith(u"|1|"_s) && !pattern.startsWith(u"|2|"_s))
            patterns.append(pattern);
    }
    return patterns;
}

// The keys ssh-keygen found, each as "marker key-type key", sorted; line numbers are left out since
// they move when lines are added or removed above.
QString answerOf(const Outcome& outcome)
{
    if (!outcome.ran)
        return u"fout: "_s + outcome.problem;
    if (outcome.exitCode != 0 && outcome.exitCode != 1)
        return u"fout: "_s + QString::fromUtf8(outcome.errorOutput).trimmed().section(u'\n', 0, 0);
    QStringList keys;
    for (const QByteArray& rawLine : outcome.output.split('\n')) {
        const QStringList fields = QString::fromUtf8(rawLine).simplified().split(u' ', Qt::SkipEmptyParts);
        if (fields.isEmpty() || fields.first().startsWith(u'#'))
            continue;
        const bool marked = fields.first().startsWith(u'@');
        const QString marker = marked ? fields.first() + u' ' : QString();
        keys.append(marker + fields.mid(marked ? 2 : 1, 2).join(u' '));
    }
    keys.sort();
    return keys.join(u"; "_s);
}

bool writeText(const QString& path, const QString& text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0;
}
} // namespace

QStringList KnownHostsCheck::patternsOnChangedLines(const QString& textOnDisk, const QString& textToSave)
{
    QStringList patterns;
    QSet<QString> seen;
    for (const QString& line : changedLines(textOnDisk, textToSave)) {
        for (const QString& pattern : hostPatternsOf(line)) {
            if (!seen.contains(pattern)) {
                seen.insert(pattern);
                patterns.append(pattern);
            }
        }
    }
    return patterns;
}

void KnownHostsCheck::start(const QString& textOnDisk, const QString& textToSave)
{
    cancel();
    if (program().isEmpty()) {
        finishWith({ {}, u"ssh-keygen is niet gevonden, dus OpenSSH kan deze opslag niet beoordelen."_s });
        return;
    }
    // Finding the changed lines and writing the two files are a turn of the event loop each: at
    // 10,000 lines each takes milliseconds.
    auto probes = std::make_shared<QList<SshProbeName>>();
    prepareInSteps({
        [probes, textOnDisk, textToSave] {
            // No probe for other names: a line that did not change cannot change their answer.
            *probes = SshProbeName::forPatterns(patternsOnChangedLines(textOnDisk, textToSave), false);
        },
        [this, probes, textOnDisk, textToSave] { askAbout(*probes, textOnDisk, textToSave); },
    });
}

void KnownHostsCheck::askAbout(const QList<SshProbeName>& probes, const QString& textOnDisk, const QString& textToSave)
{
    if (probes.size() > maxNames) {
        finishWith({ {},
            u"Te veel gewijzigde hostnamen in known_hosts ("_s + QString::number(probes.size())
                + u") om door ssh-keygen te laten beoordelen; de controle is overgeslagen."_s });
        return;
    }
    if (probes.isEmpty()) {
        finishWith({});
        return;
    }
    QTemporaryDir* directory = freshDirectory();
    if (!directory) {
        finishWith({ {}, u"Geen tijdelijke map voor de controle door ssh-keygen."_s });
        return;
    }
    const QString before = directory->filePath(u"on-disk"_s);
    const QString after = directory->filePath(u"to-save"_s);
    if (!writeText(before, textOnDisk) || !writeText(after, textToSave)) {
        finishWith(
            { {}, u"De tijdelijke bestanden voor de controle door ssh-keygen konden niet geschreven worden."_s });
        return;
    }
    QList<ProcessQueue::Job> jobs;
    for (const SshProbeName& probe : probes) {
        jobs.append({ program(), { u"-F"_s, probe.asked, u"-f"_s, before } });
        jobs.append({ program(), { u"-F"_s, probe.asked, u"-f"_s, after } });
    }
    // Only a differing answer is kept, the rest of the outputs are dropped as they come in.
    auto changePerPair = std::make_shared<QList<std::optional<SshSettingChange>>>(probes.size());
    runPairs(
        jobs,
        [changePerPair](qsizetype pair, const Outcome& onDisk, const Outcome& toSave) {
            const QString was = answerOf(onDisk);
            const QString becomes = answerOf(toSave);
            if (was != becomes)
                (*changePerPair)[pair] = SshSettingChange { u"known_hosts"_s, was, becomes };
        },
        [changePerPair, probes] {
            SshCheckResult result;
            for (qsizetype p = 0; p < probes.size(); ++p) {
                if (const std::optional<SshSettingChange>& change = changePerPair->at(p))
                    result.hosts.append({ probes.at(p).shown, { *change } });
            }
            return result;
        });
}
