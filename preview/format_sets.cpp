#include "preview/format_sets.h"

#include <algorithm>
#include <iterator>

#include "services/zvfile/file_formats.h"

namespace {

constexpr int32_t kVector[] = {FMT_WMF, 56,  58,  62,  FMT_EMF, 123, 124, 136, FMT_HPGL, 144,
                               145,     169, 247, 251, 255,     260, 261, 289, 290,      FMT_WMZ};
constexpr int32_t kCostly[] = {3, 11, 17, 22, 24, 25, 27, 28, 29, 85, 86, 87, 88, 93, 94, 95, 138, 139, 166, 167};
constexpr int32_t kAtResolution[] = {FMT_WMF, FMT_EMF, FMT_WMZ};

template <size_t count>
bool Holds(const int32_t (&formats)[count], int32_t format) {
  return std::ranges::find(formats, format) != std::end(formats);
}

}  // namespace

bool IsVectorFormat(int32_t format) { return Holds(kVector, format); }
bool IsCostlyToCountPages(int32_t format) { return Holds(kCostly, format); }
bool IsLoadedAtResolution(int32_t format) { return Holds(kAtResolution, format); }
