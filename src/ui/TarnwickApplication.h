#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QUrl>

#include <memory>
#include <optional>

class MainWindow;
class PreferencesWindow;
class SSHConfigViewModel;

/// The application shell: the windows on the one view model and the answers to the standard commands
/// of their menu bars (New Window, Preferences, Quit, About). The view model must outlive the shell.
class TarnwickApplication : public QObject
{
    Q_OBJECT

public:
    TarnwickApplication(SSHConfigViewModel& viewModel, std::optional<QUrl> donationURL, QObject* parent = nullptr);
    ~TarnwickApplication() override;

    /// The view model on the user's own files and the platform's terminal services and preference store;
    /// constructing it chooses the terminal and loads both files. Needs a QGuiApplication (clipboard).
    static std::unique_ptr<SSHConfigViewModel> makeViewModel();

    /// Opens and shows one more main window on the view model; it deletes itself when closed.
    MainWindow* openMainWindow();
    /// Shows the preferences window, made on first use, and brings it to the front.
    void showPreferences();
    /// The main windows that are open, oldest first.
    QList<MainWindow*> mainWindows() const;
    /// The preferences window, or null before it was first shown.
    PreferencesWindow* preferencesWindow() const { return m_preferences.get(); }

private:
    void showAbout(QWidget* parent);

    SSHConfigViewModel& m_viewModel;
    std::optional<QUrl> m_donationURL;
    QList<QPointer<MainWindow>> m_windows;
    std::unique_ptr<PreferencesWindow> m_preferences;
};

/// Builds the application, its icon, the one view model and the first window, and runs the event loop.
int runTarnwick(int argc, char* argv[]);
