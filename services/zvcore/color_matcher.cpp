#include "services/zvcore/color_matcher.h"

#include <algorithm>

namespace zvcore {
namespace {

constexpr unsigned kCells = 32 * 32 * 32;
constexpr uint32_t kCandidateRoom = 1u << 20;

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
  if (!cells.Allocate(kCells) || !candidates.Allocate(kCandidateRoom)) return ERROR_OUT_OF_MEMORY;
  count = entryCount;
  std::copy_n(entries, entryCount, palette);
  for (int i = 0; i < entryCount; ++i) candidates[static_cast<size_t>(i)] = static_cast<uint8_t>(i);
  candidatesUsed = static_cast<uint32_t>(entryCount);
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
  if (candidatesUsed + static_cast<uint32_t>(count) > kCandidateRoom) {
    cells[cell] = {0, static_cast<uint32_t>(count)};
    return;
  }
  const uint32_t first = candidatesUsed;
  for (int i = 0; i < count; ++i) {
    const ZVPALETTEENTRY& entry = palette[i];
    if (NearSquare(entry.red, red) + NearSquare(entry.green, green) + NearSquare(entry.blue, blue) <= reach) {
      candidates[candidatesUsed++] = static_cast<uint8_t>(i);
    }
  }
  cells[cell] = {first, candidatesUsed - first};
}

unsigned ColorMatcher::Search(Cell cell, int red, int green, int blue) const {
  const uint8_t* list = candidates.data() + cell.first;
  unsigned best = list[0];
  int bestDistance = INT32_MAX;
  for (uint32_t i = 0; i < cell.count; ++i) {
    const ZVPALETTEENTRY& entry = palette[list[i]];
    const int distance = Square(entry.red - red) + Square(entry.green - green) + Square(entry.blue - blue);
    if (distance < bestDistance) {
      bestDistance = distance;
      best = list[i];
    }
  }
  return best;
}

}  // namespace zvcore
