#include "AppIcon.h"
#include "ContentView.h"
#include "DonationURL.h"
#include "EmptyStateView.h"
#include "MainStatusBar.h"
#include "MainToolBar.h"
#include "MainWindow.h"
#include "TarnwickApplication.h"
#include "TextStyle.h"
#include "WidgetHelpers.h"
#include "WindowFixture.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QStackedWidget>
#include <QTabWidget>
#include <QtTest>

using namespace Qt::StringLiterals;

using EditorTab = SSHConfigViewModel::EditorTab;

namespace
{
QAction* action(const QWidget& window, const QString& name)
{
    return window.findChild<QAction*>(name);
}

QStringList toolBarItems(const MainToolBar& toolBar)
{
    QStringList items;
    for (const QAction* item : toolBar.actions())
        items.append(item->isSeparator() ? u"|"_s : item->text());
    return items;
}
} // namespace

class TestMainWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Toolbar

    void toolBarHasItsItemsInOrder()
    {
        WindowFixture fixture;
        MainWindow window(fixture.make(WindowFixture::sampleConfig()), std::nullopt);
        QCOMPARE(toolBarItems(window.toolBar()),
            QStringList({ u"Reload"_s, u"Save"_s, u"|"_s, u"Connect"_s, u"Add Host"_s, u"Delete Host"_s, u"|"_s,
                u"Wat verandert er voor ssh?"_s }));
        QVERIFY(action(window, u"reloadAction"_s)->icon().isNull());
        QVERIFY(action(window, u"saveAction"_s)->icon().isNull());
        for (const QString& name : { u"connectAction"_s, u"addHostAction"_s, u"deleteHostAction"_s })
            QVERIFY2(!action(window, name)->icon().isNull(), qPrintable(name));
        QCOMPARE(action(window, u"saveAction"_s)->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_S));
        for (const QString& name : { u"reloadAction"_s, u"connectAction"_s, u"addHostAction"_s, u"deleteHostAction"_s })
            QVERIFY2(action(window, name)->shortcut().isEmpty(), qPrintable(name));
    }

    void donationLinkOnlyWithValidAddress_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("shown");
        QTest::newRow("https page") << u"https://example.org/coffee"_s << true;
        QTest::newRow("http page") << u"http://example.org/"_s << true;
        QTest::newRow("not configured") << QString() << false;
        QTest::newRow("blanks only") << u"   "_s << false;
        QTest::newRow("no scheme") << u"example.org/coffee"_s << false;
        QTest::newRow("not a web page") << u"mailto:someone@example.org"_s << false;
        QTest::newRow("broken address") << u"https://exa mple.org/"_s << false;
    }

    void donationLinkOnlyWithValidAddress()
    {
        QFETCH(QString, address);
        QFETCH(bool, shown);
        WindowFixture fixture;
        MainWindow window(fixture.make(WindowFixture::sampleConfig()), donationURLFromAddress(address));
        QAction* link = action(window, u"donationAction"_s);
        QCOMPARE(link != nullptr, shown);
        if (link) {
            QCOMPARE(link->text(), u"Buy me a coffee"_s);
            QVERIFY(!link->icon().isNull());
            QCOMPARE(window.toolBar().actions().last(), link);
        }
    }

    void noSelectionDisablesHostActions()
    {
        WindowFixture fixture;
        MainWindow window(fixture.make(u"# nothing but a comment\n"_s), std::nullopt);
        QVERIFY(!fixture.viewModel().selectedHostID());
        QVERIFY(!action(window, u"connectAction"_s)->isEnabled());
        QVERIFY(!action(window, u"deleteHostAction"_s)->isEnabled());
        QVERIFY(action(window, u"addHostAction"_s)->isEnabled());
        QVERIFY(action(window, u"reloadAction"_s)->isEnabled());
        QVERIFY(action(window, u"saveAction"_s)->isEnabled());
        QVERIFY(!child<QPushButton>(window, u"newGroupButton"_s)->isEnabled());

        action(window, u"addHostAction"_s)->trigger();
        QVERIFY(action(window, u"connectAction"_s)->isEnabled());
        QVERIFY(action(window, u"deleteHostAction"_s)->isEnabled());
        QVERIFY(child<QPushButton>(window, u"newGroupButton"_s)->isEnabled());
    }

    void tabDecidesToolBarAndSidebar_data()
    {
        QTest::addColumn<EditorTab>("tab");
        QTest::addColumn<QString>("saveText");
        QTest::addColumn<bool>("hostActionsShown");
        QTest::addColumn<QString>("sidebarTitle");
        QTest::addColumn<QString>("sidebarPage");
        QTest::newRow("structured") << EditorTab::structured << u"Save"_s << true << u"Hosts"_s << u"hostSidebar"_s;
        QTest::newRow("raw") << EditorTab::raw << u"Save Raw"_s << true << u"Hosts"_s << u"hostSidebar"_s;
        QTest::newRow("known hosts") << EditorTab::knownHosts << u"Save Known Hosts"_s << false << u"Known Hosts"_s
                                     << u"knownHostsSummary"_s;
    }

    void tabDecidesToolBarAndSidebar()
    {
        QFETCH(EditorTab, tab);
        QFETCH(QString, saveText);
        QFETCH(bool, hostActionsShown);
        QFETCH(QString, sidebarTitle);
        QFETCH(QString, sidebarPage);
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig(), WindowFixture::sampleKnownHosts());
        MainWindow window(viewModel, std::nullopt);

        child<QTabWidget>(window, u"editorTabs"_s)->setCurrentIndex(static_cast<int>(tab));
        QCOMPARE(viewModel.activeEditorTab(), tab);
        QCOMPARE(action(window, u"saveAction"_s)->text(), saveText);
        QCOMPARE(action(window, u"addHostAction"_s)->isVisible(), hostActionsShown);
        QCOMPARE(action(window, u"deleteHostAction"_s)->isVisible(), hostActionsShown);
        QVERIFY(action(window, u"connectAction"_s)->isVisible());
        QCOMPARE(child<QLabel>(window, u"sidebarTitle"_s)->text(), sidebarTitle);
        QCOMPARE(child<QStackedWidget>(window, u"sidebarPages"_s)->currentWidget()->objectName(), sidebarPage);
    }

    void knownHostsConnectFollowsEntrySelection()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(u""_s, WindowFixture::sampleKnownHosts());
        MainWindow window(viewModel, std::nullopt);
        QVERIFY(!viewModel.selectedHostID());
        QVERIFY(viewModel.selectedKnownHostEntryID());
        QAction* connectAction = action(window, u"connectAction"_s);
        QVERIFY(!connectAction->isEnabled());

        viewModel.setActiveEditorTab(EditorTab::knownHosts);
        QVERIFY(connectAction->isEnabled());
        viewModel.setSelectedKnownHostEntryID(std::nullopt);
        QVERIFY(!connectAction->isEnabled());
        viewModel.setActiveEditorTab(EditorTab::raw);
        QVERIFY(!connectAction->isEnabled());
    }

    void toolBarButtonsCallTheViewModel()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig(), WindowFixture::sampleKnownHosts());
        MainWindow window(viewModel, std::nullopt);
        const qsizetype hosts = viewModel.document().hosts.size();

        action(window, u"connectAction"_s)->trigger();
        QCOMPARE(fixture.launcher->calls.size(), 1);
        QCOMPARE(fixture.launcher->calls.last().command, u"ssh web-1"_s);

        viewModel.setActiveEditorTab(EditorTab::knownHosts);
        action(window, u"connectAction"_s)->trigger();
        QCOMPARE(fixture.launcher->calls.size(), 2);
        QCOMPARE(fixture.launcher->calls.last().command, u"ssh web-1.example.com"_s);

        viewModel.setActiveEditorTab(EditorTab::structured);
        action(window, u"addHostAction"_s)->trigger();
        QCOMPARE(viewModel.document().hosts.size(), hosts + 1);
        action(window, u"deleteHostAction"_s)->trigger();
        QCOMPARE(viewModel.document().hosts.size(), hosts);

        QVERIFY(WindowFixture::writeText(fixture.configPath(), u"Host fresh\n"_s));
        action(window, u"reloadAction"_s)->trigger();
        QCOMPARE(viewModel.document().hosts.size(), 1);
    }

    // Saving and the status line

    void saveShortcutSavesTheStructuredTab()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig());
        MainWindow window(viewModel, std::nullopt);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));

        auto* port = child<QLineEdit>(window, u"optionField_Port"_s);
        QVERIFY(port);
        port->setFocus();
        QTest::keyClicks(port, u"2222"_s);
        QTRY_VERIFY(window.statusLine().showsUnsavedChangesWarning());

        QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier);
        QTRY_VERIFY(!window.statusLine().showsUnsavedChangesWarning());
        const QString written = WindowFixture::readText(fixture.configPath());
        QVERIFY(written.contains(u"Host web-1 web-1.example.com\n"_s));
        QVERIFY2(written.contains(QRegularExpression(u"\n[ \t]+Port 2222\n"_s)), qPrintable(written));
        const QStringList backups = WindowFixture::backupsOf(fixture.configPath());
        QCOMPARE(backups.size(), 1);
        QCOMPARE(WindowFixture::readText(QFileInfo(fixture.configPath()).dir().filePath(backups.first())),
            WindowFixture::sampleConfig());
        const QString sentence = u"Opgeslagen naar "_s + fixture.configPath() + u" met backup."_s;
        QCOMPARE(viewModel.statusMessage(), sentence);
        QCOMPARE(window.findChild<QWidget*>(u"statusMessage"_s)->property("text").toString(), sentence);
    }

    void unsavedWarningFollowsDirtyFlags()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig(), WindowFixture::sampleKnownHosts());
        MainWindow window(viewModel, std::nullopt);
        const MainStatusBar& status = window.statusLine();
        QVERIFY(!status.showsUnsavedChangesWarning());

        viewModel.setRawTextDirty(true);
        QVERIFY2(!status.showsUnsavedChangesWarning(), "a raw text flag alone is no unsaved change");
        viewModel.setRawEditorDirty(true);
        QVERIFY(status.showsUnsavedChangesWarning());
        viewModel.saveConfig();
        QVERIFY(!status.showsUnsavedChangesWarning());

        viewModel.toggleCommentOnSelectedKnownHostEntry();
        QVERIFY(status.showsUnsavedChangesWarning());
        viewModel.load();
        QVERIFY(!status.showsUnsavedChangesWarning());
    }

    // Another program changes known_hosts under unsaved edits: the bar shows above the editors with
    // its two choices, and keeping one's own version hides it and lets the save through.
    void fileChangeBarOffersTheChoice()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig(), WindowFixture::sampleKnownHosts());
        MainWindow window(viewModel, std::nullopt);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto* bar = window.findChild<QWidget*>(u"knownHostsChangeBar"_s);
        QVERIFY(bar && !bar->isVisible());
        QVERIFY(!window.findChild<QWidget*>(u"configChangeBar"_s)->isVisible());

        viewModel.toggleCommentOnSelectedKnownHostEntry();
        fixture.writeKnownHosts(u"other ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIOther\n"_s);
        QTRY_VERIFY(bar->isVisible());
        QVERIFY(bar->findChild<QLabel*>(u"fileChangeText"_s)->text().contains(fixture.knownHostsPath()));
        QVERIFY(bar->findChild<QPushButton*>(u"reloadChangedFileButton"_s)->isVisible());
        QVERIFY(!bar->findChild<QPushButton*>(u"closeFileChangeButton"_s)->isVisible());
        // The bar sits above the editors, not over them.
        QVERIFY(bar->mapTo(&window, QPoint()).y() < window.contentView().mapTo(&window, QPoint()).y());

        QTest::mouseClick(bar->findChild<QPushButton*>(u"keepMyVersionButton"_s), Qt::LeftButton);
        QVERIFY(!bar->isVisible());
        viewModel.saveKnownHosts();
        QVERIFY2(viewModel.statusMessage().startsWith(u"known_hosts opgeslagen naar "_s),
            qPrintable(viewModel.statusMessage()));
    }

    // Ctrl+Z and Ctrl+Shift+Z in the real window take back Delete Host, a known_hosts Remove and a Reload;
    // a text field with typing of its own keeps Ctrl+Z until it has nothing left to undo.
    void undoAndRedoByKeyboard()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig(), WindowFixture::sampleKnownHosts());
        MainWindow window(viewModel, std::nullopt);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QAction* undo = action(window, u"undoAction"_s);
        QVERIFY(undo && !undo->isEnabled());
        const auto press = [&window](QKeyCombination key) {
            QWidget* target = QApplication::focusWidget() ? QApplication::focusWidget() : &window;
            QTest::keyClick(target, key.key(), key.keyboardModifiers());
        };

        const SSHConfigDocument loaded = viewModel.document();
        action(window, u"deleteHostAction"_s)->trigger();
        QCOMPARE(undo->text(), u"Ongedaan maken: Host verwijderen"_s);
        window.activateWindow();
        window.setFocus();
        press(Qt::CTRL | Qt::Key_Z);
        QCOMPARE(viewModel.document(), loaded);
        QCOMPARE(viewModel.statusMessage(), u"Ongedaan gemaakt: Host verwijderd."_s);
        press(Qt::CTRL | Qt::SHIFT | Qt::Key_Z);
        QCOMPARE(viewModel.document().hosts.size(), loaded.hosts.size() - 1);
        press(Qt::CTRL | Qt::Key_Z);

        viewModel.setActiveEditorTab(EditorTab::knownHosts);
        const KnownHostsDocument knownHosts = viewModel.knownHostsDocument();
        QTest::mouseClick(window.findChild<QPushButton*>(u"knownHostRemoveButton"_s), Qt::LeftButton);
        QCOMPARE(viewModel.knownHostsEntryCount(), 2);
        window.setFocus();
        press(Qt::CTRL | Qt::Key_Z);
        QCOMPARE(viewModel.knownHostsDocument(), knownHosts);
        press(Qt::CTRL | Qt::Key_Y);
        QCOMPARE(viewModel.knownHostsEntryCount(), 2);

        fixture.writeKnownHosts(u"new ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAINew\n"_s);
        action(window, u"reloadAction"_s)->trigger();
        QCOMPARE(viewModel.knownHostsEntryCount(), 1);
        press(Qt::CTRL | Qt::Key_Z);
        QCOMPARE(viewModel.knownHostsEntryCount(), 2);
        QVERIFY(viewModel.knownHostsDirty());

        // The search field's own typing comes first, then the history.
        auto* search = window.findChild<QLineEdit*>(u"knownHostsSearchField"_s);
        search->setFocus();
        QTest::keyClicks(search, u"ab"_s);
        press(Qt::CTRL | Qt::Key_Z);
        QCOMPARE(search->text(), QString());
        QCOMPARE(viewModel.knownHostsEntryCount(), 2);
        press(Qt::CTRL | Qt::Key_Z);
        QCOMPARE(viewModel.knownHostsEntryCount(), 3);
    }

    // Tabs and windows

    void tabsAndViewModelFollowEachOther()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig());
        MainWindow window(viewModel, std::nullopt);
        auto* tabs = child<QTabWidget>(window, u"editorTabs"_s);
        QCOMPARE(tabs->count(), 3);
        QCOMPARE(tabs->tabText(0), u"Structured Editor"_s);
        QCOMPARE(tabs->tabText(1), u"Raw Editor"_s);
        QCOMPARE(tabs->tabText(2), u"Known Hosts"_s);
        QCOMPARE(tabs->currentIndex(), 0);

        QSignalSpy tabChanges(&viewModel, &SSHConfigViewModel::activeEditorTabChanged);
        viewModel.setActiveEditorTab(EditorTab::knownHosts);
        QCOMPARE(tabs->currentIndex(), 2);
        QCOMPARE(tabChanges.count(), 1);
        tabs->setCurrentIndex(1);
        QCOMPARE(viewModel.activeEditorTab(), EditorTab::raw);
        QCOMPARE(tabChanges.count(), 2);
    }

    void structuredTabShowsEditorOrEmptyState()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(u"Host only\n"_s);
        MainWindow window(viewModel, std::nullopt);
        auto* structured = child<QStackedWidget>(window, u"structuredEditor"_s);
        QCOMPARE(structured->currentWidget()->objectName(), u"hostDetailView"_s);

        viewModel.deleteSelectedHost();
        auto* empty = qobject_cast<EmptyStateView*>(structured->currentWidget());
        QVERIFY(empty);
        QCOMPARE(empty->title(), u"Geen host geselecteerd"_s);
        QCOMPARE(empty->description(), u"Voeg een host toe of selecteer een host in de lijst."_s);
        QCOMPARE(empty->symbolName(), u"rectangle.stack"_s);
        QVERIFY(!child<QLabel>(*empty, u"emptyStateIcon"_s)->pixmap().isNull());

        viewModel.addHost();
        QCOMPARE(structured->currentWidget()->objectName(), u"hostDetailView"_s);
    }

    void newWindowSharesTheViewModel()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig());
        TarnwickApplication shell(viewModel, std::nullopt);
        MainWindow* first = shell.openMainWindow();
        action(*first, u"newWindowAction"_s)->trigger();
        QCOMPARE(shell.mainWindows().size(), 2);
        MainWindow* second = shell.mainWindows().last();
        QVERIFY(second != first);
        QCOMPARE(action(*first, u"newWindowAction"_s)->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_N));

        auto* firstList = child<QListView>(*first, u"hostList"_s);
        auto* secondList = child<QListView>(*second, u"hostList"_s);
        QCOMPARE(secondList->model()->rowCount(), firstList->model()->rowCount());
        QCOMPARE(secondList->currentIndex().row(), 0);
        QCOMPARE(child<QWidget>(*second, u"statusMessage"_s)->property("text").toString(), viewModel.statusMessage());

        // A click in the second window selects the host in the first one too.
        const QModelIndex third = secondList->model()->index(2, 0);
        QTest::mouseClick(secondList->viewport(), Qt::LeftButton, {}, secondList->visualRect(third).center());
        QCOMPARE(viewModel.selectedHostIndex(), std::optional<qsizetype>(2));
        QCOMPARE(firstList->currentIndex().row(), 2);
        QVERIFY(firstList->selectionModel()->isSelected(firstList->model()->index(2, 0)));

        action(*first, u"addHostAction"_s)->trigger();
        QCOMPARE(secondList->model()->rowCount(), firstList->model()->rowCount());
        QCOMPARE(child<QWidget>(*second, u"statusMessage"_s)->property("text").toString(), viewModel.statusMessage());
        QVERIFY(second->statusLine().showsUnsavedChangesWarning());

        second->close();
        QTRY_COMPARE(shell.mainWindows().size(), 1);
    }

    void windowHasTitleAndMinimumSize()
    {
        WindowFixture fixture;
        MainWindow window(fixture.make(WindowFixture::sampleConfig()), std::nullopt);
        QCOMPARE(window.windowTitle(), u"Tarnwick"_s);
        QCOMPARE(window.minimumSize(), QSize(1080, 700));
        QCOMPARE(action(window, u"preferencesAction"_s)->menuRole(), QAction::PreferencesRole);
        QCOMPARE(action(window, u"quitAction"_s)->menuRole(), QAction::QuitRole);
        QCOMPARE(action(window, u"aboutAction"_s)->menuRole(), QAction::AboutRole);
    }

    void windowRendersTheSampleFiles()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig(), WindowFixture::sampleKnownHosts());
        MainWindow window(viewModel, donationURLFromAddress(u"https://example.org/coffee"_s));
        window.resize(1200, 760);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        viewModel.updateHost(viewModel.host(0), 0);
        viewModel.setRawEditorDirty(true);
        const QImage image = window.grab().toImage();
        QCOMPARE(image.size() / image.devicePixelRatio(), QSize(1200, 760));

        // The status line's warning is drawn in orange somewhere along the bottom.
        bool orange = false;
        for (int y = image.height() - 40; y < image.height() && !orange; ++y) {
            for (int x = image.width() / 2; x < image.width() && !orange; ++x)
                orange = image.pixelColor(x, y) == warningOrange();
        }
        QVERIFY(orange);

        // Set TARNWICK_SCREENSHOT_DIR to keep the picture, e.g. for the documentation.
        if (const QString folder = qEnvironmentVariable("TARNWICK_SCREENSHOT_DIR"); !folder.isEmpty())
            QVERIFY(image.save(QDir(folder).filePath(u"main-window.png"_s)));
    }

    // Icon

    void drawnIconPixels_data()
    {
        QTest::addColumn<QPoint>("point");
        QTest::addColumn<QString>("expected");
        // Points in the icon's own upper-left coordinates.
        QTest::newRow("corner is transparent") << QPoint(4, 4) << u"clear"_s;
        QTest::newRow("outside the rounded corner") << QPoint(40, 40) << u"clear"_s;
        QTest::newRow("body below the prompt") << QPoint(256, 420) << u"dark"_s;
        QTest::newRow("body right of the chevron") << QPoint(400, 200) << u"dark"_s;
        QTest::newRow("rim on the left edge") << QPoint(23, 256) << u"red"_s;
        QTest::newRow("rim on the top edge") << QPoint(256, 23) << u"red"_s;
        QTest::newRow("chevron tip") << QPoint(230, 256) << u"red"_s;
        QTest::newRow("chevron upper arm") << QPoint(175, 197) << u"red"_s;
        QTest::newRow("chevron lower arm") << QPoint(175, 315) << u"red"_s;
        QTest::newRow("underscore middle") << QPoint(330, 338) << u"red"_s;
        QTest::newRow("above the underscore") << QPoint(330, 290) << u"dark"_s;
    }

    void drawnIconPixels()
    {
        QFETCH(QPoint, point);
        QFETCH(QString, expected);
        const QImage icon = drawFallbackAppIcon();
        QCOMPARE(icon.size(), QSize(512, 512));
        const QColor colour = icon.pixelColor(point);
        if (expected == u"clear"_s) {
            QCOMPARE(colour.alpha(), 0);
        } else if (expected == u"dark"_s) {
            QCOMPARE(colour.alpha(), 255);
            QVERIFY2(colour.red() < 20 && colour.green() < 20 && colour.blue() < 20, qPrintable(colour.name()));
        } else {
            QCOMPARE(colour.alpha(), 255);
            QVERIFY2(qAbs(colour.red() - 209) <= 3 && colour.green() < 25 && qAbs(colour.blue() - 31) <= 5,
                qPrintable(colour.name()));
        }
    }
};

QTEST_MAIN(TestMainWindow)
#include "test_main_window.moc"
