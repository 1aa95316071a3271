#pragma once

#include <QWidget>

class SSHConfigViewModel;

/// The content of the Raw Editor tab: the whole config as editable monospaced text, Parse and
/// Save Raw, a syntax help box and the list of the last parse's errors.
///
/// The editor follows the view model's rawText and writes the user's typing back to it; each user
/// change is reported once (markRawTextEdited()), never a text the view model put there itself.
class RawEditorView : public QWidget
{
    Q_OBJECT

public:
    explicit RawEditorView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

private:
    SSHConfigViewModel& m_viewModel;
};
