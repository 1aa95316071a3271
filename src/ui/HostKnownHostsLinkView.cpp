#include "HostKnownHostsLinkView.h"

#include "AccessibleText.h"
#include "SSHConfigViewModel.h"
#include "TextStyle.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace
{

QString countSentence(const SSHConfigViewModel::HostKnownHostsLink& link)
{
    if (link.entryCount == 0)
        return u"known_hosts: geen entry voor "_s + link.lookupName;
    return u"known_hosts: "_s + QString::number(link.entryCount)
        + (link.entryCount == 1 ? u" entry voor "_s : u" entries voor "_s) + link.lookupName;
}

} // namespace

HostKnownHostsLinkView::HostKnownHostsLinkView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
{
    setObjectName(u"hostKnownHostsLinkView"_s);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    m_count = new QLabel(this);
    m_count->setObjectName(u"hostKnownHostsCount"_s);
    m_count->setTextFormat(Qt::PlainText);
    m_count->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_count->setWordWrap(true);
    m_count->setMinimumWidth(1);
    applyTextStyle(m_count, TextStyle::caption);
    makeSecondaryText(m_count);
    m_link = new QPushButton(u"Toon in known_hosts"_s, this);
    m_link->setObjectName(u"hostKnownHostsLinkButton"_s);
    m_link->setFlat(true);
    m_link->setCursor(Qt::PointingHandCursor);
    setAccessibleText(*m_link, u"Toon in known_hosts"_s,
        u"Opent de known_hosts tab met alleen de entries die ssh voor deze host gebruikt."_s);
    layout->addWidget(m_count, 1);
    layout->addWidget(m_link);
    connect(m_link, &QPushButton::clicked, &m_viewModel, &SSHConfigViewModel::showKnownHostEntriesForSelectedHost);
    connect(
        &m_viewModel, &SSHConfigViewModel::selectedHostKnownHostsLinkChanged, this, &HostKnownHostsLinkView::refresh);
    refresh();
}

void HostKnownHostsLinkView::refresh()
{
    const std::optional<SSHConfigViewModel::HostKnownHostsLink>& link = m_viewModel.selectedHostKnownHostsLink();
    setVisible(link.has_value());
    if (!link)
        return;
    m_count->setText(countSentence(*link));
    m_count->setAccessibleName(m_count->text());
    m_link->setEnabled(link->entryCount > 0);
}
