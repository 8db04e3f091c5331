#include "app/editors/EventView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "app/controls/Painting.h"

namespace Sonarello {

namespace {

constexpr double LineHeight = 24, HeadHeight = 26, Side = 10;
/// Columns of fixed width at 100 %; explanation and second value share the rest.
constexpr double Widths[] = {52, 108, 108, 48, 146, 176};
constexpr double LeastWidth = 96, Comfortable = 190;

void PaintHeadGround(QPainter& painter, const QRect& area) {
  const int hair = metrics().hair();
  painter.fillRect(area, th().bg2);
  painter.fillRect(QRect(area.left(), area.bottom() + 1 - hair, area.width(), hair), th().line2);
}

/// What stands over the lane of the scroll bar.
class HeadCorner : public QWidget {
 public:
  explicit HeadCorner(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  }
  [[nodiscard]] QSize sizeHint() const override { return {1, metrics().px(HeadHeight)}; }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    PaintHeadGround(painter, rect());
  }
};

class EventHead : public QHeaderView {
 public:
  explicit EventHead(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setSectionsMovable(false);
    setSectionsClickable(false);
    setHighlightSections(false);
    setSectionResizeMode(Interactive);
  }

 protected:
  // Texts stand over those of the cells, columns are parted like theirs.
  void paintSection(QPainter* painter, const QRect& area, int column) const override {
    const PainterState state(*painter);
    const Metrics& m = metrics();
    PaintHeadGround(*painter, area);
    if (column != Value2Column)
      painter->fillRect(
          QRect(area.right() + 1 - m.hair(), area.top(), m.hair(), area.height() - m.hair()),
          th().line);
    const QRect place = area.adjusted(m.px(Side), 0, -m.px(Side), 0);
    painter->setFont(m.font(Role::ToolTip));
    painter->setPen(th().tx2);
    const QString text = model()->headerData(column, Qt::Horizontal).toString();
    const int side = model()->headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt();
    painter->drawText(place, side | Qt::TextSingleLine, Elided(painter->font(), text, place.width()));
  }
};

}  // namespace

EventView::EventView(QWidget* parent) : RowTable(parent) {
  setHorizontalHeader(new EventHead(this));
  setFrameShape(QFrame::NoFrame);
  setTabKeyNavigation(false);
  setSelectionMode(ExtendedSelection);
  setEditTriggers(DoubleClicked | EditKeyPressed);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  setContextMenuPolicy(Qt::CustomContextMenu);
  addScrollBarWidget(new HeadCorner(this), Qt::AlignTop);
}

void EventView::LayOut() {
  const Metrics& m = metrics();
  horizontalHeader()->setFixedHeight(m.px(HeadHeight));
  SetRowHeight(m.px(LineHeight));
  for (int column = 0; column < int(std::size(Widths)); ++column)
    setColumnWidth(column, m.px(Widths[column]));
  ShareWidth();
}

void EventView::ShareWidth() {
  if (model() == nullptr) return;
  const Metrics& m = metrics();
  int room = viewport()->width();
  for (int column = 0; column < Value1Column; ++column) room -= columnWidth(column);
  // In a narrow window the first value gives way, then the second: explanations are to be read.
  const int first =
      std::clamp(room - 2 * m.px(Comfortable), m.px(LeastWidth), m.px(Widths[Value1Column]));
  room -= first;
  const int explanation = std::max(room / 2, std::min(m.px(Comfortable), room - m.px(LeastWidth)));
  setColumnWidth(Value1Column, first);
  setColumnWidth(LengthColumn, std::max(explanation, m.px(LeastWidth)));
  setColumnWidth(Value2Column, std::max(room - explanation, m.px(LeastWidth)));
}

void EventView::resizeEvent(QResizeEvent* event) {
  RowTable::resizeEvent(event);
  ShareWidth();
}

std::int32_t EventView::SelectedCount() const {
  std::int32_t count = 0;
  if (selectionModel() == nullptr) return 0;
  for (const QItemSelectionRange& range : selectionModel()->selection()) count += range.height();
  return count;
}

std::vector<std::int32_t> EventView::SelectedRows() const {
  std::vector<std::int32_t> selected;
  if (selectionModel() == nullptr) return selected;
  for (const QItemSelectionRange& range : selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row) selected.push_back(row + 1);
  std::ranges::sort(selected);
  const auto doubled = std::ranges::unique(selected);
  selected.erase(doubled.begin(), doubled.end());
  return selected;
}

bool EventView::event(QEvent* event) {
  // The desk takes back what its tools did; here it is the list's own edit.
  if (event->type() == QEvent::ShortcutOverride &&
      static_cast<QKeyEvent*>(event)->matches(QKeySequence::Undo) && state() != EditingState) {
    event->accept();
    return true;
  }
  return RowTable::event(event);
}

bool EventView::CommandPressed(const QKeyEvent& key) {
  const Qt::KeyboardModifiers held = key.modifiers() & ~Qt::KeypadModifier;
  const auto stepped = [&](int step) {
    if (held == Qt::ControlModifier)
      Q_EMIT trackWanted(step);
    else if (held == (Qt::ControlModifier | Qt::ShiftModifier))
      Q_EMIT filterWanted(step);
    else
      return false;
    return true;
  };
  if (key.key() == Qt::Key_PageUp) return stepped(-1);
  if (key.key() == Qt::Key_PageDown) return stepped(1);
  if (key.matches(QKeySequence::Undo)) {
    Q_EMIT undoWanted();
    return true;
  }
  if (key.matches(QKeySequence::Copy)) {
    Q_EMIT copyWanted();
    return true;
  }
  if (held != Qt::NoModifier) return false;
  switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F2: Q_EMIT editWanted(); return true;
    case Qt::Key_Insert: Q_EMIT insertWanted(); return true;
    case Qt::Key_Delete: Q_EMIT deleteWanted(); return true;
    default: return false;
  }
}

void EventView::keyPressEvent(QKeyEvent* event) {
  if (state() != EditingState && CommandPressed(*event)) return event->accept();
  // Blanks play and stop, Escape closes the window.
  if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier) return event->ignore();
  if (event->key() == Qt::Key_Escape) return event->ignore();
  RowTable::keyPressEvent(event);
}

}  // namespace Sonarello
