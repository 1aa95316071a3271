#pragma once

#include "HostListModel.h"

#include <QSortFilterProxyModel>

/// The host list as the sidebar shows it: the rows of a HostListModel that the view model's own rule
/// (SSHConfigViewModel::hostMatchesFilters) keeps for its searchText and selectedGroup, in document
/// order. Follows both fields by itself; never sorts.
class HostFilterModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    /// source and its view model must outlive this model.
    explicit HostFilterModel(HostListModel& source, QObject* parent = nullptr);

    /// The document position of the host shown in proxyRow, or -1.
    int sourceRow(int proxyRow) const;
    /// The row showing the host with that id, or -1 when it is filtered out or unknown.
    int rowOf(const QUuid& id) const;

    /// Moves the hosts shown in the rows through the source model; refused for rows that are not
    /// next to each other in the document.
    bool moveRows(const QModelIndex& sourceParent, int sourceRow, int count, const QModelIndex& destinationParent,
        int destinationChild) override;

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

private:
    void refilter();

    HostListModel& m_source;
    QString m_query;
};
