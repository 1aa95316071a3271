#pragma once

#include <QWidget>

class QComboBox;
class QFormLayout;
class QGroupBox;
class QLabel;
class SSHConfigViewModel;

/// The content of the preferences window: the terminal that Connect uses, where the two files are, how
/// many known_hosts entries were read and where the last backup went. Keeps nothing of its own; the
/// terminal choice lives in the view model and the picker, the "Geselecteerd" line and the backup
/// section follow it.
///
/// It asks for 520 by 360 without margins of its own (the window adds the default margins) and scrolls
/// inside if a large font needs more. Object names: "terminalSection", "noTerminalLabel", "terminalPicker",
/// "selectedTerminalLabel", "reloadTerminalsButton", "terminalExplanationLabel", "filesSection", "configPathLabel",
/// "knownHostsPathLabel", "knownHostsEntryCountLabel", "lastBackupSection", "lastBackupLabel".
class PreferencesView : public QWidget
{
    Q_OBJECT

public:
    /// viewModel must outlive the view.
    explicit PreferencesView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

    QSize sizeHint() const override;

private:
    QWidget* buildSections();
    QGroupBox* buildTerminalSection(QWidget* parent);
    QGroupBox* buildFilesSection(QWidget* parent);
    QGroupBox* buildLastBackupSection(QWidget* parent);
    void connectToViewModel();
    void showTerminalApps();
    void showSelectedTerminal();
    void showEntryCount();
    void showLastBackup();
    void terminalChosen(int index);

    SSHConfigViewModel& m_viewModel;
    QFormLayout* m_terminalForm = nullptr;
    QLabel* m_noTerminal = nullptr;
    QComboBox* m_terminalPicker = nullptr;
    QLabel* m_selectedTerminal = nullptr;
    QLabel* m_entryCount = nullptr;
    QGroupBox* m_lastBackupSection = nullptr;
    QLabel* m_lastBackup = nullptr;
};
