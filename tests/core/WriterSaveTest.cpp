// Saving a song to a file, and what the user is told when that fails.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "WriterKit.h"
#include "core/OutputTracks.h"
#include "core/SafeFile.h"
#include "core/WriterTexts.h"

namespace Sonarello {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

/// Lets one kind of call fail.
class FailingCalls : public FileCalls {
 public:
  std::string Which;
  int Error = EIO;
  std::size_t Room = SIZE_MAX;

  int Open(const std::string& path, int flags, mode_t mode) override {
    return Which == "open" ? Fail() : FileCalls::Open(path, flags, mode);
  }
  ssize_t Write(int file, const void* bytes, std::size_t count) override {
    if (Room == 0) return errno = ENOSPC, -1;
    const std::size_t taken = std::min(count, Room);
    Room -= taken;
    return FileCalls::Write(file, bytes, taken);
  }
  int Sync(int file) override { return Which == "sync" ? Fail() : FileCalls::Sync(file); }
  int SetMode(const std::string& path, mode_t mode) override {
    return Which == "mode" ? Fail() : FileCalls::SetMode(path, mode);
  }

 private:
  int Fail() const {
    errno = Error;
    return -1;
  }
};

/// A bench for the three ways of a song into a file, each with its own words.
class WriterSave : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "writersave.XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    folder = pattern;
    name = (folder / "song.mid").string();
  }
  void TearDown() override { fs::remove_all(folder); }

  void Load(int sourceFormat) {
    Smf smf(sourceFormat, 480);
    if (sourceFormat == 1) smf.Track().End();
    bench.Load(smf.Track().Note(1, 60, 0, 10).End());
  }
  /// The text that a save of a song of one format into another ends with.
  std::string Told(int sourceFormat, int format, bool german) {
    Load(sourceFormat);
    calls.Room = room;
    bench.messages.Shown.clear();
    GermanLanguage = german;
    MidiFileWriter writer(bench.song, bench.options, bench.routes, bench.messages, bench.hooks, calls);
    EXPECT_FALSE(writer.Save(name, format));
    GermanLanguage = false;
    EXPECT_EQ(bench.messages.Shown.size(), 1U);
    return bench.messages.Shown.front();
  }
  std::string Quoted() const { return "\"" + name + "\""; }

  WriterBench bench;
  FailingCalls calls;
  std::size_t room = SIZE_MAX;
  fs::path folder;
  std::string name;
};

TEST_F(WriterSave, WritesWhatEncodeReturns) {
  Load(1);
  MidiFileWriter writer(bench.song, bench.options, bench.routes, bench.messages, bench.hooks);
  for (const int format : {0, 1}) {
    EXPECT_TRUE(writer.Save(name, format));
    std::ifstream file(name, std::ios::binary);
    EXPECT_EQ(Bytes(std::istreambuf_iterator<char>(file), {}), bench.Encode(format, name));
  }
  EXPECT_THAT(bench.messages.Shown, IsEmpty());
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
}

TEST_F(WriterSave, TellsThatTheFileCouldNotBeOpened) {
  calls.Which = "open";
  const std::string german =
      "Fehler: Schreibvorgang der Datei " + Quoted() + " konnnte nicht eingeleitet werden!";
  EXPECT_EQ(Told(0, 1, false), "Error saving the midifile " + Quoted() + "!");
  EXPECT_EQ(Told(1, 1, false), "Error saving the midifile " + Quoted() + "!");
  EXPECT_EQ(Told(1, 0, false), "Error rewriting the midi file " + Quoted() + "!");
  EXPECT_EQ(Told(0, 1, true), german);
  EXPECT_EQ(Told(1, 0, true), german);
}

TEST_F(WriterSave, TellsThatWritingFailed) {
  calls.Which = "sync";
  EXPECT_EQ(Told(0, 1, false), "Error writing the midifile " + Quoted());
  EXPECT_EQ(Told(1, 1, false), "Error writing the midifile " + Quoted());
  EXPECT_EQ(Told(0, 0, false), "Error writing the midi file " + Quoted());
  EXPECT_EQ(Told(1, 1, true), "Fehler beim Schreiben der Datei " + Quoted());
  EXPECT_EQ(Told(0, 0, true), "Fehler beim Schreiben der Datei " + Quoted());
}

TEST_F(WriterSave, TellsHowManyBytesAFullDiskTook) {
  room = 20;
  const auto total = [&](int source, int format) {
    Load(source);
    return std::to_string(bench.Encode(format, name).size());
  };
  EXPECT_EQ(Told(0, 1, false), "Error saving the midifile " + Quoted() + "\rThere were only 20 from " +
                                   total(0, 1) + " Bytes saved");
  EXPECT_EQ(Told(1, 1, false), "Error saving the midifile " + Quoted() + "\rThere were only 20 from " +
                                   total(1, 1) + " bytes saved");
  EXPECT_EQ(Told(1, 0, false), "Error saving the midi file " + Quoted() + "\rThere were only 20 from " +
                                   total(1, 0) + " bytes saved");
  EXPECT_EQ(Told(1, 1, true), "Beim Speichern der Datei " + Quoted() + " sind nur 20 aus " +
                                  total(1, 1) + " Bytes gespeichert");
  EXPECT_THAT(fs::exists(name), false);
}

TEST_F(WriterSave, TellsThatTheWriteProtectionStays) {
  std::ofstream(name) << "old";
  ::chmod(name.c_str(), 0444);
  calls.Which = "mode";
  const std::string german =
      "Fehler: Schreibschutz der Datei " + Quoted() + " konnnte nicht entfernt werden!";
  EXPECT_EQ(Told(0, 1, false), "Error removing read only flag for midifile " + Quoted() + "!");
  EXPECT_EQ(Told(1, 1, false), "Error removing read only flag for midifile " + Quoted() + "!");
  EXPECT_EQ(Told(1, 0, false), "Error removing read only flag for the midi file " + Quoted() + "!");
  EXPECT_EQ(Told(0, 1, true), german);
  EXPECT_EQ(Told(0, 0, true), german);
}

TEST_F(WriterSave, NamesTheCopyThatHoldsTheSongWhenTheFileWasDamaged) {
  Load(1);
  std::ofstream(name) << "old";
  const std::size_t size = bench.Encode(1, name).size();
  for (const bool german : {false, true}) {
    calls.Room = size + 5;
    bench.messages.Shown.clear();
    GermanLanguage = german;
    MidiFileWriter writer(bench.song, bench.options, bench.routes, bench.messages, bench.hooks, calls);
    EXPECT_FALSE(writer.Save(name, 1));
    const std::vector<std::string> copies = CopiesLeftBeside(name);
    ASSERT_EQ(copies.size(), 1U);
    ASSERT_EQ(bench.messages.Shown.size(), 2U);
    EXPECT_EQ(bench.messages.Shown[1], (german ? "Der vollständige Song steht in der Datei \""
                                               : "The complete song stands in the file \"") +
                                           copies[0] + "\"");
    fs::remove(copies[0]);
  }
}

TEST_F(WriterSave, LeavesTheFileAloneWhenTheSongCannotBeCoded) {
  std::ofstream(name) << "old";
  const auto told = [&](int source, int format, bool german) {
    Load(source);
    bench.Track(1).TrkFirstEvent->NextEvent->DType = 7;
    bench.messages.Shown.clear();
    GermanLanguage = german;
    MidiFileWriter writer(bench.song, bench.options, bench.routes, bench.messages, bench.hooks);
    EXPECT_FALSE(writer.Save(name, format));
    EXPECT_EQ(bench.messages.Shown.size(), 1U);
    return bench.messages.Shown.front();
  };
  EXPECT_EQ(told(0, 1, false), "Error coding the midifile!");
  EXPECT_EQ(told(1, 1, false), "Error coding the midifile!");
  EXPECT_EQ(told(1, 0, false), "Error coding the midi file!");
  EXPECT_EQ(told(1, 1, true), "Fehler bei der Kodierung der MidiDatei!");
  EXPECT_EQ(told(0, 0, true), "Fehler bei der Kodierung der MidiDatei!");
  std::ifstream file(name);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "old");
}

TEST_F(WriterSave, TellsThatTheMemoryIsShortAndRaisesTheSameText) {
  const auto told = [&](int node, bool german) {
    Load(0);
    bench.messages.Shown.clear();
    GermanLanguage = german;
    bench.song.Pool.FailAt(node);
    std::string raised;
    const std::size_t live = bench.song.Pool.Live();
    try {
      static_cast<void>(bench.Encode(1));
    } catch (const EMidiError& error) {
      raised = error.what();
    }
    bench.song.Pool.FailAt(0);
    GermanLanguage = false;
    EXPECT_EQ(bench.song.Pool.Live(), live) << "nodes of the writer go back";
    EXPECT_THAT(bench.messages.Shown, ElementsAre(raised));
    return raised;
  };
  EXPECT_EQ(told(1, true), "1066: Speicherzuordnungsfehler: Bitte mehr Speicher!");
  EXPECT_EQ(told(2, true), "1003: Speicherzuordnungsfehler: Bitte mehr Speicher!");
  EXPECT_EQ(told(1, false), "Error allocating memory!");
  EXPECT_EQ(told(2, false), "Error allocating memory!");
}

TEST(WriterTexts, TellTheStoringPassInWordsOfItsOwn) {
  EXPECT_EQ(CodingText(TWriterBranch::Tracks, true), "Error coding midifile!");
  EXPECT_EQ(CodingText(TWriterBranch::Split, true), "Error coding midifile!");
  EXPECT_EQ(CodingText(TWriterBranch::Mixed, true), "Error coding the midi file!");
}

TEST(SongName, IsTheFilesNameWithoutFolderAndLastExtension) {
  EXPECT_EQ(SongNameOf("/a/b.c/My Song.mid"), "My Song");
  EXPECT_EQ(SongNameOf("Lied.kar.mid"), "Lied.kar");
  EXPECT_EQ(SongNameOf("/a/Übung"), "Übung");
  EXPECT_EQ(SongNameOf(""), "");
}

}  // namespace
}  // namespace Sonarello
