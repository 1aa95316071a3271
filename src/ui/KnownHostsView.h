#pragma once

#include <QWidget>

class SSHConfigViewModel;

/// The known_hosts tab: a searchable list of the file's entries beside a detail pane for the selected
/// one, and the file's parse errors underneath. Keeps no state of its own: everything shown comes from
/// the view model and every action is one of its known_hosts operations.
class KnownHostsView : public QWidget
{
    Q_OBJECT

public:
    /// viewModel must outlive the view.
    explicit KnownHostsView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

private:
    SSHConfigViewModel& m_viewModel;
};
