#include "CharacterClasses.h"

#include <QTest>

#include <limits>

using namespace CharacterClasses;

namespace
{
/// Unicode's White_Space property, from its PropList.txt, for the basic multilingual plane.
bool hasWhiteSpaceProperty(char16_t c)
{
    return (c >= 0x09 && c <= 0x0D) || c == 0x20 || c == 0x85 || c == 0xA0 || c == 0x1680
        || (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F || c == 0x3000;
}

/// The same class described by general category: the separators, tab, the line-break controls and NEL.
bool isSeparatorOrSpaceControl(char16_t c)
{
    switch (QChar::category(c)) {
    case QChar::Separator_Space:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return (c >= 0x09 && c <= 0x0D) || c == 0x85;
    }
}

QString hex(char16_t c)
{
    return QStringLiteral("U+%1").arg(static_cast<uint>(c), 4, 16, QLatin1Char('0'));
}
} // namespace

// Every code unit is tried: the readers of both files split and trim with these two tests, so one
// character in the wrong class changes how a file reads.
class TestCharacterClasses : public QObject
{
    Q_OBJECT

private slots:
    // Line breaks are exactly the seven; white space is Unicode's White_Space property, which is also the
    // separator categories with the space controls, and holds every line break.
    void classesOfEveryCodeUnit()
    {
        const QList<char16_t> breaks { u'\n', u'\v', u'\f', u'\r', u'\u0085', u'\u2028', u'\u2029' };
        for (uint code = 0; code <= std::numeric_limits<char16_t>::max(); ++code) {
            const auto c = static_cast<char16_t>(code);
            QVERIFY2(isLineBreak(c) == breaks.contains(c), qPrintable(hex(c)));
            QVERIFY2(isWhiteSpace(c) == hasWhiteSpaceProperty(c), qPrintable(hex(c)));
            QVERIFY2(isWhiteSpace(c) == isSeparatorOrSpaceControl(c), qPrintable(hex(c)));
            QVERIFY2(!isLineBreak(c) || isWhiteSpace(c), qPrintable(hex(c)));
        }
    }
};

QTEST_GUILESS_MAIN(TestCharacterClasses)
#include "test_character_classes.moc"
