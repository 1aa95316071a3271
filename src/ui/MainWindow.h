#pragma once

#include <QMainWindow>
#include <QUrl>

#include <optional>

class ContentView;
class QKeyEvent;
class MainStatusBar;
class MainToolBar;
class SSHConfigViewModel;

/// One main window, titled "Tarnwick", at least 1080 by 700 points (less only on a screen too small
/// for that, for example at 150 % scaling on a 1400 by 900 display): the toolbar, the content (sidebar and
/// tabs) and the status line, all on the one view model; any number of windows may show it at once.
///
/// Its menu bar reaches every main action from the keyboard. File: New Window (Ctrl+N), Reload, the
/// toolbar's save action (Ctrl+S), Preferences, Quit. Host: Connect, Add Host, Delete Host, each
/// standing for its toolbar button. View: the three tabs (Ctrl+1, Ctrl+2, Ctrl+3), Find (Ctrl+F, to the
/// active tab's search field) and the toolbar's "Wat verandert er voor ssh?" (Ctrl+Shift+D), which opens
/// that pane ("sshChangesPane", docked on the right). Help: About. New Window, Preferences, Quit and
/// About are not carried out by the window; it asks through its signals, which the application shell
/// answers. Action object names: "newWindowAction", "reloadMenuAction", "preferencesAction",
/// "quitAction", "connectMenuAction", "addHostMenuAction", "deleteHostMenuAction",
/// "structuredTabAction", "rawTabAction", "knownHostsTabAction", "searchAction", "aboutAction". The Edit
/// menu holds Undo (Ctrl+Z) and Redo (Ctrl+Shift+Z, Ctrl+Y) of the active tab's document ("undoAction",
/// "redoAction"), named after the step they take back or do again, and "Plak ssh-waarschuwing"
/// (Ctrl+Shift+V, "pasteHostKeyWarningAction"), which hands the clipboard's text to the view model as
/// ssh's warning about a changed host key. Above the content, one bar per file
/// ("configChangeBar", "knownHostsChangeBar") says when another program changed it, and "sshCheckBar"
/// when a save of an unedited file would change what ssh does.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// A window with the donation page this build was configured with, if any.
    explicit MainWindow(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);
    /// A window whose toolbar links to donationURL, or has no donation link without one.
    MainWindow(SSHConfigViewModel& viewModel, std::optional<QUrl> donationURL, QWidget* parent = nullptr);

    ContentView& contentView() const { return *m_content; }
    MainToolBar& toolBar() const { return *m_toolBar; }
    MainStatusBar& statusLine() const { return *m_statusBar; }

Q_SIGNALS:
    void newWindowRequested();
    void preferencesRequested();
    void quitRequested();
    void aboutRequested();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void fitMinimumSizeToScreen();
    QWidget* makeCentralWidget(SSHConfigViewModel& viewModel);
    void buildMenuBar();
    void buildFileMenu();
    void buildHostMenu();
    void buildViewMenu();
    void buildEditMenu();
    bool eventFilter(QObject* watched, QEvent* event) override;
    static bool takesUndoShortcut(QObject* watched, const QKeyEvent& key);

    SSHConfigViewModel& m_viewModel;
    MainToolBar* m_toolBar;
    ContentView* m_content;
    MainStatusBar* m_statusBar;
    bool m_followsScreen = false;
};
