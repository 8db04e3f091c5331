#include "instruments/UserFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace Sonarello {

namespace {

/// A file that is closed when it goes out of scope.
struct OpenFile {
  explicit OpenFile(const std::string& path)
      : Handle(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}
  ~OpenFile() {
    if (Handle >= 0) ::close(Handle);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  int Handle;
};

/// Reads up to `limit` bytes; false on an error or if there are more.
bool ReadUpTo(int handle, std::size_t limit, std::string& bytes) {
  std::size_t held = 0;
  while (held <= limit) {
    bytes.resize(held + (std::size_t{64} << 10));
    const ssize_t got = ::read(handle, bytes.data() + held, bytes.size() - held);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    held += static_cast<std::size_t>(got);
    bytes.resize(held);
    if (got == 0) return true;
  }
  return false;
}

}  // namespace

UserFile ReadUserFile(const std::string& path, std::string& bytes) {
  bytes.clear();
  const OpenFile file(path);
  if (file.Handle < 0)
    return errno == ENOENT || errno == ENOTDIR ? UserFile::Missing : UserFile::Unreadable;
  struct stat facts {};
  if (::fstat(file.Handle, &facts) != 0 || !S_ISREG(facts.st_mode)) return UserFile::Unreadable;
  if (ReadUpTo(file.Handle, LargestUserFile, bytes)) return UserFile::Read;
  bytes.clear();
  return UserFile::Unreadable;
}

std::string PathInFolder(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!path.ends_with('/')) path += '/';
  return path.append(name);
}

}  // namespace Sonarello
