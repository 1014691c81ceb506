#include "pickers/format_settings.h"

#include <gtest/gtest.h>

namespace {

constexpr int32_t kVectorViewFormat = 56;
constexpr int32_t kVectorBackgroundFormat = 58;

class FormatSettingsOf : public ::testing::Test {
 protected:
  FormatSettingsOf() {
    info.uStructSize = sizeof(info);
    entry.fileInfo = &info;
    GetDefaultLoadFileOption(&option, sizeof(option));
  }
  // A record of the format's class, as the process stands now.
  template <class Record>
  Record* NewRecord(int32_t format) {
    entry.format = format;
    void* options = nullptr;
    EXPECT_TRUE(MakeFormatOptions(format, &options));
    entry.formatOptions = options;
    return static_cast<Record*>(options);
  }
  ~FormatSettingsOf() override { ::GlobalFree(entry.formatOptions); }

  FILEINFO info = {};
  OPENDLGFILEDATA entry = {};
  LOADFILEOPTION option = {};
};

TEST_F(FormatSettingsOf, AMetafileAreItsResolution) {
  SetLoadDpi(96, 97);
  auto* const record = NewRecord<PAIRFORMATOPTION>(FMT_WMF);
  EXPECT_EQ(96, record->x) << "a new record holds what is in force";
  EXPECT_EQ(97, record->y);
  record->x = 300;
  record->y = 150;
  {
    const FormatSettings settings(entry, option);
    int32_t x = 0, y = 0;
    GetLoadDpi(&x, &y);
    EXPECT_EQ(300, x);
    EXPECT_EQ(150, y);
    EXPECT_EQ(4096u, info.flags);
  }
  int32_t x = 0, y = 0;
  GetLoadDpi(&x, &y);
  EXPECT_EQ(96, x);
  EXPECT_EQ(97, y);
}

TEST_F(FormatSettingsOf, AnIconAreItsLoadSize) {
  SetLoadSize(FMT_ICO, 32, 32);
  auto* const record = NewRecord<PAIRFORMATOPTION>(FMT_ICO);
  EXPECT_EQ(32, record->x);
  record->x = record->y = 16;
  int32_t width = 0, height = 0;
  {
    const FormatSettings settings(entry, option);
    GetLoadSize(FMT_ICO, &width, &height, nullptr);
    EXPECT_EQ(16, width);
    EXPECT_EQ(4096u, info.flags);
  }
  GetLoadSize(FMT_ICO, &width, &height, nullptr);
  EXPECT_EQ(32, width);
  SetLoadSize(FMT_ICO, 0, 0);
}

TEST_F(FormatSettingsOf, ADrawingAreItsView) {
  SetVectorViewSize(640, 480);
  SetVectorViewMode(1);
  auto* const record = NewRecord<VECTORFORMATOPTION>(kVectorViewFormat);
  EXPECT_EQ(640, record->viewWidth);
  EXPECT_EQ(1, record->viewMode);
  record->viewWidth = 800;
  record->viewMode = 2;
  int32_t width = 0, height = 0, mode = 0;
  {
    const FormatSettings settings(entry, option);
    GetVectorViewSize(&width, &height);
    GetVectorViewMode(&mode);
    EXPECT_EQ(800, width);
    EXPECT_EQ(2, mode);
  }
  GetVectorViewSize(&width, &height);
  GetVectorViewMode(&mode);
  EXPECT_EQ(640, width);
  EXPECT_EQ(1, mode);
}

TEST_F(FormatSettingsOf, ADrawingWithBackgroundAreViewAndColour) {
  SetVectorBackground(0x112233);
  auto* const record = NewRecord<VECTORBACKGROUNDFORMATOPTION>(kVectorBackgroundFormat);
  EXPECT_EQ(0x112233u, record->background);
  record->background = 0x445566;
  uint32_t color = 0;
  {
    const FormatSettings settings(entry, option);
    GetVectorBackground(&color);
    EXPECT_EQ(0x445566u, color);
  }
  GetVectorBackground(&color);
  EXPECT_EQ(0x112233u, color);
}

TEST_F(FormatSettingsOf, APlotAreItsPens) {
  VECTORPENOPTION pens = {};
  GetVectorPenOptions(&pens, sizeof(pens));
  auto* const record = NewRecord<VECTORPENFORMATOPTION>(FMT_HPGL);
  const VECTORPENOPTION former = record->pens;
  record->pens.uStructSize = sizeof(record->pens);
  auto* const bytes = reinterpret_cast<uint8_t*>(&record->pens);
  bytes[4] = static_cast<uint8_t>(bytes[4] + 5);  // width of the first pen
  {
    const FormatSettings settings(entry, option);
    GetVectorPenOptions(&pens, sizeof(pens));
    EXPECT_EQ(0, memcmp(&pens, &record->pens, sizeof(pens)));
  }
  GetVectorPenOptions(&pens, sizeof(pens));
  EXPECT_EQ(0, memcmp(&pens, &former, sizeof(pens)));
}

TEST_F(FormatSettingsOf, AnyOtherFormatAreNone) {
  entry.format = FMT_JPEG;
  SetLoadDpi(96, 97);
  {
    const FormatSettings settings(entry, option);
    EXPECT_EQ(0u, info.flags);
  }
  int32_t x = 0, y = 0;
  GetLoadDpi(&x, &y);
  EXPECT_EQ(96, x);
}

}  // namespace
