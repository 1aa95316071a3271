#pragma once

#include <QWidget>

class EmptyStateView;
class QComboBox;
class QLabel;
class QPushButton;
class QScrollArea;
class QStackedLayout;
class SSHConfigViewModel;
class SymbolLabel;

/// The right-hand pane of the known_hosts tab: the selected entry's hosts, key facts, marker picker,
/// the four entry actions and its comment, or an empty state while no entry is selected.
///
/// Follows the view model's selection and the changes of the selected entry; every control calls one
/// view-model operation and keeps nothing itself. Object names: "knownHostEmptyState",
/// "knownHostDetails", "knownHostHostsLabel", "knownHostKeyTypeLabel", "knownHostHashedLabel",
/// "knownHostCommentedOutLabel", "knownHostMarkerPicker", "knownHostConnectButton",
/// "knownHostCommentButton", "knownHostFindCreateHostButton", "knownHostRemoveButton",
/// "knownHostCommentSection", "knownHostCommentText".
class KnownHostDetailView : public QWidget
{
    Q_OBJECT

public:
    /// viewModel must outlive the view.
    explicit KnownHostDetailView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

private:
    QWidget* buildDetails();
    QWidget* buildFactsRow();
    QWidget* buildButtonRow();
    QWidget* buildCommentSection();
    void connectToViewModel();
    void refresh();
    void markerChosen(int index);

    SSHConfigViewModel& m_viewModel;
    QStackedLayout* m_pages = nullptr;
    EmptyStateView* m_emptyState = nullptr;
    QScrollArea* m_detailsScroll = nullptr;
    QWidget* m_details = nullptr;
    QLabel* m_hosts = nullptr;
    QLabel* m_keyType = nullptr;
    SymbolLabel* m_hashed = nullptr;
    SymbolLabel* m_commentedOut = nullptr;
    QComboBox* m_markerPicker = nullptr;
    QPushButton* m_commentButton = nullptr;
    QWidget* m_commentSection = nullptr;
    QLabel* m_comment = nullptr;
};
