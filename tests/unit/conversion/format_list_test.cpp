// The rows of the File Type list and the quality that they keep, over real controls in a plain window. No format of the
// catalogue has depths of a fixed quality beside others and no sub types, so the test answers for the dialog kernel where
// that is tried: its own pointer takes the place of the import of that one function.
#include "conversion/format_list.h"

#include <gtest/gtest.h>

#include "tests/support/dialog_driver.h"

namespace {
int32_t depthOfFixedQuality = -1;

int32_t AnswerForKernel(int32_t format, int32_t bitsPerPixel, FORMATBPPINFO* info) {
  static const auto kernel = reinterpret_cast<decltype(&AnswerForKernel)>(
      reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"zvdlgbase.dll"), "GetFormatBppInfo")));
  const int32_t result = kernel(format, bitsPerPixel, info);
  if (result == SUCCESS && bitsPerPixel == depthOfFixedQuality) {
    info->optionFlags |= SAVEOPT_QFACTOR_ZERO;
  }
  return result;
}
}  // namespace

// The name that the linker gives to the pointer of an imported function.
extern "C" int32_t (*const __imp_GetFormatBppInfo)(int32_t, int32_t, FORMATBPPINFO*) = &AnswerForKernel;

namespace {

constexpr FILECONVERSIONFORMAT kOffered[] = {{0, 1, 0, nullptr}, {0, 2, 0, nullptr}};
enum Row { kPng = 0, kTiff = 1 };
constexpr int32_t kUserQuality = 3;

class FormatList : public ::testing::Test {
 protected:
  ~FormatList() override { depthOfFixedQuality = -1; }

  void SetUp() override {
    constexpr DWORD kCombo = WS_CHILD | CBS_DROPDOWNLIST | CBS_HASSTRINGS;
    Make(formats, L"LISTBOX", WS_CHILD | LBS_EXTENDEDSEL | LBS_HASSTRINGS);
    Make(depths, L"COMBOBOX", kCombo);
    Make(subtypes, L"COMBOBOX", kCombo);
    Make(settings, L"BUTTON", WS_CHILD | BS_PUSHBUTTON);
    list.Attach({&formats, &depths, &subtypes, &settings}, 0xffffffff, kOffered, 2);
    ASSERT_TRUE(list.Fill());
  }
  void TearDown() override { list.RemoveAll(); }

  void Make(CWnd& control, const wchar_t* windowClass, DWORD style) {
    ASSERT_TRUE(control.CreateEx(0, windowClass, L"", style, 0, 0, 200, 200, parent.hwnd(), nullptr));
  }
  void ChooseRow(int row) {
    formats.SetSel(-1, FALSE);
    formats.SetSel(row, TRUE);
    list.OnRowsChanged();
  }
  void ChooseDepth(const wchar_t* depth) {
    const int item = depths.FindStringExact(-1, depth);
    ASSERT_GE(item, 0) << depth;
    depths.SetCurSel(item);
    list.OnDepthChanged();
  }
  static int32_t DefaultQuality(int32_t fileFormat) {
    int32_t quality = 0;
    EXPECT_EQ(SUCCESS, ::GetFormatDefaultQFactor(fileFormat, &quality));
    return quality;
  }

  zvtest::ParentWindow parent;
  CListBox formats;
  CComboBox depths;
  CComboBox subtypes;
  CButton settings;
  CZVFormatList list;
};

TEST_F(FormatList, RowsStartWithTheQualityOfTheirFormat) {
  EXPECT_NE(0, DefaultQuality(FMT_PNG));
  EXPECT_EQ(DefaultQuality(FMT_PNG), list.GetItem(kPng)->qFactor);
  EXPECT_EQ(0, list.GetItem(kTiff)->qFactor) << "its first sub type has a fixed one";
}

TEST_F(FormatList, ARowKeepsItsQualityWhenItIsChosenAgain) {
  list.GetItem(kPng)->qFactor = kUserQuality;
  ChooseRow(kTiff);
  ChooseRow(kPng);
  EXPECT_EQ(kUserQuality, list.GetItem(kPng)->qFactor);
}

TEST_F(FormatList, ARowKeepsItsQualityAtAnotherDepth) {
  list.GetItem(kPng)->qFactor = kUserQuality;
  ChooseDepth(L"8");
  EXPECT_EQ(8, list.GetItem(kPng)->bitsPerPixel);
  EXPECT_EQ(kUserQuality, list.GetItem(kPng)->qFactor);
}

TEST_F(FormatList, ASubtypeBringsItsOwnQuality) {
  ChooseRow(kTiff);
  const int jpeg = subtypes.FindStringExact(-1, L"JPEG 4:4:4");
  ASSERT_GE(jpeg, 0);
  subtypes.SetCurSel(jpeg);
  list.OnSubtypeChanged();
  EXPECT_EQ(DefaultQuality(FMT_TIFF_JPEG), list.GetItem(kTiff)->qFactor);
  list.GetItem(kTiff)->qFactor = kUserQuality;
  list.OnSubtypeChanged();
  EXPECT_EQ(DefaultQuality(FMT_TIFF_JPEG), list.GetItem(kTiff)->qFactor);
}

TEST_F(FormatList, ADepthOfFixedQualityPutsItToZeroAndTheNextOneBackToTheDefault) {
  depthOfFixedQuality = 8;
  list.GetItem(kPng)->qFactor = kUserQuality;
  ChooseDepth(L"8");
  EXPECT_EQ(0, list.GetItem(kPng)->qFactor);
  ChooseDepth(L"24");
  EXPECT_EQ(DefaultQuality(FMT_PNG), list.GetItem(kPng)->qFactor);
}

}  // namespace
