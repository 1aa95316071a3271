#pragma once

#include <QWidget>

class QLabel;
class FlowLayout;
class SSHConfigViewModel;

/// In the known_hosts detail pane: the config hosts through which ssh reaches the selected entry, each a
/// link that selects the host in the structured editor. An entry that no config host reaches says so
/// without calling it wrong: most are reached by a plain "ssh name".
///
/// Object names: "knownHostConfigHostsView", "knownHostConfigHostsNone", and "knownHostConfigHost" with the
/// host's position in the list for each link.
class KnownHostConfigHostsView : public QWidget
{
    Q_OBJECT

public:
    /// viewModel must outlive the view.
    explicit KnownHostConfigHostsView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

private:
    void refresh();
    void clearLinks();

    SSHConfigViewModel& m_viewModel;
    QLabel* m_none = nullptr;
    QWidget* m_linksArea = nullptr;
    FlowLayout* m_links = nullptr;
};
