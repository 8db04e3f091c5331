#include "app/panels/LyricBar.h"

#include <QFontMetricsF>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

#include "app/controls/Metrics.h"
#include "app/controls/QtText.h"
#include "app/controls/Theme.h"

namespace Sonarello {

namespace {

constexpr double Padding = 16, ChordBlock = 124, NextGap = 12;
constexpr std::size_t ComingChords = 8;
constexpr double LeastChordSize = 11;

double WidthOf(const QFont& font, const QString& text) {
  return QFontMetricsF(font).horizontalAdvance(text);
}

/// The font, made smaller if the text is wider than its room: a long chord such as Bbm7b5/Ab is written
/// smaller rather than cut.
QFont Fitted(QFont font, const QString& text, double room) {
  const double width = WidthOf(font, text);
  if (width <= room) return font;
  const int size = static_cast<int>(font.pixelSize() * std::max(room, 0.0) / width);
  font.setPixelSize(std::max(size, metrics().px(LeastChordSize)));
  return font;
}

}  // namespace

LyricBar::LyricBar(QWidget* parent) : Panel(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setAccessibleName(QText("Liedtext und Akkorde", "Lyrics and chords"));
  Renew();
}

void LyricBar::SetView(const LyricView& view) {
  if (view == view_) return;
  const bool line = view.line != view_.line;
  view_ = view;
  if (line) current_ = -1;
  Refresh();
  if (line) Arrange();
  update();
}

void LyricBar::SetCurrent(int syllable) {
  const int next = std::clamp(syllable, -1, static_cast<int>(view_.line.size()));
  if (next == current_) return;
  const int page = Page();
  const int from = std::min(next, current_), to = std::max(next, current_);
  current_ = next;
  if (Page() != page) {
    update();
    return;
  }
  QRectF changed;
  for (int i = std::max(from, 0); i <= to; ++i) changed = changed.united(RectOf(i));
  update(changed.adjusted(-2, 0, 2, 0).toAlignedRect());
}

void LyricBar::Refresh() {
  QString line;
  for (const LyricSyllable& syllable : view_.line) line += syllable.text;
  QString spoken = line.isEmpty()
                       ? view_.comingChords.empty()
                             ? QString()
                             : QStringList(view_.comingChords.begin(), view_.comingChords.end())
                                   .join(QLatin1Char(' '))
                       : line;
  if (!view_.chord.isEmpty()) {
    spoken += QLatin1Char('\n') + QText("Akkord %1", "Chord %1").arg(view_.chord);
  }
  SetTip(*this, {QText("Akkord und Liedtext an der Position", "Chord and lyrics at the position"),
                 {},
                 QStringLiteral("F8")});
  setAccessibleDescription(spoken);
}

double LyricBar::TextLeft() const {
  const Metrics& m = metrics();
  return m.px(Padding) + m.px(ChordBlock) + m.hair() + m.px(Padding);
}

double LyricBar::TextRoom() const { return width() - TextLeft() - metrics().px(Padding); }

/// Places the syllables one behind the other. A page ends behind the last blank that fits; a word wider
/// than the bar is cut where it must be.
void LyricBar::Arrange() {
  const QFontMetricsF sizes(metrics().font(compact() ? Role::LyricCompact : Role::Lyric));
  words_.assign(view_.line.size(), {});
  const double room = std::max(TextRoom(), 1.0);
  std::size_t wordStart = 0;
  double x = 0;
  int page = 0;
  for (std::size_t i = 0; i < words_.size(); ++i) {
    const QString& text = view_.line[i].text;
    const double width = sizes.horizontalAdvance(text);
    const double ink = sizes.horizontalAdvance(text.trimmed());
    if (x + ink > room && x > 0) {
      const bool wordFits = words_[wordStart].x > 0 && words_[wordStart].page == page;
      const std::size_t first = wordFits ? wordStart : i;
      const double shift = first == i ? x : words_[first].x;
      ++page;
      for (std::size_t k = first; k < i; ++k) words_[k] = {words_[k].x - shift, words_[k].width, page};
      x -= shift;
    }
    words_[i] = {x, width, page};
    x += width;
    if (text.endsWith(QLatin1Char(' '))) wordStart = i + 1;
  }
}

int LyricBar::Page() const {
  if (words_.empty()) return 0;
  const int index = std::clamp(current_, 0, static_cast<int>(words_.size()) - 1);
  return words_[static_cast<std::size_t>(index)].page;
}

QRectF LyricBar::RectOf(int syllable) const {
  if (syllable < 0 || syllable >= static_cast<int>(words_.size())) return {};
  const Word& word = words_[static_cast<std::size_t>(syllable)];
  if (word.page != Page()) return {};
  return {TextLeft() + word.x, 0, word.width, static_cast<double>(height())};
}

/// Where a syllable draws: the chord over it may be longer than itself.
QRectF LyricBar::Reach(int syllable) const {
  QRectF reach = RectOf(syllable);
  const QString& chord = view_.line[static_cast<std::size_t>(syllable)].chord;
  if (!reach.isEmpty() && !chord.isEmpty()) {
    const double chordWidth = QFontMetricsF(metrics().font(Role::LyricChord)).horizontalAdvance(chord);
    reach.setWidth(std::max(reach.width(), chordWidth));
  }
  return reach.adjusted(-2, 0, 2, 0);
}

QSize LyricBar::sizeHint() const { return {metrics().px(1264), Px(56, 82)}; }
QSize LyricBar::minimumSizeHint() const { return {metrics().px(400), Px(56, 82)}; }

void LyricBar::PaintChordBlock(QPainter& painter) const {
  const Metrics& m = metrics();
  const Role role = compact() ? Role::ChordCompact : Role::Chord;
  const int tall = m.lineHeight(role), caption = compact() ? 0 : m.lineHeight(Role::Caption);
  const double left = m.px(Padding) + m.hair(), room = m.px(ChordBlock) - m.px(8);
  const double top = (height() - tall - caption) / 2.0;
  const QString next = view_.nextChord.isEmpty() ? QString() : QStringLiteral("› ") + view_.nextChord;
  const double gap = next.isEmpty() || view_.chord.isEmpty() ? 0 : m.f(NextGap);
  const double wanted =
      WidthOf(m.font(role), view_.chord) + gap + WidthOf(m.font(Role::NextChord), next);
  const bool fits = wanted <= room;
  const QFont nextFont =
      fits ? m.font(Role::NextChord) : Fitted(m.font(Role::NextChord), next, room / 2);
  const double nextRoom = fits ? WidthOf(nextFont, next) : std::min(WidthOf(nextFont, next), room / 2);
  const QFont font = Fitted(m.font(role), view_.chord, room - gap - nextRoom);
  const double width = WidthOf(font, view_.chord);
  const double rest = std::min(nextRoom + 0.5, room - width - gap);
  painter.setFont(font);
  painter.setPen(th().warn);
  painter.drawText(QRectF(left, top, width + 1, tall), Qt::AlignLeft | Qt::AlignVCenter, view_.chord);
  painter.setFont(nextFont);
  painter.setPen(th().tx3);
  painter.drawText(QRectF(left + width + gap, top + m.f(3), nextRoom + 1, tall),
                   Qt::AlignLeft | Qt::AlignVCenter, Elided(nextFont, next, rest));
  if (!compact()) {
    painter.setFont(m.font(Role::Caption));
    painter.drawText(QRectF(left, top + tall, room, caption), Qt::AlignLeft | Qt::AlignVCenter,
                     QText("Akkord", "Chord"));
  }
  const int x = m.px(Padding) + m.px(ChordBlock), inset = m.px(7);
  painter.fillRect(QRect(x, inset, m.hair(), height() - 2 * inset), th().line);
}

void LyricBar::PaintSyllable(QPainter& painter, int syllable, int top) const {
  const Metrics& m = metrics();
  const QRectF place = RectOf(syllable);
  if (place.isEmpty()) return;
  const LyricSyllable& shown = view_.line[static_cast<std::size_t>(syllable)];
  const Role role = compact() ? Role::LyricCompact : Role::Lyric;
  const int chordHeight = m.lineHeight(Role::LyricChord), height = m.lineHeight(role);
  if (!shown.chord.isEmpty()) {
    painter.setFont(m.font(Role::LyricChord));
    painter.setPen(th().warn);
    painter.drawText(QRectF(place.left(), top, width() - place.left(), chordHeight),
                     Qt::AlignLeft | Qt::AlignVCenter, shown.chord);
  }
  const QRectF line(place.left(), top + chordHeight, place.width() + 1, height);
  painter.setFont(m.font(role));
  painter.setPen(syllable < current_ ? th().acc : th().tx1);
  if (syllable == current_) {
    const double ink = QFontMetricsF(m.font(role)).horizontalAdvance(shown.text.trimmed());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(th().acc);
    painter.drawRoundedRect(QRectF(line.left() - 1, line.top(), ink + 2, height), m.px(3), m.px(3));
    painter.setPen(th().syllable);
  }
  painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, shown.text);
}

void LyricBar::PaintLine(QPainter& painter, const QRectF& dirty) const {
  const Metrics& m = metrics();
  const int chord = m.lineHeight(Role::LyricChord);
  const int lyric = m.lineHeight(compact() ? Role::LyricCompact : Role::Lyric);
  const int next = compact() ? 0 : m.px(20);
  const int top = (height() - chord - lyric - next) / 2;
  // The syllable with a face comes last: its face may reach under its neighbours.
  for (int i = 0; i < static_cast<int>(words_.size()); ++i) {
    if (i != current_ && Reach(i).intersects(dirty)) PaintSyllable(painter, i, top);
  }
  PaintSyllable(painter, current_, top);
  if (compact() || view_.nextLine.isEmpty()) return;
  const QFont nextFont = FontOf(FontStack::Text, m.f(15), QFont::Normal);
  painter.setFont(nextFont);
  painter.setPen(th().tx3);
  painter.drawText(QRectF(TextLeft(), top + chord + lyric, TextRoom() + 1, next),
                   Qt::AlignLeft | Qt::AlignVCenter, Elided(nextFont, view_.nextLine, TextRoom()));
}

void LyricBar::PaintChords(QPainter& painter) const {
  const QFont& font = metrics().font(compact() ? Role::LyricCompact : Role::Lyric);
  const std::size_t count = std::min(view_.comingChords.size(), ComingChords);
  const double column = TextRoom() / static_cast<double>(ComingChords);
  painter.setFont(font);
  painter.setPen(th().warn);
  for (std::size_t i = 0; i < count; ++i) {
    const QRectF cell(TextLeft() + column * static_cast<double>(i), 0, column, height());
    painter.drawText(cell, Qt::AlignLeft | Qt::AlignVCenter,
                     Elided(font, view_.comingChords[i], column - metrics().f(4)));
  }
}

void LyricBar::paintEvent(QPaintEvent* event) {
  Panel::paintEvent(event);
  if (view_.Empty()) return;
  QPainter painter(this);
  const QRect dirty = event->rect();
  if (dirty.left() < TextLeft()) PaintChordBlock(painter);
  if (view_.line.empty() && view_.nextLine.isEmpty()) {
    PaintChords(painter);
  } else {
    PaintLine(painter, dirty);
  }
}

}  // namespace Sonarello
