#include "SshChangesPane.h"

#include "AccessibleText.h"
#include "SSHConfigViewModel.h"
#include "TextStyle.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{
// The raw-text line a "Regel N" row stands for.
constexpr int lineRole = Qt::UserRole + 1;

QString shownValue(const QString& value, const QString& whenEmpty)
{
    return value.isEmpty() ? whenEmpty : value;
}
} // namespace

SshChangesPane::SshChangesPane(SSHConfigViewModel& viewModel, QWidget* parent)
    : QDockWidget(u"Wat verandert er voor ssh?"_s, parent)
    , m_viewModel(viewModel)
    , m_status(new QLabel(this))
    , m_progress(new QProgressBar(this))
    , m_tree(new QTreeWidget(this))
{
    setObjectName(u"sshChangesPane"_s);
    setFeatures(QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable);
    m_status->setObjectName(u"sshChangesStatus"_s);
    m_status->setWordWrap(true);
    m_progress->setObjectName(u"sshCheckProgressBar"_s);
    m_progress->setRange(0, 100);
    m_tree->setObjectName(u"sshChangesTree"_s);
    m_tree->setColumnCount(3);
    m_tree->setHeaderLabels({ u"Host / instelling"_s, u"Op schijf"_s, u"Na opslaan"_s });
    m_tree->setUniformRowHeights(true);
    m_tree->header()->setStretchLastSection(true);
    connect(m_tree, &QTreeWidget::itemActivated, this, &SshChangesPane::activate);
    nameControls();

    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(m_status);
    layout->addWidget(m_progress);
    layout->addWidget(m_tree, 1);
    // Wide enough for a keyword and two values side by side without scrolling for the common ones.
    content->setMinimumWidth(380);
    setWidget(content);

    connect(&m_viewModel, &SSHConfigViewModel::sshChangesShownChanged, this, &SshChangesPane::followShown);
    for (const auto signal : { &SSHConfigViewModel::sshCheckRunningChanged,
             &SSHConfigViewModel::sshCheckProgressChanged, &SSHConfigViewModel::sshCheckProblemChanged })
        connect(&m_viewModel, signal, this, &SshChangesPane::showStatus);
    for (const auto signal : { &SSHConfigViewModel::configSshChangesChanged,
             &SSHConfigViewModel::knownHostsSshChangesChanged, &SSHConfigViewModel::rawTextChanged })
        connect(&m_viewModel, signal, this, &SshChangesPane::showChanges);
    showStatus();
    showChanges();
    followShown();
}

void SshChangesPane::nameControls()
{
    setAccessibleText(*m_tree, u"Wat verandert er voor ssh?"_s,
        u"Per host de instellingen die ssh na opslaan anders leest, oud en nieuw. Een regel "
        u"\"Regel N\" openen toont die regel in de Raw Editor."_s);
    setAccessibleText(*m_progress, u"Voortgang van de controle door OpenSSH"_s,
        u"Hoeveel van de vragen aan ssh en ssh-keygen al beantwoord zijn."_s);
    // The title bar's buttons are the dock's own; they are named here like every other control.
    if (auto* close = findChild<QAbstractButton*>(u"qt_dockwidget_closebutton"_s))
        setAccessibleText(*close, u"Paneel sluiten"_s, u"Sluit het paneel \"Wat verandert er voor ssh?\"."_s);
    if (auto* floating = findChild<QAbstractButton*>(u"qt_dockwidget_floatbutton"_s))
        setAccessibleText(*floating, u"Los paneel"_s, u"Maakt het paneel los van het venster."_s);
}

void SshChangesPane::closeEvent(QCloseEvent* event)
{
    QDockWidget::closeEvent(event);
    m_viewModel.hideSshChanges();
}

void SshChangesPane::followShown()
{
    setVisible(m_viewModel.sshChangesShown());
}

void SshChangesPane::showStatus()
{
    const qsizetype hosts = m_viewModel.configSshChanges().size() + m_viewModel.knownHostsSshChanges().size();
    const QString& problem = m_viewModel.sshCheckProblem();
    QString status;
    if (m_viewModel.sshCheckRunning())
        status = u"OpenSSH beoordeelt wat opslaan verandert…"_s;
    else if (hosts > 0)
        status = u"Opslaan verandert voor "_s + QString::number(hosts) + u" hosts wat ssh doet."_s;
    // "Nothing changes" would be a guess when OpenSSH could not judge.
    else if (problem.isEmpty())
        status = u"Opslaan verandert niets aan wat ssh doet."_s;
    if (!problem.isEmpty())
        status = status.isEmpty() ? problem : status + u' ' + problem;
    m_status->setText(status);
    m_progress->setValue(m_viewModel.sshCheckProgress());
    m_progress->setVisible(m_viewModel.sshCheckRunning());
}

void SshChangesPane::showChanges()
{
    m_tree->clear();
    addHosts(u"SSH config"_s, m_viewModel.configSshChanges(), true);
    addHosts(u"known_hosts"_s, m_viewModel.knownHostsSshChanges(), false);
    m_tree->expandAll();
    m_tree->resizeColumnToContents(0);
    showStatus();
}

void SshChangesPane::addHosts(const QString& section, const QList<SshHostChange>& hosts, bool withLines)
{
    if (hosts.isEmpty())
        return;
    auto* sectionItem = new QTreeWidgetItem(m_tree, { section });
    sectionItem->setFont(0, textStyleFont(TextStyle::headline, m_tree->font()));
    const QString whenEmpty = withLines ? u"(niet gezet)"_s : u"(niet gevonden)"_s;
    for (const SshHostChange& host : hosts) {
        auto* hostItem = new QTreeWidgetItem(sectionItem, { host.name });
        for (const SshSettingChange& change : host.changes)
            new QTreeWidgetItem(hostItem,
                { change.keyword, shownValue(change.before, whenEmpty), shownValue(change.after, whenEmpty) });
        if (!withLines)
            continue;
        for (const qsizetype line : m_viewModel.rawTextLinesFor(host)) {
            auto* lineItem = new QTreeWidgetItem(hostItem, { u"Regel "_s + QString::number(line) });
            lineItem->setData(0, lineRole, line);
            lineItem->setToolTip(0, u"Toon deze regel in de Raw Editor"_s);
            lineItem->setForeground(0, m_tree->palette().brush(QPalette::Link));
        }
    }
}

void SshChangesPane::activate(QTreeWidgetItem* item)
{
    const QVariant line = item->data(0, lineRole);
    if (line.isValid())
        m_viewModel.showRawTextLine(line.value<qsizetype>());
}
