#include "ShellQuoting.h"

using namespace Qt::StringLiterals;

namespace
{

bool isSafeArgumentCharacter(QChar c)
{
    const char16_t u = c.unicode();
    return (u >= u'a' && u <= u'z') || (u >= u'A' && u <= u'Z') || (u >= u'0' && u <= u'9') || u == u'.' || u == u'_'
        || u == u'@' || u == u':' || u == u'/' || u == u'-';
}

bool isSafeArgument(QStringView text)
{
    if (text.isEmpty())
        return false;
    for (QChar c : text) {
        if (!isSafeArgumentCharacter(c))
            return false;
    }
    return true;
}

} // namespace

QString shellQuoted(QStringView text)
{
    if (isSafeArgument(text))
        return text.toString();
    QString inner = text.toString();
    inner.replace(u'\'', u"'\\''"_s);
    return u'\'' + inner + u'\'';
}
