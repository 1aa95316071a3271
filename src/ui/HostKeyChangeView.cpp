#include "HostKeyChangeView.h"

#include "AccessibleText.h"
#include "SSHConfigViewModel.h"
#include "TextStyle.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

HostKeyChangeView::HostKeyChangeView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QFrame(parent)
    , m_viewModel(viewModel)
{
    setObjectName(u"hostKeyChangeView"_s);
    setFrameShape(QFrame::StyledPanel);
    auto* layout = new QHBoxLayout(this);
    layout->setSpacing(16);
    layout->addWidget(buildColumn(u"Oude sleutel"_s, m_oldCaption, m_old, u"hostKeyChangeOldFingerprint"_s), 1);
    layout->addWidget(buildColumn(u"Nieuwe sleutel"_s, m_newCaption, m_new, u"hostKeyChangeNewFingerprint"_s), 1);
    m_remove = new QPushButton(u"Remove"_s, this);
    m_remove->setObjectName(u"hostKeyChangeRemoveButton"_s);
    m_remove->setToolTip(u"Verwijdert de oude sleutel; ssh vraagt bij de volgende verbinding naar de nieuwe."_s);
    auto* close = new QPushButton(u"Sluiten"_s, this);
    close->setObjectName(u"hostKeyChangeCloseButton"_s);
    setAccessibleText(*m_remove, u"Remove oude sleutel"_s,
        u"Verwijdert de known_hosts entry met de oude sleutel; het bestand verandert pas bij opslaan."_s);
    setAccessibleText(*close, u"Sluiten"_s, u"Verbergt de vergelijking van de sleutels."_s);
    layout->addWidget(m_remove);
    layout->addWidget(close);
    connect(m_remove, &QPushButton::clicked, &m_viewModel, &SSHConfigViewModel::deleteSelectedKnownHostEntry);
    connect(close, &QPushButton::clicked, &m_viewModel, &SSHConfigViewModel::dismissHostKeyChange);
    connect(&m_viewModel, &SSHConfigViewModel::hostKeyChangeChanged, this, &HostKeyChangeView::refresh);
    connect(&m_viewModel, &SSHConfigViewModel::selectedKnownHostEntryIDChanged, this, &HostKeyChangeView::refresh);
    refresh();
}

QWidget* HostKeyChangeView::buildColumn(
    const QString& title, QLabel*& caption, QLabel*& fingerprint, const QString& objectName)
{
    auto* column = new QWidget(this);
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    caption = new QLabel(title, column);
    applyTextStyle(caption, TextStyle::caption);
    makeSecondaryText(caption);
    fingerprint = new QLabel(column);
    fingerprint->setObjectName(objectName);
    fingerprint->setTextFormat(Qt::PlainText);
    fingerprint->setTextInteractionFlags(Qt::TextSelectableByMouse);
    fingerprint->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    fingerprint->setWordWrap(true);
    fingerprint->setMinimumWidth(1);
    layout->addWidget(caption);
    layout->addWidget(fingerprint);
    return column;
}

void HostKeyChangeView::refresh()
{
    const std::optional<SSHConfigViewModel::HostKeyChange>& change = m_viewModel.hostKeyChange();
    setVisible(change.has_value());
    if (!change)
        return;
    const SSHHostKeyWarning& warning = change->warning;
    m_oldCaption->setText(change->entryID ? u"Oude sleutel in known_hosts, regel "_s
                + QString::number(m_viewModel.indexOfKnownHostRecord(*change->entryID).value_or(-1) + 1)
                                          : u"Oude sleutel: niet gevonden in dit bestand"_s);
    m_old->setText(change->oldFingerprint);
    m_newCaption->setText(u"Nieuwe sleutel van "_s + (warning.host.isEmpty() ? u"de server"_s : warning.host)
        + (warning.newKeyType.isEmpty() ? QString() : u" ("_s + warning.newKeyType + u")"_s));
    m_new->setText(warning.newFingerprint);
    // Remove acts on the selection, so it is offered only while the offending entry is the one selected.
    m_remove->setEnabled(change->entryID && m_viewModel.selectedKnownHostEntryID() == change->entryID
        && m_viewModel.indexOfKnownHostRecord(*change->entryID).has_value());
}
