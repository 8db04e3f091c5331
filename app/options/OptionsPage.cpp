#include "app/options/OptionsPage.h"

#include <QEvent>
#include <QScrollBar>

#include "app/controls/Metrics.h"
#include "app/controls/Theme.h"

namespace Sonarello {

namespace {

constexpr double Margin = 12;

}  // namespace

OptionsPage::OptionsPage(QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
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
