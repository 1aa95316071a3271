#pragma once

#include <QWidget>

class QLabel;
class QPushButton;
class SSHConfigViewModel;

/// In the host editor: how many known_hosts entries ssh would use for the selected host, with a link
/// that shows them in the known_hosts tab. Hidden for a host that names no concrete host.
///
/// Object names: "hostKnownHostsLinkView", "hostKnownHostsCount", "hostKnownHostsLinkButton".
class HostKnownHostsLinkView : public QWidget
{
    Q_OBJECT

public:
    /// viewModel must outlive the view.
    explicit HostKnownHostsLinkView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

private:
    void refresh();

    SSHConfigViewModel& m_viewModel;
    QLabel* m_count = nullptr;
    QPushButton* m_link = nullptr;
};
