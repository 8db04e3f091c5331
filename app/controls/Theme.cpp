#include "app/controls/Theme.h"

#include <QApplication>
#include <QPointer>
#include <QToolTip>
#include <QWidget>
#include <algorithm>
#include <cmath>

#include "app/controls/Metrics.h"

namespace Sonarello {
namespace {

constexpr auto white = qRgb(0xFF, 0xFF, 0xFF);

Theme DarkTheme() {
  Theme t{};
  t.kind = ThemeKind::Dark;
  t.bg0 = 0x0E1115, t.bg1 = 0x161A1F, t.bg2 = 0x1C2127, t.bg2a = 0x27303B;
  t.bg3 = 0x2A323B, t.bg3h = 0x36404C, t.bg3p = 0x1A1F25, t.well = 0x090B0E;
  t.line = 0x2A3139, t.line2 = 0x46515E, t.edge = 0x687482;
  t.tx1 = 0xEFF3F7, t.tx2 = 0xB6C0CB, t.tx3 = 0x97A2AE, t.dis = 0x6E7985;
  t.acc = 0x4DB5FF, t.accd = 0x1A6FAE, t.accbg = 0x14293A, t.sel = 0x173F5E;
  t.drum = 0xB9A0FF, t.drumbg = 0x221F33, t.drumbg2 = 0x2E2947;
  t.solo = 0xFFB224, t.solob = 0xFFB224, t.mute = 0xFF5C54, t.mute2 = 0xFFA39D;
  t.rec = 0xFF3D77, t.onrec = 0x1C040B, t.play = 0x3DD68C, t.onplay = 0x06180F;
  t.redirected = t.mute;
  t.warn = 0xF2BE4C, t.err = 0xFF7A70;
  t.cap1 = 0x6B7786, t.cap2 = 0x434D59, t.caped = 0x101317, t.capline = 0xF4F7FA;
  t.m1 = 0x2FC183, t.m2 = 0xE9B63F, t.m3 = 0xFF5C54, t.moff = 0x10141A, t.track = 0x37414C;
  t.row = 0x13171C, t.rowalt = 0x171B21, t.kw = 0xE4E8EC, t.kb = 0x22272D;
  t.rollw = 0x161A1F, t.rollb = 0x111418, t.grid1 = 0x20262D, t.grid2 = 0x2C343D, t.grid3 = 0x4A5664;
  t.syllable = 0x06121C;
  t.shadow = WithAlpha(QColor(Qt::black), 0.5);
  t.kinds = {0x4DB5FF, 0xB9A0FF, 0x2FC183, 0x7FD6C2, 0xA6CF6B, 0xF2BE4C, 0xFF8A5C, 0x9AA6B2};
  return t;
}

Theme LightTheme() {
  Theme t{};
  t.kind = ThemeKind::Light;
  t.bg0 = 0xC6CCD3, t.bg1 = 0xDCE0E5, t.bg2 = 0xECEFF2, t.bg2a = 0xFFFFFF;
  t.bg3 = 0xFAFBFC, t.bg3h = 0xFFFFFF, t.bg3p = 0xCDD3DA, t.well = 0xFBFCFD;
  t.line = 0xBAC2CB, t.line2 = 0x838E9B, t.edge = 0x6E7985;
  t.tx1 = 0x12171D, t.tx2 = 0x38434F, t.tx3 = 0x48535F, t.dis = 0x7C8792;
  t.acc = 0x0063B1, t.accd = 0x0063B1, t.accbg = 0xDCECFA, t.sel = 0xC9E3F9;
  t.drum = 0x5E3BB8, t.drumbg = 0xE6E0F5, t.drumbg2 = 0xD6CBF0;
  t.solo = 0xFFA726, t.solob = 0x8F5600, t.mute = 0xE5483F, t.mute2 = 0x9C1F18;
  t.rec = 0xD81B60, t.onrec = white, t.play = 0x0E7A45, t.onplay = white;
  t.redirected = 0xB3261E;
  t.warn = 0x7A4E00, t.err = 0xB3261E;
  t.cap1 = 0xFFFFFF, t.cap2 = 0xD3D9E0, t.caped = 0x77828F, t.capline = 0x1B2128;
  t.m1 = 0x0F8350, t.m2 = 0x9A6200, t.m3 = 0xC9302A, t.moff = 0xD3D9DF, t.track = 0xAEB8C2;
  t.row = 0xFBFCFD, t.rowalt = 0xF1F4F6, t.kw = 0xFFFFFF, t.kb = 0x2A3037;
  t.rollw = 0xFBFCFD, t.rollb = 0xEEF1F4, t.grid1 = 0xE3E7EB, t.grid2 = 0xCBD2D9, t.grid3 = 0x8E99A5;
  t.syllable = white;
  t.shadow = WithAlpha(QColor(0x141E28), 0.25);
  t.kinds = {0x0063B1, 0x5E3BB8, 0x0F8350, 0x0E7C74, 0x476B12, 0x7A4E00, 0xB5440F, 0x5A6672};
  return t;
}

/// What both themes share or mix from their tokens.
Theme Completed(Theme t) {
  t.onaccd = white;
  t.onlit = 0x140A06;
  t.muteface = Mixed(t.mute, 0.22, t.bg3);
  t.warnbg = Mixed(t.warn, 0.12, t.bg1);
  t.errbg = Mixed(t.err, 0.12, t.bg1);
  t.keyline = 0x8B949E, t.keyline2 = 0xA7AFB8, t.keytext = 0x3A434D, t.keysounds = 0x4DB5FF;
  return t;
}

const Theme* themeInForce = nullptr;

std::array<QColor, 128> VelocityRamp() {
  struct Stop {
    int velocity;
    QColor colour;
  };
  const std::array<Stop, 6> stops{{{1, 0x5D6FBE},
                                   {40, 0x4686D8},
                                   {70, 0x40B0BE},
                                   {95, 0x58BE6E},
                                   {112, 0xECB840},
                                   {127, 0xF06048}}};
  std::array<QColor, 128> ramp;
  ramp[0] = stops[0].colour;
  for (std::size_t i = 1; i < stops.size(); ++i) {
    const Stop &from = stops[i - 1], &to = stops[i];
    for (int v = from.velocity; v <= to.velocity; ++v) {
      const double share = double(v - from.velocity) / (to.velocity - from.velocity);
      ramp[static_cast<std::size_t>(v)] = Mixed(to.colour, share, from.colour);
    }
  }
  return ramp;
}

}  // namespace

const Theme& ThemeOf(ThemeKind kind) {
  static const Theme dark = Completed(DarkTheme());
  static const Theme light = Completed(LightTheme());
  return kind == ThemeKind::Dark ? dark : light;
}

const Theme& th() { return themeInForce != nullptr ? *themeInForce : ThemeOf(ThemeKind::Dark); }

void SetTheme(ThemeKind kind) {
  themeInForce = &ThemeOf(kind);
  ApplyAppearance();
}

void ApplyAppearance() {
  if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) return;
  QApplication::setPalette(PaletteOf(th()));
  QToolTip::setPalette(PaletteOf(th()));
  QApplication::setFont(metrics().font(Role::Body));
  QToolTip::setFont(metrics().font(Role::ToolTip));
  std::vector<QPointer<QWidget>> widgets;  // an answer may delete others
  for (QWidget* widget : QApplication::allWidgets()) widgets.emplace_back(widget);
  for (const QPointer<QWidget>& widget : widgets) {
    // Before the event loop runs, the application itself tells no widget of palette and font.
    for (const auto type :
         {QEvent::ApplicationPaletteChange, QEvent::ApplicationFontChange, QEvent::StyleChange}) {
      QEvent change(type);
      if (!widget.isNull()) QCoreApplication::sendEvent(widget, &change);
    }
  }
}

QPalette PaletteOf(const Theme& t) {
  QPalette p;
  p.setColor(QPalette::Window, t.bg0);
  p.setColor(QPalette::Base, t.row);
  p.setColor(QPalette::AlternateBase, t.rowalt);
  p.setColor(QPalette::Button, t.bg3);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    p.setColor(role, t.tx1);
    p.setColor(QPalette::Disabled, role, t.dis);
  }
  p.setColor(QPalette::BrightText, t.tx1);
  p.setColor(QPalette::PlaceholderText, t.tx3);
  p.setColor(QPalette::Highlight, t.sel);
  p.setColor(QPalette::HighlightedText, t.tx1);
  p.setColor(QPalette::Disabled, QPalette::HighlightedText, t.dis);
  p.setColor(QPalette::ToolTipBase, t.bg3);
  p.setColor(QPalette::ToolTipText, t.tx1);
  p.setColor(QPalette::Link, t.acc);
  p.setColor(QPalette::LinkVisited, t.acc);
  p.setColor(QPalette::Mid, t.line2);
  p.setColor(QPalette::Midlight, t.line2);
  p.setColor(QPalette::Dark, t.line);
  p.setColor(QPalette::Shadow, t.bg0);
  p.setColor(QPalette::Light, t.bg3h);
  p.setColor(QPalette::Disabled, QPalette::Base, t.bg2);
  p.setColor(QPalette::Disabled, QPalette::Button, t.bg2);
  p.setColor(QPalette::Disabled, QPalette::Highlight, t.bg3);
  return p;
}

QColor Mixed(const QColor& top, double share, const QColor& ground) {
  const auto mix = [share](int a, int b) { return int(std::lround(a * share + b * (1 - share))); };
  return QColor(mix(top.red(), ground.red()), mix(top.green(), ground.green()),
                mix(top.blue(), ground.blue()));
}

QColor WithAlpha(QColor colour, double alpha) {
  colour.setAlphaF(static_cast<float>(alpha));
  return colour;
}

const QColor& VelocityColour(int velocity) {
  static const std::array<QColor, 128> ramp = VelocityRamp();
  return ramp[static_cast<std::size_t>(std::clamp(velocity, 0, 127))];
}

QColor VelocityInk(int velocity) { return velocity < 14 ? QColor(white) : QColor(0x0B1016); }

}  // namespace Sonarello
