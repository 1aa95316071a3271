#pragma once

#include <QWidget>

class QListView;
class QStringListModel;
class SSHConfigViewModel;

/// The bottom of the known_hosts tab: a divider, the heading "Known Hosts parsefouten" and one orange
/// line "Regel <line>: <message>" per parse error, in order. Hidden while there are no parse errors.
///
/// The lines sit in a list of uniform rows (object name "knownHostsParseErrorList") that grows up to a
/// few rows and then scrolls, so a file full of bad lines neither slows the tab down nor pushes the
/// entry list off the window.
class KnownHostsParseErrorsView : public QWidget
{
    Q_OBJECT

public:
    /// viewModel must outlive the view.
    explicit KnownHostsParseErrorsView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

    /// The lines shown, e.g. "Regel 7: Ongeldige known_hosts regel.".
    QStringList lines() const;

private:
    void refresh();
    void fitHeight();

    SSHConfigViewModel& m_viewModel;
    QStringListModel* m_lines;
    QListView* m_list;
};
