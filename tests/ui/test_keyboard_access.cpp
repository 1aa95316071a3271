// Every main action can be reached from the keyboard: through the menus (with mnemonics), the tab and
// search shortcuts, and Tab, which shows where the focus is on every stop.

#include "ContentView.h"
#include "MainWindow.h"
#include "SSHConfigViewModel.h"
#include "WidgetHelpers.h"
#include "WindowFixture.h"

#include <QAction>
#include <QApplication>
#include <QImage>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

using EditorTab = SSHConfigViewModel::EditorTab;

namespace
{
// The letter after the "&" of a menu text, or nothing.
QChar mnemonic(const QString& text)
{
    const qsizetype at = text.indexOf(u'&');
    return at >= 0 && at + 1 < text.size() ? text.at(at + 1).toLower() : QChar();
}

QMenu* menuNamed(const QMenuBar& bar, const QString& title)
{
    for (QAction* action : bar.actions()) {
        if (action->menu() && action->text().remove(u'&') == title)
            return action->menu();
    }
    return nullptr;
}

// What a focused widget looks like: it is drawn on its own, with a margin for rings drawn outside it.
QImage look(QWidget& widget)
{
    return widget.grab(widget.rect()).toImage();
}
} // namespace

class TestKeyboardAccess : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<WindowFixture> m_fixture;

    std::unique_ptr<MainWindow> shownWindow()
    {
        auto window = std::make_unique<MainWindow>(m_fixture->viewModel(), std::nullopt);
        window->resize(1080, 700);
        window->show();
        window->activateWindow();
        if (!QTest::qWaitForWindowActive(window.get()))
            qWarning("the main window did not become active");
        return window;
    }

private Q_SLOTS:
    void init()
    {
        m_fixture = std::make_unique<WindowFixture>();
        m_fixture->make(WindowFixture::sampleConfig(), WindowFixture::sampleKnownHosts());
    }

    void cleanup() { m_fixture.reset(); }

    void everyMenuItemHasItsOwnMnemonic()
    {
        const std::unique_ptr<MainWindow> window = shownWindow();
        QStringList titles;
        QList<QChar> menuKeys;
        for (QAction* menuAction : window->menuBar()->actions()) {
            titles.append(menuAction->text().remove(u'&'));
            QVERIFY2(!menuKeys.contains(mnemonic(menuAction->text())), qPrintable(menuAction->text()));
            menuKeys.append(mnemonic(menuAction->text()));
            QList<QChar> itemKeys;
            for (QAction* item : menuAction->menu()->actions()) {
                if (item->isSeparator() || !item->shortcut().isEmpty())
                    continue;
                const QChar key = mnemonic(item->text());
                QVERIFY2(!key.isNull() && !itemKeys.contains(key), qPrintable(item->text()));
                itemKeys.append(key);
            }
        }
        QCOMPARE(titles, QStringList({ u"File"_s, u"Edit"_s, u"Host"_s, u"View"_s, u"Help"_s }));
    }

    // Each main action by its menu, opened and chosen with the keyboard alone.
    void menusReachTheMainActions_data()
    {
        QTest::addColumn<QString>("menu");
        QTest::addColumn<QString>("item");
        QTest::addColumn<bool>("editsFirst");
        QTest::addColumn<int>("hostsAfter");
        QTest::addColumn<int>("launches");
        // The sample config has five hosts.
        QTest::newRow("reload drops an unsaved host") << u"File"_s << u"reloadMenuAction"_s << true << 5 << 0;
        QTest::newRow("connect") << u"Host"_s << u"connectMenuAction"_s << false << 5 << 1;
        QTest::newRow("add host") << u"Host"_s << u"addHostMenuAction"_s << false << 6 << 0;
        QTest::newRow("delete host") << u"Host"_s << u"deleteHostMenuAction"_s << false << 4 << 0;
    }

    void menusReachTheMainActions()
    {
        QFETCH(QString, menu);
        QFETCH(QString, item);
        QFETCH(bool, editsFirst);
        QFETCH(int, hostsAfter);
        QFETCH(int, launches);
        const std::unique_ptr<MainWindow> window = shownWindow();
        SSHConfigViewModel& viewModel = m_fixture->viewModel();
        if (editsFirst)
            viewModel.addHost();
        QMenu* opened = menuNamed(*window->menuBar(), menu);
        QAction* chosen = child<QAction>(*window, item);
        QVERIFY(opened && chosen && chosen->isEnabled());

        QTest::keyClick(window.get(), mnemonic(opened->title()).toLatin1(), Qt::AltModifier);
        QTRY_VERIFY(opened->isVisible());
        QTest::keyClick(opened, mnemonic(chosen->text()).toLatin1());
        QTRY_VERIFY(!opened->isVisible());
        QCOMPARE(viewModel.document().hosts.size(), hostsAfter);
        QCOMPARE(m_fixture->launcher->calls.size(), launches);
    }

    void hostMenuFollowsTheToolbar()
    {
        const std::unique_ptr<MainWindow> window = shownWindow();
        SSHConfigViewModel& viewModel = m_fixture->viewModel();
        viewModel.setSelectedHostID(std::nullopt);
        QVERIFY(!child<QAction>(*window, u"connectMenuAction"_s)->isEnabled());
        QVERIFY(!child<QAction>(*window, u"deleteHostMenuAction"_s)->isEnabled());
        viewModel.setActiveEditorTab(EditorTab::knownHosts);
        QVERIFY(!child<QAction>(*window, u"addHostMenuAction"_s)->isVisible());
        QVERIFY(!child<QAction>(*window, u"deleteHostMenuAction"_s)->isVisible());
        // The menu item carries no shortcut: the toolbar's buttons have none either.
        for (const QString& name :
            { u"reloadMenuAction"_s, u"connectMenuAction"_s, u"addHostMenuAction"_s, u"deleteHostMenuAction"_s })
            QVERIFY2(child<QAction>(*window, name)->shortcut().isEmpty(), qPrintable(name));
    }

    void ctrlDigitChoosesTheTab_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("tab");
        QTest::newRow("Ctrl+1") << int(Qt::Key_1) << int(EditorTab::structured);
        QTest::newRow("Ctrl+2") << int(Qt::Key_2) << int(EditorTab::raw);
        QTest::newRow("Ctrl+3") << int(Qt::Key_3) << int(EditorTab::knownHosts);
    }

    void ctrlDigitChoosesTheTab()
    {
        QFETCH(int, key);
        QFETCH(int, tab);
        const std::unique_ptr<MainWindow> window = shownWindow();
        m_fixture->viewModel().setActiveEditorTab(tab == 0 ? EditorTab::knownHosts : EditorTab::structured);
        QTest::keyClick(window.get(), static_cast<Qt::Key>(key), Qt::ControlModifier);
        QCOMPARE(static_cast<int>(m_fixture->viewModel().activeEditorTab()), tab);
    }

    void ctrlFFocusesTheTabsSearchField_data()
    {
        QTest::addColumn<int>("tab");
        QTest::addColumn<QString>("field");
        QTest::newRow("structured") << int(EditorTab::structured) << u"hostSearchField"_s;
        QTest::newRow("raw") << int(EditorTab::raw) << u"hostSearchField"_s;
        QTest::newRow("known hosts") << int(EditorTab::knownHosts) << u"knownHostsSearchField"_s;
    }

    void ctrlFFocusesTheTabsSearchField()
    {
        QFETCH(int, tab);
        QFETCH(QString, field);
        const std::unique_ptr<MainWindow> window = shownWindow();
        m_fixture->viewModel().setActiveEditorTab(static_cast<EditorTab>(tab));
        QTest::keyClick(window.get(), Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(QApplication::focusWidget(), child<QLineEdit>(*window, field));
    }

    // Walks the Tab chain of each tab once round: every stop must look different while it has the focus.
    void everyTabStopShowsItsFocus_data()
    {
        QTest::addColumn<int>("tab");
        QTest::newRow("structured") << int(EditorTab::structured);
        QTest::newRow("raw") << int(EditorTab::raw);
        QTest::newRow("known hosts") << int(EditorTab::knownHosts);
    }

    void everyTabStopShowsItsFocus()
    {
        QFETCH(int, tab);
        const std::unique_ptr<MainWindow> window = shownWindow();
        m_fixture->viewModel().setActiveEditorTab(static_cast<EditorTab>(tab));
        QWidget* first = nullptr;
        QStringList unmarked;
        for (int stop = 0; stop < 60; ++stop) {
            QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : window.get(), Qt::Key_Tab);
            QWidget* focused = QApplication::focusWidget();
            QVERIFY(focused);
            if (focused == first)
                break;
            if (!first)
                first = focused;
            const QImage withFocus = look(*focused);
            focused->clearFocus();
            const QImage withoutFocus = look(*focused);
            focused->setFocus(Qt::TabFocusReason);
            if (withFocus == withoutFocus)
                unmarked.append(focused->objectName().isEmpty()
                        ? QString::fromLatin1(focused->metaObject()->className())
                        : focused->objectName());
        }
        QVERIFY2(unmarked.isEmpty(), qPrintable(unmarked.join(u", "_s)));
    }
};

QTEST_MAIN(TestKeyboardAccess)
#include "test_keyboard_access.moc"
