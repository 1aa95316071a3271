#pragma once

#include <QDialog>

class SSHConfigViewModel;

/// The preferences window: PreferencesView on the one view model, 520 by 360 with the default margins
/// around it. Not modal; closing it only hides it.
class PreferencesWindow : public QDialog
{
    Q_OBJECT

public:
    explicit PreferencesWindow(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);
};
