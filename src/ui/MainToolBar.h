#pragma once

#include <QToolBar>
#include <QUrl>

#include <optional>

class SSHConfigViewModel;

/// The main window's toolbar, in this order: "Reload"; the save button, whose text follows the tab
/// ("Save", "Save Raw", "Save Known Hosts") and which answers Ctrl+S (Command-S on macOS); a divider;
/// "Connect", enabled only while the tab's own selection exists (a known_hosts entry in the Known Hosts
/// tab, a host in the others); "Add Host" and "Delete Host" (enabled only with a selected host), both
/// hidden in the Known Hosts tab. With a donation page, "Buy me a coffee" at the far end opens it in
/// the web browser. Each button calls one view-model operation and nothing else.
///
/// Action object names: "reloadAction", "saveAction", "connectAction", "addHostAction",
/// "deleteHostAction", "donationAction".
class MainToolBar : public QToolBar
{
    Q_OBJECT

public:
    MainToolBar(SSHConfigViewModel& viewModel, std::optional<QUrl> donationURL, QWidget* parent = nullptr);

    QAction& reloadAction() const { return *m_reload; }
    QAction& saveAction() const { return *m_save; }
    QAction& connectAction() const { return *m_connect; }
    QAction& addHostAction() const { return *m_addHost; }
    QAction& deleteHostAction() const { return *m_deleteHost; }
    /// The donation link, or null without a donation page.
    QAction* donationAction() const { return m_donation; }

private:
    QAction* addViewModelAction(const QString& objectName, const QString& text, QStringView symbol);
    void addDonationLink(const QUrl& url);
    void connectSelected();
    void showActiveTab();
    void updateEnabling();

    SSHConfigViewModel& m_viewModel;
    QAction* m_reload;
    QAction* m_save;
    QAction* m_connect;
    QAction* m_addHost;
    QAction* m_deleteHost;
    QAction* m_donation = nullptr;
};
