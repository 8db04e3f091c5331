#include "app/panels/LoopPanel.h"

#include <QFontMetrics>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>

#include "app/controls/Painting.h"
#include "app/controls/QtText.h"
#include "app/panels/PanelButton.h"
#include "app/panels/PanelTexts.h"

namespace Sonarello {

namespace {

constexpr std::array BothEnds{LoopEnd::Start, LoopEnd::End};
constexpr double Height = 44, RowHeight = 28, FieldWidth = 92, Gap = 8, GroupGap = 20, Edge = 10;
/// Steps from shut to open.
constexpr int SlideSteps = 12;

QString CaptionOf(LoopEnd which) {
  return which == LoopEnd::Start ? QText("Anfang", "Start") : QText("Ende", "End");
}

}  // namespace

LoopPanel::LoopPanel(QWidget* parent)
    : Panel(parent),
      Looping(new PanelButton(QText("Schleife", "Loop"), this)),
      close_(nullptr),
      LoopPanelTimer(new QTimer(this)) {
  setAccessibleName(QText("Schleife", "Loop"));
  Looping->setText(QText("Schleife", "Loop"));
  Looping->SetIcon(Icon::Loop, 16);
  Looping->setCheckable(true);
  connect(Looping, &PanelButton::clicked, this, [this] {
    Refresh();
    Q_EMIT loopClicked();
  });
  for (const LoopEnd which : BothEnds) MakeEnd(which);
  close_ = new PanelButton(QText("Schließen", "Close"), this);
  close_->SetIcon(Icon::Cross, 14);
  close_->SetFlat(true);
  connect(close_, &PanelButton::clicked, this, &LoopPanel::Close);
  connect(LoopPanelTimer, &QTimer::timeout, this, &LoopPanel::LoopPanelTimerTimer);
  ShowHeight(0);
  hide();
  Renew();
}

void LoopPanel::MakeEnd(LoopEnd which) {
  End& end = ends_[Index(which)];
  end.field = new QLineEdit(this);
  end.field->setAccessibleName(which == LoopEnd::Start
                                   ? QText("Anfang der Schleife", "Start of the loop")
                                   : QText("Ende der Schleife", "End of the loop"));
  end.field->installEventFilter(this);
  connect(end.field, &QLineEdit::editingFinished, this, [this, which] { Typed(which); });
  end.here = new PanelButton(which == LoopEnd::Start
                                 ? QText("Anfang der Schleife hier", "Start of the loop here")
                                 : QText("Ende der Schleife hier", "End of the loop here"),
                             this);
  end.here->setText(QText("Hier", "Here"));
  connect(end.here, &PanelButton::clicked, this, [this, which] { Q_EMIT setHereClicked(which); });
}

const QString& LoopPanel::TextOf(LoopEnd which) const {
  return which == LoopEnd::Start ? view_.start : view_.end;
}

void LoopPanel::SetView(const LoopView& view) {
  view_ = view;
  for (End& end : ends_) end.refused = false;
  Refresh();
}

void LoopPanel::Refuse(LoopEnd which, const QString& reason) {
  End& end = ends_[Index(which)];
  end.field->setText(TextOf(which));
  end.field->setModified(false);
  end.field->selectAll();
  end.refused = true;
  end.field->setAccessibleDescription(reason);
  if (isVisible()) {
    QToolTip::showText(end.field->mapToGlobal(end.field->rect().bottomLeft()), reason, end.field);
  }
  update();
}

void LoopPanel::Typed(LoopEnd which) {
  QLineEdit* field = ends_[Index(which)].field;
  if (!field->isModified()) return;
  field->setModified(false);
  const QString typed = field->text().trimmed();
  if (typed != TextOf(which)) Q_EMIT endTyped(which, typed);
}

void LoopPanel::RefreshEnd(LoopEnd which, const QString& reason) {
  End& end = ends_[Index(which)];
  if (!end.field->isModified()) end.field->setText(TextOf(which));
  end.field->setEnabled(view_.song);
  SetTip(*end.field,
         {which == LoopEnd::Start ? QText("Takt:Schlag, an dem die Schleife beginnt; Pfeile: ein Takt",
                                          "Bar:beat at which the loop begins; arrows: a bar")
                                  : QText("Takt:Schlag, an dem die Schleife endet; Pfeile: ein Takt",
                                          "Bar:beat at which the loop ends; arrows: a bar"),
          TextOf(which),
          {},
          reason});
  end.here->SetState(
      view_.song,
      {which == LoopEnd::Start
           ? QText("Die Schleife beginnt, wo der Song steht", "The loop begins where the song stands")
           : QText("Die Schleife endet, wo der Song steht", "The loop ends where the song stands"),
       {},
       {},
       reason});
}

void LoopPanel::Refresh() {
  const QString reason = view_.song ? QString() : NoSongReason();
  Looping->SetState(view_.song, {QText("Schleife ein und aus", "Loop on and off"),
                                 view_.looping ? QText("Ein", "On") : QText("Aus", "Off"),
                                 {},
                                 reason});
  Looping->setChecked(view_.looping);
  for (const LoopEnd which : BothEnds) RefreshEnd(which, reason);
  if (open_ && !sliding()) ShowHeight(FullHeight());  // the scale may have changed
  if (close_ != nullptr)
    close_->SetState(true, {QText("Schließen", "Close"), {}, QStringLiteral("Esc")});
  update();
}

int LoopPanel::FullHeight() const { return metrics().px(Height); }

QSize LoopPanel::sizeHint() const { return {minimumSizeHint().width(), shownHeight_}; }

QSize LoopPanel::minimumSizeHint() const {
  const Metrics& m = metrics();
  const QFontMetrics sizes(m.font(Role::Body));
  int width = 2 * m.px(Edge) + Looping->WidthFor(m.px(12)) + m.px(GroupGap) + m.px(RowHeight);
  for (const LoopEnd which : BothEnds) {
    width += sizes.horizontalAdvance(CaptionOf(which)) + m.px(FieldWidth) + 2 * m.px(Gap) +
             ends_[Index(which)].here->WidthFor(m.px(12)) + m.px(GroupGap);
  }
  return {width, shownHeight_};
}

/// While the panel slides, its content hangs at its lower edge.
void LoopPanel::Arrange() {
  const Metrics& m = metrics();
  const QFontMetrics sizes(m.font(Role::Body));
  const int tall = m.px(RowHeight), gap = m.px(Gap);
  const int y = height() - FullHeight() + (FullHeight() - tall) / 2;
  int x = m.px(Edge);
  const auto place = [&](QWidget* widget, int width, int after) {
    widget->setGeometry(x, y, width, tall);
    x += width + after;
  };
  place(Looping, Looping->WidthFor(m.px(12)), m.px(GroupGap));
  for (const LoopEnd which : BothEnds) {
    End& end = ends_[Index(which)];
    const int caption = sizes.horizontalAdvance(CaptionOf(which));
    end.caption = QRect(x, y, caption + 1, tall);
    x += caption + gap;
    place(end.field, m.px(FieldWidth), gap);
    place(end.here, end.here->WidthFor(m.px(12)), m.px(GroupGap));
  }
  close_->setGeometry(std::max(x, width() - m.px(Edge) - tall), y, tall, tall);
}

void LoopPanel::ShowHeight(int height) {
  shownHeight_ = height;
  setFixedHeight(height);
  updateGeometry();
}

void LoopPanel::Slide(bool open) {
  if (open == open_ && !sliding()) return;
  const bool seen = parentWidget() == nullptr || parentWidget()->isVisible();
  open_ = open;
  if (open) show();
  if (ReducedMotion() || !seen) {
    LoopPanelTimer->stop();
    ShowHeight(open ? FullHeight() : 0);
    setVisible(open);
    return;
  }
  LoopPanelTimer->start(SlideInterval);
}

void LoopPanel::LoopPanelTimerTimer() {
  const int step = std::max(FullHeight() / SlideSteps, 1);
  const int next = std::clamp(shownHeight_ + (open_ ? step : -step), 0, FullHeight());
  ShowHeight(next);
  if (next != (open_ ? FullHeight() : 0)) return;
  LoopPanelTimer->stop();
  setVisible(open_);
}

void LoopPanel::Close() {
  Slide(false);
  Q_EMIT closed();
}

bool LoopPanel::eventFilter(QObject* object, QEvent* event) {
  for (const LoopEnd which : BothEnds) {
    End& end = ends_[Index(which)];
    if (object != end.field || !view_.song) continue;
    if (event->type() == QEvent::Wheel) {
      const int bars = end.wheel.take(static_cast<QWheelEvent*>(event)->angleDelta().y());
      if (bars != 0) Q_EMIT endStepped(which, bars);
      return true;
    }
    if (event->type() != QEvent::KeyPress) continue;
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Up || key == Qt::Key_Down) {
      Typed(which);
      Q_EMIT endStepped(which, key == Qt::Key_Up ? 1 : -1);
      return true;
    }
    if (key == Qt::Key_Escape && end.field->isModified()) {
      end.field->setModified(false);
      end.field->setText(TextOf(which));
      return true;
    }
  }
  return Panel::eventFilter(object, event);
}

void LoopPanel::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) return Panel::keyPressEvent(event);
  Close();
}

void LoopPanel::paintEvent(QPaintEvent* event) {
  Panel::paintEvent(event);
  QPainter painter(this);
  painter.setFont(metrics().font(Role::Body));
  painter.setPen(view_.song ? th().tx2 : th().dis);
  for (const LoopEnd which : BothEnds) {
    const End& end = ends_[Index(which)];
    painter.drawText(end.caption, Qt::AlignLeft | Qt::AlignVCenter, CaptionOf(which));
    if (!end.refused) continue;
    const int away = metrics().px(2);
    PaintBox(painter, QRectF(end.field->geometry()).adjusted(-away, -away, away, away), metrics().px(5),
             Qt::NoBrush, th().err, away);
  }
}

}  // namespace Sonarello
