#pragma once

#include <QWidget>

class SSHConfigViewModel;

/// The form of the Structured Editor tab: edits the view model's selected host block.
///
/// Follows the selection and every change of the selected host, wherever it comes from (another
/// window included). Each user edit is written back at once through host()/updateHost() and reported
/// as an unsaved change; the only state kept here is the text of the option entry row. Without a
/// selected host the form is empty and disabled.
class HostDetailView : public QWidget
{
    Q_OBJECT

public:
    explicit HostDetailView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

private:
    SSHConfigViewModel& m_viewModel;
};
