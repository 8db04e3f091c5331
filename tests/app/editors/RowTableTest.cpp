// A table of rows of one height: places, keys, pointer and selection, however long it is.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractTableModel>
#include <QAccessible>
#include <QHeaderView>
#include <QScrollBar>
#include <QSpinBox>
#include <QStyledItemDelegate>
#include <QTest>

#include "app/Application.h"
#include "app/editors/RowTable.h"

namespace Sonarello {

namespace {

constexpr int Columns = 3, ColumnWidth = 100, LineHeight = 20, Visible = 10;

class Numbers : public QAbstractTableModel {
 public:
  explicit Numbers(int rows) : count(rows) {}
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : count;
  }
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : Columns;
  }
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
    if (role != Qt::DisplayRole && role != Qt::EditRole) return {};
    return index.row() * Columns + index.column();
  }
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override {
    return QAbstractTableModel::flags(index) | Qt::ItemIsEditable;
  }
  void Resize(int rows) {
    if (rows > count) {
      beginInsertRows({}, count, rows - 1);
      count = rows;
      endInsertRows();
    } else if (rows < count) {
      beginRemoveRows({}, rows, count - 1);
      count = rows;
      endRemoveRows();
    }
  }

 private:
  int count;
};

/// Notes which rows and columns are painted.
class Painted : public QStyledItemDelegate {
 public:
  void paint(QPainter*, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    rows.insert(index.row());
    if (option.state.testFlag(QStyle::State_Selected)) selected.insert(index.row());
    if (option.state.testFlag(QStyle::State_HasFocus)) focus = index;
  }
  void Clear() { rows.clear(), selected.clear(), focus = {}; }

  mutable std::set<int> rows, selected;
  mutable QModelIndex focus;
};

class RowTables : public testing::Test {
 protected:
  void Make(int rows) {
    model.Resize(rows);
    table.setFrameShape(QFrame::NoFrame);
    table.SetRowHeight(LineHeight);
    table.setModel(&model);
    table.setItemDelegate(&painted);
    table.setSelectionMode(QAbstractItemView::ExtendedSelection);
    table.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table.horizontalHeader()->setFixedHeight(LineHeight);
    for (int column = 0; column < Columns; ++column) table.setColumnWidth(column, ColumnWidth);
    Resize(Columns * ColumnWidth, Visible);
    ShowForTest(table);
    table.setFocus();
  }
  void Resize(int width, int rows) {
    table.resize(width, (rows + 1) * LineHeight);
    QCoreApplication::processEvents();
  }
  void Go(int row, int column = 0) { table.setCurrentIndex(model.index(row, column)); }
  void Key(Qt::Key key, Qt::KeyboardModifiers held = Qt::NoModifier) {
    QTest::keyClick(&table, key, held);
  }
  [[nodiscard]] int Row() const { return table.currentIndex().row(); }
  [[nodiscard]] int Column() const { return table.currentIndex().column(); }
  [[nodiscard]] int First() const { return table.verticalScrollBar()->value(); }
  [[nodiscard]] QPoint Middle(int row, int column) {
    return table.visualRect(model.index(row, column)).center();
  }
  [[nodiscard]] std::vector<int> Selected() const {
    std::vector<int> rows;
    for (const QModelIndex& index : table.selectionModel()->selectedRows()) rows.push_back(index.row());
    std::ranges::sort(rows);
    return rows;
  }

  Numbers model{0};
  Painted painted;
  RowTable table;
};

constexpr int Million = 1'000'000;

TEST_F(RowTables, AMillionRowsLeaveNothingBehindInTheVerticalHeader) {
  Make(Million);
  EXPECT_EQ(table.verticalHeader()->count(), 0);
  EXPECT_EQ(table.verticalScrollBar()->maximum(), Million - Visible);
  model.Resize(Million + 5);
  QCoreApplication::processEvents();
  EXPECT_EQ(table.verticalHeader()->count(), 0);
  EXPECT_EQ(table.verticalScrollBar()->maximum(), Million + 5 - Visible);
}

TEST_F(RowTables, OnlyRowsInSightArePainted) {
  Make(Million);
  painted.Clear();
  table.verticalScrollBar()->setValue(500'000);
  table.viewport()->repaint();
  EXPECT_EQ(*painted.rows.begin(), 500'000);
  EXPECT_EQ(*painted.rows.rbegin(), 500'000 + Visible - 1);
}

TEST_F(RowTables, NothingButHeadRowsAndScrollBarsIsSeen) {
  Make(20);
  std::vector<const QWidget*> seen;
  for (const QWidget* part : table.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
    if (part->isVisible()) seen.push_back(part);
  EXPECT_THAT(seen, testing::UnorderedElementsAre(table.viewport(), table.horizontalHeader()));
}

TEST_F(RowTables, PlaceAndIndexAgree) {
  Make(Million);
  table.verticalScrollBar()->setValue(777);
  for (int row = 777; row < 777 + Visible; ++row)
    for (int column = 0; column < Columns; ++column)
      EXPECT_EQ(table.indexAt(Middle(row, column)), model.index(row, column));
  EXPECT_EQ(table.visualRect(model.index(777, 1)), QRect(ColumnWidth, 0, ColumnWidth, LineHeight));
  EXPECT_EQ(table.visualRect(model.index(776, 0)).bottom(), -1);
}

TEST_F(RowTables, NothingStandsBehindTheLastRowOrBesideTheLastColumn) {
  Make(3);
  EXPECT_FALSE(table.indexAt(QPoint(10, 3 * LineHeight)).isValid());
  EXPECT_FALSE(table.indexAt(QPoint(10, -1)).isValid());
  EXPECT_FALSE(table.indexAt(QPoint(Columns * ColumnWidth + 5, 5)).isValid());
  EXPECT_EQ(table.indexAt(QPoint(10, 3 * LineHeight - 1)).row(), 2);
}

TEST_F(RowTables, AFarRowStandsOutsideTheWindow) {
  Make(100'000'000);
  EXPECT_GT(table.visualRect(model.index(99'999'999, 0)).top(), table.height());
  table.verticalScrollBar()->setValue(90'000'000);
  EXPECT_LT(table.visualRect(model.index(0, 0)).bottom(), 0);
}

TEST_F(RowTables, KeysGoByRowByPageAndToTheEnds) {
  Make(100);
  Go(50, 1);
  Key(Qt::Key_Down);
  EXPECT_EQ(Row(), 51);
  Key(Qt::Key_Up);
  EXPECT_EQ(Row(), 50);
  Key(Qt::Key_PageDown);
  EXPECT_EQ(Row(), 50 + Visible);
  Key(Qt::Key_PageUp);
  EXPECT_EQ(Row(), 50);
  Key(Qt::Key_Home);
  EXPECT_EQ(std::pair(Row(), Column()), std::pair(50, 0));
  Key(Qt::Key_End);
  EXPECT_EQ(std::pair(Row(), Column()), std::pair(50, Columns - 1));
  Key(Qt::Key_Home, Qt::ControlModifier);
  EXPECT_EQ(std::pair(Row(), Column()), std::pair(0, 0));
  Key(Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(std::pair(Row(), Column()), std::pair(99, Columns - 1));
}

TEST_F(RowTables, TheSelectionGoesAlongToTheEndsOfTheList) {
  Make(100);
  Go(50);
  Key(Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(Selected(), std::vector{99});
  Key(Qt::Key_Home, Qt::ControlModifier);
  EXPECT_EQ(Selected(), std::vector{0});
  Key(Qt::Key_End, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(Selected().size(), 100U);
}

TEST_F(RowTables, ChangedRowsArePaintedAnew) {
  Make(6);
  painted.Clear();
  Q_EMIT model.dataChanged(model.index(0, 0), model.index(5, Columns - 1));
  QCoreApplication::processEvents();
  EXPECT_EQ(painted.rows.size(), 6U);
  painted.Clear();
  Q_EMIT model.dataChanged(model.index(3, 0), model.index(3, Columns - 1));
  QCoreApplication::processEvents();
  EXPECT_THAT(painted.rows, testing::Contains(3));
}

TEST_F(RowTables, KeysStopAtTheEdges) {
  Make(4);
  Go(0, 0);
  Key(Qt::Key_Up);
  Key(Qt::Key_Left);
  EXPECT_EQ(std::pair(Row(), Column()), std::pair(0, 0));
  Key(Qt::Key_PageDown);
  Key(Qt::Key_Down);
  Go(3, Columns - 1);
  Key(Qt::Key_Right);
  EXPECT_EQ(std::pair(Row(), Column()), std::pair(3, Columns - 1));
}

TEST_F(RowTables, TheCurrentRowIsBroughtIntoSight) {
  Make(Million);
  Go(600'000);
  EXPECT_EQ(First(), 600'000 - Visible + 1);
  Go(600'000 - 2 * Visible);
  EXPECT_EQ(First(), 600'000 - 2 * Visible);
  const int first = First();
  Go(first + 3);
  EXPECT_EQ(First(), first);
  table.scrollTo(model.index(500, 0), QAbstractItemView::PositionAtCenter);
  EXPECT_EQ(First(), 500 - Visible / 2);
  table.scrollTo(model.index(500, 0), QAbstractItemView::PositionAtTop);
  EXPECT_EQ(First(), 500);
  table.scrollTo(model.index(500, 0), QAbstractItemView::PositionAtBottom);
  EXPECT_EQ(First(), 500 - Visible + 1);
}

TEST_F(RowTables, ANarrowTableScrollsToTheCurrentColumn) {
  Make(50);
  Resize(ColumnWidth + ColumnWidth / 2, Visible);
  Go(0, 2);
  EXPECT_EQ(table.horizontalScrollBar()->value(), 3 * ColumnWidth - table.viewport()->width());
  EXPECT_EQ(table.indexAt(Middle(0, 2)), model.index(0, 2));
  EXPECT_EQ(table.horizontalHeader()->offset(), table.horizontalScrollBar()->value());
  Go(0, 0);
  EXPECT_EQ(table.horizontalScrollBar()->value(), 0);
}

TEST_F(RowTables, AClickSelectsARowAndShiftARange) {
  Make(100);
  QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::NoModifier, Middle(2, 1));
  EXPECT_EQ(Selected(), std::vector{2});
  QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::ShiftModifier, Middle(5, 0));
  EXPECT_EQ(Selected(), (std::vector{2, 3, 4, 5}));
  QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::ControlModifier, Middle(8, 0));
  EXPECT_EQ(Selected(), (std::vector{2, 3, 4, 5, 8}));
  EXPECT_EQ(table.currentIndex(), model.index(8, 0));
}

TEST_F(RowTables, ARangeReachesOverWhateverLiesBetween) {
  Make(Million);
  QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::NoModifier, Middle(3, 0));
  table.verticalScrollBar()->setValue(900'000);
  QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::ShiftModifier, Middle(900'002, 1));
  const QItemSelection range = table.selectionModel()->selection();
  ASSERT_EQ(range.size(), 1);
  EXPECT_EQ(std::pair(range[0].top(), range[0].bottom()), std::pair(3, 900'002));
}

TEST_F(RowTables, ADraggedPointerSelectsWhatItPasses) {
  Make(100);
  QTest::mousePress(table.viewport(), Qt::LeftButton, Qt::NoModifier, Middle(7, 0));
  QTest::mouseMove(table.viewport(), Middle(4, 1));
  QTest::mouseRelease(table.viewport(), Qt::LeftButton, Qt::NoModifier, Middle(4, 1));
  EXPECT_EQ(Selected(), (std::vector{4, 5, 6, 7}));
}

TEST_F(RowTables, ShiftAndPageDownSelectsAcrossWhatIsOutOfSight) {
  Make(1000);
  Go(5);
  for (int n = 0; n < 3; ++n) Key(Qt::Key_PageDown, Qt::ShiftModifier);
  EXPECT_EQ(Selected().size(), 3U * Visible + 1);
  painted.Clear();
  table.viewport()->repaint();
  EXPECT_EQ(painted.selected.count(5 + 3 * Visible), 1U);
}

TEST_F(RowTables, TheFocusIsPaintedOnTheCurrentCellAlone) {
  Make(20);
  Go(4, 2);
  painted.Clear();
  table.viewport()->repaint();
  EXPECT_EQ(painted.focus, model.index(4, 2));
  table.clearFocus();
  painted.Clear();
  table.viewport()->repaint();
  EXPECT_FALSE(painted.focus.isValid());
}

TEST_F(RowTables, RowsThatGoTakeTheScrollBarAlong) {
  Make(100);
  Go(99);
  model.Resize(40);
  QCoreApplication::processEvents();
  EXPECT_EQ(table.verticalScrollBar()->maximum(), 40 - Visible);
  EXPECT_LE(Row(), 39);
  model.Resize(0);
  QCoreApplication::processEvents();
  EXPECT_EQ(table.verticalScrollBar()->maximum(), 0);
  Key(Qt::Key_Down);
  EXPECT_FALSE(table.currentIndex().isValid());
}

TEST_F(RowTables, AnOpenFieldScrollsWithItsRow) {
  Make(100);
  Go(5, 1);
  table.edit(model.index(5, 1));
  auto* const field = table.viewport()->findChild<QSpinBox*>();
  ASSERT_NE(field, nullptr);
  const int top = field->geometry().top();
  table.verticalScrollBar()->setValue(3);
  EXPECT_EQ(field->geometry().top(), top - 3 * LineHeight);
  table.verticalScrollBar()->setValue(80);
  table.verticalScrollBar()->setValue(0);
  EXPECT_EQ(field->geometry().top(), top);
}

TEST_F(RowTables, AScreenReaderFindsCellsByTheirPlace) {
  Make(200);
  QAccessibleInterface* const reader = QAccessible::queryAccessibleInterface(&table);
  ASSERT_NE(reader, nullptr);
  ASSERT_NE(reader->tableInterface(), nullptr);
  EXPECT_EQ(reader->tableInterface()->rowCount(), 200);
  EXPECT_EQ(reader->tableInterface()->columnCount(), Columns);
  QAccessibleInterface* const cell = reader->tableInterface()->cellAt(150, 2);
  ASSERT_NE(cell, nullptr);
  EXPECT_EQ(cell->text(QAccessible::Name), QString::number(150 * Columns + 2));
}

TEST_F(RowTables, AnotherRowHeightShowsOtherRows) {
  Make(100);
  table.SetRowHeight(2 * LineHeight);
  QCoreApplication::processEvents();
  EXPECT_EQ(table.VisibleRows(), Visible / 2);
  EXPECT_EQ(table.verticalScrollBar()->maximum(), 100 - Visible / 2);
  EXPECT_EQ(table.indexAt(QPoint(5, 2 * LineHeight)).row(), 1);
}

}  // namespace

}  // namespace Sonarello
