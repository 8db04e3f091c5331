#include "app/panels/ControllerPanel.h"

#include <QFontMetricsF>
#include <QPaintEvent>
#include <algorithm>
#include <cmath>

#include "app/controls/Knob.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"
#include "app/panels/PanelTexts.h"
#include "app/panels/RoutingButton.h"

namespace Sonarello {

namespace {

constexpr double KnobLeft = 7, KnobGap = 6, UsualKnob = 46, SmallKnob = 40;
constexpr double BlockEdge = 12, ButtonEdge = 6, AudioGap = 8, AudioMost = 130;

QString NameOf(const PanelController& controller) {
  return QText(controller.german, controller.english);
}

QFont SoundFont() { return FontOf(FontStack::Condensed, metrics().f(15), QFont::Medium); }

}  // namespace

const std::array<PanelController, PanelControllers>& ControllersOfPanel() {
  static constexpr std::array<PanelController, PanelControllers> controllers{{
      {10, "Panorama", "Panorama", 64, 64, true, 64},
      {11, "Expression", "Expression", 127, 127, false, 0},
      {91, "Hall", "Reverb", 40, 40, false, 0},
      {93, "Chorus", "Chorus", 0, 0, false, 0},
      {71, "Harmonics", "Harmonics", 64, 64, true, 0},
      {72, "Release", "Release", 64, 64, true, 0},
      {73, "Attack", "Attack", 64, 64, true, 0},
      {74, "Brightness", "Brightness", 64, 64, true, 0},
      {94, "Celeste", "Celeste", 0, 0, false, 0},
  }};
  return controllers;
}

ControllerPanel::ControllerPanel(QWidget* parent)
    : Panel(parent), Panel_MidiRouting(new RoutingButton(this)) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setAccessibleName(QText("Controller des aktiven Kanals", "Controllers of the active channel"));
  connect(Panel_MidiRouting, &RoutingButton::menuWanted, this, &ControllerPanel::routingMenuWanted);
  for (std::size_t i = 0; i < PanelControllers; ++i) {
    const PanelController& controller = ControllersOfPanel()[i];
    knobs_[i] = new Knob(this);
    knobs_[i]->setDefault(controller.reset);
    knobs_[i]->setBipolar(controller.bipolar);
    connect(knobs_[i], &Knob::moved, this, [this, i](int value) { KnobMoved(i, value); });
  }
  Renew();
}

void ControllerPanel::SetView(const ControllersView& view) {
  view_ = view;
  Refresh();
  Arrange();
  update();
}

void ControllerPanel::SetValue(std::size_t index, const ControllerValue& value) {
  view_.values[index] = value;
  RefreshKnob(index);
  update(TextRect(index));
}

void ControllerPanel::KnobMoved(std::size_t index, int value) {
  view_.values[index].value = value;
  RefreshKnob(index);
  update(TextRect(index));
  Q_EMIT controllerMoved(ControllersOfPanel()[index].number, value);
}

int ControllerPanel::ValueOf(std::size_t index) const {
  const std::optional<int> value = view_.song ? view_.values[index].value : std::nullopt;
  return value.value_or(ControllersOfPanel()[index].standard);
}

QString ControllerPanel::ShownValue(std::size_t index) const {
  if (!view_.song) return QStringLiteral("–");
  const int shown = ValueOf(index) - ControllersOfPanel()[index].zero;
  return shown < 0 ? QChar(0x2212) + QString::number(-shown) : QString::number(shown);
}

void ControllerPanel::RefreshKnob(std::size_t index) {
  const PanelController& controller = ControllersOfPanel()[index];
  Knob* knob = knobs_[index];
  knob->setEnabled(view_.song);
  knob->setValue(ValueOf(index));
  knob->setValueText(ShownValue(index));
  knob->setAccessibleName(NameOf(controller) + QText(", Kanal %1", ", channel %1").arg(view_.channel));
  QString what = NameOf(controller) + QStringLiteral(" (CC %1)").arg(controller.number);
  if (view_.song && !view_.values[index].inSong) {
    what += QLatin1Char('\n') + QText("Der Song hat dafür kein Event: zu hören, aber nicht gespeichert",
                                      "The song has no event for it: to be heard, but not saved");
  }
  SetTip(*knob, {what, ShownValue(index),
                 QText("Pfeile: 1, Bild: 8, Entf: Grundwert", "Arrows: 1, Page: 8, Del: default"),
                 view_.song ? QString() : NoSongReason()});
}

void ControllerPanel::RefreshRouting() {
  const QString route = view_.output.isEmpty()
                            ? view_.instrument
                            : view_.instrument + QStringLiteral(" → ") + view_.output;
  Panel_MidiRouting->setText(route);
  Panel_MidiRouting->setVisible(view_.song);
  const bool choice = view_.song && view_.severalRoutes;
  Panel_MidiRouting->SetChoice(choice,
                               {QText("Ausgang des aktiven Kanals; mit Strg: aller Kanäle",
                                      "Output of the active channel; with Ctrl: of all channels"),
                                route,
                                {},
                                choice ? QString() : view_.routingReason});
}

void ControllerPanel::Refresh() {
  for (std::size_t i = 0; i < PanelControllers; ++i) {
    RefreshKnob(i);
  }
  RefreshRouting();
  setAccessibleDescription(view_.song ? QStringLiteral("%1, %2").arg(view_.channel).arg(view_.sound)
                                      : NoSongReason());
}

QSize ControllerPanel::sizeHint() const { return {metrics().px(1264), Px(64, 76)}; }
QSize ControllerPanel::minimumSizeHint() const { return {metrics().px(1100), Px(64, 76)}; }

int ControllerPanel::BlockWidth() const { return Px(262, 288) + metrics().hair(); }

int ControllerPanel::ColumnLeft(std::size_t index) const {
  const int left = BlockWidth();
  const double column = static_cast<double>(width() - metrics().hair() - left) / PanelControllers;
  return left + static_cast<int>(std::lround(column * static_cast<double>(index)));
}

double ControllerPanel::KnobSide() const {
  if (compact()) return SmallKnob;
  // In narrow columns the names would be cut; the knobs give way.
  const Metrics& m = metrics();
  const QFontMetricsF sizes(m.font(Role::KnobName));
  double widest = 0;
  for (const PanelController& controller : ControllersOfPanel())
    widest = std::max(widest, sizes.horizontalAdvance(NameOf(controller)));
  const int column = ColumnLeft(1) - ColumnLeft(0) - 2 * m.hair();
  return m.px(KnobLeft) + m.px(UsualKnob) + m.px(KnobGap) + widest <= column ? UsualKnob : SmallKnob;
}

QRect ControllerPanel::TextRect(std::size_t index) const {
  const int left = ColumnLeft(index) + metrics().hair() + metrics().px(KnobLeft) +
                   metrics().px(knobSide_) + metrics().px(KnobGap);
  return {left, 0, ColumnLeft(index + 1) - left - metrics().hair(), height()};
}

double ControllerPanel::AudioWidth() const {
  if (view_.audioOutput.isEmpty()) return 0;
  const double width =
      QFontMetricsF(metrics().font(Role::Caption)).horizontalAdvance(view_.audioOutput);
  return std::min(width, metrics().f(AudioMost)) + metrics().px(AudioGap);
}

void ControllerPanel::Arrange() {
  const Metrics& m = metrics();
  const int channel = m.lineHeight(Role::Strong), sound = m.lineHeight(Role::Value);
  const int button = Px(20, 22), gap = Px(0, 2);
  const int left = m.hair() + m.px(BlockEdge), right = BlockWidth() - m.px(BlockEdge);
  int y = (height() - channel - sound - button - 2 * gap) / 2;
  channelLine_ = QRect(left, y, right - left, channel);
  y += channel + gap;
  soundLine_ = QRect(left, y, right - left, sound);
  y += sound + gap;
  const int audio = static_cast<int>(std::ceil(AudioWidth()));
  const int buttonLeft = m.hair() + m.px(ButtonEdge);
  Panel_MidiRouting->setGeometry(buttonLeft, y, right - audio - buttonLeft, button);
  audioLine_ = QRect(right - audio + m.px(AudioGap), y, audio, button);
  knobSide_ = KnobSide();
  const int side = m.px(knobSide_);
  for (std::size_t i = 0; i < PanelControllers; ++i) {
    knobs_[i]->setDiameter(knobSide_);
    knobs_[i]->setGeometry(ColumnLeft(i) + m.hair() + m.px(KnobLeft), (height() - side) / 2, side,
                           side);
  }
}

void ControllerPanel::PaintBlock(QPainter& painter) const {
  const Metrics& m = metrics();
  const auto line = [&](const QRect& place, const QFont& font, const QColor& ink, const QString& text) {
    painter.setFont(font);
    painter.setPen(ink);
    painter.drawText(place.adjusted(0, 0, 1, 0), Qt::AlignLeft | Qt::AlignVCenter,
                     Elided(font, text, place.width()));
  };
  const QString head = QText("Aktiver Midikanal: ", "Active midi channel: ");
  if (!view_.song) {
    const QRect whole(channelLine_.left(), 0, channelLine_.width(), height());
    line(whole, m.font(Role::Strong), th().dis, head + QStringLiteral("–"));
    return;
  }
  line(channelLine_, m.font(Role::Strong), th().acc, head + QString::number(view_.channel));
  line(soundLine_, SoundFont(), th().tx1, view_.sound);
  if (!view_.audioOutput.isEmpty())
    line(audioLine_, m.font(Role::Caption), th().tx3, view_.audioOutput);
}

void ControllerPanel::PaintColumn(QPainter& painter, std::size_t index) const {
  const Metrics& m = metrics();
  const PanelController& controller = ControllersOfPanel()[index];
  const int x = ColumnLeft(index);
  PaintHairline(painter, QLineF(x, m.hair(), x, height() - m.hair()), th().line);
  const int name = m.px(14), value = m.lineHeight(Role::KnobValue),
            number = m.lineHeight(Role::Caption);
  const QRect text = TextRect(index);
  const int top = (height() - name - value - number) / 2;
  const auto line = [&](int y, int tall, Role role, const QColor& ink) {
    painter.setFont(m.font(role));
    painter.setPen(ink);
    return QRectF(text.left(), y, text.width(), tall);
  };
  const QRectF nameLine = line(top, name, Role::KnobName, th().tx2);
  painter.drawText(nameLine, Qt::AlignLeft | Qt::AlignVCenter, NameOf(controller));
  const bool quiet = !view_.song || !view_.values[index].inSong;
  const QRectF valueLine = line(top + name, value, Role::KnobValue, quiet ? th().tx3 : th().tx1);
  drawFigures(painter, valueLine, ShownValue(index), Qt::AlignLeft | Qt::AlignVCenter);
  const QRectF numberLine = line(top + name + value, number, Role::Caption, th().tx3);
  painter.drawText(numberLine, Qt::AlignLeft | Qt::AlignVCenter,
                   QStringLiteral("CC %1").arg(controller.number));
}

void ControllerPanel::paintEvent(QPaintEvent* event) {
  Panel::paintEvent(event);
  QPainter painter(this);
  // Values run while the song plays: what is not dirty is not drawn.
  const QRect dirty = event->rect();
  if (dirty.left() < BlockWidth()) PaintBlock(painter);
  for (std::size_t i = 0; i < PanelControllers; ++i) {
    if (dirty.right() >= ColumnLeft(i) && dirty.left() <= ColumnLeft(i + 1)) PaintColumn(painter, i);
  }
}

}  // namespace Sonarello
