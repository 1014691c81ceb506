#include "conversion/format_rules.h"

#include <gtest/gtest.h>

#include "services/zvdlgbase/zvdlgbase.h"

namespace {

struct Pair {
  uint32_t ui;
  uint32_t setting;
};
constexpr Pair kPairs[] = {{0x4, 0x1},   {0x8, 0x4},      {0x10, 0x8},   {0x40, 0x40},
                           {0x80, 0x20}, {0x40000, 0x80}, {0x400, 0x200}};

TEST(SettingsButton, IsEnabledByEachPairOfAnOfferAndAnOption) {
  for (const Pair& pair : kPairs) {
    EXPECT_TRUE(IsSettingsButtonEnabled(pair.setting, pair.ui)) << pair.setting;
    EXPECT_FALSE(IsSettingsButtonEnabled(pair.setting, ~pair.ui)) << pair.setting;
    EXPECT_FALSE(IsSettingsButtonEnabled(~pair.setting & 0x3ff, pair.ui)) << pair.setting;
  }
}

TEST(SettingsButton, IsDisabledForAFormatWithoutOptions) {
  EXPECT_FALSE(IsSettingsButtonEnabled(0, 0xffffffff));
  EXPECT_FALSE(IsSettingsButtonEnabled(SAVEOPT_QFACTOR_ZERO, 0xffffffff));
}

TEST(SettingsButton, IsDisabledWhenQualityIsTheOnlyOption) {
  EXPECT_FALSE(IsSettingsButtonEnabled(SAVEOPT_QFACTOR, 0xffffffff));
}

TEST(SettingsButton, FixedQualityBesideAnotherOptionDoesNotDisableIt) {
  EXPECT_TRUE(IsSettingsButtonEnabled(SAVEOPT_QFACTOR_ZERO | SAVEOPT_MULTIPAGE, CONVDLG_SHOW_FILE_INFO));
}

CONVERSIONFORMATITEM Item(int32_t fileFormat, int32_t subtype, uint32_t flags) {
  CONVERSIONFORMATITEM item;
  item.fileFormat = fileFormat;
  item.subtype = subtype;
  item.saveOption.flags = flags;
  ApplyVariantFlags(item);
  return item;
}

TEST(VariantFlags, GifIsInterlacedForItsFirstSubtypeAlone) {
  EXPECT_EQ(0x81u, Item(FMT_GIF, 2, 0x91).saveOption.flags);
  EXPECT_EQ(0x91u, Item(FMT_GIF, 1, 0x81).saveOption.flags);
}

TEST(VariantFlags, ExifTiffLosesTheCarrierBit) {
  EXPECT_EQ(0x80u, Item(FMT_EXIF_TIFF_RGB, 1, 0x1080).saveOption.flags);
  EXPECT_EQ(0x280u, Item(FMT_EXIF_TIFF_YCC, 1, 0x1080).saveOption.flags);
}

TEST(VariantFlags, ExifJpegGetsTheCarrierBit) {
  EXPECT_EQ(0x1000u, Item(FMT_EXIF_JPEG_422, 1, 0).saveOption.flags);
  EXPECT_EQ(0x1000u, Item(FMT_EXIF_JPEG_420, 1, 0).saveOption.flags);
}

TEST(VariantFlags, OtherFormatsKeepTheirFlags) { EXPECT_EQ(0x1690u, Item(FMT_PNG, 1, 0x1690).saveOption.flags); }

TEST(StartQuality, IsZeroWhereTheQualityIsFixed) {
  EXPECT_EQ(0, StartQuality(SAVEOPT_QFACTOR_ZERO | SAVEOPT_QFACTOR, 20));
  EXPECT_EQ(20, StartQuality(SAVEOPT_QFACTOR, 20));
}

}  // namespace
