#pragma once

#include "KnownHostsModel.h"

#include <QSortFilterProxyModel>

/// The known_hosts list as the known_hosts tab shows it: the rows of a KnownHostsModel that the view
/// model's own rule (SSHConfigViewModel::knownHostEntryMatches) keeps for its knownHostsSearchText, in
/// record order. Follows the search text by itself; never sorts.
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

    KnownHostsModel& m_source;
    QString m_query;
};
