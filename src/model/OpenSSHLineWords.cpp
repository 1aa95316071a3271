#include "OpenSSHLineWords.h"

using namespace Qt::StringLiterals;

namespace
{
// ssh's WHITESPACE set: only these separate words, so a no-break space stays inside a word.
bool isSshWhitespace(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

qsizetype skipWhitespace(QStringView line, qsizetype at)
{
    while (at < line.size() && isSshWhitespace(line.at(at)))
        ++at;
    return at;
}

// One word from at: quoted parts lose their quotes and keep their blanks; the keyword (first word)
// also ends at "=", and one "=" may stand between it and the first argument. The word is appended
// run by run, from quote to quote: a config of 1,000 hosts is split twice per check.
qsizetype readWord(QStringView line, qsizetype at, bool isKeyword, QString& word)
{
    QChar quote;
    qsizetype runStart = at;
    for (; at < line.size(); ++at) {
        const QChar c = line.at(at);
        if (quote.isNull() && (isSshWhitespace(c) || (isKeyword && c == u'=')))
            break;
        const bool opens = quote.isNull() && (c == u'"' || c == u'\'');
        if (opens || (!quote.isNull() && c == quote)) {
            word.append(line.sliced(runStart, at - runStart));
            quote = opens ? c : QChar();
            runStart = at + 1;
        }
    }
    word.append(line.sliced(runStart, at - runStart));
    return at;
}
} // namespace

QStringList OpenSSHLineWords::split(QStringView line)
{
    QStringList words;
    qsizetype at = skipWhitespace(line, 0);
    while (at < line.size()) {
        if (line.at(at) == u'#')
            break;
        QString word;
        at = readWord(line, at, words.isEmpty(), word);
        words.append(word);
        at = skipWhitespace(line, at);
        if (words.size() == 1 && at < line.size() && line.at(at) == u'=')
            at = skipWhitespace(line, at + 1);
    }
    return words;
}

QString OpenSSHLineWords::quoted(const QString& word)
{
    const bool plain = !word.isEmpty() && std::none_of(word.cbegin(), word.cend(), [](QChar c) {
        return isSshWhitespace(c) || c == u'"' || c == u'\'' || c == u'#' || c == u'=';
    });
    return plain ? word : u'"' + word + u'"';
}
