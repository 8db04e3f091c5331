#include "desk/AutoBackup.h"

#include <algorithm>
#include <filesystem>
#include <new>
#include <vector>

#include "core/MidiFileWriter.h"
#include "core/SafeFile.h"
#include "core/TextEncoding.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t ExtensionLength = 4;  // ".mid", in characters
constexpr std::size_t LongestName = 255;    // bytes of a file's name, on the file systems in use
constexpr std::string_view Extension = ".mid";

/// Keeps what a writer tells instead of showing it.
class QuietMessages : public IMessages {
 public:
  void Show(const std::string& text) override { Last = text; }
  bool Ask(const std::string&) override { return false; }
  std::string Last;
};

std::string NotCodedText(const std::string& reason) {
  return Text("Autobackup: ", "Auto backup: ") + reason;
}

std::string TimeMark(const std::tm& time) {
  char mark[64];
  std::snprintf(mark, sizeof mark, "_%04d%02d%02d_%02d%02d%02d", time.tm_year + 1900, time.tm_mon + 1,
                time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec);
  return mark;
}
constexpr std::size_t TimeMarkLength = 16;

}  // namespace

std::string AutoBackupStemOf(std::string_view songPath) {
  std::string_view name = songPath.substr(songPath.find_last_of('/') + 1);
  for (std::size_t n = 0; n < ExtensionLength; ++n) name = WithoutLastCharacter(name);
  // A long name is cut further, so that the time still finds room behind it.
  while (name.size() + TimeMarkLength + Extension.size() > LongestName)
    name = WithoutLastCharacter(name);
  return std::string(name);
}

std::string AutoBackupNameOf(std::string_view songPath, const std::tm& time) {
  return AutoBackupStemOf(songPath) + TimeMark(time) + std::string(Extension);
}

std::tm TAutoBackup::LocalTime() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return local;
}

bool TAutoBackup::Tick() {
  if (!AutoBackupEnabled || !p.AutoBackupChanged) return false;
  p.AutoBackupChanged = false;
  if (p.song.NumberOfSourceTracks == 0) return false;

  const fs::path folder = fs::path(p.options.DataPath) / Folder;
  std::error_code error;
  fs::create_directories(folder, error);
  if (!fs::is_directory(folder, error)) return false;

  const std::tm now = Clock();
  AutoBackupFileName = (folder / AutoBackupNameOf(p.song.MidiFileName, now)).string();
  if (!Write()) {
    p.AutoBackupChanged = true;
    return false;
  }
  lastBackup = now;
  failure.clear();
  if (SaveVSTiSet)
    SaveVSTiSet(AutoBackupFileName.substr(0, AutoBackupFileName.size() - Extension.size()));
  return true;
}

bool TAutoBackup::Write() {
  QuietMessages quiet;
  std::vector<std::uint8_t> file;
  try {
    const auto held = p.gate.Enter();
    file = MidiFileWriter(p.song, p.options, p.routes, quiet, p.hooks)
               .Encode(AutoBackupFileName, p.song.MidiFileFormat);
  } catch (const EMidiError& error) {
    failure = NotCodedText(error.what());
    return false;
  } catch (const std::bad_alloc&) {
    failure = NotCodedText(OutOfMemoryText());
    return false;
  }
  const TSaveResult result = SaveFile(AutoBackupFileName, file, files);
  if (result.Step == TSaveStep::Done) return true;
  failure = result.Step == TSaveStep::Incomplete
                ? Text("Autobackup: kein Platz mehr auf dem Datenträger!", "Auto backup: disk full!")
                : Text("Autobackup konnte nicht geschrieben werden!",
                       "The auto backup could not be written!");
  return false;
}

}  // namespace Sonarello
