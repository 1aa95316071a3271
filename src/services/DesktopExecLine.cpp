#include "DesktopExecLine.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace
{
/// One argument of an Exec line as written, before field codes are handled.
struct RawArgument
{
    QString text;
    bool quoted = false;
};

bool isBlank(QChar character)
{
    return character == u' ' || character == u'\t' || character == u'\n';
}

/// Splits at unquoted blanks; nothing when a quote is left open or an escape ends the line.
std::optional<QList<RawArgument>> splitArguments(const QString& exec)
{
    QList<RawArgument> arguments;
    std::optional<RawArgument> current;
    bool inQuotes = false;
    for (qsizetype index = 0; index < exec.size(); ++index) {
        const QChar character = exec[index];
        if (!inQuotes && isBlank(character)) {
            if (current)
                arguments.append(*std::exchange(current, std::nullopt));
            continue;
        }
        if (!current)
            current = RawArgument();
        if (character == u'"') {
            inQuotes = !inQuotes;
            current->quoted = true;
        } else if (inQuotes && character == u'\\') {
            if (++index == exec.size())
                return std::nullopt;
            current->text.append(exec[index]);
        } else {
            current->text.append(character);
        }
    }
    if (inQuotes)
        return std::nullopt;
    if (current)
        arguments.append(*current);
    return arguments;
}

/// The argument with its field codes handled; nothing when it consisted only of field codes.
std::optional<QString> withoutFieldCodes(const RawArgument& argument)
{
    // Codes are not expanded inside quotes.
    if (argument.quoted)
        return argument.text;
    QString result;
    bool droppedCode = false;
    const QString& text = argument.text;
    for (qsizetype index = 0; index < text.size(); ++index) {
        if (text[index] != u'%' || index + 1 == text.size()) {
            result.append(text[index]);
        } else if (text[++index] == u'%') {
            result.append(u'%');
        } else {
            droppedCode = true;
        }
    }
    if (droppedCode && result.isEmpty())
        return std::nullopt;
    return result;
}
} // namespace

QStringList DesktopExecLine::arguments(const QString& exec)
{
    const std::optional<QList<RawArgument>> raw = splitArguments(exec);
    if (!raw)
        return {};
    QStringList arguments;
    for (const RawArgument& argument : *raw) {
        if (std::optional<QString> text = withoutFieldCodes(argument))
            arguments.append(*text);
    }
    return arguments;
}
