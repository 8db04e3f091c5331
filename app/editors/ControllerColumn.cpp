#include "app/editors/ControllerColumn.h"

#include <QKeyEvent>
#include <QPainter>

#include "app/controls/Icons.h"
#include "app/controls/NamePlate.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"
#include "app/controls/ValueBox.h"

namespace Sonarello {

namespace {

constexpr double Radius = 6, Side = 3, HeadSide = 6, Gap = 4;
constexpr double HeadHeight = 24, PlateHeight = 46, ValueHeight = 22, IconSize = 15;
constexpr double OutlineWidth = 27, OutlineHeight = 17, Dash = 2;

QString ChannelWord(int channel) {
  return QText("MIDI Kanal %1", "MIDI channel %1").arg(channel + 1, 2, 10, QLatin1Char('0'));
}

}  // namespace

void ControllerFader::setValued(bool on) {
  if (on == valued) return;
  valued = on;
  update();
}

void ControllerFader::paintEvent(QPaintEvent* event) {
  if (valued) return TCustomTrackBar::paintEvent(event);
  const Metrics& m = metrics();
  const FaderPlan lines = FaderPlan::Of(size());
  QPainter painter(this);
  if (!isEnabled()) painter.setOpacity(Opacity(Dim::Noteless));
  PaintFaderSlot(painter, lines);
  QRectF outline(0, 0, m.f(OutlineWidth), m.f(OutlineHeight));
  outline.moveCenter(QPointF(lines.x, lines.y(0.5)));
  QPen pen(th().tx3, m.hair());
  pen.setDashPattern({Dash * 2, Dash});
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(pen);
  painter.drawRoundedRect(outline, m.f(3), m.f(3));
}

ControllerColumn::ControllerColumn(int c, QWidget* parent)
    : QWidget(parent),
      channel(c),
      plate(new NamePlate(this)),
      fader(new ControllerFader(this)),
      value(new ValueBox(this)) {
  setAccessibleName(ChannelWord(channel));
  plate->setFocusPolicy(Qt::NoFocus);
  fader->setFocusPolicy(Qt::StrongFocus);
  fader->installEventFilter(this);
  // Behind a value that was typed the keys are the fader's again.
  setFocusPolicy(Qt::StrongFocus);
  setFocusProxy(fader);
  const auto touch = [this] { Q_EMIT touched(channel); };
  connect(plate, &NamePlate::clicked, this, touch);
  connect(fader, &TCustomTrackBar::pressed, this, touch);
  connect(fader, &TCustomTrackBar::moved, this, [this](int to) { Q_EMIT changed(channel, to); });
  connect(value, &ValueBox::typed, this, [this](int to) { Q_EMIT changed(channel, to - offset); });
}

void ControllerColumn::Show(const TControllerColumn& column, int controller) {
  const bool same = column == shown && !value->text().isEmpty();
  shown = column;
  offset = shown.Shown - shown.Value;
  if (same) return;
  const QString what = ToQt(TControllerOverview::ChoiceText(controller));
  fader->setAccessibleName(ChannelWord(channel) + QStringLiteral(", ") + what);
  value->setAccessibleName(fader->accessibleName());
  value->setRange(offset, offset + TCustomTrackBar::Highest);
  ShowState();
}

void ControllerColumn::ShowState() {
  const TStripView& strip = shown.Strip;
  const bool able = shown.CanInsert && strip.Active;
  const bool muted = strip.Mute;
  plate->setName(ToQt(shown.Name));
  plate->setLook(strip.Drums      ? NamePlate::Look::Drum
                 : strip.Selected ? NamePlate::Look::Active
                                  : NamePlate::Look::Normal,
                 !able   ? NamePlate::Dim::Noteless
                 : muted ? NamePlate::Dim::Muted
                         : NamePlate::Dim::None);
  fader->setLook(strip.Selected ? TCustomTrackBar::Look::Active
                 : strip.Drums  ? TCustomTrackBar::Look::Drum
                                : TCustomTrackBar::Look::Normal,
                 !able   ? TCustomTrackBar::Dim::Noteless
                 : muted ? TCustomTrackBar::Dim::Muted
                         : TCustomTrackBar::Dim::None);
  fader->setOrigin(-offset);
  fader->setPosition(shown.Value);
  fader->setValued(shown.InSong);
  fader->setEnabled(able);
  value->setEnabled(able);
  value->setFaint(!able);
  if (!able)
    value->setText(QStringLiteral("–"));
  else if (!shown.InSong)
    value->setText(QStringLiteral("---"));
  else
    value->setText(offset == 0 ? QString::number(shown.Shown) : SignedText(shown.Shown));
  update();
}

void ControllerColumn::Arrange() {
  const Metrics& m = metrics();
  const int left = m.hair() + m.px(Side), room = width() - 2 * left, gap = m.px(Gap);
  int top = m.hair() + m.px(HeadHeight) + gap;
  plate->setGeometry(left, top, room, m.px(PlateHeight));
  top += m.px(PlateHeight) + gap;
  const int bottom = height() - m.hair() - gap - m.px(ValueHeight);
  value->setGeometry(left, bottom, room, m.px(ValueHeight));
  fader->setGeometry(left, top, room, bottom - gap - top);
}

void ControllerColumn::paintEvent(QPaintEvent*) {
  const Theme& t = th();
  const Metrics& m = metrics();
  const TStripView& strip = shown.Strip;
  QPainter painter(this);
  const QColor ground = strip.Selected  ? t.bg2a
                        : !strip.Active ? t.bg1
                        : strip.Drums   ? t.drumbg
                                        : t.bg2;
  PaintBox(painter, rect(), m.f(Radius), ground, strip.Selected ? t.acc : t.line,
           strip.Selected ? m.px(2) : m.hair());
  const QRectF head(m.px(HeadSide), m.hair(), width() - 2 * m.px(HeadSide), m.px(HeadHeight));
  const QColor ink = strip.Label.Red  ? t.redirected
                     : !strip.Active  ? t.dis
                     : strip.Drums    ? t.drum
                     : strip.Selected ? t.tx1
                                      : t.tx2;
  painter.setFont(m.font(Role::Channel));
  painter.setPen(ink);
  drawFigures(painter, head, ToQt(strip.Label.Text()), Qt::AlignLeft | Qt::AlignVCenter);
  if (!strip.Drums || !strip.Active) return;
  const double side = m.px(IconSize);
  PaintIcon(painter, Icon::Drum, QRectF(head.right() - side, head.center().y() - side / 2, side, side),
            t.drum);
}

void ControllerColumn::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Arrange();
}

void ControllerColumn::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (AppearanceChanged(*event)) Arrange();
}

void ControllerColumn::mousePressEvent(QMouseEvent*) { Q_EMIT touched(channel); }

bool ControllerColumn::eventFilter(QObject* watched, QEvent* event) {
  if (watched == fader && event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    const QString text = key->text();
    const bool number = text.size() == 1 && (text[0].isDigit() || (offset != 0 && text[0] == u'-'));
    const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    if ((number || enter) && (key->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier) {
      value->beginTyping(number ? text : QString());
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace Sonarello
