// Wiring of the known_hosts tab's tools for a changed host key: the fingerprint section, the host lookup,
// removing one name of an entry and the pasted ssh warning, over real files and ssh-keygen's own answers.

#include "KnownHostsViewFixture.h"
#include "MainWindow.h"
#include "SSHConfigViewModel.h"
#include "SshKeygen.h"
#include "WidgetHelpers.h"
#include "WindowFixture.h"

#include <QAbstractItemView>
#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

using Fixture = KnownHostsViewFixture;

} // namespace

class TestKnownHostToolsView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!m_keygen.isAvailable())
            QSKIP("ssh-keygen is not installed");
        m_key = m_keygen.generatePublicKey(u"ed25519"_s);
        const QString path = m_keygen.writeFile(u"known_hosts"_s, u"web-1 "_s + m_key + u'\n');
        m_sha256 = m_keygen.run({ u"-l"_s, u"-f"_s, path }).output.section(u' ', 1, 1);
        m_md5 = m_keygen.run({ u"-l"_s, u"-E"_s, u"md5"_s, u"-f"_s, path }).output.section(u' ', 1, 1);
        QVERIFY(m_sha256.startsWith(u"SHA256:"_s));
        QVERIFY(m_md5.startsWith(u"MD5:"_s));
    }

    void fingerprintShownCopiedAndMd5OnRequest()
    {
        Fixture f(u"web-1 "_s + m_key + u"\nbroken ssh-ed25519 AAAA*AAA\n"_s);
        QCOMPARE(f.find<QLabel>(u"knownHostSha256Label"_s)->text(), m_sha256);
        QVERIFY(!f.find<QLabel>(u"knownHostMd5Label"_s)->isVisible());
        QVERIFY(!f.find<QLabel>(u"knownHostInvalidKeyLabel"_s)->isVisible());
        f.click(u"knownHostShowMd5Button"_s);
        QVERIFY(f.find<QLabel>(u"knownHostMd5Label"_s)->isVisible());
        QCOMPARE(f.find<QLabel>(u"knownHostMd5Label"_s)->text(), m_md5);
        f.click(u"knownHostCopyFingerprintButton"_s);
        QCOMPARE(QGuiApplication::clipboard()->text(), m_sha256);
        QCOMPARE(f.viewModel->statusMessage(), u"Fingerprint gekopieerd naar het klembord."_s);

        f.select(1);
        QVERIFY(f.find<QLabel>(u"knownHostInvalidKeyLabel"_s)->isVisible());
        QVERIFY(!f.find<QLabel>(u"knownHostSha256Label"_s)->isVisible());
        QVERIFY(!f.find<QPushButton>(u"knownHostCopyFingerprintButton"_s)->isVisible());
    }

    void lookupFieldFiltersTheList()
    {
        Fixture f(u"web-1 "_s + m_key + u"\n[web-1]:2222 "_s + m_key + u"\ndb-1 "_s + m_key + u"\n"_s);
        auto* list = f.find<QAbstractItemView>(u"knownHostsList"_s);
        QCOMPARE(list->model()->rowCount(), 3);
        QVERIFY(!f.find<QPushButton>(u"knownHostLookupClearButton"_s)->isVisible());
        QLineEdit* field = f.find<QLineEdit>(u"knownHostLookupField"_s);
        field->setFocus();
        QTest::keyClicks(field, u"web-1:2222"_s);
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(list->model()->rowCount(), 1);
        QCOMPARE(list->model()->index(0, 0).data().toString(), u"[web-1]:2222"_s);
        QCOMPARE(f.find<QLabel>(u"knownHostLookupResult"_s)->text(), u"1 entry voor [web-1]:2222"_s);
        f.click(u"knownHostLookupClearButton"_s);
        QCOMPARE(list->model()->rowCount(), 3);
        QVERIFY(!f.find<QLabel>(u"knownHostLookupResult"_s)->isVisible());
    }

    void removeOneNameFromTheDetailPane()
    {
        Fixture f(u"host1,host2,10.0.0.5 "_s + m_key + u"\nsolo "_s + m_key + u"\n"_s);
        QVERIFY(f.find<QWidget>(u"knownHostNamesView"_s)->isVisible());
        f.find<QPushButton>(u"knownHostRemoveName1"_s)->click();
        QCOMPARE(f.viewModel->selectedKnownHostEntry()->hosts(), (QStringList { u"host1"_s, u"10.0.0.5"_s }));
        QCOMPARE(f.find<QLabel>(u"knownHostHostsLabel"_s)->text(), u"host1, 10.0.0.5"_s);
        QTRY_VERIFY(!f.view->findChild<QPushButton*>(u"knownHostRemoveName2"_s));
        f.select(1);
        QVERIFY(!f.find<QWidget>(u"knownHostNamesView"_s)->isVisible());
    }

    // Ctrl+Shift+V in the main window reads ssh's warning from the clipboard; the comparison shows the
    // entry's fingerprint beside the one ssh printed, and its Remove deletes the offending entry.
    void pastedWarningThroughTheMenu()
    {
        WindowFixture files;
        SSHConfigViewModel& vm = files.make(QString(), u"db-1 "_s + m_key + u"\nweb-1 "_s + m_key + u"\n"_s);
        MainWindow window(vm, std::nullopt);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto* comparison = child<QWidget>(window, u"hostKeyChangeView"_s);
        QVERIFY(!comparison->isVisible());
        const QString newFingerprint = u"SHA256:Ffa9vkTzzn/PvF0x9RCHnbFyEXnGnqtYaN4DSYbY6hY"_s;
        QGuiApplication::clipboard()->setText(u"The fingerprint for the ED25519 key sent by the remote host is\r\n"_s
            + newFingerprint + u".\r\nOffending ED25519 key in "_s + files.knownHostsPath()
            + u":2\r\nHost key for web-1 has changed and you have requested strict checking.\r\n"_s);
        QAction* paste = child<QAction>(window, u"pasteHostKeyWarningAction"_s);
        QCOMPARE(paste->shortcut(), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_V));
        paste->trigger();
        QCOMPARE(vm.activeEditorTab(), SSHConfigViewModel::EditorTab::knownHosts);
        QTRY_VERIFY(comparison->isVisible());
        QCOMPARE(child<QLabel>(window, u"hostKeyChangeOldFingerprint"_s)->text(), m_sha256);
        QCOMPARE(child<QLabel>(window, u"hostKeyChangeNewFingerprint"_s)->text(), newFingerprint);
        QCOMPARE(selectedEntryHost(vm), u"web-1"_s);
        auto* remove = child<QPushButton>(window, u"hostKeyChangeRemoveButton"_s);
        QVERIFY(remove->isEnabled());
        QVERIFY(!remove->accessibleName().isEmpty());
        remove->click();
        QCOMPARE(vm.knownHostsEntryCount(), 1);
        QCOMPARE(selectedEntryHost(vm), u"db-1"_s);
        QVERIFY(!remove->isEnabled());
        child<QPushButton>(window, u"hostKeyChangeCloseButton"_s)->click();
        QTRY_VERIFY(!comparison->isVisible());
    }

    // The host editor's count links to the known_hosts tab; the entry's config host links back.
    void linksBetweenTheTabs()
    {
        WindowFixture files;
        SSHConfigViewModel& vm
            = files.make(u"Host web\n    HostName web-1\n"_s, u"db-1 "_s + m_key + u"\nweb-1 "_s + m_key + u"\n"_s);
        MainWindow window(vm, std::nullopt);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(child<QLabel>(window, u"hostKnownHostsCount"_s)->text(), u"known_hosts: 1 entry voor web-1"_s);
        auto* link = child<QPushButton>(window, u"hostKnownHostsLinkButton"_s);
        QVERIFY(!link->accessibleName().isEmpty());
        link->click();
        QCOMPARE(vm.activeEditorTab(), SSHConfigViewModel::EditorTab::knownHosts);
        QCOMPARE(selectedEntryHost(vm), u"web-1"_s);
        QCOMPARE(child<QAbstractItemView>(window, u"knownHostsList"_s)->model()->rowCount(), 1);
        QPushButton* back = nullptr;
        QTRY_VERIFY((back = window.findChild<QPushButton*>(u"knownHostConfigHost0"_s)) && back->isVisible());
        QCOMPARE(back->text(), u"web"_s);
        back->click();
        QCOMPARE(vm.activeEditorTab(), SSHConfigViewModel::EditorTab::structured);
        QCOMPARE(vm.selectedHostIndex(), std::optional<qsizetype>(0));
    }

private:
    SshKeygen m_keygen;
    QString m_key;
    QString m_sha256;
    QString m_md5;
};

QTEST_MAIN(TestKnownHostToolsView)
#include "test_known_host_tools_view.moc"
