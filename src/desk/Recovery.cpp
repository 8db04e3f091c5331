#include "desk/Recovery.h"

#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <fstream>
#include <iterator>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "core/SafeFile.h"
#include "core/Texts.h"
#include "desk/AutoBackup.h"

namespace Sonarello {

namespace {

namespace fs = std::filesystem;

// A mark is called "_Session_<process number>.txt". Its lines: the first one below, the process number,
// the process's start, the song's path, which may hold anything.
constexpr std::string_view MarkPrefix = "_Session_";
constexpr std::string_view MarkSuffix = ".txt";
constexpr std::string_view MarkHead = "Sonarello session 1";

std::string ContentOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Takes a line off the front of a text.
std::string_view NextLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return line;
}

struct TSessionMark {
  TProcessMark Process;
  std::string SongPath;
};

std::optional<TSessionMark> ReadMark(const fs::path& path) {
  const std::string content = ContentOf(path);
  std::string_view rest = content;
  if (NextLine(rest) != MarkHead) return std::nullopt;
  TSessionMark mark;
  const std::string_view number = NextLine(rest);
  const auto read = std::from_chars(number.data(), number.data() + number.size(), mark.Process.Pid);
  if (read.ec != std::errc{} || mark.Process.Pid <= 0) return std::nullopt;
  mark.Process.Start = NextLine(rest);
  if (!rest.ends_with('\n')) return std::nullopt;  // cut off
  rest.remove_suffix(1);
  mark.SongPath = rest;
  return mark;
}

bool IsMark(const fs::path& path) {
  const std::string name = path.filename().string();
  return name.starts_with(MarkPrefix) && name.ends_with(MarkSuffix);
}

/// When a file was last changed; to the nanosecond, so that a backup is told from its song.
std::optional<timespec> ChangeOf(const fs::path& path) {
  struct stat found {};
  if (::stat(path.c_str(), &found) != 0 || !S_ISREG(found.st_mode)) return std::nullopt;
  return found.st_mtim;
}

bool Earlier(const timespec& a, const timespec& b) {
  return a.tv_sec != b.tv_sec ? a.tv_sec < b.tv_sec : a.tv_nsec < b.tv_nsec;
}

/// True for what stands behind a song's name in its backups: "_20261121_143259.mid".
bool IsTimeMark(std::string_view text) {
  constexpr std::string_view form = "_00000000_000000.mid";
  return text.size() == form.size() && std::ranges::equal(text, form, [](char have, char want) {
           return want == '0' ? std::isdigit(static_cast<unsigned char>(have)) != 0 : have == want;
         });
}

struct TBackupFile {
  fs::path Path;
  timespec Change{};
};

/// The newest backup of a song, or nothing.
std::optional<TBackupFile> NewestBackup(const fs::path& folder, std::string_view songPath) {
  const std::string stem = AutoBackupStemOf(songPath);
  std::optional<TBackupFile> newest;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(stem) || !IsTimeMark(std::string_view(name).substr(stem.size()))) continue;
    const std::optional<timespec> change = ChangeOf(entry.path());
    if (!change || (newest && Earlier(*change, newest->Change))) continue;
    // Of backups of one moment the name tells the later one.
    if (newest && !Earlier(newest->Change, *change) && entry.path() < newest->Path) continue;
    newest = {entry.path(), *change};
  }
  return newest;
}

/// Start of a process in ticks since that of the machine: field 22 of its state (Linux, proc(5)).
std::string StartOf(pid_t pid) {
  const std::string state = ContentOf("/proc/" + std::to_string(pid) + "/stat");
  // The program's name in brackets may hold blanks and brackets; behind it come fields 3 and on.
  std::size_t at = state.rfind(')');
  for (int field = 2; field < 22 && at != std::string::npos; ++field) at = state.find(' ', at + 1);
  if (at == std::string::npos) return {};
  return state.substr(at + 1, state.find(' ', at + 1) - at - 1);
}

std::string StartOfMachine() {
  const std::string id = ContentOf("/proc/sys/kernel/random/boot_id");
  return id.substr(0, id.find('\n'));
}

TProcessMark MarkOf(pid_t pid) {
  TProcessMark mark{pid, {}};
  if (const std::string start = StartOf(pid); !start.empty())
    mark.Start = StartOfMachine() + "/" + start;
  return mark;
}

}  // namespace

TProcessMark OwnProcess() { return MarkOf(::getpid()); }

bool IsRunning(const TProcessMark& process) {
  if (process.Pid <= 0 || (::kill(process.Pid, 0) != 0 && errno == ESRCH)) return false;
  if (process.Start.empty()) return true;
  const TProcessMark now = MarkOf(process.Pid);
  return now.Start.empty() || now.Start == process.Start;
}

TRecovery::TRecovery(std::string dataPath, FileCalls& calls)
    : folder(std::move(dataPath)), files(calls) {}

fs::path TRecovery::OwnMark() const {
  return folder / (std::string(MarkPrefix) + std::to_string(Own.Pid) + std::string(MarkSuffix));
}

bool TRecovery::BeginSession(const std::string& songPath) {
  const std::string text = std::string(MarkHead) + "\n" + std::to_string(Own.Pid) + "\n" + Own.Start +
                           "\n" + songPath + "\n";
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  return SaveFile(OwnMark().string(), std::span(bytes, text.size()), files).Step == TSaveStep::Done;
}

void TRecovery::EndSession() { static_cast<void>(files.Remove(OwnMark().string())); }

std::optional<TRecoveryOffer> TRecovery::OfferRecovery() {
  std::vector<fs::path> marks;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error))
    if (IsMark(entry.path())) marks.push_back(entry.path());
  std::ranges::sort(marks);

  std::optional<TRecoveryOffer> offer;
  timespec newest{};
  for (const fs::path& path : marks) {
    const std::optional<TSessionMark> mark = ReadMark(path);
    if (mark && (mark->Process == Own || Runs(mark->Process))) continue;
    const std::optional<timespec> begun = ChangeOf(path);
    std::optional<TBackupFile> backup;
    std::optional<timespec> song;
    if (mark && begun) {
      backup = NewestBackup(folder / TAutoBackup::Folder, mark->SongPath);
      song = ChangeOf(mark->SongPath);
    }
    if (!backup || Earlier(backup->Change, *begun) || (song && !Earlier(*song, backup->Change))) {
      static_cast<void>(files.Remove(path.string()));
      continue;
    }
    if (offer && !Earlier(newest, backup->Change)) continue;
    newest = backup->Change;
    offer = {mark->SongPath, backup->Path.string(), song ? song->tv_sec : 0, newest.tv_sec,
             path.string()};
  }
  return offer;
}

void TRecovery::Answered(const TRecoveryOffer& offer) { static_cast<void>(files.Remove(offer.Mark)); }

std::string RecoveryQuestion(const TRecoveryOffer& offer) {
  std::tm time{};
  localtime_r(&offer.BackupTime, &time);
  char text[64];
  std::strftime(text, sizeof text, GermanLanguage ? "%d.%m.%Y um %H:%M" : "%Y-%m-%d at %H:%M", &time);
  const std::string when = text;
  const std::string name = fs::path(offer.SongPath).filename().string();
  const std::string song = name.empty() ? Text("dem neuen Song", "the new song") : "\"" + name + "\"";
  const bool saved = offer.SongTime != 0;
  return Text(
      "Der \"Sonarello XI\" wurde das letzte Mal nicht ordentlich beendet.\rVon " + song +
          " gibt es ein Autobackup vom " + when +
          (saved ? ", das neuer als die gespeicherte Datei ist" : "") + ".\rSoll es geöffnet werden?",
      "\"Sonarello XI\" was not terminated properly the last time.\rThere is an auto backup of " +
          song + " made on " + when + (saved ? ", newer than the saved file" : "") +
          ".\rDo you want to open it?");
}

}  // namespace Sonarello
