#pragma once

#include "KnownHostsDocument.h"

#include <QList>
#include <QString>

/// What parse gives: the document and the errors, both in line order.
struct KnownHostsParseResult
{
    KnownHostsDocument document;
    QList<KnownHostsParseError> errors;
};

/// Reads and writes the text of a known_hosts file. Stateless; both operations accept every input
/// and never throw.
///
///     auto [document, errors] = KnownHostsService{}.parse(text);
///     QString out = KnownHostsService{}.serialize(document);
class KnownHostsService
{
public:
    /// One record per line (lines end at any of LF, VT, FF, CR, NEL, LS, PS, each on its own), every
    /// record and entry with a fresh id. A line that is not blank, not a comment and not an entry
    /// becomes an invalid record kept verbatim plus an error "Ongeldige known_hosts regel.". A comment
    /// whose text reads as an entry becomes a commented-out entry.
    KnownHostsParseResult parse(const QString& text) const;

    /// One line per record joined with "\n", no newline added at the end: blank as an empty line,
    /// invalid text unchanged, comments trimmed (prefixed "# " when they lack "#"), entries in normal
    /// form (single blanks, lower-case marker, "# " before a commented-out entry).
    QString serialize(const KnownHostsDocument& document) const;

    /// The same a part at a time, for a caller that spreads a large document over several turns:
    /// emptyTextFor() gives an empty text with room for all of document, and serializePart() appends
    /// the records from first up to (not including) end. Parts appended in order, from the first record
    /// to the last, give what serialize() gives.
    QString emptyTextFor(const KnownHostsDocument& document) const;
    void serializePart(QString& out, const KnownHostsDocument& document, qsizetype first, qsizetype end) const;
};
