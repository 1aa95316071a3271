#include "SshConfigCheck.h"

#include "SshSettings.h"

using namespace Qt::StringLiterals;

SshConfigCheck::Preparation::Preparation(const QString& directory, QString onDisk, QString toSave)
    : copies(directory)
    , textOnDisk(std::move(onDisk))
    , textToSave(std::move(toSave))
{
    passes.append(Pass {});
}

QString SshConfigCheck::Preparation::writeCopy(const QString& fileName, bool onDisk, bool execAnswer)
{
    return copies.write(fileName, onDisk ? textOnDisk : textToSave, execAnswer);
}

namespace
{
// Beyond this many names a check would keep ssh busy for minutes: it is skipped and says so.
constexpr qsizetype maxNames = 5000;

const QString execTrueSuffix = u" (als Match exec slaagt)"_s;

QString firstLine(const QByteArray& bytes)
{
    return QString::fromUtf8(bytes).trimmed().section(u'\n', 0, 0);
}

// What ssh said about the file as a whole, for a run that did not print settings.
QString failureOf(const ProcessQueue::Outcome& outcome)
{
    if (!outcome.ran)
        return u"fout: "_s + outcome.problem;
    return u"fout: "_s + firstLine(outcome.errorOutput);
}

bool succeeded(const ProcessQueue::Outcome& outcome)
{
    return outcome.ran && outcome.exitCode == 0;
}

QList<SshSettingChange> changesBetween(const ProcessQueue::Outcome& before, const ProcessQueue::Outcome& after)
{
    if (succeeded(before) && succeeded(after))
        return SshSettings::changes(SshSettings::fromOutput(before.output), SshSettings::fromOutput(after.output));
    const QString was = succeeded(before) ? u"leest het bestand"_s : failureOf(before);
    const QString becomes = succeeded(after) ? u"leest het bestand"_s : failureOf(after);
    if (was == becomes)
        return {};
    return { { u"ssh"_s, was, becomes } };
}

void addNewKeywords(QList<SshSettingChange>& into, const QList<SshSettingChange>& more, const QString& suffix)
{
    for (SshSettingChange change : more) {
        const bool known = std::any_of(
            into.cbegin(), into.cend(), [&](const SshSettingChange& seen) { return seen.keyword == change.keyword; });
        if (known)
            continue;
        change.keyword += suffix;
        into.append(change);
    }
}
} // namespace

void SshConfigCheck::start(const QString& textOnDisk, const QString& textToSave)
{
    cancel();
    if (program().isEmpty()) {
        finishWith({ {}, u"ssh is niet gevonden, dus OpenSSH kan deze opslag niet beoordelen."_s });
        return;
    }
    if (textOnDisk == textToSave) {
        finishWith({});
        return;
    }
    QTemporaryDir* directory = freshDirectory();
    if (!directory) {
        finishWith({ {}, u"Geen tijdelijke map voor de controle door ssh."_s });
        return;
    }
    // Each copy and each reading of a text is a step of its own: at 1,000 hosts each takes
    // milliseconds.
    auto preparation = std::make_shared<Preparation>(directory->path(), textOnDisk, textToSave);
    prepareInSteps({
        [preparation] { preparation->passes[0].before = preparation->writeCopy(u"on-disk-exec-false"_s, true, false); },
        [preparation] { preparation->passes[0].after = preparation->writeCopy(u"to-save-exec-false"_s, false, false); },
        [preparation] {
            if (preparation->copies.hasExec())
                preparation->passes.append(
                    { preparation->writeCopy(u"on-disk-exec-true"_s, true, true), QString(), execTrueSuffix });
        },
        [preparation] {
            if (preparation->copies.hasExec())
                preparation->passes[1].after = preparation->writeCopy(u"to-save-exec-true"_s, false, true);
        },
        [preparation] {
            // A Match line in an included file can make ssh read every file again for another name.
            if (!preparation->copies.hasMatch())
                preparation->reachBefore.emplace(preparation->textOnDisk);
        },
        [preparation] {
            if (preparation->reachBefore)
                preparation->reachAfter.emplace(preparation->textToSave);
        },
        [this, preparation] { chooseProbes(*preparation); },
        [this, preparation] { askAbout(*preparation); },
    });
}

void SshConfigCheck::chooseProbes(Preparation& preparation)
{
    QList<SshProbeName> probes = SshProbeName::forPatterns(preparation.copies.hostPatterns(), true);
    if (preparation.reachBefore) {
        // ssh is asked only about names whose reachable lines the save changes; "*" is always asked,
        // since a line ssh cannot read at all fails the file for every name, reachable or not.
        probes.removeIf([&](const SshProbeName& probe) {
            return probe.shown != u"*"_s
                && !SshConfigReach::mayDiffer(*preparation.reachBefore, *preparation.reachAfter, probe.asked);
        });
    }
    if (probes.size() > maxNames) {
        finishWith({ {},
            u"Te veel hostnamen ("_s + QString::number(probes.size())
                + u") om elke opslag door ssh te laten beoordelen; de controle is overgeslagen."_s });
        return;
    }
    preparation.probes = std::move(probes);
}

void SshConfigCheck::askAbout(const Preparation& preparation)
{
    const QList<SshProbeName>& probes = preparation.probes;
    const QList<Pass> passes = preparation.passes;
    QList<ProcessQueue::Job> jobs;
    for (const Pass& pass : passes) {
        for (const SshProbeName& probe : std::as_const(probes)) {
            jobs.append(askSsh(pass.before, probe.asked));
            jobs.append(askSsh(pass.after, probe.asked));
        }
    }
    // Pair number pass * probes + p asks about probe p in that pass.
    auto changesPerPair = std::make_shared<QList<QList<SshSettingChange>>>(passes.size() * probes.size());
    runPairs(
        jobs,
        [changesPerPair](qsizetype pair, const Outcome& onDisk, const Outcome& toSave) {
            (*changesPerPair)[pair] = changesBetween(onDisk, toSave);
        },
        [changesPerPair, passes, probes] {
            SshCheckResult result;
            for (qsizetype p = 0; p < probes.size(); ++p) {
                QList<SshSettingChange> changes;
                for (qsizetype pass = 0; pass < passes.size(); ++pass)
                    addNewKeywords(
                        changes, changesPerPair->at(pass * probes.size() + p), passes.at(pass).keywordSuffix);
                if (!changes.isEmpty())
                    result.hosts.append({ probes.at(p).shown, changes });
            }
            return result;
        });
}

// Only settings are printed (-G); "--" keeps any name from being read as an option.
ProcessQueue::Job SshConfigCheck::askSsh(const QString& configPath, const QString& name) const
{
    return { program(), { u"-G"_s, u"-F"_s, configPath, u"-o"_s, u"CanonicalizeHostname=no"_s, u"--"_s, name } };
}
