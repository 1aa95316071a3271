#pragma once

#include "IdRowIndex.h"
#include "SSHConfigViewModel.h"

#include <QAbstractListModel>

/// The hosts of the view model's config document as a list, one row per host in document order.
///
/// Reads the view model's document directly (nothing is copied) and follows it row by row: an added,
/// removed, moved or edited host gives exactly one insert, remove, move or single-row dataChanged;
/// only a load or a parse of the raw text resets the model. Filtering is HostFilterModel's job.
/// A list view in internal-move mode reorders hosts through moveRows().
///
/// Roles (besides Qt::DisplayRole, the first pattern or "*" when there is none):
/// - IdRole (Qt::UserRole + 1): the host's id, QUuid
/// - PatternsRole: QStringList
/// - GroupsRole: QStringList
/// - GroupsTextRole: the groups joined with ", ", QString
/// - IsEnabledRole: bool
/// - PositionRole: the row, which is the host's position in the document, int (for sorting)
class HostListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        IdRole = Qt::UserRole + 1,
        PatternsRole,
        GroupsRole,
        GroupsTextRole,
        IsEnabledRole,
        PositionRole,
    };
    Q_ENUM(Role)

    /// viewModel must outlive the model.
    explicit HostListModel(SSHConfigViewModel& viewModel, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    /// Rows can be dragged, and dropped between rows, only while the view model allows reordering.
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QHash<int, QByteArray> roleNames() const override;
    Qt::DropActions supportedDropActions() const override;
    /// Hands the move to the view model's moveHosts() (rows are document positions); the list follows
    /// the view model's own announcement. Refused while reordering is not allowed.
    bool moveRows(const QModelIndex& sourceParent, int sourceRow, int count, const QModelIndex& destinationParent,
        int destinationChild) override;

    /// The host in row; row must be valid.
    const SSHHost& hostAt(int row) const;
    /// The row of the host with that id, or -1.
    int rowOf(const QUuid& id) const;

    const SSHConfigViewModel& viewModel() const { return m_viewModel; }

private:
    void connectToViewModel();

    SSHConfigViewModel& m_viewModel;
    IdRowIndex m_rows;
};
