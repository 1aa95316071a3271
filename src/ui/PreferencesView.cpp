#include "PreferencesView.h"

#include "AccessibleText.h"
#include "SSHConfigViewModel.h"
#include "TerminalExplanation.h"
#include "TextStyle.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

constexpr int contentWidth = 520;
constexpr int contentHeight = 360;

QLabel* textLabel(const QString& text, const QString& objectName, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setObjectName(objectName);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QLabel* pathLabel(const QString& path, const QString& objectName, QWidget* parent)
{
    QLabel* label = textLabel(path, objectName, parent);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}

} // namespace

PreferencesView::PreferencesView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
{
    setObjectName(u"preferencesView"_s);
    // The window around the view adds the default margins; a large font scrolls instead of clipping.
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* scroll = new QScrollArea(this);
    scroll->setObjectName(u"preferencesScrollArea"_s);
    // The controls inside take the focus; a Tab stop on the area itself would show nothing.
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidget(buildSections());
    layout->addWidget(scroll);
    connectToViewModel();
    showTerminalApps();
    showEntryCount();
    showLastBackup();
}

QSize PreferencesView::sizeHint() const
{
    return { contentWidth, contentHeight };
}

QWidget* PreferencesView::buildSections()
{
    auto* sections = new QWidget;
    auto* layout = new QVBoxLayout(sections);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(buildTerminalSection(sections));
    layout->addWidget(buildFilesSection(sections));
    layout->addWidget(buildLastBackupSection(sections));
    layout->addStretch(1);
    return sections;
}

QGroupBox* PreferencesView::buildTerminalSection(QWidget* parent)
{
    auto* section = new QGroupBox(u"Terminal app"_s, parent);
    section->setObjectName(u"terminalSection"_s);
    m_terminalForm = new QFormLayout(section);
    m_noTerminal = textLabel(u"Geen ondersteunde terminal apps gevonden."_s, u"noTerminalLabel"_s, section);
    makeSecondaryText(m_noTerminal);
    m_terminalForm->addRow(m_noTerminal);
    m_terminalPicker = new QComboBox(section);
    m_terminalPicker->setObjectName(u"terminalPicker"_s);
    setAccessibleText(
        *m_terminalPicker, u"Gebruik voor connect"_s, u"De terminal waarin Connect het ssh-commando start."_s);
    m_terminalForm->addRow(u"Gebruik voor connect"_s, m_terminalPicker);
    m_selectedTerminal = textLabel(QString(), u"selectedTerminalLabel"_s, section);
    applyTextStyle(m_selectedTerminal, TextStyle::caption);
    makeSecondaryText(m_selectedTerminal);
    m_terminalForm->addRow(QString(), m_selectedTerminal); // under the picker it names
    auto* reload = new QPushButton(u"Herlaad terminal lijst"_s, section);
    reload->setObjectName(u"reloadTerminalsButton"_s);
    setAccessibleText(*reload, u"Herlaad terminal lijst"_s, u"Zoekt opnieuw naar geïnstalleerde terminal apps."_s);
    auto* reloadRow = new QHBoxLayout;
    reloadRow->addWidget(reload);
    reloadRow->addStretch(1);
    m_terminalForm->addRow(reloadRow);
    QLabel* explanation = textLabel(terminalExplanation(), u"terminalExplanationLabel"_s, section);
    applyTextStyle(explanation, TextStyle::caption);
    makeSecondaryText(explanation);
    m_terminalForm->addRow(explanation);
    // activated is the user's choice only, so showing the view model's choice never writes it back.
    connect(m_terminalPicker, &QComboBox::activated, this, &PreferencesView::terminalChosen);
    connect(reload, &QPushButton::clicked, &m_viewModel, &SSHConfigViewModel::refreshTerminalApps);
    return section;
}

QGroupBox* PreferencesView::buildFilesSection(QWidget* parent)
{
    auto* section = new QGroupBox(u"Bestanden"_s, parent);
    section->setObjectName(u"filesSection"_s);
    auto* form = new QFormLayout(section);
    const SSHFileService& files = m_viewModel.fileService();
    form->addRow(u"SSH config"_s, pathLabel(files.configURL(), u"configPathLabel"_s, section));
    form->addRow(u"Known hosts"_s, pathLabel(files.knownHostsURL(), u"knownHostsPathLabel"_s, section));
    m_entryCount = textLabel(QString(), u"knownHostsEntryCountLabel"_s, section);
    form->addRow(u"Known hosts entries"_s, m_entryCount);
    return section;
}

QGroupBox* PreferencesView::buildLastBackupSection(QWidget* parent)
{
    m_lastBackupSection = new QGroupBox(u"Laatste backup"_s, parent);
    m_lastBackupSection->setObjectName(u"lastBackupSection"_s);
    auto* layout = new QVBoxLayout(m_lastBackupSection);
    m_lastBackup = pathLabel(QString(), u"lastBackupLabel"_s, m_lastBackupSection);
    applyTextStyle(m_lastBackup, TextStyle::footnote);
    makeSecondaryText(m_lastBackup);
    layout->addWidget(m_lastBackup);
    return m_lastBackupSection;
}

void PreferencesView::connectToViewModel()
{
    connect(&m_viewModel, &SSHConfigViewModel::availableTerminalAppsChanged, this, &PreferencesView::showTerminalApps);
    connect(&m_viewModel, &SSHConfigViewModel::selectedTerminalBundleIdentifierChanged, this,
        &PreferencesView::showSelectedTerminal);
    connect(&m_viewModel, &SSHConfigViewModel::knownHostsEntryCountChanged, this, &PreferencesView::showEntryCount);
    connect(&m_viewModel, &SSHConfigViewModel::lastBackupPathChanged, this, &PreferencesView::showLastBackup);
}

void PreferencesView::showTerminalApps()
{
    const QList<TerminalApp>& apps = m_viewModel.availableTerminalApps();
    {
        const QSignalBlocker blocker(m_terminalPicker);
        m_terminalPicker->clear();
        for (const TerminalApp& app : apps)
            m_terminalPicker->addItem(app.displayName(), app.bundleIdentifier());
    }
    m_terminalForm->setRowVisible(m_noTerminal, apps.isEmpty());
    m_terminalForm->setRowVisible(m_terminalPicker, !apps.isEmpty());
    showSelectedTerminal();
}

void PreferencesView::showSelectedTerminal()
{
    {
        const QSignalBlocker blocker(m_terminalPicker);
        m_terminalPicker->setCurrentIndex(m_terminalPicker->findData(m_viewModel.selectedTerminalBundleIdentifier()));
    }
    const std::optional<TerminalApp> app = m_viewModel.selectedTerminalApp();
    m_selectedTerminal->setText(app ? u"Geselecteerd: "_s + app->displayName() : QString());
    m_terminalForm->setRowVisible(m_selectedTerminal, app.has_value());
}

void PreferencesView::showEntryCount()
{
    m_entryCount->setText(QString::number(m_viewModel.knownHostsEntryCount()));
}

void PreferencesView::showLastBackup()
{
    const QString& path = m_viewModel.lastBackupPath();
    m_lastBackup->setText(path);
    m_lastBackupSection->setVisible(!path.isEmpty());
}

void PreferencesView::terminalChosen(int index)
{
    const QString bundleIdentifier = m_terminalPicker->itemData(index).toString();
    if (index >= 0 && bundleIdentifier != m_viewModel.selectedTerminalBundleIdentifier())
        m_viewModel.selectTerminal(bundleIdentifier);
}
