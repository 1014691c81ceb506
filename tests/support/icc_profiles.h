// ICC profiles for tests, made by the colour library's own writer, and pictures as pixels.
#pragma once

#define CMS_NO_REGISTER_KEYWORD 1
#include <lcms2.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "services/zvfile/zvfile.h"
#include "tests/support/file_bytes.h"

namespace zvtest {

struct ProfileKind {
  double version = 4.3;
  uint32_t ballast = 0;  // bytes of a private tag, so that the profile has any size
  bool hasChecksum = false;
  uint8_t filling = 7;  // of the ballast: tells profiles apart
};

inline FileBytes ProfileBytes(cmsHPROFILE profile) {
  cmsUInt32Number size = 0;
  cmsSaveProfileToMem(profile, nullptr, &size);
  FileBytes bytes(size);
  cmsSaveProfileToMem(profile, bytes.data(), &size);
  return bytes;
}

// Gives the profile a time of creation that is always the same, since the library would take the present one: two profiles of
// one kind are equal whenever they are made. Takes the profile over.
inline cmsHPROFILE WithFixedTime(cmsHPROFILE profile) {
  constexpr uint8_t kTime[12] = {7, 228, 0, 2, 0, 29, 0, 12, 0, 30, 0, 0};  // 2020-02-29 12:30:00, bytes 24 to 35
  FileBytes bytes = ProfileBytes(profile);
  cmsCloseProfile(profile);
  std::ranges::copy(kTime, bytes.begin() + 24);
  return cmsOpenProfileFromMem(bytes.data(), static_cast<cmsUInt32Number>(bytes.size()));
}

// Takes the profile over.
inline FileBytes FinishProfile(cmsHPROFILE profile, const ProfileKind& kind) {
  cmsSetProfileVersion(profile, kind.version);
  if (kind.ballast) {
    // Type, reserved bytes and noise that does not compress.
    FileBytes data(8 + kind.ballast);
    uint32_t state = kind.filling;
    for (uint8_t& byte : data) byte = static_cast<uint8_t>((state = state * 1664525 + 1013904223) >> 24);
    cmsWriteRawTag(profile, static_cast<cmsTagSignature>(0x7A767462), data.data(),
                   static_cast<cmsUInt32Number>(data.size()));
  }
  profile = WithFixedTime(profile);
  if (kind.hasChecksum) cmsMD5computeID(profile);
  const FileBytes bytes = ProfileBytes(profile);
  cmsCloseProfile(profile);
  return bytes;
}

inline FileBytes RgbProfile(const ProfileKind& kind = {}) { return FinishProfile(cmsCreate_sRGBProfile(), kind); }

inline FileBytes GrayProfile(const ProfileKind& kind = {}) {
  cmsToneCurve* curve = cmsBuildGamma(nullptr, 2.2);
  const cmsHPROFILE profile = cmsCreateGrayProfile(cmsD50_xyY(), curve);
  cmsFreeToneCurve(curve);
  return FinishProfile(profile, kind);
}

inline FileBytes LabProfile(const ProfileKind& kind = {}) { return FinishProfile(cmsCreateLab4Profile(nullptr), kind); }

// All rows of a page as loaded, or nothing when it cannot be.
inline FileBytes PixelsOf(const std::wstring& path, int page = 1) {
  LOADFILEOPTION option = {};
  GetDefaultLoadFileOption(&option, sizeof(option));
  option.pageNumber = page;
  BITMAPHANDLE bitmap = {};
  FileBytes pixels;
  if (LoadBitmapFile(path.c_str(), &bitmap, sizeof(bitmap), 0, ORDER_BGR, &option, nullptr) == SUCCESS) {
    pixels.assign(bitmap.data, bitmap.data + bitmap.dataSize);
    FreeBitmap(&bitmap);
  }
  return pixels;
}

}  // namespace zvtest
