#include "KnownHostsModel.h"

#include <algorithm>

using namespace Qt::StringLiterals;

KnownHostsModel::KnownHostsModel(SSHConfigViewModel& viewModel, QObject* parent)
    : QAbstractListModel(parent)
    , m_viewModel(viewModel)
{
    rebuildRows();
    connectToViewModel();
}

void KnownHostsModel::connectToViewModel()
{
    SSHConfigViewModel* vm = &m_viewModel;
    connect(vm, &SSHConfigViewModel::knownHostsAboutToBeReset, this, [this] { beginResetModel(); });
    connect(vm, &SSHConfigViewModel::knownHostsReset, this, [this] {
        rebuildRows();
        endResetModel();
    });
    connect(vm, &SSHConfigViewModel::knownHostRecordAboutToBeRemoved, this, &KnownHostsModel::recordAboutToBeRemoved);
    connect(vm, &SSHConfigViewModel::knownHostRecordRemoved, this, &KnownHostsModel::recordRemoved);
    connect(vm, &SSHConfigViewModel::knownHostRecordsChanged, this, &KnownHostsModel::recordsChanged);
    connect(vm, &SSHConfigViewModel::knownHostRecordAboutToBeInserted, this, &KnownHostsModel::recordAboutToBeInserted);
    connect(vm, &SSHConfigViewModel::knownHostRecordInserted, this, &KnownHostsModel::recordInserted);
}

void KnownHostsModel::rebuildRows()
{
    m_recordOfRow.clear();
    const QList<KnownHostsRecord>& records = m_viewModel.knownHostsDocument().records();
    for (qsizetype i = 0; i < records.size(); ++i) {
        if (records.at(i).kind().isEntry())
            m_recordOfRow.append(i);
    }
    m_rows.invalidate();
}

int KnownHostsModel::rowOfRecord(qsizetype recordPosition) const
{
    const auto found = std::lower_bound(m_recordOfRow.cbegin(), m_recordOfRow.cend(), recordPosition);
    if (found == m_recordOfRow.cend() || *found != recordPosition)
        return -1;
    return static_cast<int>(found - m_recordOfRow.cbegin());
}

void KnownHostsModel::recordAboutToBeRemoved(qsizetype recordPosition)
{
    const int row = rowOfRecord(recordPosition);
    m_removingRow = row >= 0;
    if (m_removingRow)
        beginRemoveRows({}, row, row);
}

void KnownHostsModel::recordRemoved(qsizetype recordPosition)
{
    const int row = rowOfRecord(recordPosition);
    // Rows after the removed record keep their entries but their records move up by one.
    auto later = std::upper_bound(m_recordOfRow.begin(), m_recordOfRow.end(), recordPosition);
    for (auto it = later; it != m_recordOfRow.end(); ++it)
        --*it;
    if (!m_removingRow)
        return;
    m_recordOfRow.removeAt(row);
    m_rows.noteRemoval();
    m_removingRow = false;
    endRemoveRows();
}

// Which row the new record takes is only known once it is in the document, so the rows are counted
// before and the insertion announced after: the record at recordPosition is not read before then.
void KnownHostsModel::recordAboutToBeInserted(qsizetype recordPosition)
{
    m_insertionRow = static_cast<int>(
        std::lower_bound(m_recordOfRow.cbegin(), m_recordOfRow.cend(), recordPosition) - m_recordOfRow.cbegin());
}

void KnownHostsModel::recordInserted(qsizetype recordPosition)
{
    auto later = std::lower_bound(m_recordOfRow.begin(), m_recordOfRow.end(), recordPosition);
    for (auto it = later; it != m_recordOfRow.end(); ++it)
        ++*it;
    const KnownHostEntry* entry = m_viewModel.knownHostsDocument().records().at(recordPosition).kind().entry();
    if (!entry)
        return;
    beginInsertRows({}, m_insertionRow, m_insertionRow);
    m_recordOfRow.insert(m_insertionRow, recordPosition);
    m_rows.noteInsertion(entry->id(), m_insertionRow);
    endInsertRows();
}

void KnownHostsModel::recordsChanged(qsizetype first, qsizetype last, bool lineNumberOnly)
{
    if (lineNumberOnly)
        return;
    const auto begin = std::lower_bound(m_recordOfRow.cbegin(), m_recordOfRow.cend(), first);
    const auto end = std::upper_bound(m_recordOfRow.cbegin(), m_recordOfRow.cend(), last);
    if (begin == end)
        return;
    const int firstRow = static_cast<int>(begin - m_recordOfRow.cbegin());
    const int lastRow = static_cast<int>(end - m_recordOfRow.cbegin()) - 1;
    Q_EMIT dataChanged(index(firstRow), index(lastRow));
}

int KnownHostsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_recordOfRow.size());
}

const KnownHostEntry& KnownHostsModel::entryAt(int row) const
{
    return *m_viewModel.knownHostsDocument().records().at(m_recordOfRow.at(row)).kind().entry();
}

int KnownHostsModel::rowOf(const QUuid& id) const
{
    return m_rows.rowOf(id, rowCount(), [this](int row) { return entryAt(row).id(); });
}

QString KnownHostsModel::rowLabel(const KnownHostEntry& entry)
{
    const QStringView first = entry.firstHost();
    return first.size() >= 56 ? first.left(52) + u'\u2026' : first.toString();
}

QVariant KnownHostsModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const KnownHostEntry& entry = entryAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return rowLabel(entry);
    case IdRole:
        return entry.id();
    case HostsRole:
        return entry.hosts();
    case FirstHostRole:
        return entry.firstHost().toString();
    case HostsTextRole:
        return entry.hosts().join(u", "_s);
    case MarkerRole:
        return entry.marker() ? knownHostMarkerRawValue(*entry.marker()) : QString();
    case KeyTypeRole:
        return entry.keyType().toString();
    case KeyRole:
        return entry.key().toString();
    case CommentRole:
        return entry.comment().toString();
    case IsHashedRole:
        return entry.isHashed();
    case IsCommentedOutRole:
        return entry.isCommentedOut();
    case Qt::ToolTipRole:
    case Sha256FingerprintRole:
        // Asked only for rows on screen (or under the mouse), so a large file is never hashed whole.
        return knownHostSha256Fingerprint(entry.key()).value_or(QString());
    default:
        return {};
    }
}

Qt::ItemFlags KnownHostsModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
}

QHash<int, QByteArray> KnownHostsModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    names.insert(IdRole, "id");
    names.insert(HostsRole, "hosts");
    names.insert(FirstHostRole, "firstHost");
    names.insert(HostsTextRole, "hostsText");
    names.insert(MarkerRole, "marker");
    names.insert(KeyTypeRole, "keyType");
    names.insert(KeyRole, "key");
    names.insert(CommentRole, "comment");
    names.insert(IsHashedRole, "isHashed");
    names.insert(IsCommentedOutRole, "isCommentedOut");
    names.insert(Sha256FingerprintRole, "sha256Fingerprint");
    return names;
}
