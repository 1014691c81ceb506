#include "services/zvcolor/profile_check.h"

#define CMS_NO_REGISTER_KEYWORD 1
#include <lcms2.h>
#include <lcms2_plugin.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

#include "services/zvcolor/zvcolor.h"

namespace zvcolor {
namespace {

constexpr size_t kHeaderBytes = 128;
constexpr size_t kTagTableAt = kHeaderBytes + 4;
constexpr size_t kTagEntryBytes = sizeof(ICCPROFILETAG);
constexpr size_t kSmallestTag = 8;  // type and reserved bytes
constexpr size_t kMostTags = 100;   // what the colour library holds
constexpr size_t kSignatureAt = 36;
constexpr size_t kPaddingAllowed = 3;

constexpr uint32_t kDeviceLink = Letters('l', 'i', 'n', 'k');
constexpr uint32_t kAbstract = Letters('a', 'b', 's', 't');
constexpr uint32_t kNamedColor = Letters('n', 'm', 'c', 'l');
constexpr uint32_t kClasses[] = {Letters('s', 'c', 'n', 'r'),
                                 Letters('m', 'n', 't', 'r'),
                                 Letters('p', 'r', 't', 'r'),
                                 Letters('s', 'p', 'a', 'c'),
                                 kDeviceLink,
                                 kAbstract,
                                 kNamedColor};
constexpr uint32_t kXyz = Letters('X', 'Y', 'Z', ' ');
constexpr uint32_t kSpaces[] = {
    kGray,
    kRgb,
    kCmyk,
    kLab,
    kXyz,
    Letters('L', 'u', 'v', ' '),
    Letters('Y', 'C', 'b', 'r'),
    Letters('Y', 'x', 'y', ' '),
    Letters('H', 'S', 'V', ' '),
    Letters('H', 'L', 'S', ' '),
    Letters('C', 'M', 'Y', ' '),
};
// What the colours are computed from: where such a tag stands, it must make sense.
constexpr cmsTagSignature kColorTags[] = {
    cmsSigRedColorantTag, cmsSigGreenColorantTag, cmsSigBlueColorantTag,    cmsSigRedTRCTag, cmsSigGreenTRCTag,
    cmsSigBlueTRCTag,     cmsSigGrayTRCTag,       cmsSigMediaWhitePointTag, cmsSigAToB0Tag,  cmsSigAToB1Tag,
    cmsSigAToB2Tag,       cmsSigBToA0Tag,         cmsSigBToA1Tag,           cmsSigBToA2Tag,  cmsSigNamedColor2Tag};

template <class List>
bool Has(const List& list, uint32_t value) {
  return std::find(std::begin(list), std::end(list), value) != std::end(list);
}

// 2CLR to FCLR: that many unnamed colorants.
bool IsColorantSpace(uint32_t space) {
  const uint32_t digit = space >> 24;
  const bool isDigit = (digit >= '2' && digit <= '9') || (digit >= 'A' && digit <= 'F');
  return isDigit && (space & 0xffffff) == (Letters('\0', 'C', 'L', 'R'));
}

bool AreTagsInside(ByteView profile, uint32_t count) {
  if (count > kMostTags || kTagTableAt + count * kTagEntryBytes > profile.size()) {
    return false;
  }
  const size_t tableEnd = kTagTableAt + count * kTagEntryBytes;
  for (uint32_t i = 0; i < count; ++i) {
    const uint64_t offset = NumberAt(profile, kTagTableAt + i * kTagEntryBytes + 4);
    const uint64_t size = NumberAt(profile, kTagTableAt + i * kTagEntryBytes + 8);
    if (offset < tableEnd || size < kSmallestTag || offset + size > profile.size()) {
      return false;
    }
  }
  return true;
}

// Section 7.2.18: MD5 of the profile with flags, rendering intent and the checksum itself zero. All zero means none was made;
// before version 4 there was none, and the bytes may hold anything.
bool IsChecksumRight(ByteView profile) {
  constexpr size_t kFlagsAt = 44, kIntentAt = 64, kChecksumAt = 84;
  const ByteView given = profile.subspan(kChecksumAt, sizeof(cmsProfileID));
  if (std::all_of(given.begin(), given.end(), [](uint8_t byte) { return byte == 0; })) {
    return true;
  }
  std::array<uint8_t, kHeaderBytes> header;
  std::copy_n(profile.begin(), kHeaderBytes, header.begin());
  std::memset(&header[kFlagsAt], 0, 4);
  std::memset(&header[kIntentAt], 0, 4);
  std::memset(&header[kChecksumAt], 0, sizeof(cmsProfileID));
  const cmsHANDLE digest = cmsMD5alloc(nullptr);
  if (!digest) {
    return true;
  }
  cmsMD5add(digest, header.data(), kHeaderBytes);
  cmsMD5add(digest, profile.data() + kHeaderBytes, static_cast<cmsUInt32Number>(profile.size() - kHeaderBytes));
  cmsProfileID computed;
  cmsMD5finish(&computed, digest);
  return std::equal(given.begin(), given.end(), computed.ID8);
}

struct CloseProfile {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};

// Whether the tags that the class asks for are there (section 8) and can be read.
bool HasUsableColors(ByteView bytes, uint32_t deviceClass) {
  const std::unique_ptr<void, CloseProfile> profile(
      cmsOpenProfileFromMem(bytes.data(), static_cast<cmsUInt32Number>(bytes.size())));
  if (!profile) {
    return false;
  }
  if (deviceClass == kNamedColor) {
    return cmsReadTag(profile.get(), cmsSigNamedColor2Tag);
  }
  for (const cmsTagSignature tag : kColorTags) {
    if (cmsIsTag(profile.get(), tag) && !cmsReadTag(profile.get(), tag)) {
      return false;
    }
  }
  const bool hasTable = cmsIsTag(profile.get(), cmsSigAToB0Tag) || cmsIsTag(profile.get(), cmsSigDToB0Tag);
  const bool needsTable = deviceClass == kDeviceLink || deviceClass == kAbstract;
  return hasTable || (!needsTable && cmsIsMatrixShaper(profile.get()));
}

}  // namespace

uint32_t NumberAt(ByteView bytes, size_t at) {
  return static_cast<uint32_t>(bytes[at]) << 24 | static_cast<uint32_t>(bytes[at + 1]) << 16 |
         static_cast<uint32_t>(bytes[at + 2]) << 8 | bytes[at + 3];
}

bool HasSignature(ByteView bytes) {
  return bytes.size() >= kSignatureAt + 4 && NumberAt(bytes, kSignatureAt) == Letters('a', 'c', 's', 'p');
}

ProfileHeader ReadHeader(ByteView profile) {
  return {NumberAt(profile, 0),  NumberAt(profile, 8),  NumberAt(profile, 12),          NumberAt(profile, 16),
          NumberAt(profile, 20), NumberAt(profile, 64), NumberAt(profile, kHeaderBytes)};
}

int32_t CheckProfile(ByteView& profile) {
  if (profile.size() < kTagTableAt || !HasSignature(profile)) {
    return ERROR_PROFILE_DAMAGED;
  }
  const ProfileHeader header = ReadHeader(profile);
  const uint32_t major = header.version >> 24;
  if (major != 2 && major != 4) {
    return ERROR_PROFILE_VERSION;
  }
  if (header.size < kTagTableAt || header.size > profile.size() || profile.size() - header.size > kPaddingAllowed) {
    return ERROR_PROFILE_DAMAGED;
  }
  const ByteView padding = profile.subspan(header.size);
  if (std::any_of(padding.begin(), padding.end(), [](uint8_t byte) { return byte != 0; })) {
    return ERROR_PROFILE_DAMAGED;
  }
  if (header.size > ICC_PROFILE_MAX_BYTES) {
    return ERROR_LIMIT_EXCEEDED;
  }
  profile = profile.first(header.size);
  const bool knowsSpaces =
      (Has(kSpaces, header.colorSpace) || IsColorantSpace(header.colorSpace)) &&
      (header.connectionSpace == kXyz || header.connectionSpace == kLab || header.deviceClass == kDeviceLink);
  if (!Has(kClasses, header.deviceClass) || !knowsSpaces || !AreTagsInside(profile, header.tagCount) ||
      (major >= 4 && !IsChecksumRight(profile)) || !HasUsableColors(profile, header.deviceClass)) {
    return ERROR_PROFILE_DAMAGED;
  }
  return SUCCESS;
}

bool FitsImage(ByteView profile, uint32_t space) {
  const ProfileHeader header = ReadHeader(profile);
  const bool describesImages =
      header.deviceClass != kDeviceLink && header.deviceClass != kAbstract && header.deviceClass != kNamedColor;
  return describesImages && (space == 0 || header.colorSpace == space);
}

}  // namespace zvcolor
