// The chord that sounds, the line that is sung, and what comes.
#pragma once

#include <vector>

#include "app/panels/Panel.h"

namespace Sonarello {

struct LyricSyllable {
  QString text = {};   ///< as it is sung on, with the blank or hyphen behind it
  QString chord = {};  ///< chord over its first letter; empty: none
  bool operator==(const LyricSyllable&) const = default;
};

struct LyricView {
  QString chord = {};      ///< the chord that sounds
  QString nextChord = {};  ///< the one to come
  std::vector<LyricSyllable> line = {};
  QString nextLine = {};                   ///< shown on a high desk
  std::vector<QString> comingChords = {};  ///< shown, the first eight, in a song without lyrics
  bool operator==(const LyricView&) const = default;

  /// Neither lyrics nor chords: the bar is to be hidden.
  [[nodiscard]] bool Empty() const {
    return chord.isEmpty() && nextChord.isEmpty() && line.empty() && nextLine.isEmpty() &&
           comingChords.empty();
  }
};

class LyricBar : public Panel {
  Q_OBJECT
 public:
  explicit LyricBar(QWidget* parent = nullptr);

  void SetView(const LyricView& view);
  /// The syllable that is sung now, an index of the line; -1 before the first, the line's length after
  /// the last. Repaints the words that change.
  void SetCurrent(int syllable);

  [[nodiscard]] const LyricView& view() const { return view_; }
  [[nodiscard]] int current() const { return current_; }
  /// Where a syllable of the line stands now; empty if another page of the line is shown.
  [[nodiscard]] QRectF RectOf(int syllable) const;
  /// A line that is wider than the bar is cut into pages between words; the page that is shown.
  [[nodiscard]] int Page() const;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void Arrange() override;
  void Refresh() override;
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Word {
    double x = 0, width = 0;
    int page = 0;
  };

  [[nodiscard]] QRectF Reach(int syllable) const;
  [[nodiscard]] double TextLeft() const;
  [[nodiscard]] double TextRoom() const;
  void PaintChordBlock(QPainter& painter) const;
  void PaintLine(QPainter& painter, const QRectF& dirty) const;
  void PaintSyllable(QPainter& painter, int syllable, int top) const;
  void PaintChords(QPainter& painter) const;

  LyricView view_;
  std::vector<Word> words_;
  int current_ = -1;
};

}  // namespace Sonarello
