// A table whose rows are all of one height: it keeps nothing for a row, however many there are.
#pragma once

#include <QTableView>

namespace Sonarello {

/// A `QTableView` scrolls by row, selects whole rows and finds every place by counting. The usual one
/// keeps a record for each row in its vertical header and shifts them with every row that comes or
/// goes.
class RowTable : public QTableView {
  Q_OBJECT

 public:
  explicit RowTable(QWidget* parent = nullptr);

  /// Height of a row, pixels, above 0.
  void SetRowHeight(int height);
  [[nodiscard]] int RowHeight() const { return rowHeightPixels; }
  /// Rows that are seen whole, at least 1.
  [[nodiscard]] int VisibleRows() const;

  void setModel(QAbstractItemModel* rows) override;
  void reset() override;
  void dataChanged(const QModelIndex& first, const QModelIndex& last, const QList<int>& roles) override;
  [[nodiscard]] QRect visualRect(const QModelIndex& index) const override;
  [[nodiscard]] QModelIndex indexAt(const QPoint& place) const override;
  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void updateGeometries() override;
  void rowsInserted(const QModelIndex& parent, int first, int last) override;
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers held) override;
  [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(
      const QModelIndex& index, const QEvent* event) const override;
  void setSelection(const QRect& area, QItemSelectionModel::SelectionFlags command) override;
  [[nodiscard]] QRegion visualRegionForSelection(const QItemSelection& selection) const override;
  [[nodiscard]] int horizontalOffset() const override;
  [[nodiscard]] int verticalOffset() const override;
  [[nodiscard]] bool isIndexHidden(const QModelIndex&) const override { return false; }
  [[nodiscard]] int sizeHintForRow(int) const override { return rowHeightPixels; }

 private:
  [[nodiscard]] int Rows() const;
  [[nodiscard]] int FirstRow() const;
  /// Row at a height of the viewport, in the list or not.
  [[nodiscard]] int RowAt(int y) const;
  /// Area of rows over all columns; rows far outside are left out.
  [[nodiscard]] QRect AreaOf(int top, int bottom) const;

  int rowHeightPixels = 24;
  QMetaObject::Connection rowsGone;
};

}  // namespace Sonarello
