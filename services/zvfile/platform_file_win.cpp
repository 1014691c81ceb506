#include <windows.h>

#include <algorithm>
#include <atomic>

#include "services/zvfile/platform_file.h"

namespace zvfile {
namespace {

constexpr size_t kLongestPlainPath = 247;  // CreateDirectory's limit, the lowest of those for plain paths

HANDLE AsHandle(intptr_t value) { return reinterpret_cast<HANDLE>(value); }

// The path as the system takes it at any length: long ones get the prefix that lifts the limit of 260 characters, and for
// that have to be full and normalised first.
ZvString SystemPath(const ZVCHAR* path) {
  if (path[0] == L'\\' && path[1] == L'\\' && (path[2] == L'?' || path[2] == L'.')) return path;
  ZvString full(MAX_PATH, L'\0');
  DWORD length = GetFullPathNameW(path, static_cast<DWORD>(full.size()), full.data(), nullptr);
  if (length >= full.size()) {
    full.resize(length);
    length = GetFullPathNameW(path, static_cast<DWORD>(full.size()), full.data(), nullptr);
  }
  if (length == 0) return path;
  full.resize(length);
  if (length <= kLongestPlainPath) return full;
  if (full.compare(0, 2, L"\\\\") == 0) return L"\\\\?\\UNC" + full.substr(1);
  return L"\\\\?\\" + full;
}

OVERLAPPED AtOffset(uint64_t offset) {
  OVERLAPPED overlapped = {};
  overlapped.Offset = static_cast<DWORD>(offset);
  overlapped.OffsetHigh = static_cast<DWORD>(offset >> 32);
  return overlapped;
}

constexpr size_t kMostAtOnce = size_t{1} << 30;  // ReadFile and WriteFile count in 32 bits

}  // namespace

int32_t PlatformFile::OpenForReading(const ZVCHAR* path) {
  Close();
  const ZvString name = SystemPath(path);
  const HANDLE file = CreateFileW(name.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    const DWORD attributes = GetFileAttributesW(name.c_str());
    const bool isFile = attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
    return isFile ? ERROR_FILE_READ : ERROR_FILE_MISSING;
  }
  handle_ = reinterpret_cast<intptr_t>(file);
  return SUCCESS;
}

bool PlatformFile::CreateNew(const ZVCHAR* path, bool& taken) {
  Close();
  const HANDLE file = CreateFileW(SystemPath(path).c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                  CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  taken = file == INVALID_HANDLE_VALUE && GetLastError() == ERROR_FILE_EXISTS;
  if (file == INVALID_HANDLE_VALUE) return false;
  handle_ = reinterpret_cast<intptr_t>(file);
  return true;
}

void PlatformFile::Close() {
  if (IsOpen()) CloseHandle(AsHandle(handle_));
  handle_ = -1;
}

bool PlatformFile::IsOpen() const { return handle_ != -1; }

uint64_t PlatformFile::Size() const {
  LARGE_INTEGER size;
  return GetFileSizeEx(AsHandle(handle_), &size) ? static_cast<uint64_t>(size.QuadPart) : 0;
}

size_t PlatformFile::ReadAt(uint64_t offset, void* buffer, size_t bytes, bool& failed) {
  size_t total = 0;
  while (total < bytes) {
    OVERLAPPED place = AtOffset(offset + total);
    DWORD count = 0;
    const DWORD wanted = static_cast<DWORD>(std::min(bytes - total, kMostAtOnce));
    if (!ReadFile(AsHandle(handle_), static_cast<char*>(buffer) + total, wanted, &count, &place)) {
      if (GetLastError() != ERROR_HANDLE_EOF) failed = true;
      break;
    }
    if (count == 0) break;
    total += count;
  }
  return total;
}

bool PlatformFile::WriteAt(uint64_t offset, const void* data, size_t bytes) {
  size_t total = 0;
  while (total < bytes) {
    OVERLAPPED place = AtOffset(offset + total);
    DWORD count = 0;
    const DWORD wanted = static_cast<DWORD>(std::min(bytes - total, kMostAtOnce));
    if (!WriteFile(AsHandle(handle_), static_cast<const char*>(data) + total, wanted, &count, &place) || count == 0) {
      return false;
    }
    total += count;
  }
  return true;
}

bool PlatformFile::FlushToDevice() { return FlushFileBuffers(AsHandle(handle_)) != 0; }

bool ReplaceByRename(const ZVCHAR* from, const ZVCHAR* to) {
  const ZvString source = SystemPath(from);
  const ZvString destination = SystemPath(to);
  // Indexers and virus scanners hold a file for a moment after it has been written; wait for them, not for ever.
  for (int attempt = 0; attempt < 10; ++attempt) {
    if (MoveFileExW(source.c_str(), destination.c_str(), MOVEFILE_REPLACE_EXISTING)) return true;
    if (GetLastError() != ERROR_SHARING_VIOLATION) return false;
    Sleep(20);
  }
  return false;
}

void RemoveFile(const ZVCHAR* path) { DeleteFileW(SystemPath(path).c_str()); }

bool IsProtected(const ZVCHAR* path) {
  const DWORD attributes = GetFileAttributesW(SystemPath(path).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY));
}

bool FileExists(const ZVCHAR* path) { return GetFileAttributesW(SystemPath(path).c_str()) != INVALID_FILE_ATTRIBUTES; }

uint64_t UniqueNumber() {
  static std::atomic<uint64_t> counter{0};
  LARGE_INTEGER ticks;
  QueryPerformanceCounter(&ticks);
  return (uint64_t{GetCurrentProcessId()} << 40) ^ (static_cast<uint64_t>(ticks.QuadPart) << 8) ^ ++counter;
}

}  // namespace zvfile
