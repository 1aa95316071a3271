#include "KnownHostConfigHostsView.h"

#include "AccessibleText.h"
#include "FlowLayout.h"
#include "SSHConfigViewModel.h"
#include "TextStyle.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

// Beyond this many the pane would grow past the window; the rest are counted.
constexpr qsizetype shownLinks = 12;

} // namespace

KnownHostConfigHostsView::KnownHostConfigHostsView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
{
    setObjectName(u"knownHostConfigHostsView"_s);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    auto* title = new QLabel(u"SSH-config hosts naar deze entry"_s, this);
    applyTextStyle(title, TextStyle::caption);
    makeSecondaryText(title);
    m_none = new QLabel(
        u"Geen SSH-config host komt hier uit. Dat is geen fout: ssh met de naam zelf gebruikt deze entry ook."_s, this);
    m_none->setObjectName(u"knownHostConfigHostsNone"_s);
    m_none->setWordWrap(true);
    m_none->setMinimumWidth(1);
    applyTextStyle(m_none, TextStyle::caption);
    m_linksArea = new QWidget(this);
    m_links = new FlowLayout(6, 4, m_linksArea);
    layout->addWidget(title);
    layout->addWidget(m_none);
    layout->addWidget(m_linksArea);
    connect(&m_viewModel, &SSHConfigViewModel::selectedKnownHostConfigHostsChanged, this,
        &KnownHostConfigHostsView::refresh);
    refresh();
}

void KnownHostConfigHostsView::clearLinks()
{
    while (QLayoutItem* item = m_links->takeAt(0)) {
        // Deleted later: refresh() runs from a click on one of these links.
        if (QWidget* link = item->widget())
            link->deleteLater();
        delete item;
    }
}

void KnownHostConfigHostsView::refresh()
{
    clearLinks();
    const QList<SSHConfigViewModel::ConfigHostLink>& hosts = m_viewModel.selectedKnownHostConfigHosts();
    m_none->setVisible(hosts.isEmpty());
    m_linksArea->setVisible(!hosts.isEmpty());
    for (qsizetype i = 0; i < std::min(hosts.size(), shownLinks); ++i) {
        auto* link = new QPushButton(hosts.at(i).title, m_linksArea);
        link->setObjectName(u"knownHostConfigHost"_s + QString::number(i));
        link->setFlat(true);
        link->setCursor(Qt::PointingHandCursor);
        setAccessibleText(
            *link, u"SSH-config host "_s + hosts.at(i).title, u"Selecteert deze host in de structured editor."_s);
        const QUuid hostID = hosts.at(i).hostID;
        connect(
            link, &QPushButton::clicked, this, [this, hostID] { m_viewModel.selectConfigHostFromKnownHosts(hostID); });
        m_links->addWidget(link);
    }
    if (hosts.size() > shownLinks) {
        auto* more = new QLabel(u"en "_s + QString::number(hosts.size() - shownLinks) + u" meer"_s, m_linksArea);
        applyTextStyle(more, TextStyle::caption);
        m_links->addWidget(more);
    }
}
