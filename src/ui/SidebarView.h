#pragma once

#include <QWidget>

class HostSidebarView;
class KnownHostsSummaryView;
class QLabel;
class QStackedWidget;
class SSHConfigViewModel;

/// The left column of the main window. It follows the active tab: the host sidebar, titled "Hosts", in
/// the structured and raw tabs, the known_hosts summary, titled "Known Hosts", in the Known Hosts tab.
///
/// Child object names: "sidebarTitle", "sidebarPages", and those of the two pages.
class SidebarView : public QWidget
{
    Q_OBJECT

public:
    explicit SidebarView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

    HostSidebarView& hostSidebar() const { return *m_hosts; }

private:
    void showActiveTab();

    SSHConfigViewModel& m_viewModel;
    QLabel* m_title;
    QStackedWidget* m_pages;
    HostSidebarView* m_hosts;
    KnownHostsSummaryView* m_knownHosts;
};
