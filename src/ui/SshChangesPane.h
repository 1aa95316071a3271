#pragma once

#include <QDockWidget>

class QLabel;
class QProgressBar;
class QTreeWidget;
class QTreeWidgetItem;
class SSHConfigViewModel;
struct SshHostChange;

/// The "Wat verandert er voor ssh?" pane beside the editors: per host name, every setting ssh answers
/// differently for the file on disk and for what a save would write, old and new side by side. Under a
/// config host, "Regel N" rows name the lines of the raw text that set such a keyword; activating one
/// shows that line in the raw editor. While OpenSSH is still judging, a progress bar shows how far it
/// is; when it cannot judge (no ssh), the pane says why.
///
/// Shown while the view model's sshChangesShown is true; closing it tells the view model.
/// Object names: "sshChangesPane", "sshChangesStatus", "sshCheckProgressBar", "sshChangesTree".
class SshChangesPane : public QDockWidget
{
    Q_OBJECT

public:
    explicit SshChangesPane(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void nameControls();
    void followShown();
    void showStatus();
    void showChanges();
    void addHosts(const QString& section, const QList<SshHostChange>& hosts, bool withLines);
    void activate(QTreeWidgetItem* item);

    SSHConfigViewModel& m_viewModel;
    QLabel* m_status;
    QProgressBar* m_progress;
    QTreeWidget* m_tree;
};
