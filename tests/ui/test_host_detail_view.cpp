// Wiring of the host detail editor: each field writes the selected host the way the form promises,
// keeps what the user is typing, and follows changes made elsewhere.

#include "HostDetailRules.h"
#include "HostDetailView.h"
#include "SSHConfigViewModel.h"
#include "WidgetHelpers.h"
#include "WindowFixture.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

const QString sampleConfig = u"Host web app\n"
                             u"    HostName web.example.com\n"
                             u"    User deploy\n"
                             u"    # kept as it is\n"
                             u"    ForwardAgent yes\n"
                             u"\n"
                             u"Host db\n"
                             u"    hostname foo\n"
                             u"    User first\n"
                             u"    User second\n"
                             u"    Port 22\n"
                             u"\n"
                             u"Host notes\n"
                             u"    # only a comment\n"_s;

// A view model over real files in a temporary directory, with the second host ("db") selected.
struct Fixture
{
    Fixture()
        : viewModel(&files.make(sampleConfig))
    {
        select(1);
    }

    void select(qsizetype position) { viewModel->setSelectedHostID(viewModel->document().hosts.at(position).id()); }
    SSHHost selected() const { return viewModel->host(*viewModel->selectedHostIndex()); }

    WindowFixture files;
    SSHConfigViewModel* viewModel;
};

// Replaces a field's whole text the way a user does: select all, then type (or delete).
void retype(QLineEdit* field, const QString& text)
{
    field->setFocus();
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    if (text.isEmpty())
        QTest::keyClick(field, Qt::Key_Backspace);
    else
        QTest::keyClicks(field, text);
}

QStringList optionLines(const SSHHost& host)
{
    QStringList lines;
    for (const SSHHostItem& item : host.items)
        lines.append(item.isOption() ? item.asOption()->key + u'=' + item.asOption()->value
                                     : (item.isComment() ? item.commentText() : u"<blank>"_s));
    return lines;
}

} // namespace

class TestHostDetailView : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Fixture> m_fixture;
    std::unique_ptr<HostDetailView> m_view;

    void showView()
    {
        m_view = std::make_unique<HostDetailView>(*m_fixture->viewModel);
        m_view->resize(600, 700);
        m_view->show();
        m_view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    }

private Q_SLOTS:
    void init()
    {
        m_fixture = std::make_unique<Fixture>();
        showView();
    }
    void cleanup()
    {
        m_view.reset();
        m_fixture.reset();
    }

    // --- Host group ------------------------------------------------------------------------------

    void showsTheSelectedHost()
    {
        QCOMPARE(child<QLineEdit>(*m_view, u"hostPatternsField"_s)->text(), u"db"_s);
        QCOMPARE(child<QLineEdit>(*m_view, u"optionField_HostName"_s)->text(), u"foo"_s);
        QCOMPARE(child<QLineEdit>(*m_view, u"optionField_User"_s)->text(), u"first"_s);
        QCOMPARE(child<QLineEdit>(*m_view, u"optionField_IdentityFile"_s)->placeholderText(), u"~/.ssh/id_ed25519"_s);
        m_fixture->select(0);
        QCOMPARE(child<QLineEdit>(*m_view, u"hostPatternsField"_s)->text(), u"web app"_s);
        QCOMPARE(child<QLineEdit>(*m_view, u"optionField_HostName"_s)->text(), u"web.example.com"_s);
        QCOMPARE(child<QLineEdit>(*m_view, u"optionField_Port"_s)->text(), QString());
    }

    // Patterns split at blanks and default to "*", groups split at commas; either field shows the stored
    // list once editing ends.
    void listField_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QStringList>("list");
        QTest::addColumn<QString>("shownAfterwards");
        const QString patterns = u"hostPatternsField"_s;
        const QString groups = u"hostGroupsField"_s;
        QTest::newRow("patterns: two blanks between")
            << patterns << u"web  db"_s << QStringList { u"web"_s, u"db"_s } << u"web db"_s;
        QTest::newRow("patterns: cleared gives star") << patterns << QString() << QStringList { u"*"_s } << u"*"_s;
        QTest::newRow("groups: blank, empty piece, trailing comma")
            << groups << u" werk,, klanten,"_s << QStringList { u"werk"_s, u"klanten"_s } << u"werk, klanten"_s;
        QTest::newRow("groups: cleared gives no groups") << groups << QString() << QStringList() << QString();
    }
    void listField()
    {
        QFETCH(QString, field);
        QFETCH(QString, typed);
        QFETCH(QStringList, list);
        QFETCH(QString, shownAfterwards);
        auto* edit = child<QLineEdit>(*m_view, field);
        retype(edit, u"oud"_s);
        retype(edit, typed);
        const SSHHost host = m_fixture->selected();
        QCOMPARE(field == u"hostGroupsField"_s ? host.groups : host.patterns, list);
        QVERIFY(m_fixture->viewModel->rawEditorDirty());
        QTest::keyClick(edit, Qt::Key_Return);
        QCOMPARE(edit->text(), shownAfterwards);
    }

    void typingKeepsSeparatorsAndCaret()
    {
        auto* groups = child<QLineEdit>(*m_view, u"hostGroupsField"_s);
        groups->setFocus();
        QTest::keyClicks(groups, u"web, "_s);
        QCOMPARE(groups->text(), u"web, "_s);
        QCOMPARE(groups->cursorPosition(), 5);
        QCOMPARE(m_fixture->selected().groups, QStringList { u"web"_s });
        QTest::keyClicks(groups, u"db"_s);
        QCOMPARE(groups->text(), u"web, db"_s);
        QCOMPARE(m_fixture->selected().groups, (QStringList { u"web"_s, u"db"_s }));

        auto* patterns = child<QLineEdit>(*m_view, u"hostPatternsField"_s);
        patterns->setFocus();
        patterns->end(false);
        QTest::keyClicks(patterns, u" "_s);
        QCOMPARE(patterns->text(), u"db "_s);
        QTest::keyClicks(patterns, u"db2"_s);
        QCOMPARE(m_fixture->selected().patterns, (QStringList { u"db"_s, u"db2"_s }));

        auto* port = child<QLineEdit>(*m_view, u"optionField_Port"_s);
        retype(port, u"2222"_s);
        QTest::keyClick(port, Qt::Key_Home);
        QTest::keyClicks(port, u"  "_s);
        QTest::keyClick(port, Qt::Key_End);
        QTest::keyClicks(port, u"  "_s);
        QCOMPARE(port->text(), u"  2222  "_s);
        // Stored trimmed, in the option's own place; the field shows the stored text once editing ends.
        QCOMPARE(optionLines(m_fixture->selected()),
            (QStringList { u"hostname=foo"_s, u"User=first"_s, u"User=second"_s, u"Port=2222"_s, u"<blank>"_s }));
        QTest::keyClick(port, Qt::Key_Return);
        QCOMPARE(port->text(), u"2222"_s);
    }

    void hostActiefToggle()
    {
        auto* toggle = child<QCheckBox>(*m_view, u"hostEnabledToggle"_s);
        QCOMPARE(toggle->text(), u"Host actief"_s);
        QVERIFY(toggle->isChecked());
        QSignalSpy hostChanges(m_fixture->viewModel, &SSHConfigViewModel::hostChanged);
        QSignalSpy dirtyChanges(m_fixture->viewModel, &SSHConfigViewModel::rawEditorDirtyChanged);
        QTest::mouseClick(toggle, Qt::LeftButton, {}, QPoint(6, toggle->height() / 2));
        QCOMPARE(m_fixture->selected().isEnabled, false);
        QCOMPARE(hostChanges.count(), 1);
        QCOMPARE(dirtyChanges.count(), 1);
        QVERIFY(m_fixture->viewModel->rawEditorDirty());
    }

    // --- Common options ------------------------------------------------------------------------------

    void commonOption_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QString>("shownAfterwards");
        const QString blank = u"<blank>"_s;
        QTest::newRow("lower-case key replaced in place, spelling taken")
            << u"HostName"_s << u"bar"_s
            << QStringList { u"HostName=bar"_s, u"User=first"_s, u"User=second"_s, u"Port=22"_s, blank } << u"bar"_s;
        QTest::newRow("cleared removes the option")
            << u"Port"_s << QString() << QStringList { u"hostname=foo"_s, u"User=first"_s, u"User=second"_s, blank }
            << QString();
        QTest::newRow("only the first of two is changed")
            << u"User"_s << u"root"_s
            << QStringList { u"hostname=foo"_s, u"User=root"_s, u"User=second"_s, u"Port=22"_s, blank } << u"root"_s;
        QTest::newRow("a new option goes to the end of the items")
            << u"IdentityFile"_s << u"~/.ssh/id_db"_s
            << QStringList { u"hostname=foo"_s, u"User=first"_s, u"User=second"_s, u"Port=22"_s, blank,
                   u"IdentityFile=~/.ssh/id_db"_s }
            << u"~/.ssh/id_db"_s;
    }
    void commonOption()
    {
        QFETCH(QString, key);
        QFETCH(QString, typed);
        QFETCH(QStringList, lines);
        QFETCH(QString, shownAfterwards);
        const QList<SSHOption> extrasBefore = HostDetailRules::extraOptions(m_fixture->selected());
        const SSHHost original = m_fixture->selected();
        auto* field = child<QLineEdit>(*m_view, u"optionField_"_s + key);
        retype(field, typed);
        const SSHHost edited = m_fixture->selected();
        QCOMPARE(optionLines(edited), lines);
        // An option that stays keeps its identity: it was changed in place, not replaced.
        for (qsizetype i = 0; i < std::min(original.items.size(), edited.items.size()); ++i) {
            const SSHOption* before = original.items.at(i).asOption();
            const SSHOption* after = edited.items.at(i).asOption();
            if (before && after && before->key.compare(after->key, Qt::CaseInsensitive) == 0)
                QCOMPARE(after->id(), before->id());
        }
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(field->text(), shownAfterwards);
        QCOMPARE(HostDetailRules::extraOptions(edited), extrasBefore);
    }

    void emptyFieldTypedAndClearedAgain()
    {
        auto* field = child<QLineEdit>(*m_view, u"optionField_IdentityFile"_s);
        const SSHHost original = m_fixture->selected();
        retype(field, u"k"_s);
        QTest::keyClick(field, Qt::Key_Backspace);
        QCOMPARE(m_fixture->selected().items, original.items);
        QCOMPARE(field->text(), QString());
    }

    // --- Extra options and the entry row ------------------------------------------------------------

    void extraOptionsListed()
    {
        m_fixture->select(0);
        const QList<QLabel*> keys = m_view->findChildren<QLabel*>(u"extraOptionKey"_s);
        QCOMPARE(keys.size(), 1);
        QCOMPARE(keys.at(0)->text(), u"ForwardAgent"_s);
        QCOMPARE(m_view->findChild<QLabel*>(u"extraOptionValue"_s)->text(), u"yes"_s);
        QVERIFY(!m_view->findChild<QLabel*>(u"noExtraOptionsLabel"_s));

        m_fixture->select(2);
        auto* none = child<QLabel>(*m_view, u"noExtraOptionsLabel"_s);
        QCOMPARE(none->text(), u"Nog geen extra opties."_s);
        for (const QString& key : HostDetailRules::commonOptionKeys())
            QCOMPARE(child<QLineEdit>(*m_view, u"optionField_"_s + key)->text(), QString());
    }

    void addUpdateEnabling_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("enabled");
        QTest::newRow("empty") << QString() << false;
        QTest::newRow("blanks only") << u"   "_s << false;
        QTest::newRow("a key") << u"ForwardAgent"_s << true;
        QTest::newRow("a key with blanks") << u" Compression "_s << true;
    }
    void addUpdateEnabling()
    {
        QFETCH(QString, key);
        QFETCH(bool, enabled);
        auto* button = child<QPushButton>(*m_view, u"addUpdateOptionButton"_s);
        QCOMPARE(button->text(), u"Add / Update"_s);
        QVERIFY(!button->isEnabled());
        retype(child<QLineEdit>(*m_view, u"newOptionKeyField"_s), key);
        QCOMPARE(button->isEnabled(), enabled);
    }

    void addUpdateAddsUpdatesAndRemoves()
    {
        auto* key = child<QLineEdit>(*m_view, u"newOptionKeyField"_s);
        auto* value = child<QLineEdit>(*m_view, u"newOptionValueField"_s);
        auto* button = child<QPushButton>(*m_view, u"addUpdateOptionButton"_s);
        retype(key, u" ForwardAgent "_s);
        retype(value, u"yes"_s);
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(optionLines(m_fixture->selected()).last(), u"ForwardAgent=yes"_s);
        QCOMPARE(key->text(), QString());
        QCOMPARE(value->text(), QString());
        QVERIFY(!button->isEnabled());
        QCOMPARE(m_view->findChild<QLabel*>(u"extraOptionKey"_s)->text(), u"ForwardAgent"_s);

        retype(key, u"forwardagent"_s);
        QTest::mouseClick(button, Qt::LeftButton);
        QVERIFY(!optionLines(m_fixture->selected()).join(u'\n').contains(u"orwardagent"_s, Qt::CaseInsensitive));
        QCOMPARE(child<QLabel>(*m_view, u"noExtraOptionsLabel"_s)->text(), u"Nog geen extra opties."_s);
    }

    void entryRowCommonKeyChangesItsField()
    {
        retype(child<QLineEdit>(*m_view, u"newOptionKeyField"_s), u"PORT"_s);
        retype(child<QLineEdit>(*m_view, u"newOptionValueField"_s), u"2200"_s);
        QTest::keyClick(child<QLineEdit>(*m_view, u"newOptionValueField"_s), Qt::Key_Return);
        QCOMPARE(optionLines(m_fixture->selected()).at(3), u"PORT=2200"_s);
        QCOMPARE(child<QLineEdit>(*m_view, u"optionField_Port"_s)->text(), u"2200"_s);
    }

    void blankValueForMissingOptionChangesNothing()
    {
        QSignalSpy hostChanges(m_fixture->viewModel, &SSHConfigViewModel::hostChanged);
        retype(child<QLineEdit>(*m_view, u"newOptionKeyField"_s), u"Compression"_s);
        QTest::mouseClick(child<QPushButton>(*m_view, u"addUpdateOptionButton"_s), Qt::LeftButton);
        QCOMPARE(hostChanges.count(), 0);
        QVERIFY(!m_fixture->viewModel->rawEditorDirty());
        QCOMPARE(child<QLineEdit>(*m_view, u"newOptionKeyField"_s)->text(), QString());
    }

    // --- Following the view model ---------------------------------------------------------------------

    void followsChangesMadeElsewhere()
    {
        auto* hostName = child<QLineEdit>(*m_view, u"optionField_HostName"_s);
        auto* groups = child<QLineEdit>(*m_view, u"hostGroupsField"_s);
        groups->setFocus();
        QTest::keyClicks(groups, u"werk, "_s);
        SSHHost host = m_fixture->selected();
        HostDetailRules::setOptionValue(host, u"db.example.com"_s, u"HostName"_s);
        m_fixture->viewModel->updateHost(host, *m_fixture->viewModel->selectedHostIndex());
        QCOMPARE(hostName->text(), u"db.example.com"_s);
        QCOMPARE(groups->text(), u"werk, "_s);

        host.groups = { u"prod"_s };
        m_fixture->viewModel->updateHost(host, *m_fixture->viewModel->selectedHostIndex());
        QCOMPARE(groups->text(), u"prod"_s);
    }

    void withoutSelectionTheFormIsEmptyAndDisabled()
    {
        m_fixture->viewModel->setSelectedHostID(std::nullopt);
        auto* patterns = child<QLineEdit>(*m_view, u"hostPatternsField"_s);
        QCOMPARE(patterns->text(), QString());
        QVERIFY(!patterns->isEnabled());
        QVERIFY(!child<QCheckBox>(*m_view, u"hostEnabledToggle"_s)->isEnabled());
        m_fixture->select(0);
        QVERIFY(patterns->isEnabled());
        QCOMPARE(patterns->text(), u"web app"_s);
    }
};

QTEST_MAIN(TestHostDetailView)
#include "test_host_detail_view.moc"
