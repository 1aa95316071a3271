#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

/// Substring tests for the search fields. The query must already be lower-cased; the text is tested
/// as if lower-cased with QString::toLower(), but without allocating when the text is plain ASCII.
namespace LoweredTextSearch
{

/// text.toLower().contains(loweredQuery); an empty query is contained in every text.
bool contains(QStringView text, QStringView loweredQuery);

/// The same test for the texts joined with one blank (a query may span the joining blank).
bool containsInJoined(const QStringList& texts, QStringView loweredQuery);

/// The same test for the hosts of a known_hosts hosts field ("a,b") joined with one blank instead
/// of the commas (a query may span the joining blank).
bool containsInHostsField(QStringView hostsField, QStringView loweredQuery);

/// The same test for first, one blank and second.
bool containsInPair(QStringView first, QStringView second, QStringView loweredQuery);

} // namespace LoweredTextSearch
