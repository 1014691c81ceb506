// Whether some bytes are an ICC profile that can be trusted with colours. Section numbers are those of ICC.1:2010.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace zvcolor {

using Bytes = std::vector<uint8_t>;
using ByteView = std::span<const uint8_t>;

constexpr uint32_t Letters(char a, char b, char c, char d) {
  return static_cast<uint32_t>(a) << 24 | static_cast<uint32_t>(b) << 16 | static_cast<uint32_t>(c) << 8 |
         static_cast<uint32_t>(d);
}
inline constexpr uint32_t kGray = Letters('G', 'R', 'A', 'Y');
inline constexpr uint32_t kRgb = Letters('R', 'G', 'B', ' ');
inline constexpr uint32_t kCmyk = Letters('C', 'M', 'Y', 'K');
inline constexpr uint32_t kLab = Letters('L', 'a', 'b', ' ');

// Numbers of the header, section 7.2.
struct ProfileHeader {
  uint32_t size;
  uint32_t version;
  uint32_t deviceClass;
  uint32_t colorSpace;
  uint32_t connectionSpace;
  uint32_t renderingIntent;
  uint32_t tagCount;
};

// Big-endian number at a place that must lie inside.
uint32_t NumberAt(ByteView bytes, size_t at);
// Whether the signature of an ICC file stands where it must.
bool HasSignature(ByteView bytes);
// The header of a profile of at least 132 bytes.
ProfileHeader ReadHeader(ByteView profile);

// SUCCESS, ERROR_PROFILE_DAMAGED, ERROR_PROFILE_VERSION or ERROR_LIMIT_EXCEEDED. Up to 3 zero bytes behind the profile are cut
// from the view: writers pad to multiples of 4.
int32_t CheckProfile(ByteView& profile);

// Whether the profile describes the colours of an image, and these colours; space 0 stands for any.
bool FitsImage(ByteView profile, uint32_t space);

}  // namespace zvcolor
