#include "MainWindow.h"

#include "ContentView.h"
#include "DonationURL.h"
#include "FileChangeBar.h"
#include "MainStatusBar.h"
#include "MainToolBar.h"
#include "MenuMirrorAction.h"
#include "MinimumWindowSize.h"

#include <QMenuBar>
#include <QScreen>
#include <QWindow>
#include <QVBoxLayout>

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
    fitMinimumSizeToScreen();
    setUnifiedTitleAndToolBarOnMac(true);
    addToolBar(Qt::TopToolBarArea, m_toolBar);
    setCentralWidget(makeCentralWidget(viewModel));
    setStatusBar(m_statusBar);
    buildMenuBar();
}

void MainWindow::fitMinimumSizeToScreen()
{
    const QScreen* current = screen();
    setMinimumSize(minimumWindowSize(mainWindowMinimumSize, current ? current->availableGeometry() : QRect()));
}

void MainWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    // The window may be moved to a screen with another size or scale.
    if (windowHandle() && !m_followsScreen) {
        connect(windowHandle(), &QWindow::screenChanged, this, &MainWindow::fitMinimumSizeToScreen);
        m_followsScreen = true;
    }
}

// The bars about files changed by other programs sit above everything they concern.
QWidget* MainWindow::makeCentralWidget(SSHConfigViewModel& viewModel)
{
    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(new FileChangeBar(viewModel, SSHConfigViewModel::SSHFile::config, central));
    layout->addWidget(new FileChangeBar(viewModel, SSHConfigViewModel::SSHFile::knownHosts, central));
    m_content->setParent(central);
    layout->addWidget(m_content, 1);
    return central;
}

void MainWindow::buildMenuBar()
{
    buildFileMenu();
    buildHostMenu();
    buildViewMenu();
    QMenu* help = menuBar()->addMenu(u"&Help"_s);
    QAction* about = help->addAction(u"&About Tarnwick"_s, this, &MainWindow::aboutRequested);
    about->setObjectName(u"aboutAction"_s);
    about->setMenuRole(QAction::AboutRole);
}

void MainWindow::buildFileMenu()
{
    QMenu* file = menuBar()->addMenu(u"&File"_s);
    QAction* newWindow = file->addAction(u"&New Window"_s, this, &MainWindow::newWindowRequested);
    newWindow->setObjectName(u"newWindowAction"_s);
    newWindow->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_N));
    file->addSeparator();
    addMirrorAction(*file, m_toolBar->reloadAction(), u"reloadMenuAction"_s);
    // The toolbar's own save action: a second action with Ctrl+S would make the shortcut ambiguous.
    file->addAction(&m_toolBar->saveAction());
    file->addSeparator();
    QAction* preferences = file->addAction(u"&Preferences…"_s, this, &MainWindow::preferencesRequested);
    preferences->setObjectName(u"preferencesAction"_s);
    preferences->setMenuRole(QAction::PreferencesRole);
    file->addSeparator();
    QAction* quit = file->addAction(u"&Quit"_s, this, &MainWindow::quitRequested);
    quit->setObjectName(u"quitAction"_s);
    quit->setShortcut(QKeySequence::Quit);
    quit->setMenuRole(QAction::QuitRole);
}

void MainWindow::buildHostMenu()
{
    QMenu* host = menuBar()->addMenu(u"H&ost"_s);
    addMirrorAction(*host, m_toolBar->connectAction(), u"connectMenuAction"_s);
    addMirrorAction(*host, m_toolBar->addHostAction(), u"addHostMenuAction"_s);
    addMirrorAction(*host, m_toolBar->deleteHostAction(), u"deleteHostMenuAction"_s);
}

void MainWindow::buildViewMenu()
{
    QMenu* view = menuBar()->addMenu(u"&View"_s);
    view->addActions(m_content->tabActions());
    view->addSeparator();
    QAction* search = view->addAction(u"&Find"_s, m_content, &ContentView::focusSearchField);
    search->setObjectName(u"searchAction"_s);
    search->setShortcut(QKeySequence::Find);
}
