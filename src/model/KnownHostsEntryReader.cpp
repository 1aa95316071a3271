#include "KnownHostsEntryReader.h"

#include "CharacterClasses.h"
#include "KnownHostsTextScan.h"
#include "RandomUuid.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace
{
// The fields a line needs at most to be told apart; the rest is the comment.
constexpr int maxLeadingFields = 4;

struct Fields
{
    std::array<QStringView, maxLeadingFields> leading;
    int leadingCount = 0;
    qsizetype restStart = -1; // where the field after the leading ones starts, -1 when there is none
};

qsizetype skipWhiteSpace(QStringView text, qsizetype at)
{
    while (at < text.size() && CharacterClasses::isWhiteSpace(text[at].unicode()))
        ++at;
    return at;
}

// Splits at runs of white space, dropping empty fields; stops after the leading fields so the
// comment is not cut into pieces only to be glued together again.
Fields splitFields(QStringView text)
{
    Fields fields;
    qsizetype at = skipWhiteSpace(text, 0);
    while (at < text.size()) {
        if (fields.leadingCount == maxLeadingFields) {
            fields.restStart = at;
            break;
        }
        const qsizetype end = KnownHostsTextScan::nextWhiteSpace(text, at);
        fields.leading[static_cast<std::size_t>(fields.leadingCount++)] = text.sliced(at, end - at);
        at = skipWhiteSpace(text, end);
    }
    return fields;
}

std::optional<KnownHostMarker> markerOf(QStringView field)
{
    // Lower-casing can only give "@..." from a field that begins with "@"; the full conversion keeps
    // special mappings (one character to two) from matching by accident.
    if (field.isEmpty() || field.front() != u'@')
        return std::nullopt;
    return knownHostMarkerFromRawValue(field.toString().toLower());
}

bool isNormalisedComment(QStringView comment)
{
    QChar previous;
    for (const QChar c : comment) {
        if (CharacterClasses::isWhiteSpace(c.unicode()) && (c != u' ' || previous == u' '))
            return false;
        previous = c;
    }
    return true;
}

struct HostsFieldFacts
{
    /// The field is what its hosts joined with "," give: no empty piece. (A piece cannot hold white
    /// space, which ended the field.)
    bool isNormal = true;
    bool isHashed = false;
};

// One pass over the field, which every line of a large file needs.
HostsFieldFacts examineHostsField(QStringView field)
{
    HostsFieldFacts facts;
    qsizetype pieceStart = 0;
    while (pieceStart <= field.size()) {
        qsizetype comma = field.indexOf(u',', pieceStart);
        if (comma < 0)
            comma = field.size();
        const QStringView piece = field.sliced(pieceStart, comma - pieceStart);
        facts.isNormal = facts.isNormal && !piece.isEmpty();
        facts.isHashed = facts.isHashed || piece.startsWith(u"|1|") || piece.startsWith(u"|2|");
        pieceStart = comma + 1;
    }
    return facts;
}

QStringList hostsOf(QStringView field)
{
    QStringList hosts;
    for (const QStringView piece : field.tokenize(u',', Qt::SkipEmptyParts))
        hosts.append(piece.toString());
    return hosts;
}

// The fields of rest joined with one blank each.
QString normalisedComment(QStringView rest)
{
    QString joined;
    joined.reserve(rest.size());
    qsizetype at = 0;
    while (at < rest.size()) {
        const qsizetype end = KnownHostsTextScan::nextWhiteSpace(rest, at);
        if (!joined.isEmpty())
            joined += u' ';
        joined += rest.sliced(at, end - at);
        at = skipWhiteSpace(rest, end);
    }
    return joined;
}

KnownHostEntry::Span spanOf(QStringView field, const QString& source)
{
    return { field.data() - source.constData(), field.size() };
}
} // namespace

std::optional<KnownHostEntry> KnownHostsEntryReader::read(
    const QString& source, QStringView text, int lineNumber, bool isCommentedOut)
{
    // An entry keeps its fields' places as ints; a line of two thousand million characters stays as
    // it stands instead.
    if (text.size() > std::numeric_limits<int>::max())
        return std::nullopt;
    const Fields fields = splitFields(text);
    if (fields.leadingCount < 3)
        return std::nullopt;
    const std::optional<KnownHostMarker> marker = markerOf(fields.leading[0]);
    const std::size_t first = marker ? 1 : 0;
    if (fields.leadingCount < static_cast<int>(first) + 3)
        return std::nullopt;

    const QStringView hostsField = fields.leading[first];
    const QStringView keyType = fields.leading[first + 1];
    const QStringView key = fields.leading[first + 2];
    // Without a marker a fourth leading field already belongs to the comment.
    const qsizetype restStart = marker            ? fields.restStart
        : fields.leadingCount == maxLeadingFields ? fields.leading[3].data() - text.data()
                                                  : -1;
    const QStringView comment = restStart < 0 ? key.sliced(key.size()) : text.sliced(restStart);
    const HostsFieldFacts facts = examineHostsField(hostsField);
    const bool isHashed = facts.isHashed;

    if (facts.isNormal && isNormalisedComment(comment)) {
        return KnownHostEntry::fromSpans(createRandomUuid(), lineNumber, marker, source, spanOf(hostsField, source),
            spanOf(keyType, source), spanOf(key, source), spanOf(comment, source), isHashed, isCommentedOut);
    }
    const QStringList hosts = hostsOf(hostsField);
    if (hosts.isEmpty())
        return std::nullopt;
    return KnownHostEntry(createRandomUuid(), lineNumber, marker, hosts, keyType, key, normalisedComment(comment),
        isHashed, isCommentedOut);
}
