#include "SshCheckBar.h"

#include "AccessibleText.h"
#include "SSHConfigViewModel.h"
#include "SymbolIcon.h"
#include "TextStyle.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;

SshCheckBar::SshCheckBar(SSHConfigViewModel& viewModel, QWidget* parent)
    : QFrame(parent)
    , m_viewModel(viewModel)
    , m_text(new QLabel(this))
{
    setObjectName(u"sshCheckBar"_s);
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    m_text->setObjectName(u"sshCheckBarText"_s);
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* icon = new QLabel(this);
    const int side = fontMetrics().height();
    icon->setPixmap(symbolIcon(u"exclamationmark.triangle", warningOrange()).pixmap(QSize(side, side)));

    auto* details = new QPushButton(u"Wat verandert er voor ssh?"_s, this);
    details->setObjectName(u"showSshChangesButton"_s);
    connect(details, &QPushButton::clicked, &m_viewModel, &SSHConfigViewModel::showSshChanges);
    auto* close = new QPushButton(u"Sluiten"_s, this);
    close->setObjectName(u"closeSshCheckBarButton"_s);
    connect(close, &QPushButton::clicked, &m_viewModel, &SSHConfigViewModel::dismissUnchangedSaveWarning);
    setAccessibleText(*details, u"Wat verandert er voor ssh?"_s,
        u"Opent het paneel dat per host toont wat opslaan verandert aan wat ssh doet."_s);
    setAccessibleText(*close, u"Sluiten"_s, u"Sluit deze melding tot het volgende laden."_s);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(10, 6, 10, 6);
    layout->addWidget(icon, 0, Qt::AlignTop);
    layout->addWidget(m_text, 1);
    layout->addWidget(details);
    layout->addWidget(close);

    QPalette palette = this->palette();
    palette.setColor(QPalette::Window, messageBarColor(warningOrange(), palette.color(QPalette::Base)));
    setPalette(palette);

    connect(&m_viewModel, &SSHConfigViewModel::unchangedSaveWarningChanged, this, &SshCheckBar::showWarning);
    showWarning();
}

void SshCheckBar::showWarning()
{
    m_text->setText(m_viewModel.unchangedSaveWarning());
    setVisible(!m_viewModel.unchangedSaveWarning().isEmpty());
}
