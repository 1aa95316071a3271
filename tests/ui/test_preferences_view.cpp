// Wiring of the preferences window: the terminal picker and its texts follow the view model and store
// the choice, the files section names the real paths, and the backup section appears only after a
// save that made a backup.

#include "PreferencesView.h"
#include "SSHConfigViewModel.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

class ChangingDiscovery final : public TerminalDiscovering
{
public:
    QList<TerminalApp> discoverTerminalApps() const override { return apps; }
    QList<TerminalApp> apps;
};

class NoLaunches final : public TerminalLaunching
{
public:
    bool launch(const TerminalApp&, const QString&) override { return false; }
};

TerminalApp appleTerminal()
{
    return TerminalApp(u"com.apple.Terminal"_s, u"Terminal"_s, TerminalApp::LaunchMode::appleTerminal);
}

TerminalApp iTerm()
{
    return TerminalApp(u"com.googlecode.iterm2"_s, u"iTerm2"_s, TerminalApp::LaunchMode::iTerm2);
}

TerminalApp warp()
{
    return TerminalApp(u"dev.warp.Warp-Stable"_s, u"Warp"_s, TerminalApp::LaunchMode::warp, u"warp"_s);
}

const QString explanation = u"Voor Terminal, iTerm2 en Warp start de app direct `ssh`. Voor andere terminals opent "
                            u"de app en zet hij het ssh-commando op je klembord."_s;

struct Fixture
{
    Fixture(const QList<TerminalApp>& apps, const QString& knownHosts)
    {
        QDir(dir.path()).mkpath(u".ssh"_s);
        configPath = dir.filePath(u".ssh/config"_s);
        knownHostsPath = dir.filePath(u".ssh/known_hosts"_s);
        if (!knownHosts.isNull()) {
            QFile file(knownHostsPath);
            if (file.open(QIODevice::WriteOnly))
                file.write(knownHosts.toUtf8());
        }
        discovery = std::make_shared<ChangingDiscovery>();
        discovery->apps = apps;
        defaults = std::make_shared<InMemoryUserDefaultsStore>();
        viewModel = std::make_unique<SSHConfigViewModel>(std::make_shared<SSHFileService>(configPath, knownHostsPath),
                                                         discovery, std::make_shared<NoLaunches>(), defaults);
        view = std::make_unique<PreferencesView>(*viewModel);
        view->show();
    }

    template <typename T>
    T* find(const QString& objectName) const
    {
        T* widget = view->findChild<T*>(objectName);
        if (!widget)
            qWarning("no widget named %s", qPrintable(objectName));
        return widget;
    }

    bool shows(const QString& objectName) const { return find<QWidget>(objectName)->isVisible(); }

    QStringList pickerTexts() const
    {
        QStringList texts;
        auto* picker = find<QComboBox>(u"terminalPicker"_s);
        for (int i = 0; i < picker->count(); ++i)
            texts.append(picker->itemText(i));
        return texts;
    }

    QTemporaryDir dir;
    QString configPath;
    QString knownHostsPath;
    std::shared_ptr<ChangingDiscovery> discovery;
    std::shared_ptr<InMemoryUserDefaultsStore> defaults;
    std::unique_ptr<SSHConfigViewModel> viewModel;
    std::unique_ptr<PreferencesView> view;
};

const QString twoEntries = u"github.com ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIOMqqnkVzrm0Sd\n"
                           u"# old.example.com ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIKd0\n"_s;

} // namespace

class TestPreferencesView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Terminal section
    void withoutTerminalsShowsTheTextAndNoPicker();
    void listsTerminalsAndTheSelectedOne();
    void choosingATerminalStoresIt();
    void reloadRebuildsThePicker();

    // Files and backup
    void showsFileLocationsAndEntryCount();
    void lastBackupAppearsAfterASaveWithBackup_data();
    void lastBackupAppearsAfterASaveWithBackup();

    void asksForItsFixedSize();
};

void TestPreferencesView::withoutTerminalsShowsTheTextAndNoPicker()
{
    Fixture fixture({}, twoEntries);
    QCOMPARE(fixture.find<QGroupBox>(u"terminalSection"_s)->title(), u"Terminal app"_s);
    QVERIFY(fixture.shows(u"noTerminalLabel"_s));
    QCOMPARE(fixture.find<QLabel>(u"noTerminalLabel"_s)->text(), u"Geen ondersteunde terminal apps gevonden."_s);
    QVERIFY(!fixture.shows(u"terminalPicker"_s));
    QVERIFY(!fixture.shows(u"selectedTerminalLabel"_s));
    QVERIFY(fixture.shows(u"reloadTerminalsButton"_s));
    QCOMPARE(fixture.find<QPushButton>(u"reloadTerminalsButton"_s)->text(), u"Herlaad terminal lijst"_s);
    QVERIFY(fixture.shows(u"terminalExplanationLabel"_s));
    QCOMPARE(fixture.find<QLabel>(u"terminalExplanationLabel"_s)->text(), explanation);
}

void TestPreferencesView::listsTerminalsAndTheSelectedOne()
{
    Fixture fixture({iTerm(), appleTerminal(), warp()}, twoEntries);
    QVERIFY(!fixture.shows(u"noTerminalLabel"_s));
    QVERIFY(fixture.shows(u"terminalPicker"_s));
    QCOMPARE(fixture.pickerTexts(), QStringList({u"iTerm2"_s, u"Terminal"_s, u"Warp"_s}));
    // Nothing stored yet, so the view model falls back to Terminal.
    QCOMPARE(fixture.find<QComboBox>(u"terminalPicker"_s)->currentText(), u"Terminal"_s);
    QCOMPARE(fixture.find<QLabel>(u"selectedTerminalLabel"_s)->text(), u"Geselecteerd: Terminal"_s);
    const auto* form = qobject_cast<QFormLayout*>(fixture.find<QGroupBox>(u"terminalSection"_s)->layout());
    QVERIFY(form);
    auto* title = qobject_cast<QLabel*>(form->labelForField(fixture.find<QComboBox>(u"terminalPicker"_s)));
    QVERIFY(title);
    QCOMPARE(title->text(), u"Gebruik voor connect"_s);
}

void TestPreferencesView::choosingATerminalStoresIt()
{
    Fixture fixture({iTerm(), appleTerminal(), warp()}, twoEntries);
    auto* picker = fixture.find<QComboBox>(u"terminalPicker"_s);
    picker->setFocus();
    QTest::keyClick(picker, Qt::Key_End);
    QCOMPARE(fixture.viewModel->selectedTerminalBundleIdentifier(), u"dev.warp.Warp-Stable"_s);
    QCOMPARE(fixture.defaults->string(fixture.viewModel->preferredTerminalBundleIdentifierKey()),
             std::optional<QString>(u"dev.warp.Warp-Stable"_s));
    QCOMPARE(fixture.find<QLabel>(u"selectedTerminalLabel"_s)->text(), u"Geselecteerd: Warp"_s);

    // A choice made elsewhere (another preferences window) shows here too.
    fixture.viewModel->selectTerminal(u"com.googlecode.iterm2"_s);
    QCOMPARE(picker->currentText(), u"iTerm2"_s);
    QCOMPARE(fixture.find<QLabel>(u"selectedTerminalLabel"_s)->text(), u"Geselecteerd: iTerm2"_s);
}

void TestPreferencesView::reloadRebuildsThePicker()
{
    Fixture fixture({}, twoEntries);
    fixture.discovery->apps = {warp(), appleTerminal()};
    QTest::mouseClick(fixture.find<QPushButton>(u"reloadTerminalsButton"_s), Qt::LeftButton);
    QVERIFY(fixture.shows(u"terminalPicker"_s));
    QVERIFY(!fixture.shows(u"noTerminalLabel"_s));
    QCOMPARE(fixture.pickerTexts(), QStringList({u"Warp"_s, u"Terminal"_s}));
    QCOMPARE(fixture.find<QLabel>(u"selectedTerminalLabel"_s)->text(), u"Geselecteerd: Terminal"_s);

    fixture.discovery->apps.clear();
    QTest::mouseClick(fixture.find<QPushButton>(u"reloadTerminalsButton"_s), Qt::LeftButton);
    QVERIFY(!fixture.shows(u"terminalPicker"_s));
    QVERIFY(!fixture.shows(u"selectedTerminalLabel"_s));
    QVERIFY(fixture.shows(u"noTerminalLabel"_s));
}

void TestPreferencesView::showsFileLocationsAndEntryCount()
{
    Fixture fixture({appleTerminal()}, twoEntries);
    QCOMPARE(fixture.find<QGroupBox>(u"filesSection"_s)->title(), u"Bestanden"_s);
    QCOMPARE(fixture.find<QLabel>(u"configPathLabel"_s)->text(), fixture.configPath);
    QCOMPARE(fixture.find<QLabel>(u"knownHostsPathLabel"_s)->text(), fixture.knownHostsPath);
    QCOMPARE(fixture.find<QLabel>(u"knownHostsEntryCountLabel"_s)->text(), u"2"_s);
    const auto* form = qobject_cast<QFormLayout*>(fixture.find<QGroupBox>(u"filesSection"_s)->layout());
    QStringList titles;
    for (int row = 0; row < form->rowCount(); ++row)
        titles.append(qobject_cast<QLabel*>(form->itemAt(row, QFormLayout::LabelRole)->widget())->text());
    QCOMPARE(titles, QStringList({u"SSH config"_s, u"Known hosts"_s, u"Known hosts entries"_s}));

    // The count follows a deletion made in the main window.
    fixture.viewModel->deleteSelectedKnownHostEntry();
    QCOMPARE(fixture.find<QLabel>(u"knownHostsEntryCountLabel"_s)->text(), u"1"_s);
}

void TestPreferencesView::lastBackupAppearsAfterASaveWithBackup_data()
{
    QTest::addColumn<QString>("knownHosts");
    QTest::addColumn<bool>("backupShown");

    QTest::newRow("existing file: backed up") << twoEntries << true;
    QTest::newRow("no file yet: nothing to back up") << QString() << false;
}

void TestPreferencesView::lastBackupAppearsAfterASaveWithBackup()
{
    QFETCH(QString, knownHosts);
    QFETCH(bool, backupShown);
    Fixture fixture({appleTerminal()}, knownHosts);
    QVERIFY(!fixture.shows(u"lastBackupSection"_s));

    fixture.viewModel->saveKnownHosts();
    QVERIFY(QFile::exists(fixture.knownHostsPath));
    QCOMPARE(fixture.shows(u"lastBackupSection"_s), backupShown);
    if (!backupShown)
        return;
    QCOMPARE(fixture.find<QGroupBox>(u"lastBackupSection"_s)->title(), u"Laatste backup"_s);
    const QString backup = fixture.find<QLabel>(u"lastBackupLabel"_s)->text();
    QCOMPARE(backup, fixture.viewModel->lastBackupPath());
    QVERIFY(backup.startsWith(fixture.knownHostsPath + u".backup-"_s));
    QVERIFY(QFile::exists(backup));
}

void TestPreferencesView::asksForItsFixedSize()
{
    Fixture fixture({appleTerminal()}, twoEntries);
    QCOMPARE(fixture.view->sizeHint(), QSize(520, 360));
    QCOMPARE(fixture.view->layout()->contentsMargins(), QMargins());
}

QTEST_MAIN(TestPreferencesView)
#include "test_preferences_view.moc"
