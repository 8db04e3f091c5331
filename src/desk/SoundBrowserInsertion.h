// Sonarello: a channel without sound gets a program change, a sound without banks its bank selects.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "instruments/SoundNames.h"

namespace Sonarello {

/// Tick of the first note of a channel (0-15); nothing without notes.
[[nodiscard]] std::optional<std::int32_t> FirstNoteOf(const Song& song, int channel);

/// True if a channel has no program change and a track serves it.
[[nodiscard]] bool CanInsertPatch(const Song& song, int channel);

/// What the user is asked before a channel (0-15) gets a program change.
[[nodiscard]] std::string InsertPatchQuestion(int channel);

/// Gives a channel a program change and its bank selects in front of its first note, where the
/// programs of a fitted song stand. False if no track serves it; raises EMidiError. With the gate held.
bool InsertPatchAtSetup(Song& song, TSoundNames& names, int channel);

/// Gives the program change in force on a channel the bank selects of an address that the song lacks,
/// directly in front of it; numbers of -1 need none. True if one came in; raises EMidiError. With the
/// gate held.
bool InsertMissingBanks(Song& song, int channel, const TAddress& address);

}  // namespace Sonarello
