#pragma once

#include <QWidget>

class QLabel;
class QPushButton;
class SSHConfigViewModel;

/// The selected known_hosts entry's key fingerprint, as ssh-keygen -l prints it, with a button that copies
/// it and one that also shows the MD5 form (which older servers and documentation still quote). A key
/// that is not valid base64 gets a sentence instead, since ssh skips such a line.
///
/// Object names: "knownHostFingerprintView", "knownHostSha256Label", "knownHostMd5Label",
/// "knownHostCopyFingerprintButton", "knownHostShowMd5Button", "knownHostInvalidKeyLabel".
class KnownHostFingerprintView : public QWidget
{
    Q_OBJECT

public:
    /// viewModel must outlive the view.
    explicit KnownHostFingerprintView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

private:
    void refresh();
    void copySha256();

    SSHConfigViewModel& m_viewModel;
    QLabel* m_sha256 = nullptr;
    QLabel* m_md5 = nullptr;
    QLabel* m_invalidKey = nullptr;
    QPushButton* m_copy = nullptr;
    QPushButton* m_showMd5 = nullptr;
};
