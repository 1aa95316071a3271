#pragma once

#include "KnownHostsModel.h"
#include "KnownHostsSearchText.h"

#include <QSet>
#include <QSortFilterProxyModel>

#include <vector>

/// The known_hosts list as the known_hosts tab shows it: the rows of a KnownHostsModel that the view
/// model's own rule (SSHConfigViewModel::knownHostEntryMatchesSearch) keeps for its knownHostsSearchText, in
/// record order. While the view model has a host lookup, only the entries it found. Follows the search
/// text and the lookup by itself; never sorts.
///
/// A search change that shows or hides only a few runs of rows is announced row by row; one that
/// changes many scattered rows resets the model instead, because QSortFilterProxyModel pays a pass
/// over all rows for every run it inserts or removes, which at 100,000 entries would stall a keystroke.
class KnownHostsFilterModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    /// source and its view model must outlive this model.
    explicit KnownHostsFilterModel(KnownHostsModel& source, QObject* parent = nullptr);

    /// The row showing the entry with that id, or -1 when it is filtered out or unknown.
    int rowOf(const QUuid& id) const;

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

private:
    void refilter();
    bool accepts(int sourceRow) const;
    /// For every source row, whether the current query and lookup keep it; shown is what this model
    /// shows now, and narrowing or widening whether the query only narrows or widens the last one.
    std::vector<char> acceptedRows(const std::vector<char>& shown, bool narrowing, bool widening) const;
    void followSourceRows();
    void rebuildSearchText();
    std::optional<QSet<QUuid>> currentLookup() const;
    /// For every source row, whether this model shows it now.
    std::vector<char> shownSourceRows() const;
    /// Forgets the answers kept from the last refilter, once the source has changed under them.
    void forgetShownRows() { m_shown.clear(); }
    /// How many runs of consecutive source rows change between shown and accepted.
    static qsizetype changedRuns(const std::vector<char>& shown, const std::vector<char>& accepted);

    KnownHostsModel& m_source;
    QString m_query;
    QString m_fingerprintQuery;
    /// m_query as m_searchText answers it, or nothing when the entries themselves must be asked.
    std::optional<QByteArray> m_searchableQuery;
    KnownHostsSearchText m_searchText;
    /// The entries of the view model's host lookup, while there is one.
    std::optional<QSet<QUuid>> m_lookup;
    /// During refilter(): every source row's answer for the new query, so no row is tested twice.
    const std::vector<char>* m_accepted = nullptr;
    /// The answers of the last refilter while the source has not changed since (else empty): asking
    /// the proxy which rows it shows costs a mapping lookup per row.
    std::vector<char> m_shown;
};
