#include "KnownHostsCheck.h"

#include "DifferingLines.h"

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

// Beyond this many characters a copy is written over more than one turn of the event loop.
constexpr qsizetype partSize = qsizetype(256) * 1024;

// ssh-keygen ends lines at LF; a line differs when it is not in both texts equally often.
void countLines(KnownHostsCheck::LineBalance& balance, QStringView text, qsizetype weight)
{
    for (const QStringView line : text.split(u'\n'))
        balance[line] += weight;
}

QStringList changedLines(const KnownHostsCheck::LineBalance& balance)
{
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

} // namespace

QStringList KnownHostsCheck::patternsOnChangedLines(const QString& textOnDisk, const QString& textToSave)
{
    const DifferingLines differing = DifferingLines::of(textOnDisk, textToSave);
    LineBalance balance;
    countLines(balance, differing.first, 1);
    countLines(balance, differing.second, -1);
    return patternsOnChangedLines(balance);
}

QStringList KnownHostsCheck::patternsOnChangedLines(const LineBalance& balance)
{
    QStringList patterns;
    QSet<QString> seen;
    for (const QString& line : changedLines(balance)) {
        for (const QString& pattern : hostPatternsOf(line)) {
            if (!seen.contains(pattern)) {
                seen.insert(pattern);
                patterns.append(pattern);
            }
        }
    }
    return patterns;
}

// Counts the lines of the next part of text and moves counted past it; returns whether the whole
// text is counted. A part that ends at a line end counts its lines without that end, and the last part
// counts as split() does, so the parts together count what the whole text counts.
bool KnownHostsCheck::countPart(LineBalance& balance, QStringView text, qsizetype& counted, qsizetype weight)
{
    const qsizetype end = endOfPart(text, counted, partSize);
    const bool last = end == text.size();
    countLines(balance, text.sliced(counted, end - counted - (last ? 0 : 1)), weight);
    counted = end;
    return last;
}

void KnownHostsCheck::start(const QString& textOnDisk, const QString& textToSave)
{
    cancel();
    if (program().isEmpty()) {
        finishWith({ {}, u"ssh-keygen is niet gevonden, dus OpenSSH kan deze opslag niet beoordelen."_s });
        return;
    }
    // Counting the lines and writing the copies take a turn of the event loop per part of a text, so
    // that at 100,000 lines no turn takes more than milliseconds. A step that cannot go on reports,
    // which drops the steps after it.
    auto preparation = std::make_shared<Preparation>();
    preparation->textOnDisk = textOnDisk;
    preparation->textToSave = textToSave;
    prepareInSteps({
        [preparation] {
            // An edit changes a few lines in one place: most of both texts is left out here at once.
            const DifferingLines differing = DifferingLines::of(preparation->textOnDisk, preparation->textToSave);
            preparation->differingOnDisk = differing.first;
            preparation->differingToSave = differing.second;
            return true;
        },
        [preparation] {
            return countPart(preparation->balance, preparation->differingOnDisk, preparation->countedOnDisk, 1);
        },
        [preparation] {
            return countPart(preparation->balance, preparation->differingToSave, preparation->countedToSave, -1);
        },
        [this, preparation] {
            // No probe for other names: a line that did not change cannot change their answer.
            preparation->probes = SshProbeName::forPatterns(patternsOnChangedLines(preparation->balance), false);
            preparation->balance.clear();
            if (mayAskAbout(preparation->probes))
                placeCopies(*preparation);
            return true;
        },
        [this, preparation] { return writePart(*preparation, true); },
        [this, preparation] { return writePart(*preparation, false); },
        [this, preparation] {
            askAbout(*preparation);
            return true;
        },
    });
}

// Reports at once, and says no, when there is nothing to ask or too much.
bool KnownHostsCheck::mayAskAbout(const QList<SshProbeName>& probes)
{
    if (probes.size() > maxNames) {
        finishWith({ {},
            u"Te veel gewijzigde hostnamen in known_hosts ("_s + QString::number(probes.size())
                + u") om door ssh-keygen te laten beoordelen; de controle is overgeslagen."_s });
        return false;
    }
    if (probes.isEmpty()) {
        finishWith({});
        return false;
    }
    return true;
}

bool KnownHostsCheck::placeCopies(Preparation& preparation)
{
    QTemporaryDir* directory = freshDirectory();
    if (!directory) {
        finishWith({ {}, u"Geen tijdelijke map voor de controle door ssh-keygen."_s });
        return false;
    }
    preparation.onDiskPath = directory->filePath(u"on-disk"_s);
    preparation.toSavePath = directory->filePath(u"to-save"_s);
    return true;
}

// Writes the next part of a copy, up to a line end, so that no turn converts megabytes at once, and
// returns whether the copy is complete (or could not be written, which reports).
bool KnownHostsCheck::writePart(Preparation& preparation, bool onDisk)
{
    const QString& text = onDisk ? preparation.textOnDisk : preparation.textToSave;
    qsizetype& written = onDisk ? preparation.writtenOnDisk : preparation.writtenToSave;
    const qsizetype end = endOfPart(text, written, partSize);
    QFile file(onDisk ? preparation.onDiskPath : preparation.toSavePath);
    const bool wrote = file.open(written == 0 ? QIODevice::WriteOnly : QIODevice::Append)
        && file.write(QStringView(text).sliced(written, end - written).toUtf8()) >= 0;
    if (!wrote) {
        finishWith(
            { {}, u"De tijdelijke bestanden voor de controle door ssh-keygen konden niet geschreven worden."_s });
        return true;
    }
    written = end;
    return written == text.size();
}

void KnownHostsCheck::askAbout(const Preparation& preparation)
{
    const QList<SshProbeName>& probes = preparation.probes;
    QList<ProcessQueue::Job> jobs;
    for (const SshProbeName& probe : probes) {
        jobs.append({ program(), { u"-F"_s, probe.asked, u"-f"_s, preparation.onDiskPath } });
        jobs.append({ program(), { u"-F"_s, probe.asked, u"-f"_s, preparation.toSavePath } });
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
