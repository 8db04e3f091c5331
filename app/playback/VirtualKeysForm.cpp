#include "app/playback/VirtualKeysForm.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QMouseEvent>
#include <algorithm>
#include <array>
#include <utility>

#include "app/controls/Metrics.h"
#include "app/controls/PianoKeys.h"
#include "app/controls/QtText.h"
#include "app/controls/Stepper.h"
#include "app/controls/Theme.h"
#include "app/controls/ValueBox.h"
#include "app/playback/ComputerKeys.h"
#include "playback/MidiErrors.h"

namespace Sonarello {
namespace {

constexpr int usualLowest = 48;  // an octave below the middle of the piano
constexpr int octave = 12;
constexpr int highestStart = 108;  // the last C from which an octave can be played
constexpr int whitesOfOctave = 7;
constexpr int whitesOfPiano = 75;           // of notes 0 to 127
constexpr int whitesPlayed = 15;            // of the two octaves
constexpr int softest = 30, loudest = 127;  // of the mouse
constexpr int velocityStep = 8;

constexpr int usualWidth = 880, usualHeight = 150, leastWidth = 560, leastHeight = 120;
constexpr int side = 12, top = 6, headHeight = 24, gap = 4, bottom = 6, whiteWidth = 22;

/// The note of a white key, counted from note 0.
int WhiteKey(int index) {
  constexpr std::array<int, whitesOfOctave> steps{0, 2, 4, 5, 7, 9, 11};
  return index / whitesOfOctave * octave + steps[static_cast<std::size_t>(index % whitesOfOctave)];
}

}  // namespace

TVirtualKeysForm::TVirtualKeysForm(TVirtualKeys& keys, QWidget* parent)
    : QWidget(parent, Qt::Window),
      Keys(new PianoKeys(this)),
      OctaveShift(new Stepper(StepperKind::Octave, this)),
      VelocityBox(new ValueBox(this)),
      player(keys),
      octaveCaption(new QLabel(this)),
      velocityCaption(new QLabel(this)),
      hint(new QLabel(this)) {
  setObjectName(QStringLiteral("VirtualKeysForm"));
  setFocusPolicy(Qt::StrongFocus);
  BuildHead();
  Keys->installEventFilter(this);
  connect(Keys, &PianoKeys::pressed, this, [this](int note) { Play(note, VelocityAt(pointer)); });
  connect(Keys, &PianoKeys::released, this, &TVirtualKeysForm::LetGo);
  ArrangeHead();
  ShowTexts();
}

TVirtualKeysForm::~TVirtualKeysForm() { player.Release(); }

void TVirtualKeysForm::BuildHead() {
  auto* head = new QHBoxLayout;
  for (QWidget* part : {static_cast<QWidget*>(octaveCaption), static_cast<QWidget*>(OctaveShift),
                        static_cast<QWidget*>(velocityCaption), static_cast<QWidget*>(VelocityBox)})
    head->addWidget(part);
  head->addWidget(hint, 1);
  hint->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  hint->setMinimumWidth(1);
  auto* all = new QVBoxLayout(this);
  all->addLayout(head);
  all->addWidget(Keys, 1);

  OctaveShift->setRange(-usualLowest / octave, (highestStart - usualLowest) / octave);
  OctaveShift->setRepeats(true);
  VelocityBox->setRange(1, loudest);
  connect(OctaveShift, &Stepper::stepped, this, &TVirtualKeysForm::ShiftOctave);
  connect(VelocityBox, &ValueBox::typed, this, &TVirtualKeysForm::SetVelocity);
}

void TVirtualKeysForm::ArrangeHead() {
  const Metrics& m = metrics();
  auto* all = static_cast<QVBoxLayout*>(layout());
  all->setContentsMargins(m.px(side), m.px(top), m.px(side), m.px(bottom));
  all->setSpacing(m.px(gap));
  all->itemAt(0)->layout()->setSpacing(m.px(8));
  for (QLabel* label : {octaveCaption, velocityCaption, hint}) label->setFont(m.font(Role::Caption));
  OctaveShift->setFixedSize(m.px(80), m.px(headHeight));
  VelocityBox->setFixedSize(m.px(48), m.px(headHeight));
  setMinimumSize(minimumSizeHint());
  ArrangeKeys();
}

void TVirtualKeysForm::ArrangeKeys() {
  const Metrics& m = metrics();
  const int room = width() - 2 * m.px(side);
  const int whites = std::clamp(qRound(room / m.f(whiteWidth)), whitesPlayed, whitesOfPiano);
  // The octaves of the computer's keyboard stay in sight, in the middle if the piano has room for it.
  const int octavesBelow = (whites - whitesPlayed) / (2 * whitesOfOctave);
  const int first =
      std::clamp((lowestNote / octave - octavesBelow) * whitesOfOctave, 0, whitesOfPiano - whites);
  Keys->setRange(WhiteKey(first), WhiteKey(first + whites - 1));
}

void TVirtualKeysForm::ShowChannel(int channel, const QString& sound) {
  shownChannel = channel;
  soundName = sound;
  silence.clear();
  ShowTexts();
}

void TVirtualKeysForm::ShowTexts() {
  QString title = QText("Virtuelle Klaviatur", "Virtual keyboard");
  if (shownChannel > 0)
    title += QText(" - Midikanal %1", " - midi-channel %1").arg(shownChannel) +
             (soundName.isEmpty() ? QString() : QStringLiteral(": ") + soundName);
  setWindowTitle(title);
  Keys->setAccessibleName(title);
  const QString octaveText = QText("Oktave", "Octave");
  const QString velocityText = QText("Anschlag", "Velocity");
  octaveCaption->setText(octaveText);
  velocityCaption->setText(velocityText);
  OctaveShift->setValue((lowestNote - usualLowest) / octave);
  VelocityBox->setValue(velocity);
  OctaveShift->setAccessibleName(
      QText("Oktave der Computertastatur", "Octave of the computer keyboard"));
  VelocityBox->setAccessibleName(
      QText("Anschlag der Computertastatur", "Velocity of the computer keyboard"));
  OctaveShift->setToolTip(
      Tip(OctaveShift->accessibleName(), {}, QText("Pfeil links, rechts", "Left, Right")));
  VelocityBox->setToolTip(Tip(VelocityBox->accessibleName(), {}, QText("Pfeil auf, ab", "Up, Down")));

  QPalette palette = this->palette();
  palette.setColor(QPalette::WindowText, th().tx3);
  octaveCaption->setPalette(palette);
  velocityCaption->setPalette(palette);
  if (!silence.isEmpty()) palette.setColor(QPalette::WindowText, th().warn);
  hint->setPalette(palette);
  hint->setText(!silence.isEmpty() ? silence
                                   : QText("Computertastatur: zwei Buchstabenreihen ab C%1",
                                           "Computer keyboard: two rows of letters from C%1")
                                         .arg(lowestNote / octave - 2));
}

void TVirtualKeysForm::Play(int note, int loudness) {
  QString why;
  bool sounds = false;
  try {
    sounds = player.Press(note, loudness);
    why = shownChannel == 0
              ? QText("Kein Kanal ist aktiv", "No channel is active")
              : QText("Der MIDI-Ausgang ist nicht geöffnet", "The MIDI output is not open");
  } catch (const EMidiOutputError& error) {
    why = ToQt(error.what());
  }
  if (sounding >= 0) Keys->setSounding(sounding, false);
  sounding = sounds ? note : -1;
  if (sounds) Keys->setSounding(note, true);
  silence = sounds ? QString() : why;
  ShowTexts();
}

void TVirtualKeysForm::LetGo(int note) {
  if (note == sounding) Quiet();
}

void TVirtualKeysForm::Quiet() {
  player.Release();
  heldCode.reset();
  if (sounding >= 0) Keys->setSounding(std::exchange(sounding, -1), false);
}

void TVirtualKeysForm::ShiftOctave(int octaves) {
  const int shifted = lowestNote + octaves * octave;
  if (shifted < 0 || shifted > highestStart) return;
  lowestNote = shifted;
  ArrangeKeys();
  ShowTexts();
}

void TVirtualKeysForm::SetVelocity(int value) {
  velocity = std::clamp(value, 1, loudest);
  ShowTexts();
}

int TVirtualKeysForm::VelocityAt(const QPointF& point) const {
  const int note = Keys->noteAt(point);
  if (note < 0) return velocity;
  const QRectF key = Keys->keyRect(note);
  const double depth = std::clamp((point.y() - key.top()) / std::max(1.0, key.height() - 1), 0.0, 1.0);
  return softest + qRound(depth * (loudest - softest));
}

QSize TVirtualKeysForm::sizeHint() const {
  return {metrics().px(usualWidth), metrics().px(usualHeight)};
}

QSize TVirtualKeysForm::minimumSizeHint() const {
  return {metrics().px(leastWidth), metrics().px(leastHeight)};
}

bool TVirtualKeysForm::event(QEvent* event) {
  if (event->type() == QEvent::WindowDeactivate) Quiet();
  return QWidget::event(event);
}

void TVirtualKeysForm::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (!AppearanceChanged(*event)) return;
  ArrangeHead();
  ShowTexts();
}

void TVirtualKeysForm::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  ArrangeKeys();
}

void TVirtualKeysForm::hideEvent(QHideEvent* event) {
  Quiet();
  QWidget::hideEvent(event);
}

void TVirtualKeysForm::keyPressEvent(QKeyEvent* event) {
  constexpr auto others = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
  if (event->modifiers().testAnyFlags(others)) return QWidget::keyPressEvent(event);
  if (const auto semitone = SemitoneOfKey(event->nativeScanCode())) {
    if (event->isAutoRepeat()) return;
    Play(lowestNote + *semitone, velocity);
    heldCode = event->nativeScanCode();
    return;
  }
  switch (event->key()) {
    case Qt::Key_Left: return ShiftOctave(-1);
    case Qt::Key_Right: return ShiftOctave(1);
    case Qt::Key_Up: return SetVelocity(velocity + velocityStep);
    case Qt::Key_Down: return SetVelocity(velocity - velocityStep);
    case Qt::Key_Escape: close(); return;
    default: QWidget::keyPressEvent(event);
  }
}

void TVirtualKeysForm::keyReleaseEvent(QKeyEvent* event) {
  if (!heldCode || *heldCode != event->nativeScanCode()) return QWidget::keyReleaseEvent(event);
  if (!event->isAutoRepeat()) Quiet();
}

bool TVirtualKeysForm::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseMove)
    pointer = static_cast<QMouseEvent*>(event)->position();
  return QWidget::eventFilter(watched, event);
}

}  // namespace Sonarello
