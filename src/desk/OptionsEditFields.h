// Sonarello: the options of the settings window: where each stands and what it is called.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace Sonarello {

/// The pages of the settings window, in their order.
enum class TOptionPage : std::uint8_t {
  Options,
  Midi,
  MidiRouting,
  YamahaDSPs,
  MotifDSPs,
  MotifAudioRouting,
  Integra7AudioRouting,
};
inline constexpr int OptionPageCount = 7;

enum class TOptionGroup : std::uint8_t {
  General,
  Lyrics,
  Files,
  Instruments,
  MidiOut,
  MidiIn,
  Routing,
  Yamaha,
  Motif,
  MotifRouting,
  Integra7Routing,
};

enum class TOptionControl : std::uint8_t {
  Check,  ///< a flag, or a number that is 0 or 1
  Number,
  Radio,     ///< one of few, told apart by round buttons
  Segments,  ///< one of few, in one frame
  Combo,
  Font,            ///< a font family
  Colour,          ///< 0xRRGGBB or -1
  Input,           ///< a MIDI input
  MainInstrument,  ///< instrument of route 0
  MainOutput,      ///< output of route 0
};

/// Where an option stands among those of its group.
enum class TOptionPlace : std::uint8_t {
  Usual,   ///< a check in one of two columns, anything else in a row
  Alone,   ///< a check in a row of its own
  Joined,  ///< in the row of the option in front of it, without a caption
};

/// What must be built before an option has an effect.
enum class TOptionRoom : std::uint8_t { Built, Effects, Recording, LyricsWindow };

struct TOptionItem {
  std::string_view Value;  ///< as stored
  std::string_view German;
  std::string_view English;
};

/// An option of the window. Its explanation and range are those of its key.
struct TOptionField {
  std::string_view Key;
  TOptionGroup Group;
  TOptionControl Control;
  std::string_view German;
  std::string_view English;
  TOptionRoom Room = TOptionRoom::Built;
  std::string_view Needs = {};  ///< key of the flag without which the option does nothing
  std::span<const TOptionItem> Items = {};
  std::string_view Unit = {};
  TOptionPlace Place = TOptionPlace::Usual;
};

struct TOptionGroupInfo {
  TOptionGroup Group;
  TOptionPage Page;
  std::string_view Name;  ///< such as "GB_General"
  std::string_view German;
  std::string_view English;
};

struct TOptionPageInfo {
  TOptionPage Page;
  std::string_view Name;  ///< such as "TI_Options"
  std::string_view German;
  std::string_view English;
  std::string_view GermanHint;
  std::string_view EnglishHint;
};

[[nodiscard]] std::span<const TOptionPageInfo> OptionPages();
[[nodiscard]] std::span<const TOptionGroupInfo> OptionGroups();
/// Every option, in the order in which a group shows them.
[[nodiscard]] std::span<const TOptionField> OptionFields();
[[nodiscard]] const TOptionField* FindOptionField(std::string_view key);

/// Why an option of a room does nothing yet, in the user's language; empty for one that works.
[[nodiscard]] std::string RoomReason(TOptionRoom room);

}  // namespace Sonarello
