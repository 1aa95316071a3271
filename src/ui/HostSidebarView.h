#pragma once

#include <QWidget>

class HostListView;
class ElidingComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class SSHConfigViewModel;

/// The sidebar of the structured and raw tabs: the host search field, the "Groep" filter with the
/// "Nieuwe groep" button, the reorder hint and the host list. Every control follows the view model
/// and writes only what the user changed.
///
/// Child object names: "hostSearchField", "groupPicker", "newGroupButton", "reorderHint", "hostList".
class HostSidebarView : public QWidget
{
    Q_OBJECT

public:
    explicit HostSidebarView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

    /// Gives the search field the keyboard focus, with its text selected for typing over.
    void focusSearchField();

    /// The filter option meaning no group filter.
    static QString allGroupsOption();

Q_SIGNALS:
    /// The user asked to create a group for the selected host ("Nieuwe groep").
    void createGroupRequested();

private:
    QWidget* makeGroupRow();
    void showSearchText();
    void showGroups();
    void showReorderHint();
    void updateNewGroupButton();

    SSHConfigViewModel& m_viewModel;
    QLineEdit* m_search;
    ElidingComboBox* m_groupPicker;
    QPushButton* m_newGroup;
    QLabel* m_reorderHint;
    HostListView* m_list;
};
