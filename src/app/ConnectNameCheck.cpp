#include "ConnectNameCheck.h"

using namespace Qt::StringLiterals;

namespace
{

/// Enough of a name for the user to recognise it in the one-line status.
constexpr qsizetype shownNameLength = 40;

bool isControlCharacter(QChar c)
{
    const char16_t u = c.unicode();
    return u < 0x20 || (u >= 0x7f && u <= 0x9f);
}

std::optional<QChar> firstControlCharacter(QStringView name)
{
    for (QChar c : name) {
        if (isControlCharacter(c))
            return c;
    }
    return std::nullopt;
}

/// "U+000A" for a line feed: a control character cannot be shown as itself.
QString codePointText(QChar c)
{
    return u"U+"_s + QString::number(c.unicode(), 16).toUpper().rightJustified(4, u'0');
}

/// The name, quoted, cut after shownNameLength characters with "…" (never inside a surrogate pair).
QString shownName(QStringView name)
{
    if (name.size() <= shownNameLength)
        return u'"' + name.toString() + u'"';
    qsizetype cut = shownNameLength;
    if (name.at(cut - 1).isHighSurrogate())
        --cut;
    return u'"' + name.first(cut).toString() + u"…\""_s;
}

QString lengthText(QStringView name)
{
    return u"("_s + QString::number(name.size()) + u" tekens, hooguit "_s + QString::number(maximumConnectNameLength)
        + u')';
}

} // namespace

std::optional<ConnectNameProblem> connectNameProblem(QStringView name)
{
    if (firstControlCharacter(name))
        return ConnectNameProblem::controlCharacter;
    if (name.size() > maximumConnectNameLength)
        return ConnectNameProblem::tooLong;
    if (name.startsWith(u'-'))
        return ConnectNameProblem::leadingDash;
    return std::nullopt;
}

std::optional<QString> connectHostNameRefusal(QStringView name)
{
    const std::optional<ConnectNameProblem> problem = connectNameProblem(name);
    if (!problem)
        return std::nullopt;
    switch (*problem) {
    case ConnectNameProblem::controlCharacter:
        return u"Deze hostnaam bevat een stuurteken ("_s + codePointText(*firstControlCharacter(name))
            + u") en kan niet veilig aan ssh worden doorgegeven; niet verbonden."_s;
    case ConnectNameProblem::tooLong:
        return u"Deze hostnaam ("_s + shownName(name) + u") is te lang om aan ssh door te geven "_s + lengthText(name)
            + u"; niet verbonden."_s;
    case ConnectNameProblem::leadingDash:
        return u"Deze hostnaam ("_s + shownName(name)
            + u") begint met \"-\" en zou door ssh als optie gelezen worden; niet verbonden."_s;
    }
    Q_UNREACHABLE();
    return std::nullopt;
}

std::optional<QString> connectPortRefusal(QStringView port)
{
    if (port.size() <= maximumConnectNameLength)
        return std::nullopt;
    return u"Dit poortnummer ("_s + shownName(port) + u") is te lang om aan ssh door te geven "_s + lengthText(port)
        + u"; niet verbonden."_s;
}
