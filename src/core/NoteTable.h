// Sonarello: a value per channel and key, for walks that meet the notes of one track.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "core/Data.h"

namespace Sonarello {

/// True for a note-on or a note-off that is not marked as removed.
[[nodiscard]] inline bool IsLiveNote(const TypMidiEvent& event) noexcept {
  return (event.Kind() == NoteOn || event.Kind() == NoteOff) && event.DLength != 0;
}

/// An entry per channel and key. Entries count as zero until they are asked for, so that a track of few
/// notes pays for few entries, however many such tracks there are.
template <class T>
class NoteTable {
  static_assert(std::is_trivially_default_constructible_v<T>, "entries are not set up in advance");

 public:
  static constexpr std::size_t Size = std::size_t{ChannelCount} * KeyCount;

  [[nodiscard]] static std::size_t IndexOf(const TypMidiEvent& note) noexcept {
    return static_cast<std::size_t>(note.Channel() * KeyCount + (note.Value[0] & (KeyCount - 1)));
  }
  /// Entry of a note's channel and key.
  [[nodiscard]] T& operator[](const TypMidiEvent& note) noexcept {
    const std::size_t index = IndexOf(note);
    std::uint64_t& word = touched[index / 64];
    const std::uint64_t bit = std::uint64_t{1} << index % 64;
    if ((word & bit) == 0) {
      word |= bit;
      entries[index] = T{};
    }
    return entries[index];
  }
  /// Calls f(channel, key, entry) for the entries that were asked for, by channel, then key, from 0.
  template <class F>
  void ForEach(F&& f) {
    for (std::size_t w = 0; w < touched.size(); ++w)
      for (std::uint64_t bits = touched[w]; bits != 0; bits &= bits - 1) {
        const std::size_t index = w * 64 + static_cast<std::size_t>(std::countr_zero(bits));
        f(static_cast<int>(index / KeyCount), static_cast<int>(index % KeyCount), entries[index]);
      }
  }
  void Clear() noexcept { touched.fill(0); }

 private:
  std::array<std::uint64_t, Size / 64> touched{};
  std::array<T, Size> entries;
};

}  // namespace Sonarello
