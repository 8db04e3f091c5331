// The reader on its own, and a readable notation of what it built, for tests.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "core/Texts.h"
#include "helpers/InGerman.h"
#include "helpers/Workbench.h"

namespace Sonarello {

/// One event in a line: "480 90 60 100", "0 F0 43 10 F7", "0 FF51 07 A1 20"; "-" in front if it is
/// removed.
inline std::string Line(const TypMidiEvent& e) {
  std::string line = e.IsRemoved() ? "-" : "";
  const auto put = [&](const char* format, int value) {
    char word[16];
    std::snprintf(word, sizeof word, format, value);
    line += word;
  };
  put("%d", e.Position);
  put(" %02X", e.Command);
  if (e.IsChannelEvent()) {
    put(" %d", e.Value[0]);
    if (e.DLength == 3) put(" %d", e.Value[1]);
    return line;
  }
  if (e.Command == MetaEvent) put("%02X", static_cast<std::uint8_t>(e.MType));
  for (const std::uint8_t byte : e.Meta.Bytes()) put(" %02X", byte);
  return line;
}

using Lines = std::vector<std::string>;

/// A workbench whose options leave the song as the reader builds it.
struct ReaderBench : Workbench {
  ReaderBench() { options.AutoSysex = options.InsertSongName = options.SysexsOnExtraTrack = false; }

  /// The events of a track between its head and its End of track.
  Lines List(int track) {
    Lines lines;
    for (PtrMidiEvent e = Event(track, 1); e != nullptr && !e->IsEndOfTrack(); e = e->NextEvent)
      lines.push_back(Line(*e));
    return lines;
  }
  /// Decodes into the emptied store. The message of a refused file, which the user has read exactly
  /// once, or nothing.
  std::string Verdict(Bytes file) {
    song.ClearMidiMemory();
    messages.Shown.clear();
    try {
      Decode(std::move(file));
    } catch (const EMidiError& error) {
      EXPECT_EQ(messages.Shown, Lines{error.what()});
      return error.what();
    }
    EXPECT_EQ(messages.Shown, Lines{});
    return {};
  }
};

}  // namespace Sonarello
