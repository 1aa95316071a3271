#pragma once

#include <QWidget>

class CreateGroupDialog;
class QAction;
class QActionGroup;
class EmptyStateView;
class HostDetailView;
class KnownHostsView;
class QSplitter;
class QStackedWidget;
class QTabWidget;
class RawEditorView;
class SSHConfigViewModel;
class SidebarView;

/// The main window's content: the sidebar beside the three editor tabs ("Structured Editor", "Raw
/// Editor", "Known Hosts"), whose selection is bound both ways to the view model's active tab. The
/// structured tab shows the host editor for the selected host, or "Geen host geselecteerd" without one.
/// The sidebar's "Nieuwe groep" opens the create-group sheet over the window.
///
/// Holds no document state; the only state of its own is the sheet and the name typed in it.
/// Child object names: "contentSplitter", "sidebar", "editorTabs", "structuredEditor",
/// "hostDetailView", "noHostSelectedView", "rawEditorView", "knownHostsView", "createGroupDialog".
class ContentView : public QWidget
{
    Q_OBJECT

public:
    explicit ContentView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

    /// Whether the create-group sheet is presented.
    bool showingCreateGroupSheet() const;
    /// Empties the group name and presents the create-group sheet.
    void presentCreateGroupSheet();

    /// One checkable action per tab, in tab order, with Ctrl+1, Ctrl+2 and Ctrl+3; the checked one
    /// follows the active tab. Object names: "structuredTabAction", "rawTabAction", "knownHostsTabAction".
    QList<QAction*> tabActions() const;
    /// Moves the keyboard focus to the active tab's search field: the host search in the structured
    /// and raw tabs, "Search known_hosts" in the Known Hosts tab.
    void focusSearchField();

private:
    QWidget* makeStructuredTab();
    void makeTabActions();
    void showActiveTab();
    void takeUserTab(int index);
    void showHostSelection();

    SSHConfigViewModel& m_viewModel;
    QSplitter* m_splitter;
    SidebarView* m_sidebar;
    QTabWidget* m_tabs;
    QStackedWidget* m_structured = nullptr;
    HostDetailView* m_hostDetail = nullptr;
    EmptyStateView* m_noHostSelected = nullptr;
    CreateGroupDialog* m_createGroup = nullptr;
    KnownHostsView* m_knownHosts = nullptr;
    QActionGroup* m_tabActions = nullptr;
};
