#include "app/controls/Metrics.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "app/controls/Theme.h"

namespace Sonarello {
namespace {

struct RoleRow {
  Role role;
  FontStack stack;
  double size, line;  // pixels at 100 %
  QFont::Weight weight;
};

constexpr std::array roleRows{
    RoleRow{Role::Display, FontStack::Text, 36, 40, QFont::Medium},
    RoleRow{Role::DisplayCompact, FontStack::Text, 32, 34, QFont::Medium},
    RoleRow{Role::Chord, FontStack::Text, 34, 38, QFont::Bold},
    RoleRow{Role::ChordCompact, FontStack::Text, 28, 30, QFont::Bold},
    RoleRow{Role::Lyric, FontStack::Text, 22, 27, QFont::Normal},
    RoleRow{Role::LyricCompact, FontStack::Text, 19, 23, QFont::Normal},
    RoleRow{Role::LyricChord, FontStack::Text, 14, 17, QFont::Medium},
    RoleRow{Role::NextChord, FontStack::Text, 16, 20, QFont::Normal},
    RoleRow{Role::Headline, FontStack::Text, 20, 24, QFont::Medium},
    RoleRow{Role::Figure, FontStack::Text, 22, 24, QFont::Medium},
    RoleRow{Role::Time, FontStack::Text, 20, 24, QFont::Normal},
    RoleRow{Role::ChordBox, FontStack::Text, 20, 24, QFont::Bold},
    RoleRow{Role::KnobValue, FontStack::Text, 17, 20, QFont::Medium},
    RoleRow{Role::Channel, FontStack::Text, 16, 24, QFont::Bold},
    RoleRow{Role::FileName, FontStack::Text, 16, 20, QFont::Medium},
    RoleRow{Role::Value, FontStack::Text, 15, 18, QFont::Medium},
    RoleRow{Role::Title, FontStack::Text, 14, 18, QFont::Medium},
    RoleRow{Role::Body, FontStack::Text, 13, 16, QFont::Normal},
    RoleRow{Role::Strong, FontStack::Text, 13, 16, QFont::Medium},
    RoleRow{Role::Letter, FontStack::Text, 12, 14, QFont::Bold},
    RoleRow{Role::ToolTip, FontStack::Text, 12, 15, QFont::Normal},
    RoleRow{Role::Plate, FontStack::Condensed, 12, 14, QFont::Medium},
    RoleRow{Role::EffectName, FontStack::Condensed, 12.5, 16, QFont::Medium},
    RoleRow{Role::KnobName, FontStack::Condensed, 12, 14, QFont::Normal},
    RoleRow{Role::Caption, FontStack::Text, 11, 13, QFont::Normal},
    RoleRow{Role::ScaleFigure, FontStack::Condensed, 10.5, 13, QFont::Normal},
    RoleRow{Role::Mono, FontStack::Mono, 12, 16, QFont::Normal},
};

constexpr std::size_t Index(Role role) { return static_cast<std::size_t>(role); }

Metrics metricsInForce;

struct Families {
  QStringList text{QStringLiteral("Roboto"), QStringLiteral("Noto Sans"), QStringLiteral("Inter"),
                   QStringLiteral("DejaVu Sans")};
  QStringList condensed{QStringLiteral("Roboto Condensed"), QStringLiteral("DejaVu Sans Condensed")};
  QStringList mono{QStringLiteral("DejaVu Sans Mono"), QStringLiteral("monospace")};
  /// Per cent that makes the text stack narrow where no condensed family is installed.
  int condensedStretch = QFont::AnyStretch;

  Families() {
    const QStringList installed = QFontDatabase::families();
    const bool none = std::none_of(condensed.begin(), condensed.end(),
                                   [&](const QString& family) { return installed.contains(family); });
    if (none) condensedStretch = 88;
    condensed += text;
  }
};

const Families& InstalledFamilies() {
  static const Families families;
  return families;
}

bool IsDigit(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }

double DigitCell(const QFontMetricsF& font) {
  double widest = 0;
  for (char digit = '0'; digit <= '9'; ++digit)
    widest = std::max(widest, font.horizontalAdvance(QLatin1Char(digit)));
  return widest;
}

}  // namespace

int Metrics::px(double length) const { return int(std::floor(length * percent / 100.0 + 0.5)); }

const QFont& Metrics::font(Role role) const {
  static std::map<std::pair<int, Role>, QFont> fonts;
  const auto found = fonts.find({percent, role});
  if (found != fonts.end()) return found->second;
  const RoleRow& row = roleRows[Index(role)];
  const double size = row.size == std::floor(row.size) ? px(row.size) : f(row.size);
  return fonts.emplace(std::pair{percent, role}, FontOf(row.stack, size, row.weight)).first->second;
}

int Metrics::lineHeight(Role role) const { return px(roleRows[Index(role)].line); }

const Metrics& metrics() { return metricsInForce; }

void SetScale(int percent) {
  int known = WindowScales.front();
  for (const int scale : WindowScales)
    if (scale <= percent) known = scale;
  metricsInForce.percent = known;
  ApplyAppearance();
}

QFont FontOf(FontStack stack, double pixels, QFont::Weight weight) {
  const Families& families = InstalledFamilies();
  QFont font;
  font.setFamilies(stack == FontStack::Text        ? families.text
                   : stack == FontStack::Condensed ? families.condensed
                                                   : families.mono);
  if (stack == FontStack::Condensed && families.condensedStretch != QFont::AnyStretch)
    font.setStretch(families.condensedStretch);
  if (pixels == std::floor(pixels)) {
    font.setPixelSize(int(pixels));
  } else {  // Only point sizes may be fractions.
    const QScreen* screen = QGuiApplication::primaryScreen();
    font.setPointSizeF(pixels * 72 / (screen != nullptr ? screen->logicalDotsPerInchY() : 96));
  }
  font.setWeight(weight);
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

double FiguresWidth(const QFont& font, const QString& text) {
  const QFontMetricsF measure(font);
  const double cell = DigitCell(measure);
  double width = 0;
  for (const QChar c : text) width += IsDigit(c) ? cell : measure.horizontalAdvance(c);
  return width;
}

void drawFigures(QPainter& painter, const QRectF& rect, const QString& text, Qt::Alignment alignment) {
  const QFontMetricsF measure(painter.font());
  const double cell = DigitCell(measure);
  const double width = FiguresWidth(painter.font(), text);
  double x = rect.left();
  if (alignment & Qt::AlignRight) x = rect.right() - width;
  if (alignment & Qt::AlignHCenter) x = rect.center().x() - width / 2;
  double baseline = rect.top() + measure.ascent();
  if (alignment & Qt::AlignBottom) baseline = rect.bottom() - measure.descent();
  if (alignment & Qt::AlignVCenter)
    baseline = rect.center().y() + (measure.ascent() - measure.descent()) / 2;
  for (const QChar c : text) {
    const double own = measure.horizontalAdvance(c);
    const double advance = IsDigit(c) ? cell : own;
    painter.drawText(QPointF(x + (advance - own) / 2, baseline), QString(c));
    x += advance;
  }
}

QString Elided(const QFont& font, const QString& text, double width) {
  return QFontMetricsF(font).elidedText(text, Qt::ElideRight, width);
}

}  // namespace Sonarello
