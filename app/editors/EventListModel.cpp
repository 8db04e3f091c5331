#include "app/editors/EventListModel.h"

#include "app/controls/QtText.h"

namespace Sonarello {

int EventListModel::Count() const { return rows.ShowingTrack < 0 ? 0 : rows.Rows(); }

void EventListModel::Reload() {
  beginResetModel();
  count = Count();
  playRow = 0;
  endResetModel();
}

void EventListModel::Sync() {
  // Rows hold no state of their own: it is the same whether one came in the middle or at the end.
  const int now = Count();
  if (now > count) {
    beginInsertRows({}, count, now - 1);
    count = now;
    endInsertRows();
  } else if (now < count) {
    beginRemoveRows({}, now, count - 1);
    count = now;
    endRemoveRows();
  }
  if (count > 0) Q_EMIT dataChanged(index(0, 0), index(count - 1, EventColumnCount - 1));
}

void EventListModel::SetPlayRow(std::int32_t row) {
  if (row == playRow) return;
  const std::int32_t before = std::exchange(playRow, row);
  for (const std::int32_t changed : {before, row})
    if (changed > 0 && changed <= count)
      Q_EMIT dataChanged(index(changed - 1, 0), index(changed - 1, EventColumnCount - 1));
}

TEventKind EventListModel::Kind(int row) const {
  const TypMidiEvent* event = rows.Event(row + 1);
  return event == nullptr ? TEventKind::Unknown : KindOf(*event);
}

int EventListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count; }

int EventListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : EventColumnCount;
}

QVariant EventListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= count) return {};
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole: return ToQt(Row(index.row()).Fields[static_cast<std::size_t>(index.column())]);
    case Qt::TextAlignmentRole:
      return int((IsNumber(index.column()) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    default: return {};
  }
}

QVariant EventListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole)
    return int((IsNumber(section) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  // The head's own margin stands for the blank in front of each text.
  return role == Qt::DisplayRole ? QVariant(ToQt(ColumnHead(section)).trimmed()) : QVariant();
}

Qt::ItemFlags EventListModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags usual = QAbstractTableModel::flags(index);
  if (!index.isValid() || !rows.Showing || IsEmpty()) return usual;
  const bool fixed = edits.GetCellReadOnly(index.column(), index.row() + 1);
  return fixed ? usual : usual | Qt::ItemIsEditable;
}

bool EventListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || !index.isValid()) return false;
  Q_EMIT typed(index, value.toString());
  return true;
}

}  // namespace Sonarello
