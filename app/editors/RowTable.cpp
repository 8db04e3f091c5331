#include "app/editors/RowTable.h"

#include <QAbstractButton>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

namespace Sonarello {

RowTable::RowTable(QWidget* parent) : QTableView(parent) {
  verticalHeader()->hide();
  setShowGrid(false);
  // The button between the headers, which only the usual layout hides.
  for (auto* const corner : findChildren<QAbstractButton*>(QString(), Qt::FindDirectChildrenOnly))
    corner->hide();
  setWordWrap(false);
  setSelectionBehavior(SelectRows);
  setVerticalScrollMode(ScrollPerItem);
  setHorizontalScrollMode(ScrollPerPixel);
}

void RowTable::setModel(QAbstractItemModel* rows) {
  QTableView::setModel(rows);
  verticalHeader()->setModel(nullptr);
  disconnect(rowsGone);
  if (rows == nullptr) return;
  rowsGone = connect(rows, &QAbstractItemModel::rowsRemoved, this, [this] {
    updateGeometries();
    viewport()->update();
  });
}

void RowTable::reset() {
  QTableView::reset();
  updateGeometries();
}

void RowTable::dataChanged(const QModelIndex& first, const QModelIndex& last, const QList<int>& roles) {
  QTableView::dataChanged(first, last, roles);
  if (first.isValid()) viewport()->update(AreaOf(first.row(), last.row()));
}

void RowTable::rowsInserted(const QModelIndex& parent, int first, int last) {
  QTableView::rowsInserted(parent, first, last);
  updateGeometries();
  viewport()->update();
}

void RowTable::SetRowHeight(int height) {
  if (height < 1 || height == rowHeightPixels) return;
  rowHeightPixels = height;
  scheduleDelayedItemsLayout();
}

int RowTable::Rows() const { return model() == nullptr ? 0 : model()->rowCount(); }

int RowTable::FirstRow() const { return verticalScrollBar()->value(); }

int RowTable::VisibleRows() const { return std::max(1, viewport()->height() / rowHeightPixels); }

int RowTable::RowAt(int y) const {
  const int below = y >= 0 ? y / rowHeightPixels : -1 - (-1 - y) / rowHeightPixels;
  return FirstRow() + below;
}

QRect RowTable::AreaOf(int top, int bottom) const {
  const int first = std::max(top, FirstRow());
  const int last = std::min(bottom, RowAt(viewport()->height() - 1));
  if (first > last) return {};
  return {0, (first - FirstRow()) * rowHeightPixels, viewport()->width(),
          (last - first + 1) * rowHeightPixels};
}

QRect RowTable::visualRect(const QModelIndex& index) const {
  if (!index.isValid() || index.model() != model()) return {};
  const int column = index.column();
  // Selections reach over far rows; a height that no number holds is brought in.
  const qint64 from = qint64{index.row() - FirstRow()} * rowHeightPixels;
  constexpr qint64 far = 1 << 30;
  return {columnViewportPosition(column), int(std::clamp(from, -far, far)), columnWidth(column),
          rowHeightPixels};
}

QModelIndex RowTable::indexAt(const QPoint& place) const {
  const int row = RowAt(place.y());
  const int column = columnAt(place.x());
  return row < 0 || row >= Rows() || column < 0 ? QModelIndex() : model()->index(row, column);
}

void RowTable::scrollTo(const QModelIndex& index, ScrollHint hint) {
  if (!index.isValid()) return;
  executeDelayedItemsLayout();
  const int row = index.row();
  const int visible = VisibleRows();
  const int first = FirstRow();
  int wanted = first;
  if (hint == PositionAtTop || (hint == EnsureVisible && row < first))
    wanted = row;
  else if (hint == PositionAtBottom || (hint == EnsureVisible && row >= first + visible))
    wanted = row - visible + 1;
  else if (hint == PositionAtCenter)
    wanted = row - visible / 2;
  verticalScrollBar()->setValue(wanted);

  QScrollBar& across = *horizontalScrollBar();
  const int left = columnViewportPosition(index.column());
  const int right = left + columnWidth(index.column());
  if (left < 0 || columnWidth(index.column()) > viewport()->width())
    across.setValue(across.value() + left);
  else if (right > viewport()->width())
    across.setValue(across.value() + right - viewport()->width());
}

int RowTable::horizontalOffset() const { return horizontalHeader()->offset(); }

int RowTable::verticalOffset() const { return FirstRow() * rowHeightPixels; }

void RowTable::scrollContentsBy(int dx, int dy) {
  horizontalHeader()->setOffset(horizontalScrollBar()->value());
  // What stays in sight is moved, not painted again; editors go with it.
  scrollDirtyRegion(dx, dy * rowHeightPixels);
  viewport()->scroll(dx, dy * rowHeightPixels);
}

void RowTable::updateGeometries() {
  QHeaderView& head = *horizontalHeader();
  const int height = head.isHidden() ? 0
                                     : std::clamp(head.sizeHint().height(), head.minimumHeight(),
                                                  head.maximumHeight());
  setViewportMargins(0, height, 0, 0);
  const QRect room = viewport()->geometry();
  head.setGeometry(room.left(), room.top() - height, room.width(), height);
  QScrollBar& down = *verticalScrollBar();
  down.setRange(0, std::max(0, Rows() - VisibleRows()));
  down.setPageStep(VisibleRows());
  down.setSingleStep(1);
  QScrollBar& across = *horizontalScrollBar();
  across.setRange(0, std::max(0, head.length() - viewport()->width()));
  across.setPageStep(viewport()->width());
  across.setSingleStep(std::max(1, viewport()->width() / 8));
  QAbstractItemView::updateGeometries();
}

void RowTable::paintEvent(QPaintEvent* event) {
  if (model() == nullptr) return;
  QPainter painter(viewport());
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  const QStyle::State usual = option.state;
  const QRect dirty = event->rect();
  const int last = std::min(RowAt(dirty.bottom()), Rows() - 1);
  for (int row = RowAt(dirty.top()); row <= last; ++row) {
    const bool selected = selectionModel()->isSelected(model()->index(row, 0));
    for (int column = 0; column < model()->columnCount(); ++column) {
      const QModelIndex index = model()->index(row, column);
      option.rect = visualRect(index);
      if (!option.rect.intersects(dirty)) continue;
      option.state = usual;
      option.state.setFlag(QStyle::State_Selected, selected);
      option.state.setFlag(QStyle::State_HasFocus, hasFocus() && index == currentIndex());
      itemDelegateForIndex(index)->paint(&painter, option, index);
    }
  }
}

QModelIndex RowTable::moveCursor(CursorAction action, Qt::KeyboardModifiers held) {
  executeDelayedItemsLayout();
  if (Rows() == 0) return {};
  const QModelIndex current = currentIndex();
  const int columns = model()->columnCount();
  int row = current.isValid() ? current.row() : 0;
  int column = current.isValid() ? current.column() : 0;
  if (!current.isValid()) return model()->index(row, column);
  const bool whole = held.testFlag(Qt::ControlModifier);
  switch (action) {
    case MoveUp: row -= 1; break;
    case MoveDown: row += 1; break;
    case MovePageUp: row -= VisibleRows(); break;
    case MovePageDown: row += VisibleRows(); break;
    case MoveLeft:
    case MovePrevious: column -= 1; break;
    case MoveRight:
    case MoveNext: column += 1; break;
    // Home and End go along the row, with Ctrl along the list as well.
    case MoveHome:
      column = 0;
      if (whole) row = 0;
      break;
    case MoveEnd:
      column = columns - 1;
      if (whole) row = Rows() - 1;
      break;
  }
  return model()->index(std::clamp(row, 0, Rows() - 1), std::clamp(column, 0, columns - 1));
}

QItemSelectionModel::SelectionFlags RowTable::selectionCommand(const QModelIndex& index,
                                                               const QEvent* event) const {
  // Ctrl and Home or End take the selection along; only Ctrl and an arrow leave it.
  if (event != nullptr && event->type() == QEvent::KeyPress) {
    const auto* const key = static_cast<const QKeyEvent*>(event);
    const bool end = key->key() == Qt::Key_Home || key->key() == Qt::Key_End;
    if (end && key->modifiers().testFlag(Qt::ControlModifier))
      return (key->modifiers().testFlag(Qt::ShiftModifier) ? QItemSelectionModel::SelectCurrent
                                                           : QItemSelectionModel::ClearAndSelect) |
             QItemSelectionModel::Rows;
  }
  return QTableView::selectionCommand(index, event);
}

void RowTable::setSelection(const QRect& area, QItemSelectionModel::SelectionFlags command) {
  const QRect normal = area.normalized();
  const int first = std::max(RowAt(normal.top()), 0);
  const int last = std::min(RowAt(normal.bottom()), Rows() - 1);
  if (first > last) return;
  selectionModel()->select(
      QItemSelection(model()->index(first, 0), model()->index(last, model()->columnCount() - 1)),
      command);
}

QRegion RowTable::visualRegionForSelection(const QItemSelection& selection) const {
  QRegion region;
  for (const QItemSelectionRange& range : selection) region += AreaOf(range.top(), range.bottom());
  return region;
}

}  // namespace Sonarello
