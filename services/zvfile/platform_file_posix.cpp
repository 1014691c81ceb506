#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>

#include "services/zvfile/platform_file.h"

namespace zvfile {
namespace {

// UTF-16 to UTF-8; a lone surrogate is written as the three bytes of its number.
std::string SystemPath(const ZVCHAR* path) {
  std::string result;
  for (const ZVCHAR* at = path; *at; ++at) {
    uint32_t code = *at;
    if (code >= 0xD800 && code < 0xDC00 && at[1] >= 0xDC00 && at[1] < 0xE000) {
      code = 0x10000 + ((code - 0xD800) << 10) + (*++at - 0xDC00u);
    }
    if (code < 0x80) {
      result += static_cast<char>(code);
    } else if (code < 0x800) {
      result += {static_cast<char>(0xC0 | (code >> 6)), static_cast<char>(0x80 | (code & 63))};
    } else if (code < 0x10000) {
      result += {static_cast<char>(0xE0 | (code >> 12)), static_cast<char>(0x80 | ((code >> 6) & 63)),
                 static_cast<char>(0x80 | (code & 63))};
    } else {
      result += {static_cast<char>(0xF0 | (code >> 18)), static_cast<char>(0x80 | ((code >> 12) & 63)),
                 static_cast<char>(0x80 | ((code >> 6) & 63)), static_cast<char>(0x80 | (code & 63))};
    }
  }
  return result;
}

int AsDescriptor(intptr_t handle) { return static_cast<int>(handle); }

}  // namespace

int32_t PlatformFile::OpenForReading(const ZVCHAR* path) {
  Close();
  const std::string name = SystemPath(path);
  struct stat status;
  if (stat(name.c_str(), &status) != 0 || S_ISDIR(status.st_mode)) return ERROR_FILE_MISSING;
  handle_ = open(name.c_str(), O_RDONLY | O_CLOEXEC);
  return IsOpen() ? SUCCESS : ERROR_FILE_READ;
}

bool PlatformFile::CreateNew(const ZVCHAR* path, bool& taken) {
  Close();
  handle_ = open(SystemPath(path).c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  taken = !IsOpen() && errno == EEXIST;
  return IsOpen();
}

void PlatformFile::Close() {
  if (IsOpen()) close(AsDescriptor(handle_));
  handle_ = -1;
}

bool PlatformFile::IsOpen() const { return handle_ != -1; }

uint64_t PlatformFile::Size() const {
  struct stat status;
  return fstat(AsDescriptor(handle_), &status) == 0 ? static_cast<uint64_t>(status.st_size) : 0;
}

size_t PlatformFile::ReadAt(uint64_t offset, void* buffer, size_t bytes, bool& failed) {
  size_t total = 0;
  while (total < bytes) {
    const ssize_t count = pread(AsDescriptor(handle_), static_cast<char*>(buffer) + total, bytes - total,
                                static_cast<off_t>(offset + total));
    if (count < 0) failed = true;
    if (count <= 0) break;
    total += static_cast<size_t>(count);
  }
  return total;
}

bool PlatformFile::WriteAt(uint64_t offset, const void* data, size_t bytes) {
  size_t total = 0;
  while (total < bytes) {
    const ssize_t count = pwrite(AsDescriptor(handle_), static_cast<const char*>(data) + total, bytes - total,
                                 static_cast<off_t>(offset + total));
    if (count <= 0) return false;
    total += static_cast<size_t>(count);
  }
  return true;
}

bool PlatformFile::FlushToDevice() { return fsync(AsDescriptor(handle_)) == 0; }

bool ReplaceByRename(const ZVCHAR* from, const ZVCHAR* to) {
  return rename(SystemPath(from).c_str(), SystemPath(to).c_str()) == 0;
}

void RemoveFile(const ZVCHAR* path) { unlink(SystemPath(path).c_str()); }

bool IsProtected(const ZVCHAR* path) {
  struct stat status;
  if (stat(SystemPath(path).c_str(), &status) != 0) return false;
  return S_ISDIR(status.st_mode) || !(status.st_mode & S_IWUSR);
}

bool FileExists(const ZVCHAR* path) {
  struct stat status;
  return stat(SystemPath(path).c_str(), &status) == 0;
}

uint64_t UniqueNumber() {
  static std::atomic<uint64_t> counter{0};
  const uint64_t ticks = static_cast<uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
  return (static_cast<uint64_t>(getpid()) << 40) ^ (ticks << 8) ^ ++counter;
}

}  // namespace zvfile
