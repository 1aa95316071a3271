#pragma once

#include "SSHConfigDocument.h"

#include <QList>
#include <QString>
#include <QStringView>

/// What parse gives back: the document and the problems found, in line order.
struct SSHConfigParseResult
{
    SSHConfigDocument document;
    QList<SSHParseError> errors;
};

/// Reads and writes the text of an ssh client configuration file, with this application's group
/// comments, disabled (commented-out) hosts and section headers. Stateless: one instance serves all.
class SSHConfigParser
{
public:
    /// Never fails and throws nothing: a line that cannot be read is reported in errors and kept
    /// as a comment, so no text is lost. Every host and option gets a fresh random id.
    SSHConfigParseResult parse(QStringView text) const;

    /// Writes whatever the document holds, LF line ends, no line break after the last line.
    /// Throws nothing and checks nothing.
    QString serialize(const SSHConfigDocument& document) const;
};
