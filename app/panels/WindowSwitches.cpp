#include "app/panels/WindowSwitches.h"

#include <QFontMetricsF>
#include <QHelpEvent>
#include <QToolTip>
#include <cmath>

#include "app/controls/Painting.h"
#include "app/controls/QtText.h"
#include "app/panels/PanelButton.h"

namespace Sonarello {

namespace {

constexpr double ButtonHeight = 22, Padding = 9, Gap = 4, SwitchIcon = 14;
constexpr double SeparatorHeight = 14, SeparatorGap = 12, LightGap = 10, LightSize = 8, TextGap = 4;

struct SwitchRow {
  Icon icon;
  const char* german;
  const char* english;
  const char* whatGerman;
  const char* whatEnglish;
  const char* key;
};

/// In the order of DeskWindow.
constexpr std::array<SwitchRow, DeskWindows> Rows{{
    {Icon::Sound, "Sounds", "Sounds", "Sounds aller Kanäle", "Sounds of all channels", "F7"},
    {Icon::Knob, "Controller", "Controllers", "Ein Controller auf allen Kanälen",
     "One controller on all channels", ""},
    {Icon::List, "Events", "Events", "Eventliste", "Event list", "F6"},
    {Icon::Keys, "Key-Editor", "Key editor", "Key-Editor", "Key editor", "F5"},
    {Icon::Drum, "Drums", "Drums", "Drum-Editor", "Drum editor", ""},
    {Icon::Text, "Liedtext", "Lyrics", "Liedtext und Akkorde", "Lyrics and chords", "F8"},
    {Icon::Note, "Klaviatur", "Keyboard", "Virtuelle Klaviatur", "Virtual keyboard", ""},
}};

QString MidiInText() { return QStringLiteral("MIDI IN"); }

QFont LineFont() { return FontOf(FontStack::Text, metrics().f(12), QFont::Normal); }

}  // namespace

WindowSwitches::WindowSwitches(QWidget* parent) : Panel(parent) {
  setAccessibleName(QText("Fenster", "Windows"));
  for (std::size_t i = 0; i < DeskWindows; ++i) {
    const QString name = QText(Rows[i].german, Rows[i].english);
    buttons_[i] = new PanelButton(name, this);
    buttons_[i]->setText(name);
    buttons_[i]->SetIcon(Rows[i].icon, SwitchIcon);
    buttons_[i]->SetRole(Role::ToolTip);
    buttons_[i]->SetFlat(true);
    buttons_[i]->setCheckable(true);
    connect(buttons_[i], &PanelButton::clicked, this, [this, i] {
      Refresh();
      Q_EMIT switchClicked(static_cast<DeskWindow>(i));
    });
  }
  Renew();
}

void WindowSwitches::SetView(DeskWindow window, const SwitchView& view) {
  views_[static_cast<std::size_t>(window)] = view;
  Refresh();
}

void WindowSwitches::SetMidiIn(bool lit, const QString& port) {
  port_ = port;
  if (lit == midiIn_) return;
  midiIn_ = lit;
  update(LightRect());
}

void WindowSwitches::Refresh() {
  for (std::size_t i = 0; i < DeskWindows; ++i) {
    const SwitchView& view = views_[i];
    buttons_[i]->SetState(view.reason.isEmpty(),
                          {QText(Rows[i].whatGerman, Rows[i].whatEnglish),
                           view.shown ? QText("Offen", "Open") : QText("Geschlossen", "Closed"),
                           QString::fromLatin1(Rows[i].key), view.reason});
    buttons_[i]->setChecked(view.shown);
  }
}

int WindowSwitches::SwitchesWidth() const {
  int width = 0;
  for (const PanelButton* button : buttons_) {
    width += button->WidthFor(metrics().px(Padding)) + metrics().px(Gap);
  }
  return width - metrics().px(Gap);
}

QSize WindowSwitches::sizeHint() const {
  const Metrics& m = metrics();
  const double text = QFontMetricsF(LineFont()).horizontalAdvance(MidiInText());
  const int light = m.px(SeparatorGap) + m.hair() + m.px(LightGap) + m.px(LightSize) + m.px(TextGap);
  return {SwitchesWidth() + light + static_cast<int>(std::ceil(text)) + m.px(12), m.px(28)};
}

void WindowSwitches::Arrange() {
  const int tall = metrics().px(ButtonHeight);
  int x = 0;
  for (PanelButton* button : buttons_) {
    const int wide = button->WidthFor(metrics().px(Padding));
    button->setGeometry(x, (height() - tall) / 2, wide, tall);
    x += wide + metrics().px(Gap);
  }
}

QRect WindowSwitches::LightRect() const {
  const Metrics& m = metrics();
  const int x = SwitchesWidth() + m.px(SeparatorGap) + m.hair() + m.px(LightGap),
            size = m.px(LightSize);
  return {x, (height() - size) / 2, size, size};
}

bool WindowSwitches::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const QString port =
        port_.isEmpty() ? QText("Kein MIDI-Eingang gewählt", "No MIDI input is chosen") : port_;
    QToolTip::showText(
        help->globalPos(),
        ToolTipOf({QText("Leuchtet, wenn MIDI ankommt", "Lit while MIDI arrives"), port}), this);
    return true;
  }
  return Panel::event(event);
}

void WindowSwitches::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const Metrics& m = metrics();
  const double x = SwitchesWidth() + m.px(SeparatorGap), tall = m.px(SeparatorHeight);
  const double top = std::floor((height() - tall) / 2);
  PaintHairline(painter, QLineF(x, top, x, top + tall), th().line2);
  const QRectF light = LightRect();
  PaintLight(painter, light.center(), light.width(), midiIn_, th().play);
  painter.setFont(LineFont());
  painter.setPen(th().tx3);
  painter.drawText(QRectF(light.right() + m.px(TextGap), 0, width(), height()), Qt::AlignVCenter,
                   MidiInText());
}

}  // namespace Sonarello
