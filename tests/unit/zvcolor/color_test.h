// What the tests of the colour library share: a record, a folder, and short forms of the calls.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>

#include "services/zvcolor/zvcolor.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/icc_profiles.h"
#include "tests/support/pictures.h"

namespace zvtest {

class ColorTest : public testing::Test {
 protected:
  ColorTest() { Z_InitICCProfile(&profile, sizeof(profile)); }
  ~ColorTest() override { Z_FreeICCProfile(&profile); }

  FileBytes Loaded() const {
    const auto* data = static_cast<const uint8_t*>(profile.data);
    return FileBytes(data, data + profile.dataSize);
  }
  bool IsEmpty() const { return profile.dataSize == 0 && !profile.data && !profile.tags && profile.uStructSize == 56; }

  int32_t LoadIcc(const std::wstring& path) {
    Z_FreeICCProfile(&profile);
    return Z_FillICCProfileFromICCFile(path.c_str(), &profile);
  }
  int32_t LoadIcc(const FileBytes& bytes) { return LoadIcc(folder.AddFile(L"given.icc", bytes)); }
  int32_t LoadFrom(const std::wstring& path, int page = 1) {
    Z_FreeICCProfile(&profile);
    LOADFILEOPTION option = {};
    GetDefaultLoadFileOption(&option, sizeof(option));
    option.pageNumber = page;
    return Z_LoadICCProfile(path.c_str(), &profile, &option);
  }
  // Saves some bytes as a profile.
  static int32_t SaveImage(const std::wstring& path, FileBytes bytes, int page = 1) {
    ICCPROFILEDATA given = {};
    Z_InitICCProfile(&given, sizeof(given));
    given.dataSize = static_cast<uint32_t>(bytes.size());
    given.data = bytes.data();
    SAVEFILEOPTION option = {};
    GetDefaultSaveFileOption(&option, sizeof(option));
    option.pageNumber = page;
    return Z_SaveICCProfile(path.c_str(), &given, &option);
  }
  std::wstring Picture(const std::wstring& name, const PictureKind& kind) {
    const std::wstring path = folder.File(name);
    EXPECT_TRUE(WritePicture(path, kind)) << "a picture for the test";
    return path;
  }
  int CountFiles() const {
    WIN32_FIND_DATAW entry;
    const HANDLE search = ::FindFirstFileW((folder.path() + L"\\*").c_str(), &entry);
    int count = 0;
    do {
      count += !(entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY);
    } while (::FindNextFileW(search, &entry));
    ::FindClose(search);
    return count;
  }

  TemporaryFolder folder;
  ICCPROFILEDATA profile;
};

inline void PutNumber(FileBytes& bytes, size_t at, uint32_t value) {
  for (size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<uint8_t>(value >> (24 - 8 * i));
}

}  // namespace zvtest
