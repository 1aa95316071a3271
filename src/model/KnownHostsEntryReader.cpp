#include "KnownHostsEntryReader.h"

#include "KnownHostsTextScan.h"
#include "RandomUuid.h"

#include <QStringList>

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
    while (at < text.size() && KnownHostsTextScan::isWhiteSpace(text[at].unicode()))
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
        if (KnownHostsTextScan::isWhiteSpace(c.unicode()) && (c != u' ' || previous == u' '))
            return false;
        previous = c;
    }
    return true;
}

// The fields from restStart on, joined with one blank each.
QString commentFrom(QStringView text, qsizetype restStart)
{
    if (restStart < 0)
        return {};
    const QStringView rest = text.sliced(restStart);
    if (isNormalisedComment(rest))
        return rest.toString();
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

QStringList hostsFrom(QStringView field)
{
    QStringList hosts;
    qsizetype at = 0;
    while (at <= field.size()) {
        qsizetype comma = field.indexOf(u',', at);
        if (comma < 0)
            comma = field.size();
        const QStringView piece = field.sliced(at, comma - at).trimmed();
        if (!piece.isEmpty())
            hosts.append(piece.toString());
        at = comma + 1;
    }
    return hosts;
}

bool anyHashed(const QStringList& hosts)
{
    for (const QString& host : hosts) {
        if (host.startsWith(u"|1|"_s) || host.startsWith(u"|2|"_s))
            return true;
    }
    return false;
}
} // namespace

std::optional<KnownHostEntry> KnownHostsEntryReader::read(QStringView text, int lineNumber, bool isCommentedOut)
{
    const Fields fields = splitFields(text);
    if (fields.leadingCount < 3)
        return std::nullopt;
    const std::optional<KnownHostMarker> marker = markerOf(fields.leading[0]);
    const int first = marker ? 1 : 0;
    if (fields.leadingCount < first + 3)
        return std::nullopt;

    QStringList hosts = hostsFrom(fields.leading[static_cast<std::size_t>(first)]);
    if (hosts.isEmpty())
        return std::nullopt;
    // Without a marker a fourth leading field already belongs to the comment.
    const qsizetype restStart = marker ? fields.restStart
                                : fields.leadingCount == maxLeadingFields
                                    ? fields.leading[3].data() - text.data()
                                    : -1;
    const bool isHashed = anyHashed(hosts);
    return KnownHostEntry(createRandomUuid(), lineNumber, marker, std::move(hosts),
                          sharedKeyType(fields.leading[static_cast<std::size_t>(first + 1)]),
                          fields.leading[static_cast<std::size_t>(first + 2)].toString(),
                          commentFrom(text, restStart), isHashed, isCommentedOut);
}

QString KnownHostsEntryReader::sharedKeyType(QStringView keyType)
{
    for (const QString& known : m_keyTypes) {
        if (!known.isEmpty() && known == keyType)
            return known;
    }
    QString made = keyType.toString();
    m_keyTypes[m_nextKeyTypeSlot] = made;
    m_nextKeyTypeSlot = (m_nextKeyTypeSlot + 1) % m_keyTypes.size();
    return made;
}
