#include "app/controls/ChannelStrip.h"

#include <QMouseEvent>
#include <QPainterPath>

#include "app/controls/Icons.h"
#include "app/controls/LedButton.h"
#include "app/controls/LevelMeter.h"
#include "app/controls/NamePlate.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"
#include "app/controls/Stepper.h"
#include "app/controls/TrackBar.h"
#include "app/controls/ValueBox.h"

namespace Sonarello {
namespace {

// Pixels at 100 %.
constexpr double radius = 6, ledGap = 3, meterLeft = 2, meterWidth = 9, headSide = 8, drumIcon = 15;
constexpr int standardVolume = 100;  // where a fader without a value stands

}  // namespace

ChannelStrip::ChannelStrip(QWidget* parent)
    : Control(parent),
      plate(new NamePlate(this)),
      soloButton(new LedButton(LedKind::Solo, this)),
      muteButton(new LedButton(LedKind::Mute, this)),
      recordButton(new LedButton(LedKind::Record, this)),
      fader(new TCustomTrackBar(this)),
      meter(new LevelMeter(this)),
      value(new ValueBox(this)),
      velocityStepper(new Stepper(StepperKind::Velocity, this)),
      octaveStepper(new Stepper(StepperKind::Octave, this)) {
  octaveStepper->setRange(-1, 1);
  for (QWidget* part : findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
    part->setFocusPolicy(Qt::NoFocus);  // sixteen strips are one stop of the Tab key
  connectFader();
  connectLights();
  connectSteppers();
  showState();
}

void ChannelStrip::connectFader() {
  connect(plate, &NamePlate::clicked, this, [this] {
    Q_EMIT chosen();
    Q_EMIT soundWanted();
  });
  connect(fader, &TCustomTrackBar::pressed, this, [this] {
    Q_EMIT chosen();
    Q_EMIT faderPressed();
  });
  connect(fader, &TCustomTrackBar::released, this, &ChannelStrip::faderReleased);
  connect(fader, &TCustomTrackBar::moved, this, [this](int position) {
    shown.Volume = position;
    value->setValue(position);
    Q_EMIT volumeMoved(position);
  });
  connect(value, &ValueBox::typed, this, [this](int typed) { fader->setSpokenValue(typed); });
}

void ChannelStrip::connectLights() {
  connect(soloButton, &LedButton::pressed, this,
          [this](Qt::MouseButton, Qt::KeyboardModifiers modifiers) {
            Q_EMIT chosen();
            Q_EMIT soloPressed(modifiers);
          });
  connect(muteButton, &LedButton::pressed, this,
          [this](Qt::MouseButton, Qt::KeyboardModifiers modifiers) {
            Q_EMIT chosen();
            Q_EMIT mutePressed(modifiers);
          });
  connect(recordButton, &LedButton::pressed, this, [this] {
    Q_EMIT chosen();
    Q_EMIT recPressed();
  });
}

void ChannelStrip::connectSteppers() {
  connect(velocityStepper, &Stepper::pressed, this, [this](int direction) {
    Q_EMIT chosen();
    Q_EMIT velocityPressed(direction);
  });
  connect(velocityStepper, &Stepper::released, this, &ChannelStrip::velocityReleased);
  connect(velocityStepper, &Stepper::rangeWanted, this, [this] {
    Q_EMIT chosen();
    Q_EMIT velocityRangeWanted();
  });
  connect(octaveStepper, &Stepper::pressed, this, [this](int direction) {
    Q_EMIT chosen();
    Q_EMIT octavePressed(direction);
  });
  connect(octaveStepper, &Stepper::released, this, &ChannelStrip::octaveReleased);
}

void ChannelStrip::setView(const StripView& view) {
  if (view == shown) return;
  const StripView before = std::exchange(shown, view);
  StripView moved = before;  // a fader that moves leaves the ground as it is
  moved.Volume = view.Volume, moved.Velocity = view.Velocity, moved.Octave = view.Octave;
  fader->setPosition(view.Volume < 0 ? standardVolume : view.Volume);
  value->setText(view.Volume < 0 ? QString(QChar(0x2013)) : QString::number(view.Volume));
  velocityStepper->setValue(view.Velocity);
  octaveStepper->setValue(view.Octave);
  if (moved == view) return;
  showState();
}

void ChannelStrip::showState() {
  using Bar = TCustomTrackBar;
  const bool playable = !shown.Noteless(), drum = shown.Drum && shown.Song;
  fader->setPosition(shown.Volume < 0 ? standardVolume : shown.Volume);
  value->setText(shown.Volume < 0 ? QString(QChar(0x2013)) : QString::number(shown.Volume));
  fader->setEnabled(shown.Song);
  value->setEnabled(shown.Song);
  value->setFaint(!playable);
  fader->setLook(shown.Active ? Bar::Look::Active
                 : drum       ? Bar::Look::Drum
                              : Bar::Look::Normal,
                 !playable        ? Bar::Dim::Noteless
                 : shown.Silent() ? Bar::Dim::Muted
                                  : Bar::Dim::None);
  plate->setLook(shown.Active ? NamePlate::Look::Active
                 : drum       ? NamePlate::Look::Drum
                              : NamePlate::Look::Normal,
                 !playable        ? NamePlate::Dim::Noteless
                 : shown.Silent() ? NamePlate::Dim::Muted
                                  : NamePlate::Dim::None);
  soloButton->setState(shown.Solo ? LedState::Lit : LedState::Off);
  muteButton->setState(shown.MutedBySolo ? LedState::Implied
                       : shown.Mute      ? LedState::Lit
                                         : LedState::Off);
  recordButton->setState(shown.Armed ? LedState::Lit : LedState::Off);
  recordButton->setBlinking(shown.Armed && shown.Recording);
  for (QWidget* part :
       std::initializer_list<QWidget*>{soloButton, muteButton, velocityStepper, octaveStepper})
    part->setEnabled(playable);
  // What is recorded here gives a channel its first notes.
  recordButton->setEnabled(shown.Song && shown.NoRecord.isEmpty());
  plate->setEnabled(shown.Song);
  meter->setGround(ground(), Bar::Opacity(!playable        ? Bar::Dim::Noteless
                                          : shown.Silent() ? Bar::Dim::Muted
                                                           : Bar::Dim::None));
  if (shown.Silent() || !shown.Song) meter->setLevel(0);
  showTexts();
  showTips();
  background = QPixmap();
  update();
}

void ChannelStrip::setLevel(int level) { meter->setLevel(shown.Silent() || !shown.Song ? 0 : level); }

void ChannelStrip::setMeterShown(bool isShown) { meter->setVisible(isShown); }

void ChannelStrip::setCompact(bool on) {
  if (on == compact) return;
  compact = on;
  layOut();
}

Spoken ChannelStrip::spoken() const { return {.role = QAccessible::Grouping}; }

QSize ChannelStrip::minimumSizeHint() const {
  return {metrics().px(71), StripPlan::LeastHeight(compact)};
}

void ChannelStrip::layOut() {
  const Metrics& m = metrics();
  plan = StripPlan::Of(size(), compact);
  plate->setGeometry(plan.plate);
  const int gap = m.px(ledGap), glow = LedButton::Glow();
  const double width = (plan.leds.width() - 2 * gap) / 3.0;
  int column = 0;
  for (LedButton* button : {soloButton, muteButton, recordButton}) {
    const double from = plan.leds.left() + column++ * (width + gap);
    const int left = qRound(from), right = qRound(from + width);
    button->setGeometry(QRect(left, plan.leds.top(), right - left, plan.leds.height())
                            .adjusted(-glow, -glow, glow, glow));
  }
  fader->setGeometry(plan.fader);
  meter->setGeometry(plan.fader.left() + m.px(meterLeft), plan.fader.top(), m.px(meterWidth),
                     plan.fader.height());
  value->setGeometry(plan.value);
  velocityStepper->setGeometry(plan.velocity);
  octaveStepper->setGeometry(plan.octave);
  background = QPixmap();
  update();
}

void ChannelStrip::changeEvent(QEvent* event) {
  Control::changeEvent(event);
  if (AppearanceChanged(*event)) showState();
}

QColor ChannelStrip::ground() const {
  const Theme& t = th();
  if (shown.Active) return t.bg2a;
  if (shown.Drum && shown.Song) return t.drumbg;
  return shown.Noteless() ? t.bg1 : t.bg2;
}

void ChannelStrip::paintEvent(QPaintEvent*) {
  if (background.isNull()) {
    background = QPixmap(size() * devicePixelRatioF());
    background.setDevicePixelRatio(devicePixelRatioF());
    background.fill(Qt::transparent);
    QPainter painter(&background);
    paintGround(painter);
    paintHead(painter);
  }
  QPainter(this).drawPixmap(0, 0, background);
}

void ChannelStrip::paintGround(QPainter& painter) const {
  const Theme& t = th();
  const Metrics& m = metrics();
  const double border = shown.Active ? m.px(2) : m.hair();
  PaintBox(painter, rect(), m.f(radius), ground(), shown.Active ? t.acc : t.line, border);
  if (!shown.Active && !shown.Armed) return;
  QPainterPath inside, head;
  inside.addRoundedRect(QRectF(rect()).adjusted(border, border, -border, -border), m.f(radius) - border,
                        m.f(radius) - border);
  head.addRect(QRectF(plan.head));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillPath(inside.intersected(head), shown.Armed ? t.rec : t.accd);
}

void ChannelStrip::paintHead(QPainter& painter) const {
  const Theme& t = th();
  const Metrics& m = metrics();
  const bool faced = shown.Armed || shown.Active;
  const QColor onFace = shown.Armed ? t.onrec : t.onaccd;
  const QColor ink = faced                ? onFace
                     : shown.Redirected() ? t.redirected
                     : shown.Noteless()   ? t.dis
                     : shown.Drum         ? t.drum
                                          : t.tx2;
  const QRectF row = QRectF(plan.head).adjusted(m.px(headSide), 0, -m.px(headSide), 0);
  painter.setFont(m.font(Role::Channel));
  painter.setPen(ink);
  const QString number = QString::number(shown.WireChannel + 1);
  drawFigures(painter, row, number, Qt::AlignLeft | Qt::AlignVCenter);
  if (shown.Redirected()) {
    const double left = FiguresWidth(painter.font(), number) + m.px(4);
    painter.setFont(m.font(Role::Caption));
    painter.setPen(faced ? onFace : t.tx3);
    painter.drawText(row.adjusted(left, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                     QStringLiteral("(%1)").arg(shown.Channel + 1));
  }
  double right = row.right();
  if (shown.Armed) {
    QFont font = m.font(Role::Caption);
    font.setWeight(QFont::Bold);
    painter.setFont(font);
    painter.setPen(onFace);
    painter.drawText(row, Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("REC"));
    right -= QFontMetricsF(font).horizontalAdvance(QStringLiteral("REC")) + m.px(3);
  }
  const double side = m.px(drumIcon);
  const double numberEnd = row.left() + FiguresWidth(m.font(Role::Channel), number);
  if (shown.Drum && shown.Song && right - side > numberEnd && !(shown.Armed && shown.Redirected()))
    PaintIcon(painter, Icon::Drum, QRectF(right - side, row.center().y() - side / 2, side, side),
              faced ? onFace : t.drum);
}

void ChannelStrip::mousePressEvent(QMouseEvent* event) {
  Q_EMIT chosen();
  if (event->button() != Qt::RightButton) return;
  if (plan.head.contains(event->position().toPoint()))
    Q_EMIT redirectMenuWanted(event->globalPosition().toPoint());
  else
    Q_EMIT soundWanted();
}

}  // namespace Sonarello
