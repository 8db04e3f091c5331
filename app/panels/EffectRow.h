// The effects of the song's instrument, a cell each, as they stand at the position.
#pragma once

#include <vector>

#include "app/panels/Panel.h"

namespace Sonarello {

class EffectCell;

struct EffectView {
  QString block = {};       ///< "Reverb", "DSP 2"
  QString effect = {};      ///< name of the effect; empty while nothing is known
  QString part = {};        ///< who is treated: "K 4" / "Ch 4", "Right1"; empty: no badge
  QString spokenPart = {};  ///< the same for tips and assistive programs: "Kanal 4" / "channel 4"
  bool on = false;
  bool opens = true;    ///< a click opens the editor
  QString reason = {};  ///< why it does not open
  bool operator==(const EffectView&) const = default;
};

struct EffectsView {
  std::vector<EffectView> system;      ///< Chorus, Reverb, Variation, Master EQ, ...: three in a row
  std::vector<EffectView> insertions;  ///< DSP 1 to 16 or fewer: eight in a row
  bool operator==(const EffectsView&) const = default;
};

class EffectRow : public Panel {
  Q_OBJECT
 public:
  explicit EffectRow(QWidget* parent = nullptr);

  void SetView(const EffectsView& view);

  /// True if the view has cells; a row without cells is to be hidden.
  [[nodiscard]] bool HasCells() const { return !cells_.empty(); }
  /// One row of cells, or two.
  [[nodiscard]] int Rows() const;
  /// The cells, the system effects first; an index counts through both kinds.
  [[nodiscard]] const std::vector<EffectCell*>& cells() const { return cells_; }
  [[nodiscard]] int current() const { return current_; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 Q_SIGNALS:
  /// A cell that opens was clicked or chosen by Enter or Space; the index as in cells().
  void cellActivated(int index);

 protected:
  void Arrange() override;
  void Refresh() override;
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  [[nodiscard]] QRect PlaceOf(int index) const;
  /// The cell next to the current one in a direction of the arrow keys, or -1.
  [[nodiscard]] int Neighbour(int key) const;
  void MakeCells(std::size_t count);
  void MakeCurrent(int index, bool focus);

  EffectsView view_;
  std::vector<EffectCell*> cells_;
  int current_ = 0;
};

}  // namespace Sonarello
