#include "ContentView.h"
#include "CreateGroupDialog.h"
#include "ElidingComboBox.h"
#include "HostListModel.h"
#include "HostListView.h"
#include "HostRowDelegate.h"
#include "HostSidebarView.h"
#include "KnownHostsSummaryView.h"
#include "MainStatusBar.h"
#include "MainWindow.h"
#include "WidgetHelpers.h"
#include "WindowFixture.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{
const QString reorderOn = u"Reorder is actief (geen filters)."_s;
const QString reorderOff = u"Reorder uitgeschakeld door zoekfilter/groepfilter."_s;
} // namespace

class TestHostSidebar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Host list

    void listShowsEveryHostInDocumentOrder()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig());
        HostSidebarView sidebar(viewModel);
        auto* list = child<HostListView>(sidebar, u"hostList"_s);
        QCOMPARE(
            rowTexts(*list->model()), QStringList({ u"web-1"_s, u"db-1"_s, u"klant-acme"_s, u"old-server"_s, u"*"_s }));
        QCOMPARE(list->currentIndex().row(), 0);
        QCOMPARE(child<QLabel>(sidebar, u"reorderHint"_s)->text(), reorderOn);
        QCOMPARE(
            child<QLineEdit>(sidebar, u"hostSearchField"_s)->placeholderText(), u"Search hosts / options / groups"_s);
        QCOMPARE(child<QPushButton>(sidebar, u"newGroupButton"_s)->text(), u"Nieuwe groep"_s);
    }

    void rowsShowDotPatternAndGroups_data()
    {
        QTest::addColumn<QString>("config");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("groups");
        QTest::addColumn<QColor>("dot");
        QTest::newRow("enabled host with groups") << u"# Group: werk, klanten\nHost web\n  HostName w\n"_s << u"web"_s
                                                  << u"werk, klanten"_s << HostRowDelegate::dotColour(true);
        QTest::newRow("disabled host without groups")
            << u"# Host old\n#   HostName o\n"_s << u"old"_s << QString() << HostRowDelegate::dotColour(false);
    }

    void rowsShowDotPatternAndGroups()
    {
        QFETCH(QString, config);
        QFETCH(QString, title);
        QFETCH(QString, groups);
        QFETCH(QColor, dot);
        WindowFixture fixture;
        HostSidebarView sidebar(fixture.make(config));
        sidebar.resize(300, 400);
        auto* list = child<HostListView>(sidebar, u"hostList"_s);
        const QModelIndex row = list->model()->index(0, 0);
        QCOMPARE(row.data().toString(), title);
        QCOMPARE(row.data(HostListModel::GroupsTextRole).toString(), groups);

        // Paint the row unselected and look for the dot's colour at its left.
        list->selectionModel()->clear();
        QImage image(300, 60, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QStyleOptionViewItem option;
        option.initFrom(list);
        option.rect = QRect(QPoint(0, 0), list->itemDelegate()->sizeHint(option, row));
        option.state &= ~QStyle::State_Selected;
        {
            QPainter painter(&image);
            list->itemDelegate()->paint(&painter, option, row);
        }
        bool found = false;
        for (int y = 0; y < option.rect.height() && !found; ++y) {
            for (int x = 0; x < 20 && !found; ++x)
                found = image.pixelColor(x, y) == dot;
        }
        QVERIFY2(found, qPrintable(dot.name()));
    }

    // One line for a host without groups, two for a host with groups, in the list as shown.
    void rowHeightFollowsTheGroups()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig());
        MainWindow window(viewModel, std::nullopt);
        window.resize(1080, 700);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto* list = child<HostListView>(window, u"hostList"_s);
        const auto height = [list](int row) { return list->visualRect(list->model()->index(row, 0)).height(); };
        const int withGroups = height(0); // web-1: werk, productie
        const int withoutGroups = height(3); // old-server
        QCOMPARE(height(1), withGroups);
        QCOMPARE(height(4), withoutGroups); // *
        QVERIFY2(withGroups > withoutGroups, qPrintable(u"%1 against %2"_s.arg(withGroups).arg(withoutGroups)));
    }

    // A long group name is shown whole in the picker's list, however narrow the sidebar.
    void groupPickerShowsLongNamesWhole()
    {
        const QString longName = u"Klanten met een onderhoudscontract tot en met december"_s;
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(u"# Group: "_s + longName + u"\nHost web\n"_s);
        MainWindow window(viewModel, std::nullopt);
        window.resize(1080, 700);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto* picker = child<QComboBox>(window, u"groupPicker"_s);
        picker->showPopup();
        QAbstractItemView* popup = picker->view();
        QTRY_VERIFY(popup->isVisible());
        const QModelIndex item = popup->model()->index(1, 0);
        QCOMPARE(item.data().toString(), longName);
        const int needed = popup->fontMetrics().horizontalAdvance(longName);
        QVERIFY2(popup->viewport()->width() >= needed,
            qPrintable(u"%1 wide for %2"_s.arg(popup->viewport()->width()).arg(needed)));
        picker->hidePopup();

        // Chosen, it does not fit the box: the box shortens it with an ellipsis and its tool tip has it all.
        QTest::keyClick(picker, Qt::Key_Down);
        QCOMPARE(viewModel.selectedGroup(), longName);
        auto* eliding = qobject_cast<ElidingComboBox*>(picker);
        QVERIFY(eliding);
        QVERIFY2(eliding->shownText().endsWith(u'…'), qPrintable(eliding->shownText()));
        QCOMPARE(picker->toolTip(), longName);
    }

    // Reordering is Qt's internal move: the list's model moves hosts through the view model (one
    // undoable step), and offers no drag and refuses a move while a filter hides hosts.
    void rowsMoveThroughTheViewModel()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig());
        HostSidebarView sidebar(viewModel);
        auto* list = child<HostListView>(sidebar, u"hostList"_s);
        QCOMPARE(list->dragDropMode(), QAbstractItemView::InternalMove);
        QAbstractItemModel& model = *list->model();
        QVERIFY(model.flags(model.index(1, 0)).testFlag(Qt::ItemIsDragEnabled));
        QVERIFY(!model.flags(model.index(1, 0)).testFlag(Qt::ItemIsDropEnabled));
        QVERIFY(model.flags(QModelIndex()).testFlag(Qt::ItemIsDropEnabled));

        QVERIFY(model.moveRow({}, 1, {}, 5));
        QCOMPARE(rowTexts(model), QStringList({ u"web-1"_s, u"klant-acme"_s, u"old-server"_s, u"*"_s, u"db-1"_s }));
        QCOMPARE(viewModel.undoText(), u"Ongedaan maken: Hosts verplaatsen"_s);

        viewModel.setSearchText(u"o"_s);
        QVERIFY(!model.flags(model.index(0, 0)).testFlag(Qt::ItemIsDragEnabled));
        QVERIFY(!model.moveRow({}, 0, {}, model.rowCount()));
        viewModel.setSearchText(QString());
        QCOMPARE(rowTexts(model), QStringList({ u"web-1"_s, u"klant-acme"_s, u"old-server"_s, u"*"_s, u"db-1"_s }));
    }

    // Search and group filter

    void searchNarrowsTheList_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QStringList>("listed");
        QTest::addColumn<bool>("reorder");
        const QStringList all { u"web-1"_s, u"db-1"_s, u"klant-acme"_s, u"old-server"_s, u"*"_s };
        QTest::newRow("pattern") << u"acme"_s << QStringList { u"klant-acme"_s } << false;
        QTest::newRow("nothing matches") << u"zzz"_s << QStringList {} << false;
        QTest::newRow("blanks only count as no search") << u"   "_s << all << true;
    }

    void searchNarrowsTheList()
    {
        QFETCH(QString, typed);
        QFETCH(QStringList, listed);
        QFETCH(bool, reorder);
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig());
        HostSidebarView sidebar(viewModel);
        QTest::keyClicks(child<QLineEdit>(sidebar, u"hostSearchField"_s), typed);
        QCOMPARE(viewModel.searchText(), typed);
        QCOMPARE(rowTexts(*child<HostListView>(sidebar, u"hostList"_s)->model()), listed);
        QCOMPARE(child<QLabel>(sidebar, u"reorderHint"_s)->text(), reorder ? reorderOn : reorderOff);
        QCOMPARE(viewModel.canReorderHosts(), reorder);
    }

    // Filtering hides rows; it never chooses another host, and the editor keeps the chosen one.
    void filteringKeepsTheSelectedHost_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("groupsDown");
        QTest::addColumn<QStringList>("listed");
        QTest::newRow("search hides it") << u"db"_s << 0 << QStringList { u"db-1"_s };
        QTest::newRow("search hides every host") << u"zzz"_s << 0 << QStringList {};
        QTest::newRow("group hides it") << QString() << 3 << QStringList { u"web-1"_s, u"db-1"_s };
        QTest::newRow("search and group") << u"web"_s << 2 << QStringList { u"web-1"_s };
    }

    void filteringKeepsTheSelectedHost()
    {
        QFETCH(QString, typed);
        QFETCH(int, groupsDown);
        QFETCH(QStringList, listed);
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig());
        MainWindow window(viewModel, std::nullopt);
        window.resize(1080, 700);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto* list = child<HostListView>(window, u"hostList"_s);
        clickRow(*list, 2);
        const std::optional<QUuid> chosen = viewModel.selectedHostID();
        QCOMPARE(viewModel.host(2).patterns.value(0), u"klant-acme"_s);
        QCOMPARE(chosen, viewModel.host(2).id());

        auto* search = child<QLineEdit>(window, u"hostSearchField"_s);
        QTest::keyClicks(search, typed);
        auto* picker = child<QComboBox>(window, u"groupPicker"_s);
        picker->setFocus();
        for (int i = 0; i < groupsDown; ++i)
            QTest::keyClick(picker, Qt::Key_Down);
        QCOMPARE(rowTexts(*list->model()), listed);
        QCOMPARE(viewModel.selectedHostID(), chosen);
        QVERIFY(list->selectionModel()->selectedRows().isEmpty());
        QCOMPARE(child<QLineEdit>(window, u"hostPatternsField"_s)->text(), u"klant-acme"_s);

        search->clear();
        viewModel.setSearchText(QString());
        viewModel.setSelectedGroup(u"All"_s);
        QCOMPARE(viewModel.selectedHostID(), chosen);
        QCOMPARE(list->currentIndex().row(), 2);
        QVERIFY(list->selectionModel()->isSelected(list->currentIndex()));
    }

    void searchFieldFollowsTheViewModel()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig());
        HostSidebarView first(viewModel);
        HostSidebarView second(viewModel);
        auto* firstField = child<QLineEdit>(first, u"hostSearchField"_s);
        QTest::keyClicks(firstField, u"web"_s);
        QCOMPARE(child<QLineEdit>(second, u"hostSearchField"_s)->text(), u"web"_s);
        // The field being typed in keeps its caret: it is not written back.
        QCOMPARE(firstField->cursorPosition(), 3);
        viewModel.setSearchText(QString());
        QCOMPARE(firstField->text(), QString());
        QCOMPARE(rowTexts(*child<HostListView>(second, u"hostList"_s)->model()).size(), 5);
    }

    void groupPickerNarrowsTheList()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig());
        HostSidebarView sidebar(viewModel);
        auto* picker = child<QComboBox>(sidebar, u"groupPicker"_s);
        QCOMPARE(comboItems(*picker), QStringList({ u"All"_s, u"klanten"_s, u"productie"_s, u"werk"_s }));
        QCOMPARE(picker->currentText(), u"All"_s);

        picker->setFocus();
        QTest::keyClick(picker, Qt::Key_End);
        QCOMPARE(viewModel.selectedGroup(), u"werk"_s);
        QCOMPARE(
            rowTexts(*child<HostListView>(sidebar, u"hostList"_s)->model()), QStringList({ u"web-1"_s, u"db-1"_s }));
        QCOMPARE(child<QLabel>(sidebar, u"reorderHint"_s)->text(), reorderOff);

        viewModel.setSelectedGroup(u"All"_s);
        QCOMPARE(picker->currentText(), u"All"_s);
        QCOMPARE(rowTexts(*child<HostListView>(sidebar, u"hostList"_s)->model()).size(), 5);
        QCOMPARE(child<QLabel>(sidebar, u"reorderHint"_s)->text(), reorderOn);
    }

    void groupSheetRefusesABlankName()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig());
        MainWindow window(viewModel, std::nullopt);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTest::mouseClick(child<QPushButton>(window, u"newGroupButton"_s), Qt::LeftButton);
        auto* sheet = child<CreateGroupDialog>(window, u"createGroupDialog"_s);
        QTRY_VERIFY(sheet && sheet->isVisible());
        QVERIFY(window.contentView().showingCreateGroupSheet());
        QCOMPARE(sheet->windowModality(), Qt::WindowModal);
        auto* name = child<QLineEdit>(*sheet, u"newGroupNameField"_s);
        QCOMPARE(name->placeholderText(), u"Bijv. PLOVRA SERVERS"_s);

        QTest::keyClicks(name, u"   "_s);
        QTest::keyClick(name, Qt::Key_Return);
        QVERIFY(sheet->isVisible());
        QCOMPARE(name->text(), u"   "_s);
        QCOMPARE(viewModel.statusMessage(), u"Geef een geldige groepsnaam op."_s);
        QCOMPARE(child<QWidget>(window, u"statusMessage"_s)->property("text").toString(),
            u"Geef een geldige groepsnaam op."_s);

        QTest::keyClick(name, Qt::Key_Escape);
        QTRY_VERIFY(!sheet->isVisible());
        QVERIFY(!window.contentView().showingCreateGroupSheet());
    }

    void groupSheetCreatesAndFiltersByANewGroup()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig());
        MainWindow window(viewModel, std::nullopt);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        auto* list = child<HostListView>(window, u"hostList"_s);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(list->model()->index(2, 0)).center());
        QCOMPARE(viewModel.selectedHostIndex(), std::optional<qsizetype>(2));

        // Cancel changes nothing, and the cancelled name does not come back.
        const SSHConfigDocument before = viewModel.document();
        window.contentView().presentCreateGroupSheet();
        auto* sheet = child<CreateGroupDialog>(window, u"createGroupDialog"_s);
        auto* name = child<QLineEdit>(*sheet, u"newGroupNameField"_s);
        QTest::keyClicks(name, u"weg"_s);
        QTest::mouseClick(child<QPushButton>(*sheet, u"cancelButton"_s), Qt::LeftButton);
        QTRY_VERIFY(!sheet->isVisible());
        QVERIFY(viewModel.document() == before);
        QCOMPARE(viewModel.selectedGroup(), u"All"_s);
        QTest::mouseClick(child<QPushButton>(window, u"newGroupButton"_s), Qt::LeftButton);
        QTRY_VERIFY(sheet->isVisible());
        QCOMPARE(name->text(), QString());

        QTest::keyClicks(name, u"PLOVRA SERVERS"_s);
        QTest::keyClick(name, Qt::Key_Return);
        QTRY_VERIFY(!sheet->isVisible());
        QCOMPARE(sheet->newGroupName(), QString());
        QCOMPARE(viewModel.selectedGroup(), u"PLOVRA SERVERS"_s);
        QCOMPARE(viewModel.document().hosts.at(2).groups, QStringList({ u"klanten"_s, u"PLOVRA SERVERS"_s }));
        QCOMPARE(rowTexts(*list->model()), QStringList { u"klant-acme"_s });
        QCOMPARE(comboItems(*child<QComboBox>(window, u"groupPicker"_s)),
            QStringList({ u"All"_s, u"klanten"_s, u"PLOVRA SERVERS"_s, u"productie"_s, u"werk"_s }));
        QCOMPARE(child<QComboBox>(window, u"groupPicker"_s)->currentText(), u"PLOVRA SERVERS"_s);
        QVERIFY(window.statusLine().showsUnsavedChangesWarning());
    }

    void knownHostsSummaryCountsEntriesAndErrors()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel
            = fixture.make(QString(), WindowFixture::sampleKnownHosts() + u"lonely-host-without-key\n"_s);
        KnownHostsSummaryView summary(viewModel);
        QCOMPARE(child<QLabel>(summary, u"knownHostsEntriesLabel"_s)->text(), u"Entries: 3"_s);
        auto* errors = child<QLabel>(summary, u"knownHostsParseErrorsLabel"_s);
        QCOMPARE(errors->text(), u"Parsefouten: 1"_s);
        QVERIFY(!errors->isHidden());

        QVERIFY(WindowFixture::writeText(fixture.knownHostsPath(), u"host ssh-ed25519 AAAA\n"_s));
        viewModel.load();
        QCOMPARE(child<QLabel>(summary, u"knownHostsEntriesLabel"_s)->text(), u"Entries: 1"_s);
        QVERIFY(errors->isHidden());
    }
};

QTEST_MAIN(TestHostSidebar)
#include "test_host_sidebar.moc"
