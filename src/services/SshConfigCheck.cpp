#include "SshConfigCheck.h"

#include "SshSettings.h"

using namespace Qt::StringLiterals;

namespace
{
// Beyond this many names a check would keep ssh busy for minutes: it is skipped and says so.
constexpr qsizetype maxNames = 5000;

// A config is copied and read a part of about this many characters per turn of the event loop, and
// this many names are weighed per turn: at 10,000 hosts each takes a millisecond or two.
constexpr qsizetype partSize = qsizetype(64) * 1024;
constexpr qsizetype probesPerTurn = 1000;

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

SshConfigCheck::Preparation::Preparation(const QString& directory, QString onDisk, QString toSave)
    : copies(directory)
    , textOnDisk(std::move(onDisk))
    , textToSave(std::move(toSave))
    , passes { Pass {}, Pass { {}, {}, execTrueSuffix } }
{ }

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
    // Each copy and each reading of a text is done a part per turn of the event loop.
    auto preparation = std::make_shared<Preparation>(directory->path(), textOnDisk, textToSave);
    prepareInSteps({
        [this, preparation] { return copyPart(*preparation, 0, true); },
        [this, preparation] { return copyPart(*preparation, 0, false); },
        [this, preparation] { return copyPart(*preparation, 1, true); },
        [this, preparation] { return copyPart(*preparation, 1, false); },
        [preparation] { return readPart(*preparation, true); },
        [preparation] { return readPart(*preparation, false); },
        [preparation] { return weighProbes(*preparation); },
        [this, preparation] {
            if (mayAskAbout(*preparation))
                askAbout(*preparation);
            return true;
        },
    });
}

// Pass 1 is only made for a config with "Match exec", which the copies of pass 0 have found by then.
bool SshConfigCheck::copyPart(Preparation& preparation, qsizetype pass, bool onDisk)
{
    const bool execAnswer = pass == 1;
    if (execAnswer && !preparation.copies.hasExec())
        return true;
    Pass& into = preparation.passes[pass];
    const QStringView text = onDisk ? preparation.textOnDisk : preparation.textToSave;
    qsizetype& copied = onDisk ? into.copiedBefore : into.copiedAfter;
    const qsizetype end = endOfPart(text, copied, partSize);
    const QString fileName = (onDisk ? u"on-disk"_s : u"to-save"_s) + (execAnswer ? u"-exec-true"_s : u"-exec-false"_s);
    const QStringView part = text.sliced(copied, end - copied);
    QString& path = onDisk ? into.before : into.after;
    path = copied == 0 ? preparation.copies.write(fileName, part, execAnswer)
                       : preparation.copies.append(fileName, part, execAnswer);
    if (path.isEmpty()) {
        finishWith({ {}, u"De tijdelijke bestanden voor de controle door ssh konden niet geschreven worden."_s });
        return true;
    }
    copied = end;
    return copied == text.size();
}

// A Match line (in an included file too) can make ssh read every file again for another name, so
// names are then not told apart and nothing is read.
bool SshConfigCheck::readPart(Preparation& preparation, bool onDisk)
{
    if (preparation.copies.hasMatch())
        return true;
    std::optional<SshConfigReach>& reach = onDisk ? preparation.reachBefore : preparation.reachAfter;
    if (!reach)
        reach.emplace();
    const QStringView text = onDisk ? preparation.textOnDisk : preparation.textToSave;
    qsizetype& read = onDisk ? preparation.readBefore : preparation.readAfter;
    const qsizetype end = endOfPart(text, read, partSize);
    reach->read(text.sliced(read, end - read));
    read = end;
    return read == text.size();
}

// One probe per host pattern (each asked name once, ignoring case as ssh does) and last one for a
// name no pattern mentions, as SshProbeName::forPatterns() makes them, a part per turn. ssh is asked
// only about names whose reachable lines the save changes; "*" is always asked, since a line ssh
// cannot read at all fails the file for every name, reachable or not.
bool SshConfigCheck::weighProbes(Preparation& preparation)
{
    const QStringList& patterns = preparation.copies.hostPatterns();
    const qsizetype end = std::min(preparation.weighed + probesPerTurn, patterns.size() + 1);
    for (qsizetype i = preparation.weighed; i < end; ++i) {
        const std::optional<SshProbeName> probe
            = SshProbeName::forPattern(i < patterns.size() ? patterns.at(i) : u"*"_s);
        if (!probe || preparation.askedNames.contains(probe->asked.toLower()))
            continue;
        preparation.askedNames.insert(probe->asked.toLower());
        if (!preparation.reachBefore || probe->shown == u"*"_s
            || SshConfigReach::mayDiffer(*preparation.reachBefore, *preparation.reachAfter, probe->asked))
            preparation.probes.append(*probe);
    }
    preparation.weighed = end;
    return end == patterns.size() + 1;
}

bool SshConfigCheck::mayAskAbout(const Preparation& preparation)
{
    if (preparation.probes.size() > maxNames) {
        finishWith({ {},
            u"Te veel hostnamen ("_s + QString::number(preparation.probes.size())
                + u") om elke opslag door ssh te laten beoordelen; de controle is overgeslagen."_s });
        return false;
    }
    return true;
}

void SshConfigCheck::askAbout(const Preparation& preparation)
{
    const QList<SshProbeName>& probes = preparation.probes;
    const QList<Pass> passes = preparation.passes.first(preparation.copies.hasExec() ? 2 : 1);
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
