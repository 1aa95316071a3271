#pragma once

#include <QMainWindow>
#include <QUrl>

#include <optional>

class ContentView;
class MainStatusBar;
class MainToolBar;
class SSHConfigViewModel;

/// One main window, titled "Tarnwick", at least 1080 by 700: the toolbar, the content (sidebar and
/// tabs) and the status line, all on the one view model; any number of windows may show it at once.
///
/// Its menu bar carries only the platform's standard commands: New Window (Ctrl+N), Preferences, Quit
/// and About. The window does not carry them out itself; it asks through its signals, which the
/// application shell answers. Action object names: "newWindowAction", "preferencesAction", "quitAction",
/// "aboutAction". Above the content, one bar per file ("configChangeBar", "knownHostsChangeBar") says
/// when another program changed it.
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

private:
    QWidget* makeCentralWidget(SSHConfigViewModel& viewModel);
    void buildMenuBar();

    SSHConfigViewModel& m_viewModel;
    MainToolBar* m_toolBar;
    ContentView* m_content;
    MainStatusBar* m_statusBar;
};
