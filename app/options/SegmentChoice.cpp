#include "app/options/SegmentChoice.h"

#include <QEvent>
#include <QFontMetrics>

#include "app/controls/Painting.h"

namespace Sonarello {

namespace {

enum class Edge { Left, Middle, Right, Both };

/// One part; the frame around all of them is drawn by pieces, so that the chosen one stands out.
class SegmentPart : public QAbstractButton {
 public:
  SegmentPart(const QString& text, Edge edgeOf, QWidget* parent)
      : QAbstractButton(parent), edge(edgeOf) {
    setText(text);
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
  }

  [[nodiscard]] QSize sizeHint() const override {
    const QFontMetrics text(metrics().font(Role::Strong));
    return {text.horizontalAdvance(this->text()) + 2 * metrics().px(12), metrics().px(28)};
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    // A piece that has a neighbour reaches below it, so that only outer corners are round.
    const int beyond = metrics().px(8);
    const bool leftEnd = edge == Edge::Left || edge == Edge::Both;
    const bool rightEnd = edge == Edge::Right || edge == Edge::Both;
    const QRectF box = QRectF(rect()).adjusted(leftEnd ? 0 : -beyond, 0, rightEnd ? 0 : beyond, 0);
    PaintBox(painter, box, metrics().f(4), Face(), isChecked() && isEnabled() ? th().accd : th().line2);
    if (!leftEnd) PaintHairline(painter, QLineF(0, 0, 0, height()), th().line2);
    painter.setFont(metrics().font(isChecked() ? Role::Strong : Role::Body));
    painter.setPen(Ink());
    painter.drawText(rect(), Qt::AlignCenter, text());
  }

 private:
  [[nodiscard]] QColor Face() const {
    if (!isEnabled()) return isChecked() ? th().bg3p : th().bg2;
    if (isChecked()) return th().accd;
    return isDown() ? th().bg3p : underMouse() ? th().bg3h : th().bg3;
  }
  [[nodiscard]] QColor Ink() const {
    if (!isEnabled()) return th().dis;
    return isChecked() ? th().onaccd : th().tx2;
  }

  Edge edge;
};

Edge EdgeOf(qsizetype index, qsizetype count) {
  if (count == 1) return Edge::Both;
  if (index == 0) return Edge::Left;
  return index == count - 1 ? Edge::Right : Edge::Middle;
}

}  // namespace

SegmentChoice::SegmentChoice(const QStringList& texts, QWidget* parent) : QWidget(parent) {
  group.setExclusive(true);
  for (qsizetype i = 0; i < texts.size(); ++i) {
    auto* part = new SegmentPart(texts[i], EdgeOf(i, texts.size()), this);
    group.addButton(part, static_cast<int>(i));
    parts.push_back(part);
  }
  connect(&group, &QButtonGroup::idToggled, this, [this](int index, bool on) {
    if (on && !signalsBlocked()) Q_EMIT Chosen(index);
  });
}

int SegmentChoice::Index() const { return group.checkedId(); }

void SegmentChoice::SetIndex(int index) {
  const QSignalBlocker quiet(this);
  if (QAbstractButton* part = group.button(index)) return part->setChecked(true);
  group.setExclusive(false);
  for (QAbstractButton* part : parts) part->setChecked(false);
  group.setExclusive(true);
}

void SegmentChoice::SetName(const QString& name) {
  setAccessibleName(name);
  for (QAbstractButton* part : parts)
    part->setAccessibleName(name + QLatin1String(": ") + part->text());
}

QSize SegmentChoice::sizeHint() const {
  int width = 0;
  for (const QAbstractButton* part : parts) width += part->sizeHint().width();
  return {width, metrics().px(28)};
}

void SegmentChoice::resizeEvent(QResizeEvent*) { Arrange(); }

void SegmentChoice::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (!AppearanceChanged(*event)) return;
  updateGeometry();
  Arrange();
}

void SegmentChoice::Arrange() {
  int left = 0;
  for (QAbstractButton* part : parts) {
    const int width = part->sizeHint().width();
    part->setGeometry(left, 0, width, height());
    left += width;
  }
}

}  // namespace Sonarello
