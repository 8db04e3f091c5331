#include "app/editors/EventSearch.h"

#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QToolButton>
#include <cmath>

#include "app/controls/Control.h"
#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"

namespace Sonarello {

namespace {

constexpr int PieceTime = 20;  ///< ms of searching before the window gets its turn
constexpr double FieldWidth = 280, Side = 12, Gap = 6, Top = 6;

QToolButton* NewButton(QWidget* parent, Icon icon, const QString& name, const QString& key) {
  auto* button = new QToolButton(parent);
  button->setIcon(IconFor(icon));
  button->setAccessibleName(name);
  button->setToolTip(Tip(name, QString(), key));
  return button;
}

}  // namespace

EventSearch::EventSearch(const TEventRows& r, QWidget* parent)
    : QWidget(parent),
      rows(r),
      line(new QHBoxLayout(this)),
      field(new QLineEdit(this)),
      previous(NewButton(this, Icon::Up, QText("Vorheriger Treffer", "Previous hit"),
                         QText("Umschalt+Strg+G", "Shift+Ctrl+G"))),
      next(NewButton(this, Icon::Down, QText("Nächster Treffer", "Next hit"),
                     QText("Strg+G, Eingabe", "Ctrl+G, Enter"))),
      cross(NewButton(this, Icon::Cross, QText("Suche schließen", "Close search"),
                      QStringLiteral("Esc"))),
      note(new QLabel(this)) {
  field->setPlaceholderText(QText("In der Liste suchen", "Search in the list"));
  field->setAccessibleName(field->placeholderText());
  line->addWidget(field);
  for (QToolButton* button : {previous, next}) line->addWidget(button);
  line->addWidget(note, 1);
  line->addWidget(cross);
  pieces.setInterval(0);
  connect(&pieces, &QTimer::timeout, this, &EventSearch::SearchPiece);
  connect(field, &QLineEdit::textEdited, this, [this] { Go(1, true); });
  connect(next, &QToolButton::clicked, this, [this] { Go(1); });
  connect(previous, &QToolButton::clicked, this, [this] { Go(-1); });
  connect(cross, &QToolButton::clicked, this, &EventSearch::Close);
  LayOut();
  hide();
}

void EventSearch::LayOut() {
  const Metrics& m = metrics();
  line->setContentsMargins(m.px(Side), 0, m.px(Side), m.px(Top));
  line->setSpacing(m.px(Gap));
  field->setFixedWidth(m.px(FieldWidth));
  QPalette quiet = palette();
  quiet.setColor(QPalette::WindowText, th().tx2);
  note->setPalette(quiet);
}

void EventSearch::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (AppearanceChanged(*event)) LayOut();
}

void EventSearch::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), th().bg0);
}

QString EventSearch::Note() const { return note->text(); }

void EventSearch::Open() {
  show();
  field->setFocus(Qt::ShortcutFocusReason);
  field->selectAll();
}

void EventSearch::Close() {
  Stop();
  note->clear();
  hide();
  Q_EMIT closed();
}

void EventSearch::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Escape:
      if (IsSearching())
        Stop();
      else
        Close();
      return;
    case Qt::Key_Return:
    case Qt::Key_Enter: Go(event->modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1); return;
    default: QWidget::keyPressEvent(event);
  }
}

void EventSearch::Go(int step, bool inclusive) {
  if (field->text().isEmpty()) {
    Stop();
    note->clear();
    if (!isVisible()) Open();
    return;
  }
  const std::int32_t from = CurrentRow ? CurrentRow() : 0;
  search = TSearch{
      .Wanted = ToStd(field->text()), .From = inclusive ? from - step : from, .Backwards = step < 0};
  note->clear();
  SearchPiece();
}

void EventSearch::SearchPiece() {
  if (!search) return pieces.stop();
  const std::int32_t count = rows.Events();
  QElapsedTimer clock;
  clock.start();
  double part = 0;
  bool stopped = false;
  const auto hit = rows.Find(search->Wanted, search->From, search->Backwards, [&](double done) {
    part = done;
    stopped = clock.elapsed() >= PieceTime || search->Tested + std::lround(done * count) >= count;
    return !stopped;
  });
  if (hit) return End(*hit);
  const auto tested = static_cast<std::int32_t>(std::lround(part * count));
  search->Tested += tested;
  if (!stopped || search->Tested >= count) return End(0);
  search->From += search->Backwards ? -tested : tested;
  if (search->From > count) search->From -= count;
  if (search->From < 1) search->From += count;
  if (!pieces.isActive()) pieces.start();
  Q_EMIT searching(static_cast<double>(search->Tested) / count);
}

void EventSearch::End(std::int32_t row) {
  const QString wanted = ToQt(search->Wanted).simplified();
  Stop();
  if (row > 0) {
    Q_EMIT found(row);
    return;
  }
  note->setText(QText("Keine Zeile enthält „%1“", "No row contains “%1”").arg(wanted));
}

void EventSearch::Stop() {
  pieces.stop();
  if (!search) return;
  search.reset();
  Q_EMIT ended();
}

}  // namespace Sonarello
