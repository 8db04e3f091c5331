#include "core/SafeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <random>
#include <string_view>
#include <utility>

#include "core/TextEncoding.h"

namespace Sonarello {

namespace {

namespace fs = std::filesystem;

// A copy is called ".<name>.<16 hexadecimal digits>" and one of these. Only a copy that is complete,
// flushed and read back bears the second one.
constexpr std::string_view GrowingSuffix = ".part";
constexpr std::string_view CompleteSuffix = ".copy";
constexpr std::size_t RandomDigits = 16;
constexpr std::size_t LongestName = 255;  // bytes, on the file systems in use
constexpr int NameAttempts = 16;
constexpr int LinkHops = 40;

/// An open file that closes itself.
class OpenFile {
 public:
  OpenFile(FileCalls& c, const std::string& path, int flags, mode_t mode = 0)
      : calls(c), handle(c.Open(path, flags, mode)) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() { static_cast<void>(Close()); }

  [[nodiscard]] explicit operator bool() const noexcept { return handle >= 0; }
  [[nodiscard]] int Handle() const noexcept { return handle; }
  /// False if the system reports a late failure of a write.
  bool Close() noexcept { return handle < 0 || calls.Close(std::exchange(handle, -1)) == 0; }

 private:
  FileCalls& calls;
  int handle;
};

bool OutOfSpace(int error) { return error == ENOSPC || error == EDQUOT || error == EFBIG; }

/// The file that a path means in the end: links are followed, one that points at nothing included.
std::string FileBehind(std::string path) {
  std::error_code error;
  for (int hop = 0; hop < LinkHops && fs::is_symlink(path, error); ++hop) {
    const fs::path next = fs::read_symlink(path, error);
    if (error) break;
    path = (fs::path(path).parent_path() / next).string();
  }
  return path;
}

std::string FolderOf(const std::string& path) {
  const std::string folder = fs::path(path).parent_path().string();
  return folder.empty() ? "." : folder;
}

/// ".<name>." cut so that random digits and suffix still find room in a file name.
std::string CopyPrefix(const std::string& path) {
  const std::size_t room = LongestName - RandomDigits - GrowingSuffix.size() - 2;
  const std::string name = fs::path(path).filename().string();
  return "." + std::string(CutToBytes(name, room)) + ".";
}

std::string RandomName() {
  std::random_device random;
  std::string digits;
  while (digits.size() < RandomDigits) digits += "0123456789abcdef"[random() & 15U];
  return digits;
}

/// One save of one file.
class Saver {
 public:
  Saver(const std::string& fileName, std::span<const std::uint8_t> bytes, FileCalls& c)
      : target(FileBehind(fileName)), content(bytes), calls(c) {}

  TSaveResult Run() {
    struct stat found {};
    const bool exists = ::stat(target.c_str(), &found) == 0;
    if (exists && !S_ISREG(found.st_mode)) return WriteThrough(found);
    const bool protection = exists && IsProtected(found);
    if (protection && calls.SetMode(target, (found.st_mode & 07777) | S_IWUSR) != 0)
      return {TSaveStep::ReadOnly, 0, {}};
    TSaveResult result = MakeCopy(exists ? std::optional(found.st_mode & 0777) : std::nullopt);
    if (result.Step == TSaveStep::Done) result = exists ? Overwrite() : GiveName();
    // A save that changed nothing leaves the protection as it was, too.
    if (protection && result.Step != TSaveStep::Done && result.Copy.empty())
      static_cast<void>(calls.SetMode(target, found.st_mode & 07777));
    return result;
  }

 private:
  bool IsProtected(const struct stat& found) const {
    constexpr mode_t anyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
    return (found.st_mode & anyWrite) == 0 ||
           ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0;
  }

  /// The failure of the last call, after `written` bytes were taken.
  static TSaveResult Failure(std::size_t written) {
    return {OutOfSpace(errno) ? TSaveStep::Incomplete : TSaveStep::Writing, written, {}};
  }

  TSaveResult WriteAll(int file) {
    std::size_t written = 0;
    while (written < content.size()) {
      const ssize_t taken = calls.Write(file, content.data() + written, content.size() - written);
      if (taken > 0)
        written += static_cast<std::size_t>(taken);
      else if (taken == 0)
        return {TSaveStep::Incomplete, written, {}};
      else if (errno != EINTR)
        return Failure(written);
    }
    return {TSaveStep::Done, written, {}};
  }

  /// True if the file holds the content and no byte more.
  bool ReadsBack(int file) {
    if (calls.Rewind(file) != 0) return false;
    std::array<std::uint8_t, 1 << 16> part{};
    std::size_t same = 0;
    while (true) {
      const ssize_t got = calls.Read(file, part.data(), part.size());
      if (got < 0 && errno == EINTR) continue;
      if (got <= 0) return got == 0 && same == content.size();
      const auto count = static_cast<std::size_t>(got);
      if (count > content.size() - same ||
          !std::equal(part.begin(), part.begin() + got,
                      content.begin() + static_cast<std::ptrdiff_t>(same)))
        return false;
      same += count;
    }
  }

  TSaveResult WriteFlushCompare(OpenFile& file) {
    TSaveResult result = WriteAll(file.Handle());
    if (result.Step != TSaveStep::Done) return result;
    if (calls.Truncate(file.Handle(), static_cast<off_t>(content.size())) != 0 ||
        calls.Sync(file.Handle()) != 0 || !ReadsBack(file.Handle()) || !file.Close())
      return {TSaveStep::Writing, result.Written, {}};
    return result;
  }

  /// Makes names durable. Some file systems cannot flush a folder; the file itself was flushed.
  void SyncFolder() {
    const OpenFile folder(calls, FolderOf(target), O_RDONLY | O_DIRECTORY);
    if (folder) static_cast<void>(calls.Sync(folder.Handle()));
  }

  void Discard(const std::string& path) { static_cast<void>(calls.Remove(path)); }

  /// A copy of an existing file bears that file's permissions, and none for others while it grows; one
  /// that will be a new file gets the usual ones from the system.
  TSaveResult MakeCopy(std::optional<mode_t> mode) {
    constexpr mode_t everybody = 0666;
    constexpr mode_t ownerOnly = 0600;
    for (int attempt = 0; attempt < NameAttempts; ++attempt) {
      const std::string base = FolderOf(target) + "/" + CopyPrefix(target) + RandomName();
      const std::string growing = base + std::string(GrowingSuffix);
      OpenFile file(calls, growing, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW,
                    mode ? ownerOnly : everybody);
      if (!file && errno == EEXIST) continue;
      if (!file) return {OutOfSpace(errno) ? TSaveStep::Incomplete : TSaveStep::Opening, 0, {}};
      TSaveResult result = WriteFlushCompare(file);
      copy = base + std::string(CompleteSuffix);
      if (result.Step == TSaveStep::Done &&
          ((mode && calls.SetMode(growing, *mode) != 0) || calls.Rename(growing, copy) != 0))
        result.Step = TSaveStep::Writing;
      if (result.Step != TSaveStep::Done) Discard(growing);
      if (result.Step == TSaveStep::Done) SyncFolder();
      return result;
    }
    return {TSaveStep::Opening, 0, {}};
  }

  /// The copy becomes the new file. One that somebody else made meanwhile is written over instead.
  TSaveResult GiveName() {
    if (calls.Link(copy, target) == 0) {
      Discard(copy);
    } else if (errno == EEXIST) {
      return Overwrite();
    } else if (calls.Rename(copy, target) != 0) {  // a file system without links
      Discard(copy);
      return {TSaveStep::Opening, 0, {}};
    }
    SyncFolder();
    return {TSaveStep::Done, content.size(), {}};
  }

  TSaveResult Overwrite() {
    OpenFile file(calls, target, O_RDWR, 0);
    if (!file) {
      Discard(copy);
      return {TSaveStep::Opening, 0, {}};
    }
    // Room for the whole content is asked for while the old one is still untouched.
    if (calls.Reserve(file.Handle(), static_cast<off_t>(content.size())) != 0 && OutOfSpace(errno)) {
      Discard(copy);
      return {TSaveStep::Incomplete, 0, {}};
    }
    TSaveResult result = WriteFlushCompare(file);
    if (result.Step == TSaveStep::Done) {
      Discard(copy);
      SyncFolder();
    } else {
      result.Copy = copy;
    }
    return result;
  }

  /// A device or a pipe holds no old content that could be lost.
  TSaveResult WriteThrough(const struct stat& found) {
    if (S_ISDIR(found.st_mode)) return {TSaveStep::Opening, 0, {}};
    OpenFile file(calls, target, O_WRONLY);
    if (!file) return {TSaveStep::Opening, 0, {}};
    TSaveResult result = WriteAll(file.Handle());
    if (!file.Close() && result.Step == TSaveStep::Done) result.Step = TSaveStep::Writing;
    return result;
  }

  std::string target;
  std::span<const std::uint8_t> content;
  FileCalls& calls;
  std::string copy;
};

std::vector<std::uint8_t> ContentOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool IsCompleteCopy(std::string_view name, std::string_view prefix) {
  if (!name.starts_with(prefix) || !name.ends_with(CompleteSuffix)) return false;
  name.remove_prefix(prefix.size());
  if (name.size() != RandomDigits + CompleteSuffix.size()) return false;
  return name.find_first_not_of("0123456789abcdef") == RandomDigits;
}

}  // namespace

TSaveResult SaveFile(const std::string& fileName, std::span<const std::uint8_t> content,
                     FileCalls& calls) {
  return Saver(fileName, content, calls).Run();
}

std::vector<std::string> CopiesLeftBeside(const std::string& fileName) {
  const std::string target = FileBehind(fileName);
  const std::string prefix = CopyPrefix(target);
  const std::vector<std::uint8_t> present = ContentOf(target);
  std::vector<std::string> copies;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(FolderOf(target), error))
    if (IsCompleteCopy(entry.path().filename().string(), prefix) && entry.is_regular_file(error) &&
        ContentOf(entry.path()) != present)
      copies.push_back(entry.path().string());
  std::ranges::sort(copies);
  return copies;
}

}  // namespace Sonarello
