#include "app/instruments/SoundSearch.h"

#include <QKeyEvent>
#include <QLabel>
#include <QListView>
#include <QPainter>
#include <QVBoxLayout>

#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"
#include "app/instruments/SoundDelegates.h"
#include "app/instruments/SoundModels.h"

namespace Sonarello {

namespace {

constexpr int MostRowsShown = 12;
constexpr double RowHeight = 24;
constexpr double PanelWidth = 380;

QLabel* NewLine(QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setForegroundRole(QPalette::WindowText);
  return label;
}

}  // namespace

SearchField::SearchField(QWidget* parent) : QLineEdit(parent) {
  setPlaceholderText(QText("Sounds suchen", "Search sounds"));
  setAccessibleName(placeholderText());
  LayOut();
}

void SearchField::LayOut() {
  const Metrics& m = metrics();
  setFixedSize(m.px(280), m.px(28));
  const int right = QFontMetrics(m.font(Role::ToolTip)).horizontalAdvance(note) + m.px(10);
  setTextMargins(m.px(24), 0, right, 0);
}

void SearchField::SetNote(const QString& text) {
  note = text;
  LayOut();
  update();
}

void SearchField::changeEvent(QEvent* event) {
  QLineEdit::changeEvent(event);
  if (AppearanceChanged(*event)) LayOut();
}

void SearchField::paintEvent(QPaintEvent* event) {
  QLineEdit::paintEvent(event);
  const Metrics& m = metrics();
  QPainter painter(this);
  const double size = m.f(15);
  PaintIcon(painter, Icon::Search, QRectF(m.f(11), (height() - size) / 2, size, size), th().tx2);
  painter.setFont(m.font(Role::ToolTip));
  painter.setPen(th().tx3);
  painter.drawText(QRectF(rect()).adjusted(0, 0, -m.f(9), 0), Qt::AlignRight | Qt::AlignVCenter, note);
}

void SearchField::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Up: Q_EMIT stepped(-1); return;
    case Qt::Key_Down: Q_EMIT stepped(1); return;
    case Qt::Key_PageUp: Q_EMIT stepped(-MostRowsShown); return;
    case Qt::Key_PageDown: Q_EMIT stepped(MostRowsShown); return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (text().isEmpty()) break;
      Q_EMIT accepted();
      return;
    case Qt::Key_Escape:
      if (text().isEmpty()) break;
      Q_EMIT left();
      return;
    default: QLineEdit::keyPressEvent(event); return;
  }
  event->ignore();
}

SearchPanel::SearchPanel(HitModel& hits, QWidget* parent)
    : QFrame(parent),
      model(hits),
      delegate(new HitDelegate(this)),
      head(NewLine(this)),
      empty(NewLine(this)),
      foot(NewLine(this)),
      list(new QListView(this)) {
  list->setModel(&model);
  list->setItemDelegate(delegate);
  list->setUniformItemSizes(true);
  list->setAlternatingRowColors(true);
  list->setFrameShape(NoFrame);
  list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list->setFocusPolicy(Qt::NoFocus);  // the field keeps it
  list->setAccessibleName(QText("Gefundene Sounds", "Sounds found"));
  empty->setAlignment(Qt::AlignCenter);
  empty->setWordWrap(true);
  foot->setText(
      QText("↑ ↓ wählen · Enter übernehmen · Esc schließen", "↑ ↓ choose · Enter accept · Esc close"));
  auto* column = new QVBoxLayout(this);
  column->setSpacing(0);
  for (QWidget* part : {static_cast<QWidget*>(head), static_cast<QWidget*>(list),
                        static_cast<QWidget*>(empty), static_cast<QWidget*>(foot)})
    column->addWidget(part);
  connect(list->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& now) {
            if (now.isValid()) Q_EMIT chosen(now.row());
          });
  connect(list, &QListView::doubleClicked, this, &SearchPanel::closed);
  LayOut();
  hide();
}

void SearchPanel::LayOut() {
  const Metrics& m = metrics();
  layout()->setContentsMargins(m.hair(), m.hair(), m.hair(), m.hair());
  for (QLabel* line : {head, foot}) {
    line->setFixedHeight(m.px(RowHeight));
    line->setContentsMargins(m.px(10), 0, m.px(10), 0);
    line->setFont(m.font(Role::ToolTip));
  }
  empty->setFont(m.font(Role::Body));
  empty->setMinimumHeight(m.px(2 * RowHeight));
  QPalette quiet = palette();
  quiet.setColor(QPalette::WindowText, th().tx2);
  head->setPalette(quiet);
  quiet.setColor(QPalette::WindowText, th().tx3);
  foot->setPalette(quiet);
  empty->setPalette(quiet);
}

void SearchPanel::changeEvent(QEvent* event) {
  QFrame::changeEvent(event);
  if (!AppearanceChanged(*event)) return;
  LayOut();
  resize(sizeHint());
}

QSize SearchPanel::sizeHint() const {
  const Metrics& m = metrics();
  const int rows = std::min(model.rowCount(), MostRowsShown);
  const int lines = rows == 0 ? m.px(2 * RowHeight) : rows * m.px(RowHeight);
  return {m.px(PanelWidth), 2 * m.px(RowHeight) + lines + 2 * m.hair()};
}

void SearchPanel::ShowHits(const QString& text) {
  const int count = model.rowCount();
  delegate->Length = static_cast<int>(text.size());
  head->setText(count == 1
                    ? QText("1 Treffer in allen Bänken", "1 hit in all banks")
                    : QString::number(count) + QText(" Treffer in allen Bänken", " hits in all banks"));
  empty->setText(QText("Kein Sound enthält „", "No sound contains “") + text + QText("“", "”"));
  list->setVisible(count > 0);
  empty->setVisible(count == 0);
  list->scrollToTop();
  resize(sizeHint());
}

void SearchPanel::Step(int rows) {
  const int count = model.rowCount();
  if (count == 0) return;
  const QModelIndex now = list->currentIndex();
  const int row = now.isValid() ? std::clamp(now.row() + rows, 0, count - 1) : 0;
  list->setCurrentIndex(model.index(row));
}

void SearchPanel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  PaintBox(painter, rect(), metrics().f(6), th().bg2, th().line2, metrics().hair());
}

}  // namespace Sonarello
