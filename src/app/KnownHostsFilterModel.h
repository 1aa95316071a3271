#pragma once

#include "KnownHostsModel.h"
#include "KnownHostsSearchText.h"

#include <QAbstractProxyModel>
#include <QSet>

#include <optional>
#include <utility>
#include <vector>

/// The known_hosts list as the known_hosts tab shows it: the rows of a KnownHostsModel that the view
/// model's own rule (SSHConfigViewModel::knownHostEntryMatchesSearch) keeps for its knownHostsSearchText, in
/// record order. While the view model has a host lookup, only the entries it found. Follows the search
/// text and the lookup by itself; never sorts.
///
/// A row of this model is a position in one vector of source rows, so index() and the mapping to the
/// source cost no lookup: a list view that lays out all of its 100,000 rows again after a deletion
/// asks for every one of them.
///
/// Follows its source as a dynamically filtering proxy does: an inserted or changed row that now
/// matches comes in, a changed row that no longer matches goes, and a row that stays gets dataChanged.
/// A search change that shows or hides only a few runs of rows is announced row by row; one that
/// changes many scattered rows resets the model instead, which is cheaper for the views than
/// hundreds of separate insertions and removals.
class KnownHostsFilterModel : public QAbstractProxyModel
{
    Q_OBJECT

public:
    /// source and its view model must outlive this model.
    explicit KnownHostsFilterModel(KnownHostsModel& source, QObject* parent = nullptr);

    /// The row showing the entry with that id, or -1 when it is filtered out or unknown.
    int rowOf(const QUuid& id) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    QModelIndex sibling(int row, int column, const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    bool hasChildren(const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex mapToSource(const QModelIndex& proxyIndex) const override;
    QModelIndex mapFromSource(const QModelIndex& sourceIndex) const override;

private:
    void followSource();
    void sourceRowsInserted(int first, int last);
    void sourceRowsAboutToBeRemoved(int first, int last);
    void sourceRowsRemoved(int first, int last);
    void sourceDataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QList<int>& roles);
    void sourceAboutToBeRebuilt();
    void sourceRebuilt();

    void refilter();
    void adoptSearch(const QString& query, const QString& fingerprintQuery, std::optional<QSet<QUuid>> lookup);
    bool accepts(int sourceRow) const;
    /// For every source row, whether the current query and lookup keep it; shown is what this model
    /// shows now, and narrowing or widening whether the query only narrows or widens the last one.
    std::vector<char> acceptedRows(const std::vector<char>& shown, bool narrowing, bool widening) const;
    /// For every source row, whether this model shows it now.
    std::vector<char> shownSourceRows() const;
    /// The shown source rows that accepted (one answer per source row) keeps.
    static std::vector<int> keptRows(const std::vector<char>& accepted);
    /// How many runs of consecutive source rows change between shown and accepted.
    static qsizetype changedRuns(const std::vector<char>& shown, const std::vector<char>& accepted);
    /// Removes the shown rows among source rows first to last that accepted (indexed by source row
    /// minus first) rejects, one removal per run of adjacent rows of this model.
    void removeRejected(int first, int last, const std::vector<char>& accepted);
    /// Inserts the hidden rows among source rows first to last that accepted keeps, one insertion per
    /// run that lands between the same two shown rows.
    void insertAccepted(int first, int last, const std::vector<char>& accepted);
    /// The first row of this model whose source row is sourceRow or later.
    int firstRowFrom(int sourceRow) const;
    void rebuildSearchText();
    std::optional<QSet<QUuid>> currentLookup() const;

    KnownHostsModel& m_source;
    /// The source row of every row of this model, ascending.
    std::vector<int> m_sourceRows;
    /// The rows of this model that a removal announced by the source takes away, begin and end.
    std::optional<std::pair<int, int>> m_pendingRemoval;
    /// Between the source's announcement of a reset (or move) and the reset itself, when its rows
    /// cannot be read.
    bool m_sourceRebuilding = false;
    QString m_query;
    QString m_fingerprintQuery;
    /// m_query as m_searchText answers it, or nothing when the entries themselves must be asked.
    std::optional<QByteArray> m_searchableQuery;
    KnownHostsSearchText m_searchText;
    /// The entries of the view model's host lookup, while there is one.
    std::optional<QSet<QUuid>> m_lookup;
};
