#pragma once

#include <QListView>

class HostFilterModel;
class HostListModel;
class SSHConfigViewModel;

/// The sidebar's host list: the view model's hosts as its search text and group filter leave them, one
/// HostRowDelegate row each, with a single selection bound both ways to the view model's selectedHostID.
///
/// Rows can be dragged to a new place only while the view model allows reordering (no search, no group
/// filter); Qt's internal move hands the drop to the models, which call moveHosts(). A selected host
/// that the filter hides stays selected in the view model; it is shown selected again when it comes back.
class HostListView : public QListView
{
    Q_OBJECT

public:
    explicit HostListView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);
    ~HostListView() override;

private:
    void followRowChanges();
    void showViewModelSelection();
    void takeUserSelection();

    SSHConfigViewModel& m_viewModel;
    HostListModel* m_hosts;
    HostFilterModel* m_filtered;
    bool m_showingViewModelSelection = false;
    int m_rowsChanging = 0;
};
