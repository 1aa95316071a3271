#include "TarnwickApplication.h"

#include "AppIcon.h"
#include "DefaultTerminalServices.h"
#include "DonationURL.h"
#include "MainWindow.h"
#include "PreferencesWindow.h"
#include "SSHConfigViewModel.h"
#include "SSHFileService.h"
#include "SettingsUserDefaultsStore.h"

#include <QApplication>
#include <QMessageBox>

using namespace Qt::StringLiterals;

TarnwickApplication::TarnwickApplication(
    SSHConfigViewModel& viewModel, std::optional<QUrl> donationURL, QObject* parent)
    : QObject(parent)
    , m_viewModel(viewModel)
    , m_donationURL(std::move(donationURL))
{ }

TarnwickApplication::~TarnwickApplication()
{
    // Windows still open refer to the view model; they go before it does.
    for (const QPointer<MainWindow>& window : std::as_const(m_windows))
        delete window.data();
}

std::unique_ptr<SSHConfigViewModel> TarnwickApplication::makeViewModel()
{
    std::shared_ptr<TerminalLaunching> launcher = makeDefaultTerminalLauncher();
    std::shared_ptr<TerminalDiscovering> discovery = makeDefaultTerminalDiscovery();
    return std::make_unique<SSHConfigViewModel>(std::make_shared<SSHFileService>(), std::move(discovery),
        std::move(launcher), std::make_shared<SettingsUserDefaultsStore>());
}

MainWindow* TarnwickApplication::openMainWindow()
{
    auto* window = new MainWindow(m_viewModel, m_donationURL);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowIcon(QApplication::windowIcon());
    connect(window, &MainWindow::newWindowRequested, this, &TarnwickApplication::openMainWindow);
    connect(window, &MainWindow::preferencesRequested, this, &TarnwickApplication::showPreferences);
    connect(window, &MainWindow::aboutRequested, this, [this, window] { showAbout(window); });
    // Unsaved changes are discarded on quitting, as on closing the last window.
    connect(window, &MainWindow::quitRequested, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    m_windows.removeAll(nullptr);
    m_windows.append(window);
    window->show();
    return window;
}

QList<MainWindow*> TarnwickApplication::mainWindows() const
{
    QList<MainWindow*> open;
    for (const QPointer<MainWindow>& window : m_windows) {
        if (window)
            open.append(window.data());
    }
    return open;
}

void TarnwickApplication::showPreferences()
{
    if (!m_preferences)
        m_preferences = std::make_unique<PreferencesWindow>(m_viewModel);
    m_preferences->show();
    m_preferences->raise();
    m_preferences->activateWindow();
}

void TarnwickApplication::showAbout(QWidget* parent)
{
    QMessageBox::about(parent, u"About Tarnwick"_s,
        u"<p><b>Tarnwick</b> "_s + QApplication::applicationVersion()
            + u"</p><p>Edits your OpenSSH client files, ~/.ssh/config and ~/.ssh/known_hosts, "
              u"with a backup of the old file on every save.</p>"_s);
}

int runTarnwick(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(u"Tarnwick"_s);
    QApplication::setApplicationDisplayName(u"Tarnwick"_s);
    QApplication::setApplicationVersion(QStringLiteral(TARNWICK_VERSION));
    QApplication::setOrganizationName(u"Tarnwick"_s);
    QApplication::setDesktopFileName(u"app.tarnwick.Tarnwick"_s);
    QApplication::setWindowIcon(tarnwickApplicationIcon());

    const std::unique_ptr<SSHConfigViewModel> viewModel = TarnwickApplication::makeViewModel();
    TarnwickApplication shell(*viewModel, configuredDonationURL());
    shell.openMainWindow();
    return QApplication::exec();
}
