#include "services/zvcore/color_matcher.h"

#include <algorithm>

namespace zvcore {
namespace {

constexpr unsigned kCells = 32 * 32 * 32;
constexpr uint32_t kGroupRoom = 1u << 16;

int Square(int value) { return value * value; }

// The smallest and largest distance, squared, of a value from the eight values of a cube's side.
int NearSquare(int value, int low) {
  if (value < low) return Square(low - value);
  return value > low + 7 ? Square(value - low - 7) : 0;
}
int FarSquare(int value, int low) { return Square(std::max(std::abs(value - low), std::abs(value - low - 7))); }

}  // namespace

int32_t ColorMatcher::Prepare(const ZVPALETTEENTRY* entries, int entryCount) {
  if (!entries || entryCount < 1 || entryCount > 256) return ERROR_BAD_ARGUMENT;
  if (!cells.Allocate(kCells) || !groups.Allocate(kGroupRoom)) return ERROR_OUT_OF_MEMORY;
  count = entryCount;
  std::copy_n(entries, entryCount, palette);
  uint8_t all[256];
  for (int i = 0; i < 256; ++i) all[i] = static_cast<uint8_t>(i);
  groupsUsed = 0;
  AppendGroups(all, entryCount);
  whole = {0, groupsUsed};
  return SUCCESS;
}

void ColorMatcher::FillCell(unsigned cell) {
  const int red = static_cast<int>(cell >> 10) << 3;
  const int green = static_cast<int>(cell >> 5 & 31) << 3;
  const int blue = static_cast<int>(cell & 31) << 3;
  int reach = INT32_MAX;
  for (int i = 0; i < count; ++i) {
    const ZVPALETTEENTRY& entry = palette[i];
    reach = std::min(reach, FarSquare(entry.red, red) + FarSquare(entry.green, green) + FarSquare(entry.blue, blue));
  }
  uint8_t candidates[256];
  int found = 0;
  for (int i = 0; i < count; ++i) {
    const ZVPALETTEENTRY& entry = palette[i];
    if (NearSquare(entry.red, red) + NearSquare(entry.green, green) + NearSquare(entry.blue, blue) <= reach) {
      candidates[found++] = static_cast<uint8_t>(i);
    }
  }
  const uint32_t first = groupsUsed;
  if (first + 64 <= kGroupRoom) AppendGroups(candidates, found);
  cells[cell] = groupsUsed > first ? Cell{first, groupsUsed - first} : whole;
}

// The last group is filled up with copies of its first entry.
void ColorMatcher::AppendGroups(const uint8_t* entries, int entryCount) {
  for (int i = 0; i < entryCount; i += 4) {
    Group& group = groups[groupsUsed++];
    for (int k = 0; k < 4; ++k) {
      const uint8_t index = entries[i + k < entryCount ? i + k : i];
      group.colors[4 * k] = palette[index].blue;
      group.colors[4 * k + 1] = palette[index].green;
      group.colors[4 * k + 2] = palette[index].red;
      group.indices[k] = index;
    }
  }
}

}  // namespace zvcore
