#pragma once

#include <QWidget>

class QVBoxLayout;
class SSHConfigViewModel;

/// The names of the selected known_hosts entry one per row, each with "Verwijder naam", which removes
/// only that name and keeps the line for the others. Shown only for an entry with two names or more.
///
/// Object names: "knownHostNamesView"; the rows' buttons "knownHostRemoveName0", "knownHostRemoveName1", ...
class KnownHostNamesView : public QWidget
{
    Q_OBJECT

public:
    /// viewModel must outlive the view.
    explicit KnownHostNamesView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

private:
    void refresh();
    void clearRows();
    void addRow(qsizetype index, const QString& host);

    SSHConfigViewModel& m_viewModel;
    QVBoxLayout* m_rows = nullptr;
};
