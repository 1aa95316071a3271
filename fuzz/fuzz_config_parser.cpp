// Feeds arbitrary bytes through the config reader and writer and traps on any broken promise:
// no line lost, errors well-formed, the parse invariants, and a text that settles once written.
#include "CharacterClasses.h"
#include "SSHConfigParser.h"
#include "SSHConfigSyntax.h"

#include <QString>

#include <cstddef>
#include <cstdint>

using namespace Qt::StringLiterals;
using namespace SSHConfigSyntax;

namespace
{
void require(bool condition)
{
    if (!condition)
        __builtin_trap();
}

QString write(const QString& text)
{
    return SSHConfigParser {}.serialize(SSHConfigParser {}.parse(text).document);
}

bool isLeftoverGroupComment(const SSHGlobalItem& item)
{
    return item.isComment() && !parseGroupComment(item.text()).isEmpty();
}

/// Lines that the reader may drop: group comments and section headers, which live on as labels.
qsizetype countLabelLines(const QString& text, qsizetype& lineCount)
{
    qsizetype labelLines = 0;
    lineCount = 0;
    qsizetype start = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i < text.size() && !CharacterClasses::isLineBreak(text[i].unicode()))
            continue;
        const QStringView line = trimBlanks(QStringView(text).sliced(start, i - start));
        if (!parseGroupComment(line).isEmpty() || parseSectionHeader(line))
            ++labelLines;
        ++lineCount;
        start = i + 1;
    }
    return labelLines;
}

void checkLinesAccountedFor(const QString& text, const SSHConfigDocument& document)
{
    qsizetype stored = document.hosts.size();
    for (const SSHGlobalItem& item : document.globalItems)
        stored += isLeftoverGroupComment(item) ? 0 : 1;
    for (const SSHHost& host : document.hosts)
        stored += host.items.size();
    qsizetype lineCount = 0;
    const qsizetype labelLines = countLabelLines(text, lineCount);
    require(stored <= lineCount);
    require(lineCount - stored <= labelLines);
}

void checkErrors(const QList<SSHParseError>& errors, qsizetype lineCount)
{
    qsizetype previous = 0;
    for (const SSHParseError& error : errors) {
        require(error.line() > previous && error.line() <= lineCount);
        require(error.message().startsWith(u"Ongeldige host-regel: "_s)
            || error.message().startsWith(u"Ongeldige disabled host-regel: "_s));
        previous = error.line();
    }
}

void checkHost(const SSHHost& host)
{
    require(!host.patterns.isEmpty());
    for (const QString& pattern : host.patterns)
        require(!pattern.isEmpty() && trimBlanks(pattern).size() == pattern.size());
    QStringList unique;
    appendUniqueGroups(host.groups, unique);
    require(unique == host.groups);
    for (const SSHHostItem& item : host.items) {
        if (const SSHOption* option = item.asOption())
            require(isValidOptionKey(option->key) && trimBlanks(option->value).size() == option->value.size());
        else if (item.isComment())
            require(item.commentText().startsWith(u'#'));
    }
}

/// A global comment that reads back as a label line, an option keyed Host, or a disabled option
/// in capitals: the changes a first write and read are allowed to make.
bool hasDocumentedLoss(const SSHConfigDocument& document)
{
    for (const SSHGlobalItem& item : document.globalItems) {
        if (item.isComment() && (parseSectionHeader(item.text()) || !parseGroupComment(item.text()).isEmpty()))
            return true;
    }
    for (const SSHHost& host : document.hosts) {
        for (const SSHHostItem& item : host.items) {
            const SSHOption* option = item.asOption();
            if (option && option->key.compare(u"host"_s, Qt::CaseInsensitive) == 0)
                return true;
            if (option && !host.isEnabled
                && parseSectionHeader(QString(u"#   "_s + option->key + u' ' + option->value)))
                return true;
        }
    }
    return false;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto [document, errors] = SSHConfigParser {}.parse(text);
    checkLinesAccountedFor(text, document);
    checkErrors(errors,
        text.count(u'\n') + 1 + text.count(u'\r') + text.count(u'\v') + text.count(u'\f') + text.count(u'\u0085')
            + text.count(u'\u2028') + text.count(u'\u2029'));
    for (const SSHHost& host : document.hosts)
        checkHost(host);

    const QString first = SSHConfigParser {}.serialize(document);
    const QString second = write(first);
    require(write(second) == second);
    require(hasDocumentedLoss(document) || second == first);
    return 0;
}
