#include "app/controls/ValueBox.h"

#include <QIntValidator>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <algorithm>

#include "app/controls/Painting.h"
#include "app/controls/QtText.h"

namespace Sonarello {
namespace {

constexpr double faintStrength = 0.5;

}  // namespace

ValueBox::ValueBox(QWidget* parent) : Control(parent) {}

void ValueBox::setValue(int value) { setText(QString::number(value)); }

void ValueBox::setText(const QString& text) {
  if (text == shownText) return;
  shownText = text;
  update();
}

void ValueBox::setRange(int least, int most) {
  lowest = least;
  highest = most;
}

void ValueBox::setFaint(bool on) {
  if (on == faint) return;
  faint = on;
  update();
}

Spoken ValueBox::spoken() const {
  bool number = false;
  const int now = shownText.toInt(&number);
  return {.role = QAccessible::StaticText,
          .value = SpokenValue{number ? now : lowest, lowest, highest, shownText}};
}

void ValueBox::setSpokenValue(int value) { Q_EMIT typed(std::clamp(value, lowest, highest)); }

QSize ValueBox::sizeHint() const { return {metrics().px(74), metrics().px(22)}; }

void ValueBox::layOut() {
  if (!field.isNull()) field->setGeometry(rect());
}

void ValueBox::paintEvent(QPaintEvent*) {
  const Theme& t = th();
  const Metrics& m = metrics();
  QPainter painter(this);
  if (faint || !isEnabled()) painter.setOpacity(faintStrength);
  PaintBox(painter, rect(), m.f(4), t.well, t.line, m.hair());
  painter.setFont(m.font(Role::Value));
  painter.setPen(faint || !isEnabled() ? t.dis : t.tx1);
  drawFigures(painter, rect(), shownText, Qt::AlignCenter);
}

void ValueBox::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && canType)
    beginTyping();
  else
    event->ignore();
}

bool ValueBox::typing() const { return !field.isNull(); }

void ValueBox::beginTyping(const QString& first) {
  if (typing()) return;
  field = new QLineEdit(first.isEmpty() ? shownText : first, this);
  field->setAlignment(Qt::AlignCenter);
  field->setFont(metrics().font(Role::Value));
  field->setTextMargins(-metrics().px(6), 0, -metrics().px(6), 0);
  field->setAccessibleName(accessibleName());
  field->setMaxLength(4);
  // Out of range is mended when it is taken; only digits and a sign may be typed.
  const int reach = 999;
  field->setValidator(new QIntValidator(lowest < 0 ? -reach : 0, reach, field));
  field->installEventFilter(this);
  field->setGeometry(rect());
  field->show();
  field->setFocus(Qt::OtherFocusReason);
  if (first.isEmpty()) field->selectAll();
}

bool ValueBox::eventFilter(QObject* watched, QEvent* event) {
  if (watched != field) return Control::eventFilter(watched, event);
  if (event->type() == QEvent::FocusOut &&
      static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason)
    endTyping(true);
  if (event->type() == QEvent::ShortcutOverride) {  // what is typed here is no shortcut of the window
    event->accept();
    return true;
  }
  if (event->type() != QEvent::KeyPress) return false;
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Escape) return false;
  endTyping(key != Qt::Key_Escape);
  return true;
}

void ValueBox::endTyping(bool take) {
  if (!typing()) return;
  QLineEdit* done = field;
  field = nullptr;
  bool number = false;
  const int value = done->text().toInt(&number);
  const bool focused = done->hasFocus();
  done->hide();
  done->deleteLater();
  if (focused)
    for (QWidget* widget = parentWidget(); widget != nullptr; widget = widget->parentWidget())
      if (widget->focusPolicy() != Qt::NoFocus) {  // back to the strips or whatever held the box
        widget->setFocus(Qt::OtherFocusReason);
        break;
      }
  if (take && number) Q_EMIT typed(std::clamp(value, lowest, highest));
}

}  // namespace Sonarello
