// Wiring of the known_hosts tab's tools for a changed host key: the fingerprint section, the host lookup,
// removing one name of an entry and the pasted ssh warning, over real files and ssh-keygen's own answers.

#include "KnownHostsView.h"
#include "SSHConfigViewModel.h"
#include "SshKeygen.h"
#include "WidgetHelpers.h"
#include "WindowFixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// The known_hosts tab on its own, over real files.
struct Fixture
{
    explicit Fixture(const QString& knownHosts, const QString& config = QString())
        : viewModel(&files.make(config, knownHosts))
        , view(std::make_unique<KnownHostsView>(*viewModel))
    {
        view->resize(1000, 600);
        view->show();
    }

    template <typename T>
    T* find(const QString& objectName) const { return child<T>(*view, objectName); }

    void click(const QString& buttonName) const { QTest::mouseClick(find<QPushButton>(buttonName), Qt::LeftButton); }
    void select(int entry) const
    {
        viewModel->setSelectedKnownHostEntryID(viewModel->filteredKnownHostEntries().at(entry).id());
    }

    WindowFixture files;
    SSHConfigViewModel* viewModel;
    std::unique_ptr<KnownHostsView> view;
};

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
        m_sha256 = m_keygen.run({u"-l"_s, u"-f"_s, path}).output.section(u' ', 1, 1);
        m_md5 = m_keygen.run({u"-l"_s, u"-E"_s, u"md5"_s, u"-f"_s, path}).output.section(u' ', 1, 1);
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
        auto* list = f.find<QListView>(u"knownHostsList"_s);
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
        QCOMPARE(f.viewModel->selectedKnownHostEntry()->hosts(), (QStringList{u"host1"_s, u"10.0.0.5"_s}));
        QCOMPARE(f.find<QLabel>(u"knownHostHostsLabel"_s)->text(), u"host1, 10.0.0.5"_s);
        QTRY_VERIFY(!f.view->findChild<QPushButton*>(u"knownHostRemoveName2"_s));
        f.select(1);
        QVERIFY(!f.find<QWidget>(u"knownHostNamesView"_s)->isVisible());
    }

private:
    SshKeygen m_keygen;
    QString m_key;
    QString m_sha256;
    QString m_md5;
};

QTEST_MAIN(TestKnownHostToolsView)
#include "test_known_host_tools_view.moc"
