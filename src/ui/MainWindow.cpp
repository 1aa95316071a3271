#include "MainWindow.h"

#include "ContentView.h"
#include "DonationURL.h"
#include "FileChangeBar.h"
#include "MainStatusBar.h"
#include "MainToolBar.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenuBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

MainWindow::MainWindow(SSHConfigViewModel& viewModel, QWidget* parent)
    : MainWindow(viewModel, configuredDonationURL(), parent)
{
}

MainWindow::MainWindow(SSHConfigViewModel& viewModel, std::optional<QUrl> donationURL, QWidget* parent)
    : QMainWindow(parent)
    , m_viewModel(viewModel)
    , m_toolBar(new MainToolBar(viewModel, std::move(donationURL), this))
    , m_content(new ContentView(viewModel, this))
    , m_statusBar(new MainStatusBar(viewModel, this))
{
    setObjectName(u"mainWindow"_s);
    setWindowTitle(u"Tarnwick"_s);
    setMinimumSize(1080, 700);
    setUnifiedTitleAndToolBarOnMac(true);
    addToolBar(Qt::TopToolBarArea, m_toolBar);
    setCentralWidget(makeCentralWidget(viewModel));
    setStatusBar(m_statusBar);
    buildMenuBar();
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
    QMenu* file = menuBar()->addMenu(u"&File"_s);
    QAction* newWindow = file->addAction(u"New Window"_s, this, &MainWindow::newWindowRequested);
    newWindow->setObjectName(u"newWindowAction"_s);
    newWindow->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_N));
    // ssh's warning is what people have on the clipboard when they come here: one keystroke finds the line.
    QAction* pasteWarning = file->addAction(u"Plak ssh-waarschuwing"_s, this, [this] {
        m_viewModel.applyHostKeyWarning(QGuiApplication::clipboard()->text());
    });
    pasteWarning->setObjectName(u"pasteHostKeyWarningAction"_s);
    pasteWarning->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_V));
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
