#include "HostListModel.h"

using namespace Qt::StringLiterals;

namespace {

int toRow(qsizetype position)
{
    return static_cast<int>(position);
}

} // namespace

HostListModel::HostListModel(SSHConfigViewModel& viewModel, QObject* parent)
    : QAbstractListModel(parent)
    , m_viewModel(viewModel)
{
    connectToViewModel();
}

void HostListModel::connectToViewModel()
{
    SSHConfigViewModel* vm = &m_viewModel;
    connect(vm, &SSHConfigViewModel::hostsAboutToBeReset, this, [this] { beginResetModel(); });
    connect(vm, &SSHConfigViewModel::hostsReset, this, [this] {
        m_rows.invalidate();
        endResetModel();
    });
    connect(vm, &SSHConfigViewModel::hostAboutToBeInserted, this,
            [this](qsizetype position) { beginInsertRows({}, toRow(position), toRow(position)); });
    connect(vm, &SSHConfigViewModel::hostInserted, this, [this] {
        m_rows.invalidate();
        endInsertRows();
    });
    connect(vm, &SSHConfigViewModel::hostAboutToBeRemoved, this,
            [this](qsizetype position) { beginRemoveRows({}, toRow(position), toRow(position)); });
    connect(vm, &SSHConfigViewModel::hostRemoved, this, [this] {
        m_rows.noteRemoval();
        endRemoveRows();
    });
    connect(vm, &SSHConfigViewModel::hostAboutToBeMoved, this, [this](qsizetype from, qsizetype to) {
        // Qt names the destination as the row the moved row goes before, counted before the move.
        const int destination = to > from ? toRow(to) + 1 : toRow(to);
        beginMoveRows({}, toRow(from), toRow(from), {}, destination);
    });
    connect(vm, &SSHConfigViewModel::hostMoved, this, [this] {
        m_rows.invalidate();
        endMoveRows();
    });
    connect(vm, &SSHConfigViewModel::hostChanged, this, [this](qsizetype position) {
        const QModelIndex changed = index(toRow(position));
        Q_EMIT dataChanged(changed, changed);
    });
}

int HostListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : toRow(m_viewModel.document().hosts.size());
}

const SSHHost& HostListModel::hostAt(int row) const
{
    return m_viewModel.document().hosts.at(row);
}

int HostListModel::rowOf(const QUuid& id) const
{
    return m_rows.rowOf(id, rowCount(), [this](int row) { return hostAt(row).id(); });
}

QVariant HostListModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const SSHHost& host = hostAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return host.patterns.isEmpty() ? u"*"_s : host.patterns.first();
    case Qt::AccessibleTextRole:
        // Read out instead of the dot's colour, which a screen reader cannot convey.
        return QString(data(index, Qt::DisplayRole).toString() + (host.isEnabled ? QString() : u", uitgeschakeld"_s));
    case Qt::AccessibleDescriptionRole:
        return host.groups.isEmpty() ? u"Geen groepen"_s : QString(u"Groepen: "_s + host.groups.join(u", "_s));
    case IdRole:
        return host.id();
    case PatternsRole:
        return host.patterns;
    case GroupsRole:
        return host.groups;
    case GroupsTextRole:
        return host.groups.join(u", "_s);
    case IsEnabledRole:
        return host.isEnabled;
    case PositionRole:
        return index.row();
    default:
        return {};
    }
}

Qt::ItemFlags HostListModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
}

QHash<int, QByteArray> HostListModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    names.insert(IdRole, "id");
    names.insert(PatternsRole, "patterns");
    names.insert(GroupsRole, "groups");
    names.insert(GroupsTextRole, "groupsText");
    names.insert(IsEnabledRole, "isEnabled");
    names.insert(PositionRole, "position");
    return names;
}
