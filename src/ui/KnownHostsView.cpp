#include "KnownHostsView.h"

#include "AccessibleText.h"
#include "HostKeyChangeView.h"
#include "KnownHostDetailView.h"
#include "KnownHostEntryDelegate.h"
#include "KnownHostLookupBar.h"
#include "KnownHostsFilterModel.h"
#include "KnownHostsModel.h"
#include "KnownHostsParseErrorsView.h"
#include "SSHConfigViewModel.h"
#include "TextStyle.h"
#include "UniformRowListView.h"

#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QSplitter>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

KnownHostsView::KnownHostsView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
    , m_model(new KnownHostsModel(viewModel, this))
    , m_filter(new KnownHostsFilterModel(*m_model, this))
{
    setObjectName(u"knownHostsView"_s);
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(12);
    layout->addWidget(buildHeader());
    layout->addWidget(new KnownHostLookupBar(viewModel, this));
    layout->addWidget(new HostKeyChangeView(viewModel, this));

    auto* split = new QSplitter(Qt::Horizontal, this);
    split->setObjectName(u"knownHostsSplit"_s);
    split->setChildrenCollapsible(false);
    split->addWidget(buildList());
    m_detail = new KnownHostDetailView(viewModel, split);
    m_detail->setMinimumSize(420, 320);
    split->addWidget(m_detail);
    split->setStretchFactor(0, 2);
    split->setStretchFactor(1, 3);
    layout->addWidget(split, 1);
    layout->addWidget(new KnownHostsParseErrorsView(viewModel, this));

    connectToViewModel();
    showSearchText();
    showEntryCount();
    showSelection();
}

KnownHostsView::~KnownHostsView()
{
    // The models and the list go down after this object (with its children) and announce it; none of
    // that may reach a half-destroyed view, let alone be taken for the user clearing the selection.
    disconnect(m_list->selectionModel(), nullptr, this, nullptr);
    disconnect(m_filter, nullptr, this, nullptr);
}

QWidget* KnownHostsView::buildHeader()
{
    auto* header = new QWidget(this);
    auto* layout = new QHBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    m_searchField = new QLineEdit(header);
    m_searchField->setObjectName(u"knownHostsSearchField"_s);
    setAccessibleText(*m_searchField, u"known_hosts zoeken"_s,
        u"Filtert de entries op host, marker, sleuteltype, sleutel of commentaar."_s);
    m_searchField->setPlaceholderText(u"Search known_hosts"_s);
    m_searchField->setClearButtonEnabled(true);
    m_count = new QLabel(header);
    m_count->setObjectName(u"knownHostsCountLabel"_s);
    applyTextStyle(m_count, TextStyle::caption);
    makeSecondaryText(m_count);
    layout->addWidget(m_searchField, 1);
    layout->addWidget(m_count, 0, Qt::AlignVCenter);
    // textEdited is the user's typing only, so showing the view model's text never echoes back.
    connect(m_searchField, &QLineEdit::textEdited, &m_viewModel, &SSHConfigViewModel::setKnownHostsSearchText);
    return header;
}

UniformRowListView* KnownHostsView::buildList()
{
    // With a hundred thousand entries, one row height for all is what keeps scrolling, filtering
    // and changing an entry smooth.
    m_list = new UniformRowListView(this);
    m_list->setObjectName(u"knownHostsList"_s);
    setAccessibleText(*m_list, u"known_hosts entries"_s, u"De entries van het known_hosts bestand."_s);
    // Before setModel, so these run ahead of the list's own handlers, which move the selection to a
    // neighbour when the selected row goes away.
    followRowChanges();
    m_list->setModel(m_filter);
    m_list->setItemDelegate(new KnownHostEntryDelegate(m_list));
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setMinimumSize(360, 320);
    connect(
        m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this, &KnownHostsView::listSelectionChanged);
    return m_list;
}

void KnownHostsView::followRowChanges()
{
    // While rows come and go (search, delete, reload) the list drops its selection by itself; that is
    // not the user choosing "no entry", so it is not written to the view model.
    const auto begin = [this] { ++m_rowsChanging; };
    const auto end = [this] {
        --m_rowsChanging;
        showSelection(); // a selected entry that shows up again is selected again
    };
    connect(m_filter, &QAbstractItemModel::rowsAboutToBeInserted, this, begin);
    connect(m_filter, &QAbstractItemModel::rowsInserted, this, end);
    connect(m_filter, &QAbstractItemModel::rowsAboutToBeRemoved, this, begin);
    connect(m_filter, &QAbstractItemModel::rowsRemoved, this, end);
    connect(m_filter, &QAbstractItemModel::layoutAboutToBeChanged, this, begin);
    connect(m_filter, &QAbstractItemModel::layoutChanged, this, end);
    connect(m_filter, &QAbstractItemModel::modelAboutToBeReset, this, begin);
    connect(m_filter, &QAbstractItemModel::modelReset, this, end);
}

void KnownHostsView::connectToViewModel()
{
    connect(&m_viewModel, &SSHConfigViewModel::knownHostsSearchTextChanged, this, &KnownHostsView::showSearchText);
    connect(&m_viewModel, &SSHConfigViewModel::knownHostsEntryCountChanged, this, &KnownHostsView::showEntryCount);
    connect(&m_viewModel, &SSHConfigViewModel::selectedKnownHostEntryIDChanged, this, &KnownHostsView::showSelection);
}

void KnownHostsView::showSearchText()
{
    const QString& text = m_viewModel.knownHostsSearchText();
    if (m_searchField->text() != text)
        m_searchField->setText(text);
}

void KnownHostsView::showEntryCount()
{
    m_count->setText(QString::number(m_viewModel.knownHostsEntryCount()) + u" entries"_s);
}

void KnownHostsView::showSelection()
{
    const std::optional<QUuid>& id = m_viewModel.selectedKnownHostEntryID();
    const int row = id ? m_filter->rowOf(*id) : -1;
    QItemSelectionModel* selection = m_list->selectionModel();
    const QModelIndex index = m_filter->index(row, 0);
    if (index.isValid() && selection->isSelected(index) && selection->currentIndex() == index)
        return;
    m_showingSelection = true;
    if (index.isValid()) {
        selection->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
        m_list->scrollTo(index);
    } else {
        selection->clear();
    }
    m_showingSelection = false;
}

void KnownHostsView::listSelectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    Q_UNUSED(deselected)
    if (m_showingSelection || m_rowsChanging > 0)
        return;
    if (!selected.indexes().isEmpty()) {
        const QUuid id = selected.indexes().constFirst().data(KnownHostsModel::IdRole).toUuid();
        m_viewModel.setSelectedKnownHostEntryID(id);
        return;
    }
    if (m_list->selectionModel()->selectedIndexes().isEmpty())
        m_viewModel.setSelectedKnownHostEntryID(std::nullopt);
}

void KnownHostsView::focusSearchField()
{
    m_searchField->setFocus(Qt::ShortcutFocusReason);
    m_searchField->selectAll();
}
