#include "app/options/ColourButton.h"

#include <QColorDialog>
#include <QMenu>

#include "app/controls/Painting.h"
#include "app/controls/QtText.h"

namespace Sonarello {

ColourButton::ColourButton(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::StrongFocus);
  AskColour = [this](const QColor& now) -> std::optional<QColor> {
    const QColor chosen = QColorDialog::getColor(now, this, accessibleName());
    return chosen.isValid() ? std::optional(chosen) : std::nullopt;
  };
  connect(this, &QAbstractButton::clicked, this, &ColourButton::Open);
}

void ColourButton::SetColour(int value) {
  colour = value;
  update();
}

QSize ColourButton::sizeHint() const { return {metrics().px(28), metrics().px(28)}; }

QColor ColourButton::Shown() const {
  return colour < 0 ? th().tx1 : QColor::fromRgb(static_cast<QRgb>(colour));
}

void ColourButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (!isEnabled()) painter.setOpacity(0.34);
  PaintBox(painter, rect(), metrics().f(4), Shown(), th().edge);
}

void ColourButton::Open() {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->addAction(QText("Farbe des Programms", "The program's colour"), this, [this] { Choose(-1); });
  menu->addAction(QText("Andere Farbe…", "Other colour…"), this, &ColourButton::ChooseOther);
  menu->popup(mapToGlobal(QPoint(0, height())));
}

void ColourButton::ChooseOther() {
  if (const std::optional<QColor> chosen = AskColour(Shown()))
    Choose(static_cast<int>(chosen->rgb() & 0xFFFFFFU));
}

void ColourButton::Choose(int value) {
  SetColour(value);
  Q_EMIT ColourChosen(value);
}

}  // namespace Sonarello
