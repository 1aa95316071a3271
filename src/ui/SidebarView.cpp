#include "SidebarView.h"

#include "CurrentPageSizing.h"
#include "HostSidebarView.h"
#include "KnownHostsSummaryView.h"
#include "SSHConfigViewModel.h"
#include "TextStyle.h"

#include <QLabel>
#include <QStackedWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

SidebarView::SidebarView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
    , m_title(new QLabel(this))
    , m_pages(new QStackedWidget(this))
    , m_hosts(new HostSidebarView(viewModel, m_pages))
    , m_knownHosts(new KnownHostsSummaryView(viewModel, m_pages))
{
    setObjectName(u"sidebar"_s);
    m_title->setObjectName(u"sidebarTitle"_s);
    // A muted section label, like a desktop sidebar's, so it does not compete with the pane's own headings.
    m_title->setFont(textStyleFont(TextStyle::caption, textStyleFont(TextStyle::headline, m_title->font())));
    makeSecondaryText(m_title);
    m_pages->setObjectName(u"sidebarPages"_s);
    m_pages->addWidget(m_hosts);
    m_pages->addWidget(m_knownHosts);
    // The host sidebar's controls need more width than the summary; in the Known Hosts tab that width
    // belongs to the entry list and the detail pane.
    sizeToCurrentPage(*m_pages);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* titleRow = new QVBoxLayout;
    titleRow->setContentsMargins(11, 11, 11, 0);
    titleRow->addWidget(m_title);
    layout->addLayout(titleRow);
    layout->addWidget(m_pages, 1);

    connect(&m_viewModel, &SSHConfigViewModel::activeEditorTabChanged, this, &SidebarView::showActiveTab);
    showActiveTab();
}

void SidebarView::showActiveTab()
{
    const bool knownHosts = m_viewModel.activeEditorTab() == SSHConfigViewModel::EditorTab::knownHosts;
    m_title->setText(knownHosts ? u"Known Hosts"_s : u"Hosts"_s);
    m_pages->setCurrentWidget(knownHosts ? static_cast<QWidget*>(m_knownHosts) : m_hosts);
}
