#include "SymbolIcon.h"
#include "SymbolPainter.h"

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
    void everyNamedSymbolHasAPicture_data()
    {
        QTest::addColumn<QString>("name");
        for (const QString& name : { u"plus"_s, u"plus.circle"_s, u"trash"_s, u"terminal"_s, u"square.and.arrow.down"_s,
                 u"arrow.clockwise"_s, u"rectangle.stack"_s, u"exclamationmark.triangle"_s, u"cup.and.saucer.fill"_s,
                 u"number"_s, u"lock.fill"_s, u"key.horizontal"_s, u"checkmark.circle"_s, u"xmark.circle"_s,
                 u"magnifyingglass"_s, u"doc.text"_s, u"gearshape"_s })
            QTest::newRow(qPrintable(name)) << name;
    }

    void everyNamedSymbolHasAPicture()
    {
        QFETCH(QString, name);
        QVERIFY(hasSymbolDrawing(name));
        const QIcon icon = symbolIcon(name);
        QVERIFY(!icon.isNull());
        const QImage image = icon.pixmap(QSize(32, 32)).toImage();
        QVERIFY2(opaquePixels(image) > 20, qPrintable(name));
        QVERIFY2(opaquePixels(image) < 32 * 32, qPrintable(name));
    }

    void drawingsDifferFromOneAnother()
    {
        const QColor ink(Qt::black);
        QSet<QByteArray> seen;
        for (const QString& name : { u"plus"_s, u"trash"_s, u"terminal"_s, u"rectangle.stack"_s, u"lock.fill"_s }) {
            const QImage image = symbolIcon(name, ink).pixmap(QSize(24, 24)).toImage();
            const QByteArray bytes(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
            QVERIFY2(!seen.contains(bytes), qPrintable(name));
            seen.insert(bytes);
        }
    }

    void unknownNameStillGivesAnIcon()
    {
        QVERIFY(!hasSymbolDrawing(u"no.such.symbol"));
        const QIcon icon = symbolIcon(u"no.such.symbol");
        QVERIFY(!icon.isNull());
        const QImage image = icon.pixmap(QSize(24, 24)).toImage();
        QVERIFY(opaquePixels(image) > 0);
        QVERIFY(qAlpha(image.pixel(0, 0)) == 0);
    }

    void tintColoursTheDrawingAndDisabledIsFainter()
    {
        const QColor orange(255, 149, 0);
        const QIcon icon = symbolIcon(u"lock.fill", orange);
        // The middle of the lock's filled body.
        const QColor middle = icon.pixmap(QSize(48, 48)).toImage().pixelColor(24, 34);
        QCOMPARE(middle.alpha(), 255);
        QCOMPARE(middle.rgb(), orange.rgb());
        QVERIFY(qAlpha(icon.pixmap(QSize(48, 48), QIcon::Disabled).toImage().pixel(24, 34)) < 255);
    }
};

QTEST_MAIN(TestSymbolIcon)
#include "test_symbol_icon.moc"
