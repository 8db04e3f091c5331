// Sonarello: the system calls by which files are saved.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>

namespace Sonarello {

/// POSIX calls, one function each, with their results and `errno`. Tests let them fail at will.
class FileCalls {
 public:
  virtual ~FileCalls() = default;
  virtual int Open(const std::string& path, int flags, mode_t mode);
  virtual ssize_t Write(int file, const void* bytes, std::size_t count);
  virtual ssize_t Read(int file, void* bytes, std::size_t count);
  virtual int Rewind(int file);
  /// Asks for room for `size` bytes; the file keeps its length and content.
  virtual int Reserve(int file, off_t size);
  virtual int Truncate(int file, off_t size);
  virtual int Sync(int file);
  virtual int Close(int file);
  virtual int SetMode(const std::string& path, mode_t mode);
  virtual int Link(const std::string& from, const std::string& to);
  virtual int Rename(const std::string& from, const std::string& to);
  virtual int Remove(const std::string& path);

  /// The calls of the system itself.
  static FileCalls& System();
};

}  // namespace Sonarello
