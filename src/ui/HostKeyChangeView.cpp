#include "HostKeyChangeView.h"

#include "AccessibleText.h"
#include "SSHConfigViewModel.h"
#include "TextStyle.h"

#include <QFontDatabase>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;

HostKeyChangeView::HostKeyChangeView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QFrame(parent)
    , m_viewModel(viewModel)
{
    setObjectName(u"hostKeyChangeView"_s);
    setFrameShape(QFrame::StyledPanel);
    // The two fingerprints one above the other, so that they compare character by character, and
    // a fingerprint never has to share its line with the other one.
    auto* layout = new QGridLayout(this);
    layout->setHorizontalSpacing(12);
    layout->setVerticalSpacing(4);
    m_oldCaption = captionLabel();
    m_old = fingerprintLabel(u"hostKeyChangeOldFingerprint"_s);
    m_newCaption = captionLabel();
    m_new = fingerprintLabel(u"hostKeyChangeNewFingerprint"_s);
    m_remove = new QPushButton(u"Remove"_s, this);
    m_remove->setObjectName(u"hostKeyChangeRemoveButton"_s);
    m_remove->setToolTip(u"Verwijdert de oude sleutel; ssh vraagt bij de volgende verbinding naar de nieuwe."_s);
    auto* close = new QPushButton(u"Sluiten"_s, this);
    close->setObjectName(u"hostKeyChangeCloseButton"_s);
    setAccessibleText(*m_remove, u"Remove oude sleutel"_s,
        u"Verwijdert de known_hosts entry met de oude sleutel; het bestand verandert pas bij opslaan."_s);
    setAccessibleText(*close, u"Sluiten"_s, u"Verbergt de vergelijking van de sleutels."_s);
    layout->addWidget(m_oldCaption, 0, 0);
    layout->addWidget(m_old, 0, 1);
    layout->addWidget(m_newCaption, 1, 0);
    layout->addWidget(m_new, 1, 1);
    layout->addWidget(m_remove, 0, 2);
    layout->addWidget(close, 1, 2);
    layout->setColumnStretch(0, 1);
    connect(m_remove, &QPushButton::clicked, &m_viewModel, &SSHConfigViewModel::deleteSelectedKnownHostEntry);
    connect(close, &QPushButton::clicked, &m_viewModel, &SSHConfigViewModel::dismissHostKeyChange);
    connect(&m_viewModel, &SSHConfigViewModel::hostKeyChangeChanged, this, &HostKeyChangeView::refresh);
    connect(&m_viewModel, &SSHConfigViewModel::selectedKnownHostEntryIDChanged, this, &HostKeyChangeView::refresh);
    refresh();
}

QLabel* HostKeyChangeView::captionLabel()
{
    auto* caption = new QLabel(this);
    caption->setTextFormat(Qt::PlainText);
    caption->setWordWrap(true);
    caption->setMinimumWidth(1);
    applyTextStyle(caption, TextStyle::caption);
    makeSecondaryText(caption);
    return caption;
}

// A fingerprint has no place to wrap and is never cut: the caption beside it gives way instead.
QLabel* HostKeyChangeView::fingerprintLabel(const QString& objectName)
{
    auto* fingerprint = new QLabel(this);
    fingerprint->setObjectName(objectName);
    fingerprint->setTextFormat(Qt::PlainText);
    fingerprint->setTextInteractionFlags(Qt::TextSelectableByMouse);
    fingerprint->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    return fingerprint;
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
    m_old->setText(change->oldFingerprint.isEmpty() ? u"—"_s : change->oldFingerprint);
    m_newCaption->setText(u"Nieuwe sleutel van "_s + (warning.host.isEmpty() ? u"de server"_s : warning.host)
        + (warning.newKeyType.isEmpty() ? QString() : u" ("_s + warning.newKeyType + u")"_s));
    m_new->setText(warning.newFingerprint);
    // Remove acts on the selection, so it is offered only while the offending entry is the one selected.
    m_remove->setEnabled(change->entryID && m_viewModel.selectedKnownHostEntryID() == change->entryID
        && m_viewModel.indexOfKnownHostRecord(*change->entryID).has_value());
}
