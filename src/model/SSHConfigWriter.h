#pragma once

#include "SSHConfigDocument.h"

#include <QString>

/// Builds the text of one serialization: lines joined by single LFs, no break after the last one.
/// Made fresh for every call of SSHConfigParser::serialize.
class SSHConfigWriter
{
public:
    explicit SSHConfigWriter(qsizetype expectedSize);

    void writeGlobalItem(const SSHGlobalItem& item);
    void writeHost(const SSHHost& host);
    QString takeText() { return std::move(m_text); }

private:
    void beginLine();
    void writeEmptyLine();
    void writeItem(const SSHHostItem& item, bool isEnabled);

    QString m_text;
    qsizetype m_lineCount = 0;
    bool m_lastLineEmpty = false;
};
