#pragma once

#include <QWidget>

class SSHConfigViewModel;

/// The content of the preferences window: the terminal that Connect uses, where the two files are, how
/// many known_hosts entries were read and where the last backup went. Keeps nothing of its own; the
/// terminal choice lives in the view model.
class PreferencesView : public QWidget
{
    Q_OBJECT

public:
    /// viewModel must outlive the view.
    explicit PreferencesView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

private:
    SSHConfigViewModel& m_viewModel;
};
