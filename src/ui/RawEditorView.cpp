#include "RawEditorView.h"

#include "AccessibleText.h"
#include "RoundedOutlineFrame.h"
#include "SSHConfigViewModel.h"
#include "TextStyle.h"

#include <QAction>
#include <QFontDatabase>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QStringListModel>
#include <QTextBlock>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// The tallest the "Validatie" list grows before it scrolls.
constexpr int maximumErrorListHeight = 120;

} // namespace

RawEditorView::RawEditorView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
{
    setObjectName(u"rawEditorView"_s);
    auto* stack = new QVBoxLayout(this);
    stack->setSpacing(10);
    stack->addWidget(makeButtonRow());
    stack->addWidget(makeSyntaxHelp());
    stack->addWidget(makeEditor(), 1);
    stack->addWidget(makeValidationBox());

    connect(&m_viewModel, &SSHConfigViewModel::rawTextChanged, this, &RawEditorView::followRawText);
    connect(&m_viewModel, &SSHConfigViewModel::parseErrorsChanged, this, &RawEditorView::followParseErrors);
    connect(&m_viewModel, &SSHConfigViewModel::rawTextLineRequested, this, &RawEditorView::showLine);
    followRawText();
    followParseErrors();
}

QWidget* RawEditorView::makeButtonRow()
{
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);

    auto* parseButton = new QPushButton(u"Parse"_s, row);
    parseButton->setObjectName(u"parseButton"_s);
    setAccessibleText(*parseButton, u"Parse"_s, u"Controleert de tekst en toont de fouten onder Validatie."_s);
    connect(parseButton, &QPushButton::clicked, &m_viewModel, &SSHConfigViewModel::parseRawText);

    m_saveRawAction = new QAction(u"Save Raw"_s, this);
    m_saveRawAction->setObjectName(u"saveRawAction"_s);
    m_saveRawAction->setShortcut(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_S));
    // Window-wide, but only while this tab is showing: Qt ignores shortcuts of hidden widgets.
    m_saveRawAction->setShortcutContext(Qt::WindowShortcut);
    addAction(m_saveRawAction);
    connect(m_saveRawAction, &QAction::triggered, &m_viewModel, &SSHConfigViewModel::saveRawText);

    auto* saveButton = new QPushButton(u"Save Raw"_s, row);
    saveButton->setObjectName(u"saveRawButton"_s);
    saveButton->setToolTip(u"Save Raw ("_s + m_saveRawAction->shortcut().toString(QKeySequence::NativeText) + u")"_s);
    connect(saveButton, &QPushButton::clicked, m_saveRawAction, &QAction::trigger);

    layout->addWidget(parseButton);
    layout->addWidget(saveButton);
    layout->addStretch(1);
    return row;
}

QWidget* RawEditorView::makeSyntaxHelp()
{
    auto* box = new QGroupBox(u"SSH syntax hulp"_s, this);
    box->setObjectName(u"syntaxHelpBox"_s);
    auto* layout = new QVBoxLayout(box);
    layout->setSpacing(4);
    const QStringList lines {
        u"• Start hostblokken met: Host <alias of patroon>"_s,
        u"• Veelgebruikte opties: HostName, User, Port, IdentityFile"_s,
        u"• Forwarding opties: LocalForward, RemoteForward, DynamicForward"_s,
        u"• Groepen label je met: # Group: werk, klanten"_s,
        u"• Disabled host: # Host old-server"_s,
    };
    for (const QString& line : lines) {
        auto* label = new QLabel(line, box);
        label->setTextFormat(Qt::PlainText);
        label->setFont(textStyleFont(TextStyle::caption, font()));
        label->setForegroundRole(QPalette::PlaceholderText);
        layout->addWidget(label);
    }
    return box;
}

QWidget* RawEditorView::makeEditor()
{
    m_editor = new QPlainTextEdit(this);
    m_editor->setObjectName(u"rawTextEditor"_s);
    setAccessibleText(*m_editor, u"SSH config"_s, u"De volledige tekst van de SSH config."_s);
    QFont mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    mono.setPointSizeF(font().pointSizeF());
    m_editor->setFont(mono);
    m_editor->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_editor->setTabChangesFocus(false);
    m_editor->setFrameShape(QFrame::NoFrame);
    connect(m_editor, &QPlainTextEdit::textChanged, this, &RawEditorView::takeUserEdit);
    auto* frame = new RoundedOutlineFrame(m_editor, this);
    frame->setObjectName(u"rawTextEditorFrame"_s);
    return frame;
}

QGroupBox* RawEditorView::makeValidationBox()
{
    m_validationBox = new QGroupBox(u"Validatie"_s, this);
    m_validationBox->setObjectName(u"validationBox"_s);
    // Never taller than its list: the editor takes whatever height is left.
    m_validationBox->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    auto* layout = new QVBoxLayout(m_validationBox);
    m_errorLines = new QStringListModel(this);
    m_errorList = new QListView(m_validationBox);
    m_errorList->setObjectName(u"validationList"_s);
    m_errorList->setModel(m_errorLines);
    m_errorList->setUniformItemSizes(true);
    m_errorList->setSpacing(2);
    m_errorList->setFrameShape(QFrame::NoFrame);
    m_errorList->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_errorList->setSelectionMode(QAbstractItemView::NoSelection);
    m_errorList->setFocusPolicy(Qt::NoFocus);
    m_errorList->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_errorList->setFont(textStyleFont(TextStyle::caption, font()));
    QPalette red = m_errorList->palette();
    red.setColor(QPalette::Text, errorRed());
    red.setColor(QPalette::Base, Qt::transparent);
    m_errorList->setPalette(red);
    layout->addWidget(m_errorList);
    return m_validationBox;
}

void RawEditorView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (m_stale)
        followRawText();
}

void RawEditorView::followRawText()
{
    const QString& text = m_viewModel.rawText();
    if (text == m_editorText) {
        m_stale = false;
        return;
    }
    if (!isVisible()) {
        m_stale = true;
        return;
    }
    // Another window or a reload replaced the text: keep the caret and the scroll position near where
    // they were rather than jumping to the top.
    const int caret = m_editor->textCursor().position();
    const int scroll = m_editor->verticalScrollBar()->value();
    m_applyingModelText = true;
    m_editor->setPlainText(text);
    m_applyingModelText = false;
    m_editorText = text;
    m_stale = false;
    QTextCursor cursor = m_editor->textCursor();
    cursor.setPosition(std::min(caret, m_editor->document()->characterCount() - 1));
    m_editor->setTextCursor(cursor);
    m_editor->verticalScrollBar()->setValue(scroll);
}

// Only the user's own edits come here: text the view model puts in is applied under
// m_applyingModelText, so it is never reported back as a change.
void RawEditorView::takeUserEdit()
{
    if (m_applyingModelText)
        return;
    // The document's raw text, not toPlainText(): that one turns no-break spaces and line separators
    // into plain blanks and line breaks, which would silently change the file on the next save.
    QString text = m_editor->document()->toRawText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    if (text == m_editorText)
        return;
    m_editorText = text;
    m_viewModel.setRawText(m_editorText);
    m_viewModel.markRawTextEdited();
}

void RawEditorView::followParseErrors()
{
    QStringList lines;
    for (const SSHParseError& error : m_viewModel.parseErrors())
        lines.append(u"Regel "_s + QString::number(error.line()) + u": "_s + error.message());
    if (lines != m_errorLines->stringList())
        m_errorLines->setStringList(lines);
    m_validationBox->setVisible(!lines.isEmpty());
    if (lines.isEmpty())
        return;
    const int rowHeight = m_errorList->sizeHintForRow(0) + 2 * m_errorList->spacing();
    const int frames = 2 * m_errorList->frameWidth();
    const qsizetype wanted = rowHeight * lines.size() + frames;
    m_errorList->setFixedHeight(static_cast<int>(std::min<qsizetype>(wanted, maximumErrorListHeight)));
}

void RawEditorView::showLine(qsizetype line)
{
    // The tab may have been switched to just now: bring the text up to date before looking for the line.
    if (m_stale || m_viewModel.rawText() != m_editorText) {
        m_stale = true;
        followRawText();
    }
    const QTextBlock block = m_editor->document()->findBlockByNumber(static_cast<int>(line - 1));
    if (!block.isValid())
        return;
    QTextCursor cursor(block);
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    m_editor->setTextCursor(cursor);
    m_editor->centerCursor();
    m_editor->setFocus(Qt::OtherFocusReason);
}
