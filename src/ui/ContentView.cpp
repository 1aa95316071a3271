#include "ContentView.h"

#include "AccessibleText.h"
#include "CreateGroupDialog.h"
#include "CurrentPageSizing.h"
#include "EmptyStateView.h"
#include "HostDetailView.h"
#include "HostSidebarView.h"
#include "KnownHostsView.h"
#include "RawEditorView.h"
#include "SSHConfigViewModel.h"
#include "SidebarView.h"

#include <QAction>
#include <QActionGroup>
#include <QHBoxLayout>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabWidget>

using namespace Qt::StringLiterals;

using EditorTab = SSHConfigViewModel::EditorTab;

namespace
{
// Tab positions follow the order of EditorTab.
int tabIndex(EditorTab tab)
{
    return static_cast<int>(tab);
}
} // namespace

ContentView::ContentView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
    , m_splitter(new QSplitter(Qt::Horizontal, this))
    , m_sidebar(new SidebarView(viewModel, m_splitter))
    , m_tabs(new QTabWidget(m_splitter))
{
    setObjectName(u"contentView"_s);
    m_splitter->setObjectName(u"contentSplitter"_s);
    m_splitter->setChildrenCollapsible(false);
    m_tabs->setObjectName(u"editorTabs"_s);
    setAccessibleText(
        *m_tabs, u"Editors"_s, u"Structured Editor, Raw Editor en Known Hosts; kies met Ctrl+1, Ctrl+2 of Ctrl+3."_s);
    m_tabs->setDocumentMode(true);
    m_tabs->addTab(makeStructuredTab(), u"Structured Editor"_s);
    auto* raw = new RawEditorView(viewModel, m_tabs);
    m_tabs->addTab(raw, u"Raw Editor"_s);
    m_knownHosts = new KnownHostsView(viewModel, m_tabs);
    m_tabs->addTab(m_knownHosts, u"Known Hosts"_s);
    // The tab bar reads out its current tab; each tab's tool tip is that tab's description.
    m_tabs->setTabToolTip(tabIndex(EditorTab::structured), u"Eén host tegelijk bewerken (Ctrl+1)"_s);
    m_tabs->setTabToolTip(tabIndex(EditorTab::raw), u"De SSH config als tekst (Ctrl+2)"_s);
    m_tabs->setTabToolTip(tabIndex(EditorTab::knownHosts), u"De entries van known_hosts (Ctrl+3)"_s);
    // The known_hosts tab needs the most width; the other tabs leave that width to the host sidebar.
    sizeToCurrentPage(*m_tabs);
    m_splitter->addWidget(m_sidebar);
    m_splitter->addWidget(m_tabs);
    m_splitter->setStretchFactor(0, 0);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setSizes({ 300, 780 });

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_splitter);

    connect(m_tabs, &QTabWidget::currentChanged, this, &ContentView::takeUserTab);
    connect(&m_viewModel, &SSHConfigViewModel::activeEditorTabChanged, this, &ContentView::showActiveTab);
    connect(&m_viewModel, &SSHConfigViewModel::selectedHostIDChanged, this, &ContentView::showHostSelection);
    connect(&m_viewModel, &SSHConfigViewModel::hostsReset, this, &ContentView::showHostSelection);
    connect(
        &m_sidebar->hostSidebar(), &HostSidebarView::createGroupRequested, this, &ContentView::presentCreateGroupSheet);
    makeTabActions();
    showActiveTab();
    showHostSelection();
}

void ContentView::makeTabActions()
{
    m_tabActions = new QActionGroup(this);
    const QList<std::pair<QString, QString>> tabs { { u"structuredTabAction"_s, u"&Structured Editor"_s },
        { u"rawTabAction"_s, u"&Raw Editor"_s }, { u"knownHostsTabAction"_s, u"&Known Hosts"_s } };
    for (qsizetype i = 0; i < tabs.size(); ++i) {
        auto* action = new QAction(tabs.at(i).second, m_tabActions);
        action->setObjectName(tabs.at(i).first);
        action->setCheckable(true);
        action->setShortcut(QKeySequence(Qt::CTRL | (Qt::Key_1 + static_cast<int>(i))));
        const auto tab = static_cast<EditorTab>(i);
        connect(action, &QAction::triggered, &m_viewModel, [this, tab] { m_viewModel.setActiveEditorTab(tab); });
    }
}

QList<QAction*> ContentView::tabActions() const
{
    return m_tabActions->actions();
}

void ContentView::focusSearchField()
{
    if (m_viewModel.activeEditorTab() == EditorTab::knownHosts)
        m_knownHosts->focusSearchField();
    else
        m_sidebar->hostSidebar().focusSearchField();
}

QWidget* ContentView::makeStructuredTab()
{
    m_structured = new QStackedWidget(m_tabs);
    m_structured->setObjectName(u"structuredEditor"_s);
    m_hostDetail = new HostDetailView(m_viewModel, m_structured);
    m_noHostSelected = new EmptyStateView(u"rectangle.stack", u"Geen host geselecteerd"_s,
        u"Voeg een host toe of selecteer een host in de lijst."_s, m_structured);
    m_noHostSelected->setObjectName(u"noHostSelectedView"_s);
    m_structured->addWidget(m_hostDetail);
    m_structured->addWidget(m_noHostSelected);
    return m_structured;
}

bool ContentView::showingCreateGroupSheet() const
{
    return m_createGroup && m_createGroup->isVisible();
}

void ContentView::presentCreateGroupSheet()
{
    if (!m_createGroup)
        m_createGroup = new CreateGroupDialog(m_viewModel, this);
    m_createGroup->present();
}

void ContentView::showActiveTab()
{
    const int index = tabIndex(m_viewModel.activeEditorTab());
    m_tabActions->actions().at(index)->setChecked(true);
    if (m_tabs->currentIndex() != index)
        m_tabs->setCurrentIndex(index);
}

void ContentView::takeUserTab(int index)
{
    if (index >= 0)
        m_viewModel.setActiveEditorTab(static_cast<EditorTab>(index));
}

void ContentView::showHostSelection()
{
    const bool hasHost = m_viewModel.selectedHostIndex().has_value();
    m_structured->setCurrentWidget(hasHost ? static_cast<QWidget*>(m_hostDetail) : m_noHostSelected);
}
