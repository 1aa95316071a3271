#include "MainWindow.h"

#include "ContentView.h"
#include "DonationURL.h"
#include "FileChangeBar.h"
#include "MainStatusBar.h"
#include "MainToolBar.h"
#include "MenuMirrorAction.h"
#include "MinimumWindowSize.h"
#include "SshChangesPane.h"
#include "SshCheckBar.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTextDocument>
#include <QVBoxLayout>
#include <QWindow>

using namespace Qt::StringLiterals;

MainWindow::MainWindow(SSHConfigViewModel& viewModel, QWidget* parent)
    : MainWindow(viewModel, configuredDonationURL(), parent)
{ }

MainWindow::MainWindow(SSHConfigViewModel& viewModel, std::optional<QUrl> donationURL, QWidget* parent)
    : QMainWindow(parent)
    , m_viewModel(viewModel)
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
    addDockWidget(Qt::RightDockWidgetArea, new SshChangesPane(viewModel, this));
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
    layout->addWidget(new SshCheckBar(viewModel, central));
    m_content->setParent(central);
    layout->addWidget(m_content, 1);
    return central;
}

// Undo and redo act on the active tab's document. A text field keeps Ctrl+Z for its own typing while
// it has any (see takesUndoShortcut()); after that, and everywhere else, the document's history answers.
void MainWindow::buildEditMenu()
{
    QMenu* edit = menuBar()->addMenu(u"&Edit"_s);
    QAction* undo = edit->addAction(m_viewModel.undoText(), &m_viewModel, &SSHConfigViewModel::undo);
    undo->setObjectName(u"undoAction"_s);
    undo->setShortcut(QKeySequence::Undo);
    QAction* redo = edit->addAction(m_viewModel.redoText(), &m_viewModel, &SSHConfigViewModel::redo);
    redo->setObjectName(u"redoAction"_s);
    redo->setShortcuts({ QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y) });
    const auto follow = [this, undo, redo] {
        undo->setText(m_viewModel.undoText());
        undo->setEnabled(m_viewModel.canUndo());
        redo->setText(m_viewModel.redoText());
        redo->setEnabled(m_viewModel.canRedo());
    };
    connect(&m_viewModel, &SSHConfigViewModel::undoHistoryChanged, this, follow);
    connect(&m_viewModel, &SSHConfigViewModel::activeEditorTabChanged, this, follow);
    follow();
    qApp->installEventFilter(this);
    edit->addSeparator();
    // ssh's warning is what people have on the clipboard when they come here: one keystroke finds the line.
    QAction* pasteWarning = edit->addAction(u"Plak ssh-&waarschuwing"_s, this,
        [this] { m_viewModel.applyHostKeyWarning(QGuiApplication::clipboard()->text()); });
    pasteWarning->setObjectName(u"pasteHostKeyWarningAction"_s);
    pasteWarning->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_V));
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && watched->isWidgetType()
        && static_cast<QWidget*>(watched)->window() == this
        && !takesUndoShortcut(watched, *static_cast<QKeyEvent*>(event)))
        return true;
    return QMainWindow::eventFilter(watched, event);
}

// Whether a focused text field wants the key for its own undo or redo. A field with nothing of its own
// to undo lets it through to the Edit menu, so Ctrl+Z goes on into the document's history.
bool MainWindow::takesUndoShortcut(QObject* watched, const QKeyEvent& key)
{
    const bool undoKey = key.matches(QKeySequence::Undo);
    const bool redoKey
        = key.matches(QKeySequence::Redo) || key.keyCombination() == QKeyCombination(Qt::CTRL | Qt::Key_Y);
    if (!undoKey && !redoKey)
        return true;
    if (auto* line = qobject_cast<QLineEdit*>(watched))
        return undoKey ? line->isUndoAvailable() : line->isRedoAvailable();
    if (auto* text = qobject_cast<QPlainTextEdit*>(watched))
        return undoKey ? text->document()->isUndoAvailable() : text->document()->isRedoAvailable();
    return true;
}

void MainWindow::buildMenuBar()
{
    buildFileMenu();
    buildEditMenu();
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
    view->addSeparator();
    // The toolbar's own action: a second one with Ctrl+Shift+D would make the shortcut ambiguous.
    view->addAction(&m_toolBar->sshChangesAction());
}
