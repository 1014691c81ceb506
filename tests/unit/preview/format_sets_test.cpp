#include "preview/format_sets.h"

#include <gtest/gtest.h>

#include "services/zvfile/file_formats.h"

namespace {

int CountUpTo1000(bool (*holds)(int32_t)) {
  int count = 0;
  for (int32_t format = 0; format <= 1000; ++format) {
    count += holds(format);
  }
  return count;
}

TEST(VectorFormats, AreTwentyDrawings) {
  EXPECT_EQ(20, CountUpTo1000(IsVectorFormat));
  EXPECT_TRUE(IsVectorFormat(FMT_WMF));
  EXPECT_TRUE(IsVectorFormat(289));
  EXPECT_FALSE(IsVectorFormat(FMT_JPEG));
}

TEST(CostlyFormats, AreTheTiffFamily) {
  EXPECT_EQ(20, CountUpTo1000(IsCostlyToCountPages));
  EXPECT_TRUE(IsCostlyToCountPages(FMT_TIFF));
  EXPECT_TRUE(IsCostlyToCountPages(FMT_BIGTIFF_DEFLATE));
  EXPECT_FALSE(IsCostlyToCountPages(FMT_GIF));
}

TEST(ResolutionFormats, AreTheMetafiles) {
  EXPECT_EQ(3, CountUpTo1000(IsLoadedAtResolution));
  EXPECT_TRUE(IsLoadedAtResolution(FMT_WMZ));
}

}  // namespace
