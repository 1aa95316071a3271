#include "MainStatusBar.h"

#include "ElidedLabel.h"
#include "SSHConfigViewModel.h"
#include "SymbolIcon.h"
#include "TextStyle.h"

#include <QHBoxLayout>
#include <QLabel>

using namespace Qt::StringLiterals;

MainStatusBar::MainStatusBar(SSHConfigViewModel& viewModel, QWidget* parent)
    : QStatusBar(parent)
    , m_viewModel(viewModel)
    , m_message(new ElidedLabel(this))
    , m_warning(makeWarning())
{
    setObjectName(u"statusBar"_s);
    setSizeGripEnabled(false);
    setContentsMargins(8, 8, 8, 8);
    m_message->setObjectName(u"statusMessage"_s);
    applyTextStyle(m_message, TextStyle::footnote);
    makeSecondaryText(m_message);
    addWidget(m_message, 1);
    addPermanentWidget(m_warning);

    connect(&m_viewModel, &SSHConfigViewModel::statusMessageChanged, this, &MainStatusBar::showStatusMessage);
    connect(&m_viewModel, &SSHConfigViewModel::rawEditorDirtyChanged, this, &MainStatusBar::showUnsavedChanges);
    connect(&m_viewModel, &SSHConfigViewModel::knownHostsDirtyChanged, this, &MainStatusBar::showUnsavedChanges);
    showStatusMessage();
    showUnsavedChanges();
}

QWidget* MainStatusBar::makeWarning()
{
    auto* warning = new QWidget(this);
    warning->setObjectName(u"unsavedChangesWarning"_s);
    auto* icon = new QLabel(warning);
    auto* text = new QLabel(u"Unsaved changes"_s, warning);
    text->setObjectName(u"unsavedChangesText"_s);
    applyTextStyle(text, TextStyle::footnote);
    makeWarningText(text);
    const int side = text->fontMetrics().height();
    icon->setPixmap(symbolIcon(u"exclamationmark.triangle", warningOrange()).pixmap(QSize(side, side)));
    auto* layout = new QHBoxLayout(warning);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(icon);
    layout->addWidget(text);
    return warning;
}

bool MainStatusBar::showsUnsavedChangesWarning() const
{
    return !m_warning->isHidden();
}

void MainStatusBar::showStatusMessage()
{
    m_message->setText(m_viewModel.statusMessage());
}

void MainStatusBar::showUnsavedChanges()
{
    m_warning->setVisible(m_viewModel.rawEditorDirty() || m_viewModel.knownHostsDirty());
}
