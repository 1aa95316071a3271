#include "CanonicalText.h"

#include <QString>

namespace
{
bool isAscii(QStringView text)
{
    for (const QChar c : text) {
        if (c.unicode() >= 0x80)
            return false;
    }
    return true;
}
} // namespace

bool canonicallyEqual(QStringView a, QStringView b)
{
    if (a == b)
        return true;
    // Different ASCII texts can never be equivalent; only other text pays for normalization.
    if (isAscii(a) && isAscii(b))
        return false;
    return a.toString().normalized(QString::NormalizationForm_D)
        == b.toString().normalized(QString::NormalizationForm_D);
}

bool canonicallyEqual(const QStringList& a, const QStringList& b)
{
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i) {
        if (!canonicallyEqual(a.at(i), b.at(i)))
            return false;
    }
    return true;
}
