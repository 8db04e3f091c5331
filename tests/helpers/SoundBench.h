// A song with the instruments' tables and their names wired into it, for tests.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>

#include "core/OpenPipeline.h"
#include "helpers/InGerman.h"
#include "helpers/Workbench.h"
#include "instruments/SoundNames.h"

namespace Sonarello {

/// How a failing test shows an address.
inline void PrintTo(const TAddress& a, std::ostream* os) {
  *os << a.CC00 << '/' << a.CC32 << '/' << a.Patch;
}

/// The tables of one instrument as they ship, loaded once for all tests.
inline const SoundSet& ShippedSet(int value) {
  static SoundSets sets;
  static RecordedMessages messages;
  sets.Load(value, {}, messages);
  return *sets.Find(value);
}

struct SoundBench : Workbench {
  /// The main instrument by its catalogue number.
  explicit SoundBench(int value) { Use(value); }

  void Use(int value) {
    Instrument(value);
    sets.Load(value, {}, messages);
  }
  /// Opens a file's bytes through the whole pipeline.
  bool Open(const Smf& file) {
    names.Wire(hooks);
    const Bytes bytes = file.Build();
    const std::string path = (std::filesystem::temp_directory_path() /
                              ("sonarello_sounds_" + std::to_string(::getpid()) + ".mid"))
                                 .string();
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    const bool opened = OpenPipeline(song, options, routes, messages, hooks).OpenMidiFile(path, false);
    std::filesystem::remove(path);
    return opened;
  }
  /// The address that a channel (1-16) has now, as its events tell it; -1 for what is missing.
  [[nodiscard]] TAddress AddressOf(int channel) const {
    const TMidiChannelData& data = song.MidiData.at(static_cast<std::size_t>(channel - 1));
    const auto value = [](const TCtrl& c) { return c.Event == nullptr ? -1 : int{c.Event->Value[1]}; };
    return {value(data.CtrlArray[0]), value(data.CtrlArray[32]),
            data.PatchEvent == nullptr ? -1 : int{data.PatchEvent->Value[0]}};
  }

  SoundSets sets;
  TSoundNames names{song, sets, options, routes};
};

}  // namespace Sonarello
