#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;
class SSHConfigViewModel;

/// "Zoek host" above the known_hosts list: a host name, optionally with a port, whose entries ssh would
/// use (hashed names included) become the only ones listed, until "Toon alle entries".
///
/// Object names: "knownHostLookupBar", "knownHostLookupField", "knownHostLookupButton",
/// "knownHostLookupResult", "knownHostLookupClearButton".
class KnownHostLookupBar : public QWidget
{
    Q_OBJECT

public:
    /// viewModel must outlive the bar.
    explicit KnownHostLookupBar(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

private:
    void find();
    void showLookup();

    SSHConfigViewModel& m_viewModel;
    QLineEdit* m_field = nullptr;
    QLabel* m_result = nullptr;
    QPushButton* m_clear = nullptr;
};
