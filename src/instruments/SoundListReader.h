// Sonarello: reads sound lists in all their layouts, shipped ones and the user's own files.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "core/Ports.h"
#include "instruments/SoundList.h"

namespace Sonarello {

/// What the settings say about loading.
struct TLoadSettings {
  std::string DataPath;     ///< folder of the user's lists, UTF-8; empty: none are looked for
  bool SortSounds = false;  ///< flat lists are sorted by text before they are read
  bool LimexTE200 = false;  ///< the lists of the TE200 extension come in
};

/// Reads a list from its rows. `text` must outlive the list. With `messages` faulty rows are reported
/// (they are the user's), and one of layout F5 with too few cells ends the list; without, they are left
/// out in silence. `sort` sorts the rows of a layout with categories by text, each with the category
/// that holds for it. Layout P gives nothing unless it has exactly 129 rows; layout Names fills
/// `Categories`, and layout X15 is read by `ReadCompanion`.
[[nodiscard]] TSoundList ReadSoundList(const TListSpec& spec, std::string_view text,
                                       IMessages* messages, bool sort = false);

/// Loads a list: the user's file if there is one in `DataPath`, else the rows that ship.
[[nodiscard]] TSoundList LoadSoundList(const TListSpec& spec, const TLoadSettings& settings,
                                       IMessages& messages);

/// Reads the effect defaults of a companion list (layout X15) into `list.Effects`: a row goes to the
/// first sound with its CC0, CC32 and program; one without match is ignored. A parameter cell with ";"
/// that does not give 16 values is reported, and the sound's parameters stay. `dspIndex` is the index
/// of a sound without row, the instrument's own.
void ReadCompanion(TSoundList& list, const TListSpec& companion, std::string_view text,
                   std::int32_t dspIndex, IMessages* messages);

/// Loads a companion list for the list that it completes, as `ReadCompanion` does; nothing happens if
/// no rows ship.
void LoadCompanion(TSoundList& list, const TListSpec& companion, const TLoadSettings& settings,
                   IMessages& messages);

/// The list in its layout, one row per line, as a replacement file would hold it. Reading the text
/// gives the same rows.
[[nodiscard]] std::string SoundListText(const TSoundList& list);

/// Bytes of a text file as UTF-8. In this order: the default encoding (UTF-8 with its byte order mark,
/// or plain ASCII), UTF-8, the ANSI code page (Windows-1252), UTF-16 (by its byte order mark or the
/// zeros of its letters); the first that reads the bytes without a fault is kept.
[[nodiscard]] std::string DecodeListFile(std::string_view bytes);

}  // namespace Sonarello
