#include "app/options/OptionsPage.h"

#include <QEvent>
#include <QScrollBar>
#include <QStyleOptionSlider>

#include "app/controls/Painting.h"

namespace Sonarello {

namespace {

constexpr double Margin = 12;

/// A scroll bar whose lane is the page's ground.
class PageBar : public QScrollBar {
 public:
  using QScrollBar::QScrollBar;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), th().bg0);
    if (minimum() >= maximum()) return;
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRectF handle =
        style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    const double thin = metrics().f(7);
    const QRectF shown((width() - thin) / 2, handle.top() + 2, thin, handle.height() - 4);
    const QColor face = isSliderDown() ? th().tx3 : underMouse() ? th().edge : th().line2;
    PaintBox(painter, shown, thin / 2, face, QColor());
  }
};

}  // namespace

OptionsPage::OptionsPage(QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setVerticalScrollBar(new PageBar(Qt::Vertical, this));
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::NoFocus);
  setWidget(new QWidget(this));
  widget()->setBackgroundRole(QPalette::Window);
}

void OptionsPage::Add(OptionGroupBox* box) {
  box->setParent(widget());
  boxes.push_back(box);
}

void OptionsPage::Arrange() {
  const int margin = metrics().px(Margin);
  // The bar takes the place of the margin, so that panels stand alike with and without it.
  const auto heightAt = [&](int width) {
    int height = margin;
    for (OptionGroupBox* box : boxes) height += box->HeightFor(width) + margin;
    return height;
  };
  const int full = width() - 2 * margin;
  const int bar = verticalScrollBar()->sizeHint().width();
  const bool scrolls = heightAt(full) > height();
  const int boxWidth = scrolls ? width() - margin - bar : full;
  int y = margin;
  for (OptionGroupBox* box : boxes) {
    const int height = box->HeightFor(boxWidth);
    box->setGeometry(margin, y, boxWidth, height);
    y += height + margin;
  }
  widget()->resize(scrolls ? width() - bar : width(), y);
}

void OptionsPage::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  Arrange();
}

void OptionsPage::changeEvent(QEvent* event) {
  QScrollArea::changeEvent(event);
  if (AppearanceChanged(*event)) Arrange();
}

}  // namespace Sonarello
