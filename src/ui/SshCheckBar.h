#pragma once

#include <QFrame>

class QLabel;
class SSHConfigViewModel;

/// The bar above the editors that says a save would change what ssh does although nothing was changed
/// since the load, in the manner of the file-change bars: the view model's sentence, "Wat verandert er
/// voor ssh?" to open the pane with the details, and "Sluiten". Hidden while there is nothing to say.
/// Object names: "sshCheckBar", "sshCheckBarText", "showSshChangesButton", "closeSshCheckBarButton".
class SshCheckBar : public QFrame
{
    Q_OBJECT

public:
    explicit SshCheckBar(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

private:
    void showWarning();

    SSHConfigViewModel& m_viewModel;
    QLabel* m_text;
};
