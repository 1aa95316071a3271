#include "KnownHostNamesView.h"

#include "AccessibleText.h"
#include "SSHConfigViewModel.h"
#include "TextStyle.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

KnownHostNamesView::KnownHostNamesView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
{
    setObjectName(u"knownHostNamesView"_s);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    auto* title = new QLabel(u"Namen in deze regel"_s, this);
    applyTextStyle(title, TextStyle::caption);
    makeSecondaryText(title);
    layout->addWidget(title);
    m_rows = new QVBoxLayout;
    m_rows->setSpacing(2);
    layout->addLayout(m_rows);
    connect(&m_viewModel, &SSHConfigViewModel::selectedKnownHostEntryIDChanged, this, &KnownHostNamesView::refresh);
    connect(&m_viewModel, &SSHConfigViewModel::knownHostsReset, this, &KnownHostNamesView::refresh);
    connect(&m_viewModel, &SSHConfigViewModel::knownHostRecordsChanged, this,
        [this](qsizetype, qsizetype, bool lineNumberOnly) {
            if (!lineNumberOnly)
                refresh();
        });
    refresh();
}

void KnownHostNamesView::refresh()
{
    clearRows();
    const std::optional<KnownHostEntry> entry = m_viewModel.selectedKnownHostEntry();
    const QStringList hosts = entry ? entry->hosts() : QStringList();
    setVisible(hosts.size() >= 2);
    if (hosts.size() < 2)
        return;
    for (qsizetype i = 0; i < hosts.size(); ++i)
        addRow(i, hosts.at(i));
}

void KnownHostNamesView::clearRows()
{
    while (QLayoutItem* item = m_rows->takeAt(0)) {
        // Deleted later: refresh() may run from a click on one of these buttons.
        if (QWidget* row = item->widget())
            row->deleteLater();
        delete item;
    }
}

void KnownHostNamesView::addRow(qsizetype index, const QString& host)
{
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* name = new QLabel(host, row);
    name->setTextFormat(Qt::PlainText);
    name->setTextInteractionFlags(Qt::TextSelectableByMouse);
    name->setMinimumWidth(1);
    auto* remove = new QPushButton(u"Verwijder naam"_s, row);
    remove->setObjectName(u"knownHostRemoveName"_s + QString::number(index));
    remove->setToolTip(u"Verwijdert alleen deze naam; de regel blijft voor de andere namen."_s);
    setAccessibleText(
        *remove, u"Verwijder naam "_s + host, u"Verwijdert alleen deze naam; de regel blijft voor de andere namen."_s);
    layout->addWidget(name, 1);
    layout->addWidget(remove);
    m_rows->addWidget(row);
    connect(remove, &QPushButton::clicked, this,
        [this, index] { m_viewModel.removeHostFromSelectedKnownHostEntry(index); });
}
