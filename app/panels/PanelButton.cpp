#include "app/panels/PanelButton.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>

#include "app/controls/Painting.h"

namespace Sonarello {

namespace {

/// Opacity of a button that is out of order.
constexpr double Dimmed = 0.45;

QColor LitFace(Lit lit) {
  switch (lit) {
    case Lit::Play: return th().play;
    case Lit::Record: return th().rec;
    case Lit::Checked: break;
  }
  return th().accbg;
}

QColor LitInk(Lit lit) {
  switch (lit) {
    case Lit::Play: return th().onplay;
    case Lit::Record: return th().onrec;
    case Lit::Checked: break;
  }
  return th().acc;
}

double IconGap() { return metrics().f(6); }
double ArrowSize() { return metrics().f(14); }

}  // namespace

PanelButton::PanelButton(const QString& name, QWidget* parent) : QAbstractButton(parent) {
  setAccessibleName(name);
  setFocusPolicy(Qt::TabFocus);
  setAttribute(Qt::WA_Hover);
}

void PanelButton::SetIcon(Icon icon, double size, bool filledWhenLit) {
  icon_ = icon;
  iconSize_ = size;
  filledWhenLit_ = filledWhenLit;
  hasIcon_ = true;
  update();
}

void PanelButton::SetRole(Role role) {
  role_ = role;
  update();
}

void PanelButton::SetLit(Lit lit) {
  lit_ = lit;
  update();
}

void PanelButton::SetDefault(bool isDefault) {
  isDefault_ = isDefault;
  update();
}

void PanelButton::SetInk(const QColor& ink) {
  if (ink == ink_) return;
  ink_ = ink;
  update();
}

void PanelButton::SetAside(const QString& text) {
  aside_ = text;
  update();
}

void PanelButton::SetFlat(bool flat) { flat_ = flat; }

void PanelButton::SetFaceKeptWhenDisabled(bool kept) { faceKept_ = kept; }

void PanelButton::SetArrow(bool arrow) {
  if (arrow == arrow_) return;
  arrow_ = arrow;
  update();
}

void PanelButton::SetState(bool enabled, const PanelTip& tip) {
  setEnabled(enabled);
  SetTip(*this, tip);
}

QFont PanelButton::TextFont() const { return metrics().font(isDefault_ ? Role::Strong : role_); }

int PanelButton::WidthFor(int padding) const {
  double width = 2.0 * padding;
  if (hasIcon_) width += metrics().f(iconSize_);
  if (hasIcon_ && !text().isEmpty()) width += IconGap();
  if (!text().isEmpty()) width += QFontMetricsF(TextFont()).horizontalAdvance(text());
  if (!aside_.isEmpty()) {
    width += IconGap() + QFontMetricsF(metrics().font(Role::Body)).horizontalAdvance(aside_);
  }
  if (arrow_) width += IconGap() + ArrowSize();
  return static_cast<int>(std::ceil(width));
}

QSize PanelButton::sizeHint() const { return {WidthFor(metrics().px(12)), metrics().px(28)}; }

QColor PanelButton::Ink() const {
  if (!isEnabled() && faceKept_) return th().dis;
  if (isChecked()) return LitInk(lit_);
  if (isDefault_) return th().onaccd;
  if (ink_.isValid()) return ink_;
  return flat_ ? th().tx2 : th().tx1;
}

void PanelButton::PaintFace(QPainter& painter) const {
  const bool under = isEnabled() && underMouse();
  QColor face = th().bg3;
  QColor border = th().line2;
  if (isChecked()) {
    face = LitFace(lit_);
    border = lit_ == Lit::Checked ? th().acc : face;
  } else if (isDefault_) {
    face = border = th().accd;
  } else if (isDown()) {
    face = th().bg3p;
  } else if (under) {
    face = th().bg3h;
  } else if (flat_) {
    return;
  }
  PaintBox(painter, rect(), metrics().px(4), face, border);
}

void PanelButton::PaintContent(QPainter& painter) const {
  const QColor ink = Ink();
  const double height = this->height();
  const double content = WidthFor(0);
  double x = (width() - content) / 2;
  if (hasIcon_) {
    const double size = metrics().f(iconSize_);
    const bool filled = filledWhenLit_ && isChecked();
    PaintIcon(painter, icon_, QRectF(x, (height - size) / 2, size, size), ink, filled);
    x += size + IconGap();
  }
  const auto write = [&](const QString& words, const QFont& font, const QColor& colour) {
    if (words.isEmpty()) return;
    const double width = QFontMetricsF(font).horizontalAdvance(words);
    painter.setFont(font);
    painter.setPen(colour);
    painter.drawText(QRectF(x, 0, width + 1, height), Qt::AlignLeft | Qt::AlignVCenter, words);
    x += width + IconGap();
  };
  write(text(), TextFont(), ink);
  write(aside_, metrics().font(Role::Body), WithAlpha(ink, 0.8));
  if (arrow_) {
    const double size = ArrowSize();
    PaintIcon(painter, Icon::Down, QRectF(x, (height - size) / 2, size, size), ink, false);
  }
}

void PanelButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (!isEnabled() && !faceKept_) painter.setOpacity(Dimmed);
  PaintFace(painter);
  PaintContent(painter);
}

void PanelButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (!event->isAutoRepeat()) click();
    event->accept();
    return;
  }
  QAbstractButton::keyPressEvent(event);
}

}  // namespace Sonarello
