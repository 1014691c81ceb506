// The thin layer between the file library and the system: opening, reading, writing, replacing and removing files by wide
// names of any length. Everything above this header is portable; one of the two platform_file_*.cpp implements it.
#ifndef ZV_FILE_PLATFORM_FILE_H
#define ZV_FILE_PLATFORM_FILE_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "services/zvcore/zvcore.h"

namespace zvfile {

using ZvString = std::basic_string<ZVCHAR>;

// Owns one open file.
class PlatformFile {
 public:
  PlatformFile() = default;
  ~PlatformFile() { Close(); }
  PlatformFile(const PlatformFile&) = delete;
  PlatformFile& operator=(const PlatformFile&) = delete;

  // ERROR_FILE_MISSING when there is none or it is a folder, ERROR_FILE_READ when it may not be read. Others may go on
  // reading, writing, renaming and deleting it meanwhile.
  int32_t OpenForReading(const ZVCHAR* path);
  // Makes a new file for reading and writing; false when the name is taken (`taken`) or it cannot be made.
  bool CreateNew(const ZVCHAR* path, bool& taken);
  void Close();
  bool IsOpen() const;
  uint64_t Size() const;
  // Gives the bytes read, fewer at the end of the file; `failed` tells an error of the device.
  size_t ReadAt(uint64_t offset, void* buffer, size_t bytes, bool& failed);
  bool WriteAt(uint64_t offset, const void* data, size_t bytes);
  bool FlushToDevice();

 private:
  intptr_t handle_ = -1;
};

// Renames `from` to `to`, replacing it in one step; both stand in one folder. False leaves both as they were.
bool ReplaceByRename(const ZVCHAR* from, const ZVCHAR* to);
void RemoveFile(const ZVCHAR* path);
// A folder, or a file that may not be written: not to be replaced.
bool IsProtected(const ZVCHAR* path);
bool FileExists(const ZVCHAR* path);
// A number that differs between processes and calls, for names of temporary files.
uint64_t UniqueNumber();

}  // namespace zvfile

#endif
