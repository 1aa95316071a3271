#include "MainWindow.h"

#include "ContentView.h"
#include "DonationURL.h"
#include "MainStatusBar.h"
#include "MainToolBar.h"

#include <QMenuBar>

using namespace Qt::StringLiterals;

MainWindow::MainWindow(SSHConfigViewModel& viewModel, QWidget* parent)
    : MainWindow(viewModel, configuredDonationURL(), parent)
{
}

MainWindow::MainWindow(SSHConfigViewModel& viewModel, std::optional<QUrl> donationURL, QWidget* parent)
    : QMainWindow(parent)
    , m_toolBar(new MainToolBar(viewModel, std::move(donationURL), this))
    , m_content(new ContentView(viewModel, this))
    , m_statusBar(new MainStatusBar(viewModel, this))
{
    setObjectName(u"mainWindow"_s);
    setWindowTitle(u"Tarnwick"_s);
    setMinimumSize(1080, 700);
    setUnifiedTitleAndToolBarOnMac(true);
    addToolBar(Qt::TopToolBarArea, m_toolBar);
    setCentralWidget(m_content);
    setStatusBar(m_statusBar);
    buildMenuBar();
}

void MainWindow::buildMenuBar()
{
    QMenu* file = menuBar()->addMenu(u"&File"_s);
    QAction* newWindow = file->addAction(u"New Window"_s, this, &MainWindow::newWindowRequested);
    newWindow->setObjectName(u"newWindowAction"_s);
    newWindow->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_N));
    file->addSeparator();
    QAction* preferences = file->addAction(u"Preferences…"_s, this, &MainWindow::preferencesRequested);
    preferences->setObjectName(u"preferencesAction"_s);
    preferences->setMenuRole(QAction::PreferencesRole);
    file->addSeparator();
    QAction* quit = file->addAction(u"Quit"_s, this, &MainWindow::quitRequested);
    quit->setObjectName(u"quitAction"_s);
    quit->setShortcut(QKeySequence::Quit);
    quit->setMenuRole(QAction::QuitRole);

    QMenu* help = menuBar()->addMenu(u"&Help"_s);
    QAction* about = help->addAction(u"About Tarnwick"_s, this, &MainWindow::aboutRequested);
    about->setObjectName(u"aboutAction"_s);
    about->setMenuRole(QAction::AboutRole);
}
