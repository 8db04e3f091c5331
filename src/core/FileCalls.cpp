#include "core/FileCalls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

namespace Sonarello {

int FileCalls::Open(const std::string& path, int flags, mode_t mode) {
  return ::open(path.c_str(), flags | O_CLOEXEC, mode);
}
ssize_t FileCalls::Write(int file, const void* bytes, std::size_t count) {
  return ::write(file, bytes, count);
}
ssize_t FileCalls::Read(int file, void* bytes, std::size_t count) { return ::read(file, bytes, count); }
int FileCalls::Rewind(int file) { return ::lseek(file, 0, SEEK_SET) < 0 ? -1 : 0; }
int FileCalls::Reserve(int file, off_t size) { return ::fallocate(file, FALLOC_FL_KEEP_SIZE, 0, size); }
int FileCalls::Truncate(int file, off_t size) { return ::ftruncate(file, size); }
int FileCalls::Sync(int file) { return ::fsync(file); }
int FileCalls::Close(int file) { return ::close(file); }
int FileCalls::SetMode(const std::string& path, mode_t mode) { return ::chmod(path.c_str(), mode); }
int FileCalls::Link(const std::string& from, const std::string& to) {
  return ::link(from.c_str(), to.c_str());
}
int FileCalls::Rename(const std::string& from, const std::string& to) {
  return ::rename(from.c_str(), to.c_str());
}
int FileCalls::Remove(const std::string& path) { return ::unlink(path.c_str()); }

FileCalls& FileCalls::System() {
  static FileCalls system;
  return system;
}

}  // namespace Sonarello
