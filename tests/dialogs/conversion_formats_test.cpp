// The File Type list of the batch conversion dialog with its bit depth and sub type boxes.
#include "services/zvdlgbase/zvdlgbase.h"
#include "tests/dialogs/conversion_fixture.h"

namespace {

using namespace zvtest;

constexpr int32_t kJpeg = 0;
constexpr int32_t kPng = 1;
constexpr int32_t kTiff = 2;

class ConversionFormats : public ConversionDialog {
 protected:
  static std::vector<std::wstring> Items(HWND dialog, int combo) {
    std::vector<std::wstring> items;
    for (int i = 0; i < ComboCount(dialog, combo); ++i) {
      items.push_back(ComboText(dialog, combo, i));
    }
    return items;
  }
  static std::wstring Selected(HWND dialog, int combo) {
    return ComboText(dialog, combo, ComboSelection(dialog, combo));
  }
  static void Choose(HWND dialog, const std::vector<int>& rows) { SelectListBoxRows(dialog, IDL_CONV_FORMATS, rows); }
};

TEST_F(ConversionFormats, OffersTheWholeCatalogueByDefault) {
  std::vector<std::wstring> expected;
  for (int32_t position = GetFirstFormatPosition(); position >= 0;) {
    FORMATINFO info = {};
    info.uStructSize = sizeof info;
    ASSERT_EQ(SUCCESS, GetNextFormat(&info, &position));
    if (IsFormatExcludedFromList(info.fileFormat)) {
      continue;
    }
    wchar_t name[128] = L"";
    ASSERT_EQ(SUCCESS, GetDialogStringText(static_cast<uint32_t>(info.nameStringId), name, 128));
    expected.push_back(name);
  }
  RunAndClose([&](HWND dialog) {
    std::vector<std::wstring> offered;
    for (int row = 0; row < ListBoxCount(dialog, IDL_CONV_FORMATS); ++row) {
      offered.push_back(ListBoxText(dialog, IDL_CONV_FORMATS, row));
    }
    EXPECT_EQ(expected, offered);
  });
}

TEST_F(ConversionFormats, OffersTheGivenFormatsAloneAndInTheirOrder) {
  Offer({kPng, kJpeg});
  RunAndClose([](HWND dialog) {
    ASSERT_EQ(2, ListBoxCount(dialog, IDL_CONV_FORMATS));
    EXPECT_EQ(0u, ListBoxText(dialog, IDL_CONV_FORMATS, 1).find(L"J"));
    EXPECT_EQ(1, ::SendMessageW(Control(dialog, IDL_CONV_FORMATS), LB_GETSEL, 0, 0));
    EXPECT_EQ(0, ::SendMessageW(Control(dialog, IDL_CONV_FORMATS), LB_GETSEL, 1, 0));
  });
}

TEST_F(ConversionFormats, ANegativeFormatCountMeansTheWholeCatalogue) {
  Offer({kPng});
  params.formatCount = -1;
  RunAndClose([](HWND dialog) { EXPECT_GT(ListBoxCount(dialog, IDL_CONV_FORMATS), 1); });
}

TEST_F(ConversionFormats, StartsAtTheDefaultDepthOfTheFirstFormat) {
  FORMATINFO info = {};
  info.uStructSize = sizeof info;
  ASSERT_EQ(SUCCESS, GetFormatInfo(kTiff, &info));
  Offer({kTiff});
  RunAndClose([&](HWND dialog) {
    EXPECT_EQ(std::to_wstring(info.defaultBitsPerPixel), Selected(dialog, IDC_CONV_BPP));
    EXPECT_TRUE(IsEnabled(dialog, IDC_CONV_BPP));
    EXPECT_EQ(0, ComboSelection(dialog, IDC_CONV_SUBTYPE));
    EXPECT_TRUE(IsEnabled(dialog, IDC_CONV_SUBTYPE));
  });
}

TEST_F(ConversionFormats, AFormatWithoutSubtypesDisablesTheirBox) {
  Offer({kPng});
  RunAndClose([](HWND dialog) {
    EXPECT_EQ(0, ComboCount(dialog, IDC_CONV_SUBTYPE));
    EXPECT_FALSE(IsEnabled(dialog, IDC_CONV_SUBTYPE));
    EXPECT_TRUE(IsEnabled(dialog, IDC_CONV_BPP));
  });
}

TEST_F(ConversionFormats, ADepthWithOneSubtypeShowsItDisabled) {
  Offer({kJpeg});
  RunAndClose([](HWND dialog) {
    EXPECT_EQ(3, ComboCount(dialog, IDC_CONV_SUBTYPE));
    SelectCombo(dialog, IDC_CONV_BPP, 1);
    ASSERT_EQ(1, ComboCount(dialog, IDC_CONV_SUBTYPE));
    EXPECT_EQ(0, ComboSelection(dialog, IDC_CONV_SUBTYPE));
    EXPECT_FALSE(IsEnabled(dialog, IDC_CONV_SUBTYPE));
  });
}

TEST_F(ConversionFormats, GivenDepthsAndSubtypesRestrictTheBoxes) {
  const FILECONVERSIONBPP depths[] = {{0, 24, 0x5}, {0, 8, 0}};
  Offer({kJpeg});
  offered[0].bpps = depths;
  offered[0].bppCount = 2;
  RunAndClose([](HWND dialog) {
    EXPECT_EQ((std::vector<std::wstring>{L"24", L"8"}), Items(dialog, IDC_CONV_BPP));
    EXPECT_EQ((std::vector<std::wstring>{L"YUV 4:4:4", L"YUV 4:2:0"}), Items(dialog, IDC_CONV_SUBTYPE));
    SelectCombo(dialog, IDC_CONV_BPP, 1);
    EXPECT_EQ(1, ComboCount(dialog, IDC_CONV_SUBTYPE)) << "no mask, no restriction";
  });
}

TEST_F(ConversionFormats, ADepthThatTheFormatLacksIsShownAndDisablesTheBoxes) {
  const FILECONVERSIONBPP depths[] = {{0, 77, 0}, {0, 78, 0}};
  Offer({kPng, kTiff});
  offered[0].bpps = depths;
  offered[0].bppCount = 2;
  RunAndClose([](HWND dialog) {
    const auto expectRefused = [dialog] {
      EXPECT_EQ((std::vector<std::wstring>{L"77", L"78"}), Items(dialog, IDC_CONV_BPP));
      EXPECT_EQ(0, ComboCount(dialog, IDC_CONV_SUBTYPE));
      for (const int id : {IDC_CONV_BPP, IDC_CONV_SUBTYPE, IDB_CONV_SETTINGS}) {
        EXPECT_FALSE(IsEnabled(dialog, id)) << id;
      }
    };
    expectRefused();
    Choose(dialog, {1});
    EXPECT_TRUE(IsEnabled(dialog, IDC_CONV_SUBTYPE));
    Choose(dialog, {0});
    expectRefused();
  });
}

TEST_F(ConversionFormats, ASingleGivenDepthIsShownDisabled) {
  const FILECONVERSIONBPP depths[] = {{0, 8, 0}};
  Offer({kPng});
  offered[0].bpps = depths;
  offered[0].bppCount = 1;
  RunAndClose([](HWND dialog) {
    EXPECT_EQ(L"8", Selected(dialog, IDC_CONV_BPP));
    EXPECT_FALSE(IsEnabled(dialog, IDC_CONV_BPP));
  });
}

TEST_F(ConversionFormats, ADepthListWithoutEntriesRestrictsNothing) {
  const FILECONVERSIONBPP depths[] = {{0, 8, 0}};
  Offer({kPng});
  offered[0].bpps = depths;
  offered[0].bppCount = 0;
  RunAndClose([](HWND dialog) { EXPECT_GT(ComboCount(dialog, IDC_CONV_BPP), 1); });
}

TEST_F(ConversionFormats, SeveralChosenFormatsEmptyTheBoxes) {
  Offer({kTiff, kJpeg});
  RunAndClose([](HWND dialog) {
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_SETTINGS));
    Choose(dialog, {0, 1});
    for (const int id : {IDC_CONV_BPP, IDC_CONV_SUBTYPE}) {
      EXPECT_EQ(0, ComboCount(dialog, id));
      EXPECT_FALSE(IsEnabled(dialog, id));
    }
    EXPECT_FALSE(IsEnabled(dialog, IDB_CONV_SETTINGS));
    Choose(dialog, {1});
    EXPECT_TRUE(IsEnabled(dialog, IDC_CONV_BPP));
  });
}

TEST_F(ConversionFormats, NoChosenFormatEmptiesTheBoxes) {
  Offer({kTiff});
  RunAndClose([](HWND dialog) {
    Choose(dialog, {});
    EXPECT_EQ(0, ComboCount(dialog, IDC_CONV_BPP));
    EXPECT_FALSE(IsEnabled(dialog, IDB_CONV_SETTINGS));
  });
}

TEST_F(ConversionFormats, ASubtypeStaysWithItsFormat) {
  Offer({kTiff, kPng});
  RunAndClose([](HWND dialog) {
    SelectCombo(dialog, IDC_CONV_SUBTYPE, 2);
    const std::wstring chosen = Selected(dialog, IDC_CONV_SUBTYPE);
    Choose(dialog, {1});
    Choose(dialog, {0});
    EXPECT_EQ(chosen, Selected(dialog, IDC_CONV_SUBTYPE));
  });
}

TEST_F(ConversionFormats, SettingsNeedAnOptionThatIsOffered) {
  Offer({kTiff});
  params.uiFlags = CONVDLG_SHOW_FILE_INFO;
  RunAndClose([](HWND dialog) { EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_SETTINGS)); });
  params.uiFlags = CONVDLG_SHOW_RESIZE | CONVDLG_SHOW_PREVIEW;
  RunAndClose([](HWND dialog) { EXPECT_FALSE(IsEnabled(dialog, IDB_CONV_SETTINGS)); });
}

}  // namespace
