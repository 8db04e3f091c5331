// A desk on a test MIDI system, a clock that runs and settings in memory, for tests.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "desk/Desk.h"
#include "helpers/TestInstrument.h"
#include "helpers/TestMidiDriver.h"
#include "helpers/Workbench.h"
#include "playback/MidiPlayerThread.h"

namespace Sonarello {

/// A folder that goes with the test.
struct TestFolder {
  TestFolder() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "sonarello-desk-").string() + std::string(6, 'X');
    Path = mkdtemp(pattern.data());
  }
  ~TestFolder() { std::filesystem::remove_all(Path); }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;
  [[nodiscard]] std::string File(const std::string& name) const { return (Path / name).string(); }
  /// Writes a file and gives its path.
  [[nodiscard]] std::string Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(File(name), std::ios::binary) << bytes;
    return File(name);
  }

  std::filesystem::path Path;
};

struct DeskBench {
  MemoryRegistry settings;
  RecordedMessages messages;
  TestMidiDriver midi;
  SteadyClock clock;
  TestFolder folder;
  Desk desk{TDeskParts{
      settings, messages, midi, clock, {}, [] { return std::make_unique<TestInstrument>(); }}};

  /// The demo song in the bench's folder.
  [[nodiscard]] std::string DemoSong() const {
    const std::string copy = folder.File("demo.mid");
    std::filesystem::copy_file(SONARELLO_SOURCE_DIR "/examples/demo.mid", copy,
                               std::filesystem::copy_options::overwrite_existing);
    return copy;
  }
  /// Starts for an instrument on an output that swallows everything.
  DeskBench& StartFor(const std::string& instrument) {
    settings.WriteString("", "MidiInstrument00", instrument);
    settings.WriteString("", "MidiOutput00", SilentOutput::Name);
    desk.Start();
    return *this;
  }
};

}  // namespace Sonarello
