// Wiring of the known_hosts tab: what the header, list, detail pane and error section show for a real
// file, and that every control reaches the view model and, through it, the file on disk.

#include "KnownHostsModel.h"
#include "KnownHostsParseErrorsView.h"
#include "KnownHostsViewFixture.h"
#include "SSHConfigViewModel.h"
#include "SymbolLabel.h"
#include "WidgetHelpers.h"
#include "WindowFixture.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

const QString hashedHost = u"|1|F1E1KeoE/eEWhi10WpGv4OdiO6Y=|3988QV0VE8wmZL7suNrYQLITLCg="_s;

// Five entries (one commented out, one hashed, one with a marker and a comment), a comment line and,
// on line 8, a line that is no entry.
const QString sampleKnownHosts
    = u"# work servers\n"
      u"github.com,140.82.121.4 ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIOMqqnkVzrm0SdG6UOoqKLsabgH5C9okWi0dh2l9GKJl\n"
      u"@cert-authority *.corp.example.com ssh-rsa AAAAB3NzaC1yc2EAAAADAQABAAABAQC7 corporate CA\n"
      u"[build.example.com]:2222 ecdsa-sha2-nistp256 AAAAE2VjZHNhLXNoYTItbmlzdHAyNTYAAAAIbmlzdHAyNTY=\n"
      u"# old.example.com ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIKd0retired retired in May\n"_s
    + hashedHost + u" ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIHashed\n"_s
    + u"\n"
      u"not-an-entry\n"_s;

using Fixture = KnownHostsViewFixture;

} // namespace

class TestKnownHostsView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // What the tab shows

    void showsCountRowsAndTheFirstEntry()
    {
        Fixture fixture(sampleKnownHosts);
        QCOMPARE(fixture.find<QLabel>(u"knownHostsCountLabel"_s)->text(), u"5 entries"_s);
        QCOMPARE(fixture.find<QLineEdit>(u"knownHostsSearchField"_s)->placeholderText(), u"Search known_hosts"_s);
        QCOMPARE(comboItems(*fixture.find<QComboBox>(u"knownHostMarkerPicker"_s)),
            QStringList({ u"None"_s, u"Certification Authority"_s, u"Revoked"_s }));
        QCOMPARE(fixture.list()->model()->rowCount(), 5);
        QCOMPARE(fixture.list()->currentIndex().row(), 0);
        QVERIFY(fixture.find<QWidget>(u"knownHostDetails"_s)->isVisible());
        QVERIFY(!fixture.find<QWidget>(u"knownHostEmptyState"_s)->isVisible());
    }

    void showsTheSelectedEntrysFacts_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("hosts");
        QTest::addColumn<QString>("keyType");
        QTest::addColumn<int>("markerRow");
        QTest::addColumn<bool>("hashed");
        QTest::addColumn<bool>("commentedOut");
        QTest::addColumn<QString>("commentAction");
        QTest::addColumn<QString>("comment");

        QTest::newRow("plain entry, two hosts") << 0 << u"github.com, 140.82.121.4"_s << u"ssh-ed25519"_s << 0 << false
                                                << false << u"Comment Out"_s << QString();
        QTest::newRow("certificate authority with comment") << 1 << u"*.corp.example.com"_s << u"ssh-rsa"_s << 1
                                                            << false << false << u"Comment Out"_s << u"corporate CA"_s;
        QTest::newRow("commented out") << 3 << u"old.example.com"_s << u"ssh-ed25519"_s << 0 << false << true
                                       << u"Uncomment"_s << u"retired in May"_s;
        QTest::newRow("hashed") << 4 << hashedHost << u"ssh-ed25519"_s << 0 << true << false << u"Comment Out"_s
                                << QString();
    }

    void showsTheSelectedEntrysFacts()
    {
        QFETCH(int, row);
        QFETCH(QString, hosts);
        QFETCH(QString, keyType);
        QFETCH(int, markerRow);
        QFETCH(bool, hashed);
        QFETCH(bool, commentedOut);
        QFETCH(QString, commentAction);
        QFETCH(QString, comment);
        Fixture fixture(sampleKnownHosts);
        fixture.selectRow(row);
        QTRY_COMPARE(fixture.find<QLabel>(u"knownHostHostsLabel"_s)->text(), hosts);
        QCOMPARE(fixture.find<QLabel>(u"knownHostKeyTypeLabel"_s)->text(), u"Key type: "_s + keyType);
        QCOMPARE(fixture.find<QComboBox>(u"knownHostMarkerPicker"_s)->currentIndex(), markerRow);
        QCOMPARE(fixture.find<SymbolLabel>(u"knownHostHashedLabel"_s)->isVisible(), hashed);
        QCOMPARE(fixture.find<SymbolLabel>(u"knownHostCommentedOutLabel"_s)->isVisible(), commentedOut);
        QCOMPARE(fixture.find<QPushButton>(u"knownHostCommentButton"_s)->text(), commentAction);
        QCOMPARE(fixture.find<QWidget>(u"knownHostCommentSection"_s)->isVisible(), !comment.isEmpty());
        if (!comment.isEmpty())
            QCOMPARE(fixture.find<QLabel>(u"knownHostCommentText"_s)->text(), comment);
    }

    // The list is a table underneath; the keys must still move through it as through a list.
    void keysMoveThroughTheListAsThroughAList_data()
    {
        QTest::addColumn<int>("startRow");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("expectedRow");
        QTest::addColumn<QString>("expectedHost");
        QTest::newRow("Down") << 0 << int(Qt::Key_Down) << 1 << u"*.corp.example.com"_s;
        QTest::newRow("Up") << 2 << int(Qt::Key_Up) << 1 << u"*.corp.example.com"_s;
        QTest::newRow("End") << 1 << int(Qt::Key_End) << 4 << hashedHost;
        QTest::newRow("Home") << 3 << int(Qt::Key_Home) << 0 << u"github.com"_s;
        QTest::newRow("Right stays") << 2 << int(Qt::Key_Right) << 2 << u"[build.example.com]:2222"_s;
    }

    void keysMoveThroughTheListAsThroughAList()
    {
        QFETCH(int, startRow);
        QFETCH(int, key);
        QFETCH(int, expectedRow);
        QFETCH(QString, expectedHost);
        Fixture fixture(sampleKnownHosts);
        fixture.selectRow(startRow);
        QTest::keyClick(fixture.list(), static_cast<Qt::Key>(key));
        QCOMPARE(fixture.list()->currentIndex().row(), expectedRow);
        QCOMPARE(fixture.selectedFirstHost(), expectedHost);
    }

    // Tab leaves the list for the next control instead of walking its cells.
    void tabLeavesTheList()
    {
        Fixture fixture(sampleKnownHosts);
        QApplication::setActiveWindow(fixture.view.get());
        fixture.list()->setFocus();
        QVERIFY(fixture.list()->hasFocus());
        QTest::keyClick(fixture.list(), Qt::Key_Tab);
        QVERIFY(!fixture.list()->hasFocus());
        QCOMPARE(fixture.list()->currentIndex().row(), 0);
    }

    void showsEmptyStateWithoutEntries()
    {
        Fixture fixture(u"# none\n"_s);
        QCOMPARE(fixture.find<QLabel>(u"knownHostsCountLabel"_s)->text(), u"0 entries"_s);
        auto* empty = fixture.find<QWidget>(u"knownHostEmptyState"_s);
        QVERIFY(empty->isVisible());
        QCOMPARE(empty->findChild<QLabel*>(u"emptyStateTitle"_s)->text(), u"Geen known_hosts entry geselecteerd"_s);
        QCOMPARE(empty->findChild<QLabel*>(u"emptyStateDescription"_s)->text(),
            u"Selecteer links een known_hosts entry om acties uit te voeren."_s);
        QVERIFY(!fixture.find<QWidget>(u"knownHostDetails"_s)->isVisible());
    }

    void listsParseErrorsInOrder()
    {
        Fixture fixture(sampleKnownHosts + u"also wrong\n"_s);
        auto* errors = fixture.find<KnownHostsParseErrorsView>(u"knownHostsParseErrors"_s);
        QVERIFY(errors->isVisible());
        QCOMPARE(fixture.find<QLabel>(u"knownHostsParseErrorsHeading"_s)->text(), u"Known Hosts parsefouten"_s);
        QCOMPARE(errors->lines(),
            QStringList({ u"Regel 8: Ongeldige known_hosts regel."_s, u"Regel 9: Ongeldige known_hosts regel."_s }));
    }

    void hidesParseErrorsWhenThereAreNone()
    {
        Fixture fixture(u"github.com ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIOMqqnkVzrm0Sd\n"_s);
        QVERIFY(!fixture.find<KnownHostsParseErrorsView>(u"knownHostsParseErrors"_s)->isVisible());

        // A later load that finds a bad line brings the section back.
        QVERIFY(WindowFixture::writeText(fixture.files.knownHostsPath(), u"broken\n"_s));
        fixture.viewModel->load();
        QTRY_VERIFY(fixture.find<KnownHostsParseErrorsView>(u"knownHostsParseErrors"_s)->isVisible());
    }

    void cutsLongFirstHostInTheListButNotInTheDetails()
    {
        Fixture fixture(sampleKnownHosts);
        QCOMPARE(hashedHost.size(), 60);
        const QModelIndex row = fixture.list()->model()->index(4, 0);
        QCOMPARE(row.data().toString(), hashedHost.left(52) + u"…"_s);
        fixture.selectRow(4);
        QTRY_COMPARE(fixture.find<QLabel>(u"knownHostHostsLabel"_s)->text(), hashedHost);
    }

    // Search

    void typingSearchesAndKeepsTheTotalCount()
    {
        Fixture fixture(sampleKnownHosts);
        auto* search = fixture.find<QLineEdit>(u"knownHostsSearchField"_s);
        QTest::keyClicks(search, u"EXAMPLE"_s);
        QCOMPARE(fixture.viewModel->knownHostsSearchText(), u"EXAMPLE"_s);
        QTRY_COMPARE(fixture.list()->model()->rowCount(), 3);
        QCOMPARE(fixture.find<QLabel>(u"knownHostsCountLabel"_s)->text(), u"5 entries"_s);

        QTest::keyClicks(search, u"-nowhere"_s);
        QTRY_COMPARE(fixture.list()->model()->rowCount(), 0);
        QCOMPARE(fixture.find<QLabel>(u"knownHostsCountLabel"_s)->text(), u"5 entries"_s);

        // A search set elsewhere shows in the field.
        fixture.viewModel->setKnownHostsSearchText(u"github"_s);
        QCOMPARE(search->text(), u"github"_s);
        QTRY_COMPARE(fixture.list()->model()->rowCount(), 1);
    }

    void searchHidingTheSelectionKeepsIt()
    {
        Fixture fixture(sampleKnownHosts);
        fixture.selectRow(2);
        QTRY_COMPARE(fixture.selectedFirstHost(), u"[build.example.com]:2222"_s);
        QTest::keyClicks(fixture.find<QLineEdit>(u"knownHostsSearchField"_s), u"github"_s);
        QTRY_COMPARE(fixture.list()->model()->rowCount(), 1);
        QCOMPARE(fixture.selectedFirstHost(), u"[build.example.com]:2222"_s);

        // Clearing the search shows the selected row selected again.
        fixture.viewModel->setKnownHostsSearchText(QString());
        QTRY_COMPARE(fixture.list()->model()->rowCount(), 5);
        QTRY_COMPARE(fixture.list()->selectionModel()->selectedIndexes().value(0).row(), 2);
    }

    // Actions

    void markerCommentDeleteAndSaveReachTheFile()
    {
        Fixture fixture(sampleKnownHosts);
        SSHConfigViewModel& viewModel = *fixture.viewModel;

        fixture.selectRow(0);
        QTRY_COMPARE(fixture.selectedFirstHost(), u"github.com"_s);
        auto* picker = fixture.find<QComboBox>(u"knownHostMarkerPicker"_s);
        picker->setFocus();
        QTest::keyClick(picker, Qt::Key_End);
        QCOMPARE(viewModel.statusMessage(), u"Marker gezet op @revoked."_s);
        QCOMPARE(fixture.list()->model()->index(0, 0).data(KnownHostsModel::MarkerRole).toString(), u"@revoked"_s);
        QVERIFY(viewModel.knownHostsDirty());

        fixture.click(u"knownHostCommentButton"_s);
        QCOMPARE(viewModel.statusMessage(), u"Entry is uitgecommentarieerd."_s);
        QCOMPARE(fixture.find<QPushButton>(u"knownHostCommentButton"_s)->text(), u"Uncomment"_s);
        QVERIFY(fixture.find<SymbolLabel>(u"knownHostCommentedOutLabel"_s)->isVisible());

        fixture.selectRow(2);
        QTRY_COMPARE(fixture.selectedFirstHost(), u"[build.example.com]:2222"_s);
        fixture.click(u"knownHostRemoveButton"_s);
        QCOMPARE(viewModel.statusMessage(), u"known_hosts entry verwijderd."_s);
        QCOMPARE(fixture.find<QLabel>(u"knownHostsCountLabel"_s)->text(), u"4 entries"_s);
        QCOMPARE(fixture.list()->model()->rowCount(), 4);

        viewModel.setActiveEditorTab(SSHConfigViewModel::EditorTab::knownHosts);
        viewModel.saveCurrentTab();
        QCOMPARE(viewModel.statusMessage(),
            u"known_hosts opgeslagen naar "_s + fixture.files.knownHostsPath() + u" met backup."_s);
        QVERIFY(!viewModel.knownHostsDirty());
        QString expected = sampleKnownHosts;
        expected.replace(u"github.com,140"_s, u"# @revoked github.com,140"_s);
        expected.remove(
            u"[build.example.com]:2222 ecdsa-sha2-nistp256 AAAAE2VjZHNhLXNoYTItbmlzdHAyNTYAAAAIbmlzdHAyNTY=\n"_s);
        QCOMPARE(WindowFixture::readText(fixture.files.knownHostsPath()), expected);
        QCOMPARE(WindowFixture::backupsOf(fixture.files.knownHostsPath()).size(), 1);
        QCOMPARE(WindowFixture::readText(viewModel.lastBackupPath()), sampleKnownHosts);
        QVERIFY(viewModel.lastBackupPath().startsWith(fixture.files.knownHostsPath() + u".backup-"_s));
    }

    void choosingNoneRemovesTheMarkerAndBadge()
    {
        Fixture fixture(sampleKnownHosts);
        fixture.selectRow(1);
        auto* picker = fixture.find<QComboBox>(u"knownHostMarkerPicker"_s);
        QTRY_COMPARE(picker->currentIndex(), 1);
        picker->setFocus();
        QTest::keyClick(picker, Qt::Key_Home);
        QCOMPARE(fixture.viewModel->statusMessage(), u"Marker verwijderd."_s);
        QCOMPARE(fixture.list()->model()->index(1, 0).data(KnownHostsModel::MarkerRole).toString(), QString());
        QVERIFY(!fixture.viewModel->selectedKnownHostEntry()->marker().has_value());

        // Showing a marker set elsewhere must not write it back as a new change.
        fixture.viewModel->setMarkerOnSelectedKnownHostEntry(KnownHostMarker::certAuthority);
        QCOMPARE(picker->currentIndex(), 1);
        QCOMPARE(fixture.viewModel->statusMessage(), u"Marker gezet op @cert-authority."_s);
    }

    void findCreateHostCreatesThenSelects()
    {
        Fixture fixture(sampleKnownHosts);
        SSHConfigViewModel& viewModel = *fixture.viewModel;
        viewModel.setActiveEditorTab(SSHConfigViewModel::EditorTab::knownHosts);
        fixture.selectRow(0);
        QTRY_COMPARE(fixture.selectedFirstHost(), u"github.com"_s);

        fixture.click(u"knownHostFindCreateHostButton"_s);
        QCOMPARE(
            viewModel.statusMessage(), u"Nieuwe SSH-config host aangemaakt op basis van known_hosts: github.com"_s);
        QCOMPARE(viewModel.activeEditorTab(), SSHConfigViewModel::EditorTab::structured);
        QCOMPARE(viewModel.document().hosts.size(), 1);
        QCOMPARE(viewModel.document().hosts.constFirst().patterns, QStringList { u"github.com"_s });
        QCOMPARE(viewModel.selectedHostID(), std::optional<QUuid>(viewModel.document().hosts.constFirst().id()));

        viewModel.setActiveEditorTab(SSHConfigViewModel::EditorTab::knownHosts);
        fixture.click(u"knownHostFindCreateHostButton"_s);
        QCOMPARE(viewModel.statusMessage(), u"Bestaande SSH-config host geselecteerd: github.com"_s);
        QCOMPARE(viewModel.activeEditorTab(), SSHConfigViewModel::EditorTab::structured);
        QCOMPARE(viewModel.document().hosts.size(), 1);
    }

    void connectStartsTheCommand_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("status");

        QTest::newRow("first of two hosts")
            << 0 << u"ssh github.com"_s << u"Verbinding gestart in Terminal: github.com"_s;
        QTest::newRow("bracketed host with port")
            << 2 << u"ssh -p 2222 build.example.com"_s << u"Verbinding gestart in Terminal: build.example.com:2222"_s;
    }

    void connectStartsTheCommand()
    {
        QFETCH(int, row);
        QFETCH(QString, command);
        QFETCH(QString, status);
        Fixture fixture(sampleKnownHosts);
        fixture.selectRow(row);
        QTRY_COMPARE(fixture.list()->currentIndex().row(), row);
        fixture.click(u"knownHostConnectButton"_s);
        QCOMPARE(fixture.files.launcher->calls.size(), 1);
        QCOMPARE(fixture.files.launcher->calls.first().command, command);
        QCOMPARE(fixture.files.launcher->calls.first().app.displayName(), u"Terminal"_s);
        QCOMPARE(fixture.viewModel->statusMessage(), status);
    }

    void connectRefusesACommentedOutEntry()
    {
        Fixture fixture(sampleKnownHosts);
        fixture.selectRow(3);
        QTRY_COMPARE(fixture.selectedFirstHost(), u"old.example.com"_s);
        fixture.click(u"knownHostConnectButton"_s);
        QVERIFY(fixture.files.launcher->calls.isEmpty());
        QCOMPARE(fixture.viewModel->statusMessage(), u"Deze known_hosts entry is uitgecommentarieerd."_s);
    }

    // Several windows on one view model

    void twoViewsFollowEachOther()
    {
        Fixture fixture(sampleKnownHosts);
        KnownHostsView second(*fixture.viewModel);
        second.show();
        auto* secondList = second.findChild<QAbstractItemView*>(u"knownHostsList"_s);
        auto* secondSearch = second.findChild<QLineEdit*>(u"knownHostsSearchField"_s);

        fixture.selectRow(1);
        QTRY_COMPARE(secondList->currentIndex().row(), 1);
        QTest::keyClicks(fixture.find<QLineEdit>(u"knownHostsSearchField"_s), u"corp"_s);
        QCOMPARE(secondSearch->text(), u"corp"_s);
        QTRY_COMPARE(secondList->model()->rowCount(), 1);

        fixture.click(u"knownHostRemoveButton"_s);
        QCOMPARE(second.findChild<QLabel*>(u"knownHostsCountLabel"_s)->text(), u"4 entries"_s);
        QTRY_COMPARE(secondList->model()->rowCount(), 0);
    }

    void closingOneViewKeepsTheSelection()
    {
        Fixture fixture(sampleKnownHosts);
        fixture.selectRow(2);
        QTRY_COMPARE(fixture.selectedFirstHost(), u"[build.example.com]:2222"_s);
        {
            KnownHostsView second(*fixture.viewModel);
            second.show();
            QTRY_COMPARE(second.findChild<QAbstractItemView*>(u"knownHostsList"_s)->currentIndex().row(), 2);
        }
        QCOMPARE(fixture.selectedFirstHost(), u"[build.example.com]:2222"_s);
        fixture.view.reset();
        QCOMPARE(fixture.selectedFirstHost(), u"[build.example.com]:2222"_s);
    }
};

QTEST_MAIN(TestKnownHostsView)
#include "test_known_hosts_view.moc"
