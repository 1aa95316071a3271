// Wiring of the preferences window: the terminal picker and its texts follow the view model and store
// the choice, the files section names the real paths, and the backup section appears only after a
// save that made a backup.

#include "CommandLineTerminalDiscovery.h"
#include "PreferencesView.h"
#include "SSHConfigViewModel.h"
#include "TerminalApps.h"
#include "WidgetHelpers.h"
#include "WindowFixture.h"

#include <QComboBox>
#include <QFile>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

// The preferences window over real files, offering the given terminals.
struct Fixture
{
    Fixture(const QList<TerminalApp>& apps, const QString& knownHosts)
    {
        files.discovery->apps = apps;
        viewModel = &files.make(QString(), knownHosts);
        view = std::make_unique<PreferencesView>(*viewModel);
        view->show();
    }

    template<typename T> T* find(const QString& objectName) const { return child<T>(*view, objectName); }

    bool shows(const QString& objectName) const { return find<QWidget>(objectName)->isVisible(); }
    QStringList pickerTexts() const { return comboItems(*find<QComboBox>(u"terminalPicker"_s)); }

    WindowFixture files;
    SSHConfigViewModel* viewModel = nullptr;
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

    void withoutTerminalsShowsTheTextAndNoPicker()
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
        QVERIFY(!fixture.find<QLabel>(u"terminalExplanationLabel"_s)->text().isEmpty());
    }

    void explanationNamesThisPlatformsTerminals()
    {
        Fixture fixture({}, twoEntries);
        const QString text = fixture.find<QLabel>(u"terminalExplanationLabel"_s)->text();
#ifdef Q_OS_MACOS
        QCOMPARE(text,
            u"Voor Terminal, iTerm2 en Warp start de app direct `ssh`. Voor andere terminals opent de app "
            u"en zet hij het ssh-commando op je klembord."_s);
#else
        // Only the terminals that can be found here, and the keys that paste in a Linux terminal.
        for (const CommandLineTerminalDiscovery::Candidate& candidate : CommandLineTerminalDiscovery::candidates())
            QVERIFY2(text.contains(candidate.fallbackName), qPrintable(candidate.fallbackName));
        QVERIFY(text.contains(u"Warp"_s));
        QVERIFY(text.contains(u"standaardterminal"_s));
        QVERIFY(!text.contains(u"iTerm2"_s));
        QVERIFY(!text.contains(u"Cmd"_s));
        QVERIFY(text.startsWith(u"Voor "_s));
        QVERIFY(text.contains(u" start de app direct `ssh`. Voor andere terminals opent de app en zet hij het "
                              u"ssh-commando op je klembord; plak het met Ctrl+Shift+V."_s));
#endif
    }

    void listsTerminalsAndTheSelectedOne()
    {
        Fixture fixture({ iTermApp(), appleTerminalApp(), warpApp() }, twoEntries);
        QVERIFY(!fixture.shows(u"noTerminalLabel"_s));
        QVERIFY(fixture.shows(u"terminalPicker"_s));
        QCOMPARE(fixture.pickerTexts(), QStringList({ u"iTerm2"_s, u"Terminal"_s, u"Warp"_s }));
        // Nothing stored yet, so the view model falls back to Terminal.
        QCOMPARE(fixture.find<QComboBox>(u"terminalPicker"_s)->currentText(), u"Terminal"_s);
        QCOMPARE(fixture.find<QLabel>(u"selectedTerminalLabel"_s)->text(), u"Geselecteerd: Terminal"_s);
        const auto* form = qobject_cast<QFormLayout*>(fixture.find<QGroupBox>(u"terminalSection"_s)->layout());
        QVERIFY(form);
        auto* title = qobject_cast<QLabel*>(form->labelForField(fixture.find<QComboBox>(u"terminalPicker"_s)));
        QVERIFY(title);
        QCOMPARE(title->text(), u"Gebruik voor connect"_s);
    }

    void choosingATerminalStoresIt()
    {
        Fixture fixture({ iTermApp(), appleTerminalApp(), warpApp() }, twoEntries);
        auto* picker = fixture.find<QComboBox>(u"terminalPicker"_s);
        picker->setFocus();
        QTest::keyClick(picker, Qt::Key_End);
        QCOMPARE(fixture.viewModel->selectedTerminalBundleIdentifier(), u"dev.warp.Warp-Stable"_s);
        QCOMPARE(fixture.files.defaults->string(fixture.viewModel->preferredTerminalBundleIdentifierKey()),
            std::optional<QString>(u"dev.warp.Warp-Stable"_s));
        QCOMPARE(fixture.find<QLabel>(u"selectedTerminalLabel"_s)->text(), u"Geselecteerd: Warp"_s);

        // A choice made elsewhere (another preferences window) shows here too.
        fixture.viewModel->selectTerminal(u"com.googlecode.iterm2"_s);
        QCOMPARE(picker->currentText(), u"iTerm2"_s);
        QCOMPARE(fixture.find<QLabel>(u"selectedTerminalLabel"_s)->text(), u"Geselecteerd: iTerm2"_s);
    }

    void reloadRebuildsThePicker()
    {
        Fixture fixture({}, twoEntries);
        fixture.files.discovery->apps = { warpApp(), appleTerminalApp() };
        QTest::mouseClick(fixture.find<QPushButton>(u"reloadTerminalsButton"_s), Qt::LeftButton);
        QVERIFY(fixture.shows(u"terminalPicker"_s));
        QVERIFY(!fixture.shows(u"noTerminalLabel"_s));
        QCOMPARE(fixture.pickerTexts(), QStringList({ u"Warp"_s, u"Terminal"_s }));
        QCOMPARE(fixture.find<QLabel>(u"selectedTerminalLabel"_s)->text(), u"Geselecteerd: Terminal"_s);

        fixture.files.discovery->apps.clear();
        QTest::mouseClick(fixture.find<QPushButton>(u"reloadTerminalsButton"_s), Qt::LeftButton);
        QVERIFY(!fixture.shows(u"terminalPicker"_s));
        QVERIFY(!fixture.shows(u"selectedTerminalLabel"_s));
        QVERIFY(fixture.shows(u"noTerminalLabel"_s));
    }

    // Files and backup

    void showsFileLocationsAndEntryCount()
    {
        Fixture fixture({ appleTerminalApp() }, twoEntries);
        QCOMPARE(fixture.find<QGroupBox>(u"filesSection"_s)->title(), u"Bestanden"_s);
        QCOMPARE(fixture.find<QLabel>(u"configPathLabel"_s)->text(), fixture.files.configPath());
        QCOMPARE(fixture.find<QLabel>(u"knownHostsPathLabel"_s)->text(), fixture.files.knownHostsPath());
        QCOMPARE(fixture.find<QLabel>(u"knownHostsEntryCountLabel"_s)->text(), u"2"_s);
        const auto* form = qobject_cast<QFormLayout*>(fixture.find<QGroupBox>(u"filesSection"_s)->layout());
        QStringList titles;
        for (int row = 0; row < form->rowCount(); ++row)
            titles.append(qobject_cast<QLabel*>(form->itemAt(row, QFormLayout::LabelRole)->widget())->text());
        QCOMPARE(titles, QStringList({ u"SSH config"_s, u"Known hosts"_s, u"Known hosts entries"_s }));

        // The count follows a deletion made in the main window.
        fixture.viewModel->deleteSelectedKnownHostEntry();
        QCOMPARE(fixture.find<QLabel>(u"knownHostsEntryCountLabel"_s)->text(), u"1"_s);
    }

    void lastBackupAppearsAfterASaveWithBackup_data()
    {
        QTest::addColumn<QString>("knownHosts");
        QTest::addColumn<bool>("backupShown");

        QTest::newRow("existing file: backed up") << twoEntries << true;
        QTest::newRow("no file yet: nothing to back up") << QString() << false;
    }

    void lastBackupAppearsAfterASaveWithBackup()
    {
        QFETCH(QString, knownHosts);
        QFETCH(bool, backupShown);
        Fixture fixture({ appleTerminalApp() }, knownHosts);
        QVERIFY(!fixture.shows(u"lastBackupSection"_s));

        fixture.viewModel->saveKnownHosts();
        QVERIFY(QFile::exists(fixture.files.knownHostsPath()));
        QCOMPARE(fixture.shows(u"lastBackupSection"_s), backupShown);
        if (!backupShown)
            return;
        QCOMPARE(fixture.find<QGroupBox>(u"lastBackupSection"_s)->title(), u"Laatste backup"_s);
        const QString backup = fixture.find<QLabel>(u"lastBackupLabel"_s)->text();
        QCOMPARE(backup, fixture.viewModel->lastBackupPath());
        QVERIFY(backup.startsWith(fixture.files.knownHostsPath() + u".backup-"_s));
        QVERIFY(QFile::exists(backup));
    }

    void asksForItsFixedSize()
    {
        Fixture fixture({ appleTerminalApp() }, twoEntries);
        QCOMPARE(fixture.view->sizeHint(), QSize(520, 360));
        QCOMPARE(fixture.view->layout()->contentsMargins(), QMargins());
    }
};

QTEST_MAIN(TestPreferencesView)
#include "test_preferences_view.moc"
