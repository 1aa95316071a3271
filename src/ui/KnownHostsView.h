#pragma once

#include <QWidget>

class KnownHostDetailView;
class KnownHostsFilterModel;
class KnownHostsModel;
class QItemSelection;
class QLabel;
class QLineEdit;
class UniformRowListView;
class SSHConfigViewModel;

/// The known_hosts tab: a searchable list of the file's entries beside a detail pane for the selected
/// one, and the file's parse errors underneath. Keeps no state of its own: the search text and the
/// selection live in the view model (so they survive tab switches and show the same in every window),
/// and every action is one of its known_hosts operations.
///
/// Object names: "knownHostsSearchField", "knownHostsCountLabel", "knownHostsList" and those of
/// KnownHostDetailView and KnownHostsParseErrorsView.
class KnownHostsView : public QWidget
{
    Q_OBJECT

public:
    /// viewModel must outlive the view.
    explicit KnownHostsView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

    /// Gives the search field the keyboard focus, with its text selected for typing over.
    void focusSearchField();
    ~KnownHostsView() override;

private:
    QWidget* buildHeader();
    UniformRowListView* buildList();
    void followRowChanges();
    void connectToViewModel();
    void showSearchText();
    void showEntryCount();
    void showSelection();
    void listSelectionChanged(const QItemSelection& selected, const QItemSelection& deselected);

    SSHConfigViewModel& m_viewModel;
    KnownHostsModel* m_model;
    KnownHostsFilterModel* m_filter;
    QLineEdit* m_searchField = nullptr;
    QLabel* m_count = nullptr;
    UniformRowListView* m_list = nullptr;
    KnownHostDetailView* m_detail = nullptr;
    /// Set while the list is being brought in line with the view model, so it is not written back.
    bool m_showingSelection = false;
    /// Above zero between a row change's "about to" signal and its end.
    int m_rowsChanging = 0;
};
