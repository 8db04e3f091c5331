// Sonarello: the words of the event list: heads, kinds, filters, names of controllers and metas.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/Data.h"

namespace Sonarello {

/// Columns of the event list.
enum TEventColumn : int {
  TrackColumn = 0,
  PositionColumn = 1,
  TimeColumn = 2,
  ChannelColumn = 3,
  KindColumn = 4,
  Value1Column = 5,
  LengthColumn = 6,  ///< note length, or the event's explanation
  Value2Column = 7,
};
inline constexpr int EventColumnCount = 8;

/// Kinds of events in the order of the filter and insert lists, which is not that of the status bytes.
enum class TEventKind : std::uint8_t {
  Note,
  ProgramChange,
  Controller,
  KeyAftertouch,
  ChannelAftertouch,
  PitchBend,
  Sysex,
  Meta,
  Unknown,
};
inline constexpr int EventKindCount = 8;

/// Kind of an event; note-offs are `Unknown`, as they make no row.
[[nodiscard]] TEventKind KindOf(const TypMidiEvent& event) noexcept;
/// Text of column 4: "Note", "Program change", ..., "...unknown".
[[nodiscard]] std::string KindName(TEventKind kind);
/// Head of a column (0-7), with the blank in front.
[[nodiscard]] std::string ColumnHead(int column);

/// The nine entries of `CB_Filter`: all events, then the plural of each kind.
[[nodiscard]] std::vector<std::string> FilterLines();
/// The word in front of the filter list (index 0-8).
[[nodiscard]] std::string FilterLabel(int filter);
/// What an empty list says under a filter (index 0-8).
[[nodiscard]] std::string EmptyListText(int filter);

/// Name of a key (0-127); `german`: B is called H.
[[nodiscard]] std::string KeyName(int key, bool german);
/// The key of a name, or none.
[[nodiscard]] std::optional<int> KeyOfName(std::string_view name, bool german);

/// Name of a controller (0-127); empty for one without a name.
[[nodiscard]] std::string_view ControllerName(int controller) noexcept;
/// The controllers that have names, ascending.
[[nodiscard]] std::span<const std::uint8_t> NamedControllers() noexcept;
/// The controller of a name or of a decimal number 0-127, or none.
[[nodiscard]] std::optional<int> ControllerOfName(std::string_view text) noexcept;

/// Column 6 of a meta event: its type in words.
[[nodiscard]] std::string MetaName(const TypMidiEvent& meta);
/// A sequencer-specific meta of seven bytes that holds an XF chord.
[[nodiscard]] bool HoldsXFChord(const TypMidiEvent& event) noexcept;

/// Names of the 30 key signatures as the list offers them: from "Cb" to "C#", then the same with
/// " mol" or " min".
[[nodiscard]] std::vector<std::string> KeySignatureNames();
/// Name of the two bytes of a key signature: the major key of the same accidentals; byte 1 of 1 adds
/// " mol" or " min".
[[nodiscard]] std::string KeySignatureName(std::span<const std::uint8_t> bytes);
/// The two bytes of a name, or none. Both languages' endings are understood.
[[nodiscard]] std::optional<std::array<std::uint8_t, 2>> KeySignatureOfName(std::string_view name);

/// A type in the list of meta types.
struct TMetaChoice {
  std::uint8_t Type;
  std::string Name;
};
/// The fourteen types that a meta event can be changed to.
[[nodiscard]] std::vector<TMetaChoice> MetaChoices();
/// What a meta of a type begins with.
[[nodiscard]] std::vector<std::uint8_t> MetaDefault(int type);

/// Bytes as hexadecimal digits, two each, one blank between them.
[[nodiscard]] std::string HexText(std::span<const std::uint8_t> bytes);
/// The bytes of such a text, or none if it holds anything else. Line breaks and any number of blanks
/// part bytes.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> BytesOfHex(std::string_view text);

}  // namespace Sonarello
