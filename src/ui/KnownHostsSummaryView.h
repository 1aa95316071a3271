#pragma once

#include <QWidget>

class QLabel;
class SSHConfigViewModel;

/// The sidebar of the Known Hosts tab: a heading, the number of entries, a hint that the work happens
/// in the tab, and the number of parse errors when there are any.
///
/// Child object names: "knownHostsEntriesLabel", "knownHostsHint", "knownHostsParseErrorsLabel".
class KnownHostsSummaryView : public QWidget
{
    Q_OBJECT

public:
    explicit KnownHostsSummaryView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

private:
    void showEntryCount();
    void showParseErrors();

    SSHConfigViewModel& m_viewModel;
    QLabel* m_entries;
    QLabel* m_parseErrors;
};
