#include "EmptyStateView.h"
#include "SymbolIcon.h"
#include "SymbolPainter.h"

#include <QLabel>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{
int opaquePixels(const QImage& image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) > 128 ? 1 : 0;
    }
    return count;
}
} // namespace

class TestSymbolIcon : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyNamedSymbolHasAPicture_data();
    void everyNamedSymbolHasAPicture();
    void drawingsDifferFromOneAnother();
    void unknownNameStillGivesAnIcon();
    void tintColoursTheDrawing();
    void disabledDrawingIsFainter();
    void themeNamesAreFreedesktopNames();
    void emptyStateShowsItsTexts();
};

void TestSymbolIcon::everyNamedSymbolHasAPicture_data()
{
    QTest::addColumn<QString>("name");
    for (const QString& name :
         {u"plus"_s, u"plus.circle"_s, u"trash"_s, u"terminal"_s, u"square.and.arrow.down"_s, u"arrow.clockwise"_s,
          u"rectangle.stack"_s, u"exclamationmark.triangle"_s, u"cup.and.saucer.fill"_s, u"number"_s, u"lock.fill"_s,
          u"key.horizontal"_s, u"checkmark.circle"_s, u"xmark.circle"_s, u"magnifyingglass"_s, u"doc.text"_s,
          u"gearshape"_s})
        QTest::newRow(qPrintable(name)) << name;
}

void TestSymbolIcon::everyNamedSymbolHasAPicture()
{
    QFETCH(QString, name);
    QVERIFY(hasSymbolDrawing(name));
    const QIcon icon = symbolIcon(name);
    QVERIFY(!icon.isNull());
    const QImage image = icon.pixmap(QSize(32, 32)).toImage();
    QVERIFY2(opaquePixels(image) > 20, qPrintable(name));
    QVERIFY2(opaquePixels(image) < 32 * 32, qPrintable(name));
}

void TestSymbolIcon::drawingsDifferFromOneAnother()
{
    const QColor ink(Qt::black);
    QSet<QByteArray> seen;
    for (const QString& name : {u"plus"_s, u"trash"_s, u"terminal"_s, u"rectangle.stack"_s, u"lock.fill"_s}) {
        const QImage image = symbolIcon(name, ink).pixmap(QSize(24, 24)).toImage();
        const QByteArray bytes(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
        QVERIFY2(!seen.contains(bytes), qPrintable(name));
        seen.insert(bytes);
    }
}

void TestSymbolIcon::unknownNameStillGivesAnIcon()
{
    QVERIFY(!hasSymbolDrawing(u"no.such.symbol"));
    const QIcon icon = symbolIcon(u"no.such.symbol");
    QVERIFY(!icon.isNull());
    const QImage image = icon.pixmap(QSize(24, 24)).toImage();
    QVERIFY(opaquePixels(image) > 0);
    QVERIFY(qAlpha(image.pixel(0, 0)) == 0);
}

void TestSymbolIcon::tintColoursTheDrawing()
{
    const QColor orange(255, 149, 0);
    const QImage image = symbolIcon(u"lock.fill", orange).pixmap(QSize(48, 48)).toImage();
    // The middle of the lock's filled body.
    const QColor middle = image.pixelColor(24, 34);
    QCOMPARE(middle.alpha(), 255);
    QCOMPARE(middle.rgb(), orange.rgb());
}

void TestSymbolIcon::disabledDrawingIsFainter()
{
    const QIcon icon = symbolIcon(u"lock.fill", QColor(Qt::black));
    const QImage normal = icon.pixmap(QSize(48, 48), QIcon::Normal).toImage();
    const QImage disabled = icon.pixmap(QSize(48, 48), QIcon::Disabled).toImage();
    QVERIFY(qAlpha(disabled.pixel(24, 34)) < qAlpha(normal.pixel(24, 34)));
}

void TestSymbolIcon::themeNamesAreFreedesktopNames()
{
    QCOMPARE(symbolThemeNames(u"plus"), QStringList{u"list-add"_s});
    QCOMPARE(symbolThemeNames(u"terminal").first(), u"utilities-terminal"_s);
    QCOMPARE(symbolThemeNames(u"trash").first(), u"edit-delete"_s);
    QVERIFY(symbolThemeNames(u"cup.and.saucer.fill").isEmpty());
}

void TestSymbolIcon::emptyStateShowsItsTexts()
{
    EmptyStateView view(u"rectangle.stack", u"Geen host geselecteerd"_s,
                        u"Voeg een host toe of selecteer een host in de lijst."_s);
    QCOMPARE(view.symbolName(), u"rectangle.stack"_s);
    QCOMPARE(view.findChild<QLabel*>(u"emptyStateTitle"_s)->text(), u"Geen host geselecteerd"_s);
    QCOMPARE(view.findChild<QLabel*>(u"emptyStateDescription"_s)->text(),
             u"Voeg een host toe of selecteer een host in de lijst."_s);
    const QLabel* icon = view.findChild<QLabel*>(u"emptyStateIcon"_s);
    QVERIFY(!icon->pixmap().isNull());
}

QTEST_MAIN(TestSymbolIcon)
#include "test_symbol_icon.moc"
