#include "app/controls/NameFitting.h"

#include <QFontMetricsF>
#include <array>
#include <map>
#include <optional>
#include <tuple>
#include <vector>

#include "app/controls/Metrics.h"

namespace Sonarello {
namespace {

constexpr int mostLines = 3;
constexpr std::array wideSizes{12.0, 11.5, 11.0};
constexpr std::array narrowSizes{12.0, 11.5, 11.0, 10.5, 10.0};
constexpr std::size_t mostAnswers = 2000;  // sixteen strips meet far fewer names

enum class Breaks { OutsideBrackets, InsideToo };

/// A part of a name that is not broken, and whether a blank stands before it.
struct Piece {
  QString text;
  bool afterBlank;
};

std::vector<Piece> Pieces(const QString& name, Breaks breaks) {
  std::vector<Piece> pieces;
  QString text;
  bool blank = false;
  int depth = 0;
  const auto cut = [&](bool nextAfterBlank) {
    if (!text.isEmpty()) pieces.push_back({text, blank});
    text.clear();
    blank = nextAfterBlank;
  };
  for (const QChar c : name) {
    const QChar before = text.isEmpty() ? QChar() : text.back();
    const bool newWord = c.isUpper() && before.isLower();
    const bool newWordInside = c.isUpper() && (before.isLower() || before == QLatin1Char('!'));
    if (c == QLatin1Char(' ')) {
      cut(true);
      continue;
    }
    if (c == QLatin1Char('(') || (depth == 0 && newWord) ||
        (depth > 0 && breaks == Breaks::InsideToo && newWordInside))
      if (!text.isEmpty()) cut(false);
    if (c == QLatin1Char('(')) ++depth;
    if (c == QLatin1Char(')') && depth > 0) --depth;
    text += c;
  }
  cut(false);
  return pieces;
}

std::optional<QStringList> Filled(const std::vector<Piece>& pieces, const QFontMetricsF& font,
                                  double width) {
  QStringList lines;
  for (const Piece& piece : pieces) {
    if (!lines.isEmpty()) {
      const QString longer =
          lines.back() + (piece.afterBlank ? QStringLiteral(" ") : QString()) + piece.text;
      if (font.horizontalAdvance(longer) <= width) {
        lines.back() = longer;
        continue;
      }
    }
    if (lines.size() == mostLines || font.horizontalAdvance(piece.text) > width) return std::nullopt;
    lines.append(piece.text);
  }
  return lines;
}

/// The last resort: a break anywhere, the third line shortened.
QStringList Chopped(const QString& name, const QFontMetricsF& font, double width) {
  QStringList lines;
  QString rest = name;
  while (lines.size() < mostLines - 1 && !rest.isEmpty()) {
    qsizetype length = rest.size();
    while (length > 1 && font.horizontalAdvance(rest.left(length)) > width) --length;
    lines.append(rest.left(length));
    rest = rest.mid(length);
  }
  if (!rest.isEmpty()) lines.append(font.elidedText(rest, Qt::ElideRight, width));
  return lines;
}

template <typename Sizes>
std::optional<FittedName> FittedWith(const QString& name, Breaks breaks, const Sizes& sizes,
                                     double width) {
  const std::vector<Piece> pieces = Pieces(name, breaks);
  for (const double size : sizes) {
    const QFontMetricsF font(FontOf(FontStack::Condensed, metrics().f(size), QFont::Medium));
    if (auto lines = Filled(pieces, font, width))
      return FittedName{*lines, size, size >= 11.5 ? 14.0 : 13.0};
  }
  return std::nullopt;
}

FittedName Fitted(const QString& name, double width) {
  if (auto fitted = FittedWith(name, Breaks::OutsideBrackets, wideSizes, width)) return *fitted;
  if (auto fitted = FittedWith(name, Breaks::InsideToo, narrowSizes, width)) return *fitted;
  const double smallest = narrowSizes.back();
  const QFontMetricsF font(FontOf(FontStack::Condensed, metrics().f(smallest), QFont::Medium));
  return {Chopped(name, font, width), smallest, 13};
}

}  // namespace

const FittedName& FitName(const QString& name, int width) {
  static std::map<std::tuple<QString, int, int>, FittedName> answers;
  if (answers.size() > mostAnswers) answers.clear();
  const std::tuple key{name, width, metrics().percent};
  const auto found = answers.find(key);
  if (found != answers.end()) return found->second;
  return answers.emplace(key, Fitted(name, width)).first->second;
}

}  // namespace Sonarello
