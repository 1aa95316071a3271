#pragma once

#include <QString>
#include <QStringList>

#include <random>

/// Deterministic known_hosts texts for property tests and fuzz seeds: the same seed gives the same
/// texts on every platform (std::mt19937 is fully specified; the distributions are our own).
class KnownHostsTextGenerator
{
public:
    explicit KnownHostsTextGenerator(quint32 seed);

    /// Lines that the serializer writes unchanged (entries in normal form, comments of at most two
    /// words, invalid lines, empty lines), joined with LF; may end with a newline.
    QString normalFormText(int maxLines);

    /// Anything a hand-edited file may hold: irregular and Unicode white space, every line break
    /// (CR LF included), markers in any case, hashed names, comma runs, prose comments, stray bytes.
    QString irregularText(int maxLines);

    /// One line of normalFormText.
    QString normalFormLine();
    /// One line of irregularText, without its line break.
    QString irregularLine();

private:
    int below(int bound);
    bool chance(int percent) { return below(100) < percent; }
    QString pick(const QStringList& choices);

    QString word();
    QString host();
    QString hostsField(bool irregular);
    QString keyField();
    QString normalEntry();
    QString normalComment();
    QString invalidLine();
    QString irregularEntry();
    QString irregularComment();
    QString noise();
    QString gap();
    QString lineBreak();

    std::mt19937 m_random;
};
