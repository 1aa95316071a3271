#pragma once

#include "SSHConfigDocument.h"

#include <QString>
#include <QStringList>

/// Deterministic source of ssh config texts and documents for property tests and fuzz seeds.
/// The same seed always gives the same sequence; nothing depends on the clock.
class ConfigTextGenerator
{
public:
    explicit ConfigTextGenerator(quint64 seed);

    /// A messy text: every kind of line the reader distinguishes (host lines in odd spellings,
    /// disabled blocks, group comments, section headers, invalid lines, "Key=Value"), mixed line
    /// breaks including CR LF and Unicode ones, tabs and non-ASCII blanks and letters.
    QString nextText();

    /// A document free of every known loss of a write and read: it reads back from its own text
    /// to the same content (ids aside).
    SSHConfigDocument nextLossFreeDocument();

private:
    quint64 nextRandom();
    int below(int bound);
    bool chance(int percent) { return below(100) < percent; }
    QString pick(const QStringList& choices) { return choices.at(below(static_cast<int>(choices.size()))); }

    QString randomLine();
    QString randomLineBreak();
    QString randomWord();
    QString randomKey();
    QString randomValue();
    QString randomComment();
    QStringList randomGroups();
    SSHHost randomLossFreeHost();
    SSHHostItem randomLossFreeItem(bool isEnabled);

    quint64 m_state;
};
