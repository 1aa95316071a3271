#include "MainToolBar.h"

#include "SSHConfigViewModel.h"
#include "SymbolIcon.h"

#include <QAction>
#include <QDesktopServices>
#include <QSizePolicy>

using namespace Qt::StringLiterals;

using EditorTab = SSHConfigViewModel::EditorTab;

MainToolBar::MainToolBar(SSHConfigViewModel& viewModel, std::optional<QUrl> donationURL, QWidget* parent)
    : QToolBar(parent)
    , m_viewModel(viewModel)
{
    setObjectName(u"mainToolBar"_s);
    setWindowTitle(u"Toolbar"_s);
    setMovable(false);
    setFloatable(false);
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setContextMenuPolicy(Qt::PreventContextMenu);

    m_reload = addViewModelAction(u"reloadAction"_s, u"Reload"_s, {});
    m_save = addViewModelAction(u"saveAction"_s, u"Save"_s, {});
    m_save->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_S));
    addSeparator();
    m_connect = addViewModelAction(u"connectAction"_s, u"Connect"_s, u"terminal");
    m_addHost = addViewModelAction(u"addHostAction"_s, u"Add Host"_s, u"plus");
    m_deleteHost = addViewModelAction(u"deleteHostAction"_s, u"Delete Host"_s, u"trash");
    addSeparator();
    m_sshChanges = addViewModelAction(u"sshChangesAction"_s, u"Wat verandert er voor ssh?"_s, u"checkmark.circle");
    m_sshChanges->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_D));
    if (donationURL)
        addDonationLink(*donationURL);

    connect(m_reload, &QAction::triggered, &m_viewModel, &SSHConfigViewModel::load);
    connect(m_save, &QAction::triggered, &m_viewModel, &SSHConfigViewModel::saveCurrentTab);
    connect(m_connect, &QAction::triggered, this, &MainToolBar::connectSelected);
    connect(m_addHost, &QAction::triggered, &m_viewModel, &SSHConfigViewModel::addHost);
    connect(m_deleteHost, &QAction::triggered, &m_viewModel, &SSHConfigViewModel::deleteSelectedHost);
    connect(m_sshChanges, &QAction::triggered, &m_viewModel, &SSHConfigViewModel::showSshChanges);

    connect(&m_viewModel, &SSHConfigViewModel::activeEditorTabChanged, this, &MainToolBar::showActiveTab);
    connect(&m_viewModel, &SSHConfigViewModel::selectedHostIDChanged, this, &MainToolBar::updateEnabling);
    connect(&m_viewModel, &SSHConfigViewModel::selectedKnownHostEntryIDChanged, this, &MainToolBar::updateEnabling);
    showActiveTab();
}

QAction* MainToolBar::addViewModelAction(const QString& objectName, const QString& text, QStringView symbol)
{
    QAction* action = symbol.isEmpty() ? addAction(text) : addAction(symbolIcon(symbol), text);
    action->setObjectName(objectName);
    return action;
}

void MainToolBar::addDonationLink(const QUrl& url)
{
    auto* spacer = new QWidget(this);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    addWidget(spacer);
    m_donation = addAction(symbolIcon(u"cup.and.saucer.fill"), u"Buy me a coffee"_s);
    m_donation->setObjectName(u"donationAction"_s);
    m_donation->setToolTip(url.toDisplayString());
    connect(m_donation, &QAction::triggered, this, [url] { QDesktopServices::openUrl(url); });
}

void MainToolBar::connectSelected()
{
    if (m_viewModel.activeEditorTab() == EditorTab::knownHosts)
        m_viewModel.connectSelectedKnownHostEntry();
    else
        m_viewModel.connectSelectedHost();
}

void MainToolBar::showActiveTab()
{
    const EditorTab tab = m_viewModel.activeEditorTab();
    m_save->setText(tab == EditorTab::structured ? u"Save"_s
            : tab == EditorTab::raw              ? u"Save Raw"_s
                                                 : u"Save Known Hosts"_s);
    m_addHost->setVisible(tab != EditorTab::knownHosts);
    m_deleteHost->setVisible(tab != EditorTab::knownHosts);
    updateEnabling();
}

void MainToolBar::updateEnabling()
{
    const bool hostSelected = m_viewModel.selectedHostID().has_value();
    const bool knownHosts = m_viewModel.activeEditorTab() == EditorTab::knownHosts;
    m_connect->setEnabled(knownHosts ? m_viewModel.selectedKnownHostEntryID().has_value() : hostSelected);
    m_deleteHost->setEnabled(hostSelected);
}
