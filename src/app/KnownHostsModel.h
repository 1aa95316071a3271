#pragma once

#include "IdRowIndex.h"
#include "SSHConfigViewModel.h"

#include <QAbstractListModel>

/// The known_hosts entries of the view model's document as a list, one row per record of kind entry
/// (commented-out entries included), in record order. Comment, invalid and blank lines have no row.
///
/// Reads the view model's document directly and follows it: a deleted entry gives one row removal, a
/// marker or comment change one single-row dataChanged; only a load resets the model. Line numbers
/// are not a role, so renumbering after a delete does not touch the rows below it.
/// Filtering is KnownHostsFilterModel's job.
///
/// Roles (besides Qt::DisplayRole, the row's label: the first host, cut to 52 characters and "…" when it
/// has 56 or more, empty when there are none):
/// - IdRole (Qt::UserRole + 1): the entry's id, QUuid
/// - HostsRole: QStringList
/// - FirstHostRole: the first host in full, QString
/// - HostsTextRole: the hosts joined with ", ", QString
/// - MarkerRole: "@cert-authority", "@revoked" or an empty QString
/// - KeyTypeRole, KeyRole, CommentRole: QString
/// - IsHashedRole, IsCommentedOutRole: bool
/// - Sha256FingerprintRole (and Qt::ToolTipRole): "SHA256:…" as ssh-keygen -l prints it, computed when
///   asked; an empty QString when the key is not base64
class KnownHostsModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        IdRole = Qt::UserRole + 1,
        HostsRole,
        FirstHostRole,
        HostsTextRole,
        MarkerRole,
        KeyTypeRole,
        KeyRole,
        CommentRole,
        IsHashedRole,
        IsCommentedOutRole,
        Sha256FingerprintRole,
    };
    Q_ENUM(Role)

    /// viewModel must outlive the model.
    explicit KnownHostsModel(SSHConfigViewModel& viewModel, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// The entry in row; row must be valid.
    const KnownHostEntry& entryAt(int row) const;
    /// The row of the entry with that id, or -1.
    int rowOf(const QUuid& id) const;
    /// The row label: the first host, or its first 52 characters and "…" when it has 56 or more.
    static QString rowLabel(const KnownHostEntry& entry);

    const SSHConfigViewModel& viewModel() const { return m_viewModel; }

private:
    void connectToViewModel();
    void rebuildRows();
    /// The row of the record at recordPosition, or -1 when that record is not an entry.
    int rowOfRecord(qsizetype recordPosition) const;
    void recordAboutToBeRemoved(qsizetype recordPosition);
    void recordRemoved(qsizetype recordPosition);
    void recordsChanged(qsizetype first, qsizetype last, bool lineNumberOnly);
    void recordAboutToBeInserted(qsizetype recordPosition);
    void recordInserted(qsizetype recordPosition);

    SSHConfigViewModel& m_viewModel;
    /// Record position of each row, ascending.
    QList<qsizetype> m_recordOfRow;
    IdRowIndex m_rows;
    bool m_removingRow = false;
    int m_insertionRow = 0;
};
