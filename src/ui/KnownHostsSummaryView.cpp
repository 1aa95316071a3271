#include "KnownHostsSummaryView.h"

#include "SSHConfigViewModel.h"
#include "TextStyle.h"

#include <QLabel>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

KnownHostsSummaryView::KnownHostsSummaryView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
    , m_entries(new QLabel(this))
    , m_parseErrors(new QLabel(this))
{
    setObjectName(u"knownHostsSummary"_s);
    auto* heading = new QLabel(u"Known Hosts"_s, this);
    heading->setObjectName(u"knownHostsHeading"_s);
    applyTextStyle(heading, TextStyle::headline);
    m_entries->setObjectName(u"knownHostsEntriesLabel"_s);
    applyTextStyle(m_entries, TextStyle::subheadline);
    auto* hint = new QLabel(
        u"Gebruik de tab rechts om te zoeken, markeren, verbinden of een SSH-config entry aan te maken."_s, this);
    hint->setObjectName(u"knownHostsHint"_s);
    hint->setWordWrap(true);
    applyTextStyle(hint, TextStyle::caption);
    makeSecondaryText(hint);
    m_parseErrors->setObjectName(u"knownHostsParseErrorsLabel"_s);
    applyTextStyle(m_parseErrors, TextStyle::caption);
    makeWarningText(m_parseErrors);

    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(12);
    layout->addWidget(heading);
    layout->addWidget(m_entries);
    layout->addWidget(hint);
    layout->addWidget(m_parseErrors);
    layout->addStretch(1);

    connect(
        &m_viewModel, &SSHConfigViewModel::knownHostsEntryCountChanged, this, &KnownHostsSummaryView::showEntryCount);
    connect(
        &m_viewModel, &SSHConfigViewModel::knownHostsParseErrorsChanged, this, &KnownHostsSummaryView::showParseErrors);
    showEntryCount();
    showParseErrors();
}

void KnownHostsSummaryView::showEntryCount()
{
    m_entries->setText(u"Entries: "_s + QString::number(m_viewModel.knownHostsEntryCount()));
}

void KnownHostsSummaryView::showParseErrors()
{
    const qsizetype count = m_viewModel.knownHostsParseErrors().size();
    m_parseErrors->setText(u"Parsefouten: "_s + QString::number(count));
    m_parseErrors->setVisible(count > 0);
}
