#include "app/panels/EffectRow.h"

#include <QKeyEvent>
#include <algorithm>
#include <cmath>

#include "app/controls/Metrics.h"
#include "app/controls/QtText.h"
#include "app/panels/EffectCell.h"

namespace Sonarello {

namespace {

constexpr int SystemColumns = 3, InsertionColumns = 8;
constexpr double Spacer = 6;

int RowsFor(std::size_t cells, int columns) {
  return (static_cast<int>(cells) + columns - 1) / columns;
}

}  // namespace

EffectRow::EffectRow(QWidget* parent) : Panel(parent) {
  setAccessibleName(QText("Effekte", "Effects"));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  Renew();
}

void EffectRow::SetView(const EffectsView& view) {
  if (view == view_) return;
  const bool shape =
      view.system.size() != view_.system.size() || view.insertions.size() != view_.insertions.size();
  view_ = view;
  if (shape) MakeCells(view.system.size() + view.insertions.size());
  Refresh();
  if (!shape) return;
  updateGeometry();
  Arrange();
}

void EffectRow::MakeCells(std::size_t count) {
  while (cells_.size() > count) {
    delete cells_.back();
    cells_.pop_back();
  }
  while (cells_.size() < count) {
    const int index = static_cast<int>(cells_.size());
    auto* cell = new EffectCell(this);
    cell->installEventFilter(this);
    connect(cell, &EffectCell::clicked, this, [this, cell, index] {
      MakeCurrent(index, false);
      if (cell->view().opens) Q_EMIT cellActivated(index);
    });
    cell->show();
    cells_.push_back(cell);
  }
  MakeCurrent(std::min(current_, std::max(static_cast<int>(count) - 1, 0)), false);
}

/// The row is one stop of the tab key: only the current cell takes it.
void EffectRow::MakeCurrent(int index, bool focus) {
  current_ = index;
  for (int i = 0; i < static_cast<int>(cells_.size()); ++i) {
    cells_[static_cast<std::size_t>(i)]->setFocusPolicy(i == index ? Qt::TabFocus : Qt::NoFocus);
  }
  if (focus) cells_[static_cast<std::size_t>(index)]->setFocus(Qt::TabFocusReason);
}

void EffectRow::Refresh() {
  for (std::size_t i = 0; i < cells_.size(); ++i) {
    const std::size_t system = view_.system.size();
    cells_[i]->SetView(i < system ? view_.system[i] : view_.insertions[i - system]);
  }
}

int EffectRow::Rows() const {
  return std::max({RowsFor(view_.system.size(), SystemColumns),
                   RowsFor(view_.insertions.size(), InsertionColumns), 1});
}

QSize EffectRow::sizeHint() const {
  const int rows = Rows();
  return {metrics().px(1264), rows * Px(34, 36) + (rows - 1) * Px(3, 4)};
}

QRect EffectRow::PlaceOf(int index) const {
  const int gap = Px(3, 4), cellHeight = Px(34, 36), systemWidth = Px(126, 146);
  const int system = static_cast<int>(view_.system.size());
  if (index < system) {
    const int row = index / SystemColumns, column = index % SystemColumns;
    return {column * (systemWidth + gap), row * (cellHeight + gap), systemWidth, cellHeight};
  }
  const int row = (index - system) / InsertionColumns, column = (index - system) % InsertionColumns;
  const int left = system == 0 ? 0 : SystemColumns * (systemWidth + gap) + metrics().px(Spacer) + gap;
  const double step = static_cast<double>(width() - left + gap) / InsertionColumns;
  const int from = left + static_cast<int>(std::lround(step * column));
  const int to = left + static_cast<int>(std::lround(step * (column + 1)));
  return {from, row * (cellHeight + gap), to - gap - from, cellHeight};
}

void EffectRow::Arrange() {
  for (std::size_t i = 0; i < cells_.size(); ++i) {
    cells_[i]->setGeometry(PlaceOf(static_cast<int>(i)));
  }
}

int EffectRow::Neighbour(int key) const {
  const QRect here = PlaceOf(current_);
  int best = -1, bestDistance = 0;
  for (int i = 0; i < static_cast<int>(cells_.size()); ++i) {
    const QPoint way = PlaceOf(i).center() - here.center();
    const bool sideways = key == Qt::Key_Left || key == Qt::Key_Right;
    const int along = key == Qt::Key_Left || key == Qt::Key_Up ? -(sideways ? way.x() : way.y())
                                                               : (sideways ? way.x() : way.y());
    const int across = std::abs(sideways ? way.y() : way.x());
    if (along <= 0 || (sideways && across != 0)) continue;
    const int distance = along + across;
    if (best < 0 || distance < bestDistance) {
      best = i;
      bestDistance = distance;
    }
  }
  return best;
}

bool EffectRow::eventFilter(QObject* object, QEvent* event) {
  const auto* key = static_cast<QKeyEvent*>(event);
  if (event->type() == QEvent::ShortcutOverride && key->key() == Qt::Key_Space) {
    // Space opens the cell here, where it starts and stops the song everywhere else.
    event->accept();
    return true;
  }
  if (event->type() != QEvent::KeyPress) return Panel::eventFilter(object, event);
  switch (key->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down: {
      const int next = Neighbour(key->key());
      if (next >= 0) MakeCurrent(next, true);
      return true;
    }
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      if (!key->isAutoRepeat()) cells_[static_cast<std::size_t>(current_)]->click();
      return true;
    default: return Panel::eventFilter(object, event);
  }
}

/// The cells stand on the ground of the window.
void EffectRow::paintEvent(QPaintEvent*) {}

}  // namespace Sonarello
