#pragma once

#include <QFrame>

class QLabel;
class QPushButton;
class SSHConfigViewModel;

/// After ssh's "host key has changed" warning was pasted: the offending entry's fingerprint with the one
/// the server now sends right under it, with Remove for that entry and Sluiten to hide the comparison.
///
/// Object names: "hostKeyChangeView", "hostKeyChangeOldFingerprint", "hostKeyChangeNewFingerprint",
/// "hostKeyChangeRemoveButton", "hostKeyChangeCloseButton".
class HostKeyChangeView : public QFrame
{
    Q_OBJECT

public:
    /// viewModel must outlive the view.
    explicit HostKeyChangeView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

private:
    QLabel* captionLabel();
    QLabel* fingerprintLabel(const QString& objectName);
    void refresh();

    SSHConfigViewModel& m_viewModel;
    QLabel* m_oldCaption = nullptr;
    QLabel* m_old = nullptr;
    QLabel* m_newCaption = nullptr;
    QLabel* m_new = nullptr;
    QPushButton* m_remove = nullptr;
};
