// Sonarello: the effect blocks of the main instrument as the desk shows them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/Song.h"

namespace Sonarello {

enum class TEffectBlock : std::uint8_t {
  Chorus,
  Reverb,
  Variation,
  MasterEQ,
  VocalHarmony,
  VocalEffect,
  DSP,
};

/// One cell of the effect row.
struct TEffectCell {
  TEffectBlock Block = TEffectBlock::Chorus;
  int Number = 0;          ///< of a DSP, from 1; else 0
  bool On = false;         ///< the song sets the block, and not to no effect
  std::string EffectName;  ///< as the instrument calls it; "Off" if the block is off; a number
                           ///< ("Type 3/17") where no name is known
  std::string Part;        ///< "K 4" / "Ch 4", "System", "Mic", "Off"; empty if the song sets none

  /// "Chorus", "Vocal Harmony", "DSP 3".
  [[nodiscard]] std::string BlockName() const;
  friend bool operator==(const TEffectCell&, const TEffectCell&) = default;
};

/// Which blocks an instrument has.
struct TEffectBlocks {
  int InstrumValue = 0;
  bool MasterEQ = false;
  bool Vocal = false;  ///< vocal harmony and vocal effect
  int DSPs = 0;        ///< insertion blocks
};
/// The blocks of an instrument by its catalogue number, or nil for one without.
[[nodiscard]] const TEffectBlocks* EffectBlocksOf(int instrumValue) noexcept;

/// Name of an effect type of the Yamaha arrangers in a block, or empty. `type` is MSB * 128 + LSB.
[[nodiscard]] std::string_view EffectTypeName(TEffectBlock block, int type) noexcept;

/// The cells of the main instrument's blocks. They are read from the song's sysexes in one walk and
/// then stand until they are read anew: call `Read` when a song is opened, its sysexes change or the
/// main instrument does, with the gate held while the player runs.
class TEffectRow {
 public:
  std::vector<TEffectCell> Cells;  ///< in the order of `TEffectBlock`, DSPs by number; may be empty

  /// True if a cell changed. What counts is the state as the first notes sound; a block that is set
  /// later only shows what it is set to first. The effect memory goes before the song's tracks.
  bool Read(const Song& song, int instrumValue);
  [[nodiscard]] int DSPCount() const noexcept;
};

}  // namespace Sonarello
