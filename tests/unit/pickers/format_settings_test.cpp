#include "pickers/format_settings.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "services/zvdlgbase/zvdlgbase.h"
#include "tests/support/import_patch.h"

namespace {

using zvtest::ImportPatch;

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

// The library reads no format of these classes, so a number stands in for each.
constexpr int32_t kPdfStandIn = 9001, kXpsStandIn = 9002, kXlsStandIn = 9003;
int32_t IsPdfStandIn(int32_t format) { return format == kPdfStandIn; }
int32_t IsXpsStandIn(int32_t format) { return format == kXpsStandIn; }
int32_t IsXlsStandIn(int32_t format) { return format == kXlsStandIn; }

class DocumentSettings : public FormatSettingsOf {
 protected:
  ImportPatch pdf{nullptr, "IsPDFFormat", &IsPdfStandIn};
  ImportPatch xps{nullptr, "IsXPSFormat", &IsXpsStandIn};
  ImportPatch xls{nullptr, "IsXLSFormat", &IsXlsStandIn};
};

TEST_F(DocumentSettings, HaveRecordsOfTheirOwnSize) {
  const std::pair<int32_t, size_t> sizes[] = {
      {kVectorViewFormat, 80}, {kPdfStandIn, 652}, {kVectorBackgroundFormat, 84},
      {FMT_HPGL, 152},         {FMT_WMF, 12},      {FMT_ICO, 12},
      {kXpsStandIn, 16},       {kXlsStandIn, 12}};
  for (const auto& [format, size] : sizes) {
    void* options = nullptr;
    EXPECT_TRUE(MakeFormatOptions(format, &options));
    EXPECT_EQ(size, ::GlobalSize(options)) << format;
    ::GlobalFree(options);
  }
  void* options = &info;
  EXPECT_TRUE(MakeFormatOptions(FMT_PNG, &options));
  EXPECT_EQ(nullptr, options);
}

TEST_F(DocumentSettings, OfAPdfFileAreSetForALoadAndPutBack) {
  PDFLOADOPTION former = {};
  GetPDFLoadOptions(&former, sizeof(former));
  auto* const record = NewRecord<PDFFORMATOPTION>(kPdfStandIn);
  EXPECT_EQ(0, memcmp(&former, &record->pdf, sizeof(former))) << "a new record holds what is in force";
  record->pdf.xResolution = former.xResolution + 100;
  PDFLOADOPTION now = {};
  {
    const FormatSettings settings(entry, option);
    GetPDFLoadOptions(&now, sizeof(now));
    EXPECT_EQ(former.xResolution + 100, now.xResolution);
  }
  GetPDFLoadOptions(&now, sizeof(now));
  EXPECT_EQ(0, memcmp(&former, &now, sizeof(former)));
}

TEST_F(DocumentSettings, OfAnXpsFileAreSetForALoadAndPutBack) {
  XPSLOADOPTION former = {};
  GetXPSLoadOptions(&former, sizeof(former));
  auto* const record = NewRecord<XPSFORMATOPTION>(kXpsStandIn);
  EXPECT_EQ(0, memcmp(&former, &record->xps, sizeof(former)));
  record->xps.yResolution = former.yResolution + 7;
  XPSLOADOPTION now = {};
  {
    const FormatSettings settings(entry, option);
    GetXPSLoadOptions(&now, sizeof(now));
    EXPECT_EQ(former.yResolution + 7, now.yResolution);
  }
  GetXPSLoadOptions(&now, sizeof(now));
  EXPECT_EQ(0, memcmp(&former, &now, sizeof(former)));
}

TEST_F(DocumentSettings, OfAWorkbookAreSetForALoadAndPutBack) {
  XLSLOADOPTION former = {};
  GetXLSLoadOptions(&former, sizeof(former));
  auto* const record = NewRecord<XLSFORMATOPTION>(kXlsStandIn);
  EXPECT_EQ(0, memcmp(&former, &record->xls, sizeof(former)));
  record->xls.flags = former.flags ^ 1;
  XLSLOADOPTION now = {};
  {
    const FormatSettings settings(entry, option);
    GetXLSLoadOptions(&now, sizeof(now));
    EXPECT_EQ(former.flags ^ 1, now.flags);
  }
  GetXLSLoadOptions(&now, sizeof(now));
  EXPECT_EQ(0, memcmp(&former, &now, sizeof(former)));
}

// What the file library is asked about the file.
struct InfoQuestion {
  std::wstring path;
  FILEINFO* info;
  uint32_t recordSize;
  uint32_t flags;
  const LOADFILEOPTION* option;
};
std::vector<InfoQuestion> questions;
int32_t TakeQuestion(const ZVCHAR* path, FILEINFO* info, uint32_t recordSize, uint32_t flags,
                     const LOADFILEOPTION* option) {
  questions.push_back({path, info, recordSize, flags, option});
  return SUCCESS;
}

TEST_F(DocumentSettings, AskAnewAboutAFileWhoseSizeTheyDecide) {
  const ImportPatch ask(nullptr, "GetFileInfo", &TakeQuestion);
  std::wcscpy(entry.fileName, L"C:\\document");
  option.pageNumber = 3;
  for (const int32_t format : {int32_t{FMT_WMF}, kPdfStandIn, kXpsStandIn, kXlsStandIn}) {
    ::GlobalFree(entry.formatOptions);
    NewRecord<void>(format);
    questions.clear();
    const FormatSettings settings(entry, option);
    ASSERT_EQ(1u, questions.size()) << format;
    EXPECT_EQ(L"C:\\document", questions[0].path);
    EXPECT_EQ(&info, questions[0].info) << "the entry's own";
    EXPECT_EQ(2212u, questions[0].recordSize);
    EXPECT_EQ(0u, questions[0].flags);
    EXPECT_EQ(&option, questions[0].option);
  }
}

TEST_F(DocumentSettings, AskNothingAboutAnyOtherFile) {
  const ImportPatch ask(nullptr, "GetFileInfo", &TakeQuestion);
  questions.clear();
  for (const int32_t format :
       {kVectorViewFormat, kVectorBackgroundFormat, int32_t{FMT_HPGL}, int32_t{FMT_ICO}, int32_t{FMT_PNG}}) {
    ::GlobalFree(entry.formatOptions);
    NewRecord<void>(format);
    const FormatSettings settings(entry, option);
    EXPECT_TRUE(questions.empty()) << format;
  }
}

// What the file library is told of fonts.
FONTSUBSTITUTIONCALLBACK substitute = nullptr;
void* substituteUserData = nullptr;
int resets = 0;
int32_t TakeSubstitution(FONTSUBSTITUTIONCALLBACK callback, void* userData) {
  substitute = callback;
  substituteUserData = userData;
  return SUCCESS;
}
int32_t CountReset() {
  ++resets;
  return SUCCESS;
}

TEST_F(FormatSettingsOf, ADrawingGiveItsFaceToEveryFont) {
  const ImportPatch set(nullptr, "SetVectorFontSubstitution", &TakeSubstitution);
  const ImportPatch reset(nullptr, "ResetVectorFontSubstitution", &CountReset);
  for (const int32_t format : {kVectorViewFormat, kVectorBackgroundFormat, int32_t{FMT_HPGL}}) {
    ::GlobalFree(entry.formatOptions);
    auto* const record = NewRecord<VECTORFORMATOPTION>(format);
    for (const wchar_t* const face : {L"Some Face", L""}) {
      std::wcscpy(record->faceName, face);
      resets = 0;
      {
        const FormatSettings settings(entry, option);
        LOGFONTW font = {.lfHeight = 12};
        std::wcscpy(font.lfFaceName, L"Of the drawing");
        ASSERT_NE(nullptr, substitute);
        EXPECT_EQ(SUCCESS, substitute(&font, substituteUserData));
        EXPECT_STREQ(face, font.lfFaceName);
        EXPECT_EQ(12, font.lfHeight);
        EXPECT_EQ(0, resets);
      }
      EXPECT_EQ(1, resets);
    }
  }
}

}  // namespace
