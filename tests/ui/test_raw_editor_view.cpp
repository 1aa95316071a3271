// Wiring of the raw editor: the text follows the view model both ways, only the user's own edits are
// reported, Parse lists the errors, and Save Raw (button or Ctrl+Alt+S) writes the file safely.

#include "RawEditorView.h"
#include "SSHConfigViewModel.h"
#include "WidgetHelpers.h"
#include "WindowFixture.h"

#include <QAbstractItemModel>
#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGroupBox>
#include <QLabel>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

const QString sampleConfig = u"# Group: werk\n"
                             u"Host web\n"
                             u"    HostName web.example.com\n"
                             u"    User deploy\n"_s;

// A view model over real files in a temporary directory.
struct Fixture
{
    Fixture()
        : viewModel(&files.make(sampleConfig))
    { }

    QString configPath() const { return files.configPath(); }
    QDir configDirectory() const { return QFileInfo(configPath()).dir(); }

    WindowFixture files;
    SSHConfigViewModel* viewModel;
};

void typeAtEnd(QPlainTextEdit* editor, const QString& text)
{
    editor->setFocus();
    editor->moveCursor(QTextCursor::End);
    // Key events exist for ASCII characters only; a line break is the Return key.
    const QStringList lines = text.split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (i > 0)
            QTest::keyClick(editor, Qt::Key_Return);
        QTest::keyClicks(editor, lines.at(i));
    }
}

// Whether the editor asks for the desktop's monospaced font in the body text size. The font's own
// fixed-pitch flag is not asked: fontconfig reports some monospaced fonts (Noto Sans Mono) as
// proportional, so the answer would depend on which fonts the machine has.
bool usesTheFixedFont(const QPlainTextEdit& editor, const QWidget& view)
{
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    const QFont& font = editor.font();
    return font.family() == fixed.family() && font.styleHint() == fixed.styleHint()
        && qFuzzyCompare(font.pointSizeF(), view.font().pointSizeF());
}

} // namespace

class TestRawEditorView : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Fixture> m_fixture;

    std::unique_ptr<RawEditorView> shownView()
    {
        auto view = std::make_unique<RawEditorView>(*m_fixture->viewModel);
        view->resize(700, 600);
        view->show();
        view->activateWindow();
        if (!QTest::qWaitForWindowActive(view.get()))
            qWarning("the raw editor's window did not become active");
        return view;
    }

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<Fixture>(); }
    void cleanup() { m_fixture.reset(); }

    void layoutTexts()
    {
        auto view = shownView();
        QCOMPARE(child<QPushButton>(*view, u"parseButton"_s)->text(), u"Parse"_s);
        QCOMPARE(child<QPushButton>(*view, u"saveRawButton"_s)->text(), u"Save Raw"_s);
        QCOMPARE(child<QGroupBox>(*view, u"syntaxHelpBox"_s)->title(), u"SSH syntax hulp"_s);
        QStringList help;
        for (QLabel* label : child<QGroupBox>(*view, u"syntaxHelpBox"_s)->findChildren<QLabel*>())
            help.append(label->text());
        QCOMPARE(help,
            (QStringList { u"• Start hostblokken met: Host <alias of patroon>"_s,
                u"• Veelgebruikte opties: HostName, User, Port, IdentityFile"_s,
                u"• Forwarding opties: LocalForward, RemoteForward, DynamicForward"_s,
                u"• Groepen label je met: # Group: werk, klanten"_s, u"• Disabled host: # Host old-server"_s }));
        QVERIFY(usesTheFixedFont(*child<QPlainTextEdit>(*view, u"rawTextEditor"_s), *view));
        QVERIFY(!child<QGroupBox>(*view, u"validationBox"_s)->isVisible());
    }

    // --- Following and reporting -----------------------------------------------------------------------

    void firstDisplayReportsNothing()
    {
        QSignalSpy rawDirty(m_fixture->viewModel, &SSHConfigViewModel::rawTextDirtyChanged);
        QSignalSpy editorDirty(m_fixture->viewModel, &SSHConfigViewModel::rawEditorDirtyChanged);
        auto view = shownView();
        QCOMPARE(child<QPlainTextEdit>(*view, u"rawTextEditor"_s)->toPlainText(), sampleConfig);
        QCOMPARE(rawDirty.count(), 0);
        QCOMPARE(editorDirty.count(), 0);
    }

    void eachUserEditIsReportedOnce()
    {
        auto view = shownView();
        auto* editor = child<QPlainTextEdit>(*view, u"rawTextEditor"_s);
        QSignalSpy textChanges(m_fixture->viewModel, &SSHConfigViewModel::rawTextChanged);
        QSignalSpy rawDirty(m_fixture->viewModel, &SSHConfigViewModel::rawTextDirtyChanged);
        QSignalSpy editorDirty(m_fixture->viewModel, &SSHConfigViewModel::rawEditorDirtyChanged);
        typeAtEnd(editor, u"    Port 22"_s);
        QCOMPARE(m_fixture->viewModel->rawText(), sampleConfig + u"    Port 22"_s);
        QCOMPARE(textChanges.count(), 11);
        QCOMPARE(rawDirty.count(), 1);
        QCOMPARE(editorDirty.count(), 1);
        QVERIFY(m_fixture->viewModel->rawTextDirty());
        QVERIFY(m_fixture->viewModel->rawEditorDirty());
        QTest::keyClick(editor, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(m_fixture->viewModel->rawText() != sampleConfig + u"    Port 22"_s);
    }

    void typingKeepsSpecialSpacesElsewhereInTheText()
    {
        const QString special = u"Host web\n    HostName a\u00a0b\n    User c\u2028d\n"_s;
        m_fixture->viewModel->setRawText(special);
        auto view = shownView();
        typeAtEnd(child<QPlainTextEdit>(*view, u"rawTextEditor"_s), u"#"_s);
        QCOMPARE(m_fixture->viewModel->rawText(), special + u"#"_s);
    }

    void programmaticUpdatesAreShownNotReported()
    {
        auto view = shownView();
        auto* editor = child<QPlainTextEdit>(*view, u"rawTextEditor"_s);
        QSignalSpy rawDirty(m_fixture->viewModel, &SSHConfigViewModel::rawTextDirtyChanged);
        const QString onDisk = u"Host other\n    Port 2200\n"_s;
        QVERIFY(WindowFixture::writeText(m_fixture->configPath(), onDisk));
        m_fixture->viewModel->load();
        QCOMPARE(editor->toPlainText(), onDisk);
        m_fixture->viewModel->setRawText(u"Host third\n"_s);
        QCOMPARE(editor->toPlainText(), u"Host third\n"_s);
        QCOMPARE(rawDirty.count(), 0);
        QVERIFY(!m_fixture->viewModel->rawEditorDirty());
    }

    void twoViewsShowEachOthersTyping()
    {
        auto first = shownView();
        auto second = shownView();
        auto* firstEditor = child<QPlainTextEdit>(*first, u"rawTextEditor"_s);
        auto* secondEditor = child<QPlainTextEdit>(*second, u"rawTextEditor"_s);
        QSignalSpy rawDirty(m_fixture->viewModel, &SSHConfigViewModel::rawTextDirtyChanged);
        typeAtEnd(secondEditor, u"#x"_s);
        QCOMPARE(firstEditor->toPlainText(), sampleConfig + u"#x"_s);
        QCOMPARE(rawDirty.count(), 1);
        QCOMPARE(m_fixture->viewModel->rawText(), sampleConfig + u"#x"_s);
    }

    void hiddenViewCatchesUpWhenShown()
    {
        auto view = shownView();
        view->hide();
        m_fixture->viewModel->setRawText(u"Host later\n"_s);
        view->show();
        QCOMPARE(child<QPlainTextEdit>(*view, u"rawTextEditor"_s)->toPlainText(), u"Host later\n"_s);
        QVERIFY(!m_fixture->viewModel->rawTextDirty());
    }

    // --- Parse and the "Validatie" box -------------------------------------------------------------------

    void parseListsErrorsInRedAndCleanParseHidesThem()
    {
        auto view = shownView();
        auto* editor = child<QPlainTextEdit>(*view, u"rawTextEditor"_s);
        typeAtEnd(editor, u"    Port=22\n"_s);
        QTest::mouseClick(child<QPushButton>(*view, u"parseButton"_s), Qt::LeftButton);
        auto* box = child<QGroupBox>(*view, u"validationBox"_s);
        QTRY_VERIFY(box->isVisible());
        QCOMPARE(box->title(), u"Validatie"_s);
        auto* list = child<QListView>(*view, u"validationList"_s);
        QCOMPARE(rowTexts(*list->model()), QStringList { u"Regel 5: Ongeldige host-regel: Port=22"_s });
        const QColor text = list->palette().color(QPalette::Text);
        QVERIFY2(text.red() > 180 && text.green() < 90 && text.blue() < 90, qPrintable(text.name()));
        QCOMPARE(m_fixture->viewModel->statusMessage(), u"Raw editor: 1 parsefout(en)."_s);

        QTest::keyClick(editor, Qt::Key_Backspace);
        for (int i = 0; i < 11; ++i)
            QTest::keyClick(editor, Qt::Key_Backspace);
        QCOMPARE(m_fixture->viewModel->rawText(), sampleConfig);
        QTest::mouseClick(child<QPushButton>(*view, u"parseButton"_s), Qt::LeftButton);
        QTRY_VERIFY(!box->isVisible());
    }

    void manyErrorsScrollInsideABoundedBox()
    {
        auto view = shownView();
        QString text = u"Host web\n"_s;
        for (int i = 0; i < 200; ++i)
            text += u"    Bad=line"_s + QString::number(i) + u'\n';
        m_fixture->viewModel->setRawText(text);
        m_fixture->viewModel->parseRawText();
        auto* list = child<QListView>(*view, u"validationList"_s);
        QCOMPARE(list->model()->rowCount(), 200);
        QCOMPARE(list->model()->index(199, 0).data().toString(), u"Regel 201: Ongeldige host-regel: Bad=line199"_s);
        QVERIFY(list->height() <= 120);
        QVERIFY(list->verticalScrollBar()->maximum() > 0);
    }

    // --- Save Raw --------------------------------------------------------------------------------------

    void saveRaw_data()
    {
        QTest::addColumn<bool>("byShortcut");
        QTest::newRow("button") << false;
        QTest::newRow("Ctrl+Alt+S") << true;
    }
    void saveRaw()
    {
        QFETCH(bool, byShortcut);
        auto view = shownView();
        auto* editor = child<QPlainTextEdit>(*view, u"rawTextEditor"_s);
        typeAtEnd(editor, u"    Port 2222\n"_s);
        if (byShortcut)
            QTest::keyClick(editor, Qt::Key_S, Qt::ControlModifier | Qt::AltModifier);
        else
            QTest::mouseClick(child<QPushButton>(*view, u"saveRawButton"_s), Qt::LeftButton);
        const QString expected = sampleConfig + u"    Port 2222\n"_s;
        QTRY_COMPARE(WindowFixture::readText(m_fixture->configPath()), expected);
        const QStringList backups = m_fixture->configDirectory().entryList({ u"config.backup-*"_s }, QDir::Files);
        QCOMPARE(backups.size(), 1);
        QCOMPARE(WindowFixture::readText(m_fixture->configDirectory().filePath(backups.first())), sampleConfig);
        QCOMPARE(m_fixture->viewModel->statusMessage(),
            u"Raw config opgeslagen naar "_s + m_fixture->configPath() + u" met backup."_s);
        QVERIFY(!m_fixture->viewModel->rawTextDirty());
        QCOMPARE(editor->toPlainText(), expected);
    }

    void saveRawRefusedOnParseErrors()
    {
        auto view = shownView();
        typeAtEnd(child<QPlainTextEdit>(*view, u"rawTextEditor"_s), u"    Port=22\n"_s);
        QTest::mouseClick(child<QPushButton>(*view, u"saveRawButton"_s), Qt::LeftButton);
        QCOMPARE(WindowFixture::readText(m_fixture->configPath()), sampleConfig);
        QCOMPARE(m_fixture->viewModel->statusMessage(), u"Niet opgeslagen door parsefouten."_s);
        QTRY_VERIFY(child<QGroupBox>(*view, u"validationBox"_s)->isVisible());
    }
};

QTEST_MAIN(TestRawEditorView)
#include "test_raw_editor_view.moc"
