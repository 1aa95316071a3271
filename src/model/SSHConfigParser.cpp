#include "SSHConfigParser.h"

#include "CharacterClasses.h"
#include "SSHConfigReader.h"
#include "SSHConfigWriter.h"

SSHConfigParseResult SSHConfigParser::parse(QStringView text) const
{
    SSHConfigReader reader;
    qsizetype lineNumber = 1;
    qsizetype lineStart = 0;
    // Every single line-break character ends a line, so CR LF gives an empty line between them,
    // and the text after the last break is always one more line (empty text: one empty line).
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!CharacterClasses::isLineBreak(text[i].unicode()))
            continue;
        reader.readLine(text.sliced(lineStart, i - lineStart), lineNumber++);
        lineStart = i + 1;
    }
    reader.readLine(text.sliced(lineStart), lineNumber);
    return reader.finish();
}

QString SSHConfigParser::serialize(const SSHConfigDocument& document) const
{
    qsizetype expectedSize = 0;
    for (const SSHGlobalItem& item : document.globalItems)
        expectedSize += item.text().size() + 3;
    for (const SSHHost& host : document.hosts)
        expectedSize += 64 + 48 * host.items.size();
    SSHConfigWriter writer(expectedSize);
    for (const SSHGlobalItem& item : document.globalItems)
        writer.writeGlobalItem(item);
    for (const SSHHost& host : document.hosts)
        writer.writeHost(host);
    return writer.takeText();
}
