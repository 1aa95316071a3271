// The bar that says an unedited save would change what ssh does, and the "Wat verandert er voor ssh?"
// pane: wiring to the view model, with the real ssh behind it.

#include "MainToolBar.h"
#include "MainWindow.h"
#include "WidgetHelpers.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QAction>
#include <QDockWidget>
#include <QLabel>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QTreeWidget>
#include <QtTest>

using namespace Qt::StringLiterals;

using EditorTab = SSHConfigViewModel::EditorTab;

namespace
{
const QString silentPortChange = u"Host web\n  HostName web.example\n  Port=2222\n"_s;

// Generous: only a hang reaches it.
constexpr int checkWaitMs = 120000;

QStringList rowTexts(const QTreeWidgetItem& item)
{
    return { item.text(0), item.text(1), item.text(2) };
}
} // namespace

class TestSshCheckWidgets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (QStandardPaths::findExecutable(u"ssh"_s).isEmpty())
            QSKIP("ssh is not installed");
    }

    void barAfterLoadOpensThePaneWithTheDifferences()
    {
        WindowFixture fixture;
        SSHConfigViewModel& vm = fixture.make(silentPortChange);
        MainWindow window(vm, std::nullopt);
        window.show();
        auto* bar = child<QFrame>(window, u"sshCheckBar"_s);
        QTRY_VERIFY_WITH_TIMEOUT(bar->isVisible(), checkWaitMs);
        QCOMPARE(child<QLabel>(window, u"sshCheckBarText"_s)->text(),
            u"Let op: opslaan verandert voor 1 hosts wat ssh doet, zonder dat je iets wijzigde"_s);
        auto* pane = child<QDockWidget>(window, u"sshChangesPane"_s);
        QVERIFY(!pane->isVisible());

        QTest::mouseClick(child<QPushButton>(window, u"showSshChangesButton"_s), Qt::LeftButton);
        QVERIFY(pane->isVisible());
        auto* tree = child<QTreeWidget>(window, u"sshChangesTree"_s);
        QCOMPARE(tree->topLevelItemCount(), 1);
        const QTreeWidgetItem* section = tree->topLevelItem(0);
        QCOMPARE(section->text(0), u"SSH config"_s);
        QCOMPARE(section->childCount(), 1);
        QTreeWidgetItem* host = section->child(0);
        QCOMPARE(host->text(0), u"web"_s);
        QCOMPARE(rowTexts(*host->child(0)), (QStringList { u"port"_s, u"2222"_s, u"22"_s }));
        QCOMPARE(host->child(1)->text(0), u"Regel 3"_s);
        QCOMPARE(
            child<QLabel>(window, u"sshChangesStatus"_s)->text(), u"Opslaan verandert voor 1 hosts wat ssh doet."_s);
        saveScreenshot(window);

        Q_EMIT tree->itemActivated(host->child(1), 0);
        QCOMPARE(vm.activeEditorTab(), EditorTab::raw);
        const QTextCursor cursor = child<QPlainTextEdit>(window, u"rawTextEditor"_s)->textCursor();
        QCOMPARE(cursor.blockNumber(), 2);
        QCOMPARE(cursor.selectedText(), u"  Port=2222"_s);

        pane->close();
        QVERIFY(!vm.sshChangesShown());
    }

    void closingTheBarKeepsItAwayUntilReload()
    {
        WindowFixture fixture;
        SSHConfigViewModel& vm = fixture.make(silentPortChange);
        MainWindow window(vm, std::nullopt);
        window.show();
        auto* bar = child<QFrame>(window, u"sshCheckBar"_s);
        QTRY_VERIFY_WITH_TIMEOUT(bar->isVisible(), checkWaitMs);
        QTest::mouseClick(child<QPushButton>(window, u"closeSshCheckBarButton"_s), Qt::LeftButton);
        QVERIFY(!bar->isVisible());
        // The file bars are untouched by it.
        QVERIFY(!child<QFrame>(window, u"configChangeBar"_s)->isVisible());
        vm.load();
        QTRY_VERIFY_WITH_TIMEOUT(bar->isVisible(), checkWaitMs);
    }

    void paneActionOnEveryTabMenuAndShortcut()
    {
        WindowFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host web\n  HostName web.example\n"_s);
        MainWindow window(vm, std::nullopt);
        window.show();
        QAction& action = window.toolBar().sshChangesAction();
        QCOMPARE(action.objectName(), u"sshChangesAction"_s);
        QCOMPARE(action.text(), u"Wat verandert er voor ssh?"_s);
        QCOMPARE(action.shortcut(), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_D));
        bool inMenu = false;
        for (const QAction* menu : window.menuBar()->actions())
            inMenu = inMenu || (menu->menu() && menu->menu()->actions().contains(&action));
        QVERIFY(inMenu);
        for (const EditorTab tab : { EditorTab::structured, EditorTab::raw, EditorTab::knownHosts }) {
            vm.setActiveEditorTab(tab);
            QVERIFY(action.isVisible() && action.isEnabled());
        }
        action.trigger();
        QVERIFY(child<QDockWidget>(window, u"sshChangesPane"_s)->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(!vm.sshCheckRunning(), checkWaitMs);
        QCOMPARE(child<QLabel>(window, u"sshChangesStatus"_s)->text(), u"Opslaan verandert niets aan wat ssh doet."_s);
    }

    void missingSshIsSaidInThePane()
    {
        WindowFixture fixture;
        SSHConfigViewModel& vm = fixture.make(silentPortChange);
        vm.setSshCheckPrograms(QString(), QString());
        MainWindow window(vm, std::nullopt);
        window.show();
        window.toolBar().sshChangesAction().trigger();
        auto* status = child<QLabel>(window, u"sshChangesStatus"_s);
        QTRY_VERIFY_WITH_TIMEOUT(status->text().startsWith(u"ssh is niet gevonden"_s), checkWaitMs);
        QVERIFY2(!status->text().contains(u"verandert niets"_s), qPrintable(status->text()));
        QVERIFY(!child<QFrame>(window, u"sshCheckBar"_s)->isVisible());
        // Everything else goes on: the editors still work and save.
        vm.saveConfig();
        QVERIFY2(vm.statusMessage().startsWith(u"Opgeslagen naar "_s), qPrintable(vm.statusMessage()));
    }

    void everyControlHasAnAccessibleNameAndDescription()
    {
        WindowFixture fixture;
        SSHConfigViewModel& vm = fixture.make(silentPortChange);
        MainWindow window(vm, std::nullopt);
        window.show();
        QTRY_VERIFY_WITH_TIMEOUT(child<QFrame>(window, u"sshCheckBar"_s)->isVisible(), checkWaitMs);
        vm.showSshChanges();
        QStringList unnamed;
        for (const QString& container : { u"sshCheckBar"_s, u"sshChangesPane"_s }) {
            auto* parent = child<QWidget>(window, container);
            QList<QWidget*> controls;
            for (QAbstractButton* button : parent->findChildren<QAbstractButton*>())
                controls.append(button);
            controls.append(parent->findChildren<QTreeWidget*>().value(0));
            for (QWidget* control : std::as_const(controls)) {
                if (control && control->isVisible()
                    && (control->accessibleName().isEmpty() || control->accessibleDescription().isEmpty()))
                    unnamed.append(container + u": "_s + control->objectName() + u" "_s
                        + QString::fromLatin1(control->metaObject()->className()));
            }
        }
        QVERIFY2(unnamed.isEmpty(), qPrintable(unnamed.join(u"; "_s)));
    }

private:
    // For the README: set TARNWICK_SCREENSHOT_DIR to keep a picture of the pane.
    static void saveScreenshot(QWidget& window)
    {
        const QString directory = qEnvironmentVariable("TARNWICK_SCREENSHOT_DIR");
        if (directory.isEmpty())
            return;
        window.resize(1280, 720);
        QCoreApplication::processEvents();
        window.grab().save(directory + u"/ssh-changes.png"_s);
    }
};

QTEST_MAIN(TestSshCheckWidgets)
#include "test_ssh_check_widgets.moc"
