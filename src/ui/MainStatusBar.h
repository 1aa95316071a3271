#pragma once

#include <QStatusBar>

class ElidedLabel;
class SSHConfigViewModel;

/// The status line across the bottom of the main window: the view model's status sentence, small and
/// muted, and at the right an orange "Unsaved changes" warning while the config or known_hosts has
/// unsaved changes (a raw text edit alone does not count; its config flag is set with it).
///
/// Child object names: "statusMessage", "unsavedChangesWarning".
class MainStatusBar : public QStatusBar
{
    Q_OBJECT

public:
    explicit MainStatusBar(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

    /// Whether the warning is meant to be shown (independent of whether the window is visible).
    bool showsUnsavedChangesWarning() const;

private:
    QWidget* makeWarning();
    void showStatusMessage();
    void showUnsavedChanges();

    SSHConfigViewModel& m_viewModel;
    ElidedLabel* m_message;
    QWidget* m_warning;
};
