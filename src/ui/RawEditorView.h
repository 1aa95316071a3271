#pragma once

#include <QString>
#include <QWidget>

class QAction;
class QGroupBox;
class QListView;
class QPlainTextEdit;
class QPushButton;
class QStringListModel;
class SSHConfigViewModel;

/// The content of the Raw Editor tab: the whole config as editable monospaced text, Parse and
/// Save Raw (also Ctrl+Alt+S), a syntax help box and the "Validatie" list of the last parse's errors.
///
/// The editor follows the view model's rawText and writes the user's typing back to it; each user
/// change is reported once (markRawTextEdited()), never a text that the view model put there itself
/// and never the first display. While the view is hidden, a new rawText is put into the editor only
/// when the view is shown again, so a large config is not re-laid out behind another tab. A line the
/// view model asks for (rawTextLineRequested) is selected and scrolled into view.
class RawEditorView : public QWidget
{
    Q_OBJECT

public:
    explicit RawEditorView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeButtonRow();
    QWidget* makeSyntaxHelp();
    QWidget* makeEditor();
    QGroupBox* makeValidationBox();

    void followRawText();
    void takeUserEdit();
    void followParseErrors();
    void showLine(qsizetype line);

    SSHConfigViewModel& m_viewModel;
    QPlainTextEdit* m_editor = nullptr;
    QAction* m_saveRawAction = nullptr;
    QGroupBox* m_validationBox = nullptr;
    QListView* m_errorList = nullptr;
    QStringListModel* m_errorLines = nullptr;
    // The text the editor holds as far as the view model knows it; compared instead of the editor's
    // own document so that an unchanged rawText costs no walk over a large text.
    QString m_editorText;
    bool m_applyingModelText = false;
    bool m_stale = false;
};
