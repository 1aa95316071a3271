// The main window's minimum size is 1080 by 700 points, except on a screen too small for it: at 150 %
// scaling a 1400 by 900 display offers about 933 by 600 points, and the window must still fit.

#include "MainWindow.h"
#include "MinimumWindowSize.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QScreen>
#include <QtTest>

class TestWindowMinimum : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void minimumIsClampedToTheScreen_data()
    {
        QTest::addColumn<QRect>("available");
        QTest::addColumn<QSize>("minimum");
        QTest::newRow("large screen") << QRect(0, 0, 1920, 1160) << QSize(1080, 700);
        QTest::newRow("exactly fits") << QRect(0, 0, 1080, 700) << QSize(1080, 700);
        QTest::newRow("150 % on 1400 by 900") << QRect(0, 0, 933, 570) << QSize(933, 570);
        QTest::newRow("narrow, tall screen") << QRect(0, 0, 1000, 1600) << QSize(1000, 700);
        QTest::newRow("second screen to the right") << QRect(1920, 0, 1024, 768) << QSize(1024, 700);
        QTest::newRow("no screen known") << QRect() << QSize(1080, 700);
    }

    void minimumIsClampedToTheScreen()
    {
        QFETCH(QRect, available);
        QFETCH(QSize, minimum);
        QCOMPARE(minimumWindowSize(mainWindowMinimumSize, available), minimum);
    }

    // This test runs on a 1400 by 900 screen at 150 %; see main() below.
    void windowFitsAScaledScreen()
    {
        QScreen* screen = QGuiApplication::primaryScreen();
        QCOMPARE(screen->devicePixelRatio(), 1.5);
        const QSize available = screen->availableGeometry().size();
        QVERIFY2(available.width() < 1080 && available.height() < 700, qPrintable(QString::number(available.width())));

        WindowFixture fixture;
        MainWindow window(fixture.make(WindowFixture::sampleConfig()), std::nullopt);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(window.minimumSize(), available);
        window.resize(available);
        QCOMPARE(window.size(), available);
    }
};

int main(int argc, char* argv[])
{
    // A 1400 by 900 pixel screen, scaled by 1.5 as a desktop set to 150 % does.
    qputenv("QT_SCALE_FACTOR", "1.5");
    qputenv(
        "QT_QPA_PLATFORM", "offscreen:configfile=" TARNWICK_SOURCE_DIR "/tests/ui/data/offscreen-hidpi-screen.json");
    QApplication application(argc, argv);
    TestWindowMinimum test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "test_window_minimum.moc"
