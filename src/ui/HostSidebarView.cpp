#include "HostSidebarView.h"

#include "GroupList.h"

#include "AccessibleText.h"
#include "ElidingComboBox.h"
#include "HostListView.h"
#include "SSHConfigViewModel.h"
#include "SymbolIcon.h"
#include "TextStyle.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

HostSidebarView::HostSidebarView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
    , m_search(new QLineEdit(this))
    , m_groupPicker(new ElidingComboBox(this))
    , m_newGroup(new QPushButton(symbolIcon(u"plus.circle"), u"Nieuwe groep"_s, this))
    , m_reorderHint(new QLabel(this))
    , m_list(new HostListView(viewModel, this))
{
    setObjectName(u"hostSidebar"_s);
    m_search->setObjectName(u"hostSearchField"_s);
    setAccessibleText(*m_search, u"Hosts zoeken"_s, u"Filtert de hostlijst op patroon, optie of groep."_s);
    m_search->setPlaceholderText(u"Search hosts / options / groups"_s);
    m_search->setClearButtonEnabled(true);
    m_reorderHint->setObjectName(u"reorderHint"_s);
    m_reorderHint->setWordWrap(true);
    applyTextStyle(m_reorderHint, TextStyle::caption);
    makeSecondaryText(m_reorderHint);

    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(10);
    layout->addWidget(m_search);
    layout->addWidget(makeGroupRow());
    layout->addWidget(m_reorderHint);
    layout->addWidget(m_list, 1);

    connect(m_search, &QLineEdit::textEdited, &m_viewModel, &SSHConfigViewModel::setSearchText);
    connect(m_groupPicker, &QComboBox::textActivated, &m_viewModel, &SSHConfigViewModel::setSelectedGroup);
    connect(m_newGroup, &QPushButton::clicked, this, &HostSidebarView::createGroupRequested);

    connect(&m_viewModel, &SSHConfigViewModel::searchTextChanged, this, &HostSidebarView::showSearchText);
    connect(&m_viewModel, &SSHConfigViewModel::searchTextChanged, this, &HostSidebarView::showReorderHint);
    connect(&m_viewModel, &SSHConfigViewModel::selectedGroupChanged, this, &HostSidebarView::showGroups);
    connect(&m_viewModel, &SSHConfigViewModel::selectedGroupChanged, this, &HostSidebarView::showReorderHint);
    connect(&m_viewModel, &SSHConfigViewModel::documentChanged, this, &HostSidebarView::showGroups);
    connect(&m_viewModel, &SSHConfigViewModel::selectedHostIDChanged, this, &HostSidebarView::updateNewGroupButton);
    showSearchText();
    showGroups();
    showReorderHint();
    updateNewGroupButton();
}

QWidget* HostSidebarView::makeGroupRow()
{
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    auto* label = new QLabel(u"Groep"_s, row);
    label->setBuddy(m_groupPicker);
    m_groupPicker->setObjectName(u"groupPicker"_s);
    setAccessibleText(*m_groupPicker, u"Groep"_s, u"Toont alleen de hosts in deze groep; All toont alle hosts."_s);
    m_groupPicker->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_groupPicker->setMinimumContentsLength(8);
    m_newGroup->setObjectName(u"newGroupButton"_s);
    setAccessibleText(*m_newGroup, u"Nieuwe groep"_s, u"Maakt een groep en koppelt die aan de geselecteerde host."_s);
    layout->addWidget(label);
    layout->addWidget(m_groupPicker, 1);
    layout->addWidget(m_newGroup);
    return row;
}

void HostSidebarView::showSearchText()
{
    if (m_search->text() != m_viewModel.searchText())
        m_search->setText(m_viewModel.searchText());
}

void HostSidebarView::showGroups()
{
    QStringList options { allGroupsFilter() };
    options += m_viewModel.availableGroups();
    const QString& selected = m_viewModel.selectedGroup();
    // A filter on a group that no host carries any more is still in force; it stays visible as an option.
    if (!options.contains(selected))
        options.append(selected);

    QStringList shown;
    shown.reserve(m_groupPicker->count());
    for (int i = 0; i < m_groupPicker->count(); ++i)
        shown.append(m_groupPicker->itemText(i));
    const QSignalBlocker blocker(m_groupPicker);
    if (shown != options) {
        m_groupPicker->clear();
        m_groupPicker->addItems(options);
    }
    m_groupPicker->setCurrentIndex(static_cast<int>(options.indexOf(selected)));
}

void HostSidebarView::showReorderHint()
{
    m_reorderHint->setText(m_viewModel.canReorderHosts() ? u"Reorder is actief (geen filters)."_s
                                                         : u"Reorder uitgeschakeld door zoekfilter/groepfilter."_s);
}

void HostSidebarView::updateNewGroupButton()
{
    m_newGroup->setEnabled(m_viewModel.selectedHostID().has_value());
}

void HostSidebarView::focusSearchField()
{
    m_search->setFocus(Qt::ShortcutFocusReason);
    m_search->selectAll();
}
