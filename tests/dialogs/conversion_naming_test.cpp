// The two dialogs that make naming templates, opened from the conversion dialog.
#include <windows.h>

#include <commctrl.h>

#include "resources/naming_ids.h"
#include "tests/dialogs/conversion_fixture.h"

namespace {

using namespace zvtest;

class NamingDialogs : public ConversionDialog {
 protected:
  // Opens the naming template dialog from the conversion dialog; the script must close it.
  void WithNamingDialog(const std::function<void(HWND conversion, HWND naming)>& script) {
    RunAndClose([&](HWND dialog) {
      Click(dialog, IDB_CONV_NAMING);
      script(dialog, WaitForDialogWith(IDE_NAMING_TEMPLATE));
    });
  }
  void WithRenameDialog(const std::function<void(HWND conversion, HWND rename)>& script) {
    params.overwriteMode = OVERWRITE_RENAME;
    RunAndClose([&](HWND dialog) {
      Click(dialog, IDB_CONV_CUSTOMIZE);
      script(dialog, WaitForDialogWith(IDX_RENAME_PREFIX));
    });
  }

  static void CloseWith(HWND dialog, int button) {
    Click(dialog, button);
    WaitUntilClosed(dialog);
  }
  static std::wstring Sample(HWND dialog, int row) { return ListViewText(dialog, IDL_NAMING_SAMPLES, row, 0); }
  static std::wstring RenameSample(HWND dialog, int row) { return ListViewText(dialog, IDL_RENAME_SAMPLES, row, 0); }
};

TEST_F(NamingDialogs, ShowsTheNext25NamesOfTheTemplate) {
  WithNamingDialog([](HWND, HWND naming) {
    EXPECT_EQ(L"<SRC>", TextOf(naming, IDE_NAMING_TEMPLATE));
    ASSERT_EQ(25, ListViewCount(naming, IDL_NAMING_SAMPLES));
    EXPECT_EQ(L"FileName", Sample(naming, 0));
    EXPECT_EQ(L"FileName", Sample(naming, 24));
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingDialogs, FollowsStartAndIncrementOfTheCounter) {
  WithNamingDialog([](HWND, HWND naming) {
    SetText(naming, IDE_NAMING_TEMPLATE, L"<NUM>");
    SetText(naming, IDC_NAMING_NUM_START, L"5");
    SetText(naming, IDC_NAMING_NUM_INCREMENT, L"2");
    EXPECT_EQ(L"5", Sample(naming, 0));
    EXPECT_EQ(L"7", Sample(naming, 1));
    EXPECT_EQ(L"9", Sample(naming, 2));
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingDialogs, FollowsTheCaseOfTheSourceName) {
  WithNamingDialog([](HWND, HWND naming) {
    SelectCombo(naming, IDC_NAMING_TAG, 5);
    EXPECT_TRUE(IsShown(naming, IDC_NAMING_CASE));
    SelectCombo(naming, IDC_NAMING_CASE, 1);
    EXPECT_EQ(L"FILENAME", Sample(naming, 0));
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingDialogs, ShowsOneSetOfControlsForEachTag) {
  WithNamingDialog([](HWND, HWND naming) {
    constexpr int kOneOfEachTag[] = {IDE_NAMING_NUM_MASK, IDE_NAMING_ALPHA_MASK, IDE_NAMING_ALNUM_MASK,
                                     IDC_NAMING_DATE,     IDC_NAMING_TIME,       IDC_NAMING_CASE};
    ASSERT_EQ(6, ComboCount(naming, IDC_NAMING_TAG));
    for (int tag = 0; tag < 6; ++tag) {
      SelectCombo(naming, IDC_NAMING_TAG, tag);
      for (int other = 0; other < 6; ++other) {
        EXPECT_EQ(tag == other, IsShown(naming, kOneOfEachTag[other])) << tag << " shows " << other;
      }
    }
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingDialogs, UsesLetterRangesAndUpperCase) {
  WithNamingDialog([](HWND, HWND naming) {
    SetText(naming, IDE_NAMING_TEMPLATE, L"<ALPHA>");
    SelectCombo(naming, IDC_NAMING_TAG, 1);
    SetText(naming, IDE_NAMING_ALPHA_FROM, L"b");
    SetText(naming, IDE_NAMING_ALPHA_TO, L"c");
    Check(naming, IDX_NAMING_ALPHA_UPPER, true);
    EXPECT_EQ(L"B", Sample(naming, 0));
    EXPECT_EQ(L"C", Sample(naming, 1));
    EXPECT_EQ(L"CB", Sample(naming, 2));
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingDialogs, AppendsATagFromTheMenuAfterASpace) {
  WithNamingDialog([](HWND, HWND naming) {
    Command(naming, ID_NAMING_TAG_NUM);
    WaitUntil([naming] { return TextOf(naming, IDE_NAMING_TEMPLATE) == L"<SRC> <NUM>"; }, "the tag in the template");
    EXPECT_EQ(L"FileName 1", Sample(naming, 1));
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingDialogs, LeavesATemplateAloneThatATagWouldMakeTooLong) {
  WithNamingDialog([](HWND, HWND naming) {
    const std::wstring text(97, L'x');
    SetText(naming, IDE_NAMING_TEMPLATE, text);
    ::SendMessageW(naming, WM_COMMAND, ID_NAMING_TAG_SRC, 0);
    EXPECT_EQ(text, TextOf(naming, IDE_NAMING_TEMPLATE));
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingDialogs, RefusesAnUnknownTagThoughTheSampleShowsIt) {
  WithNamingDialog([](HWND, HWND naming) {
    SetText(naming, IDE_NAMING_TEMPLATE, L"<FOO>");
    EXPECT_EQ(L"<FOO>", Sample(naming, 0));
    Click(naming, IDOK);
    Dismiss(WaitForMessageBox());
    EXPECT_TRUE(::IsWindow(naming));
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingDialogs, RefusesAnEmptyTemplate) {
  WithNamingDialog([](HWND, HWND naming) {
    SetText(naming, IDE_NAMING_TEMPLATE, L"");
    EXPECT_EQ(0, ListViewCount(naming, IDL_NAMING_SAMPLES));
    Click(naming, IDOK);
    Dismiss(WaitForMessageBox());
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingDialogs, AcceptsADateAsPartOfAName) {
  WithNamingDialog([](HWND, HWND naming) {
    SetText(naming, IDE_NAMING_TEMPLATE, L"<DATE>");
    EXPECT_FALSE(Sample(naming, 0).empty());
    CloseWith(naming, IDOK);
  });
}

TEST_F(NamingDialogs, KeepsTheTemplateOfOKAndForgetsThatOfCancel) {
  WithNamingDialog([](HWND conversion, HWND naming) {
    SetText(naming, IDE_NAMING_TEMPLATE, L"<SRC>_<NUM>");
    CloseWith(naming, IDOK);
    Click(conversion, IDB_CONV_NAMING);
    naming = WaitForDialogWith(IDE_NAMING_TEMPLATE);
    EXPECT_EQ(L"<SRC>_<NUM>", TextOf(naming, IDE_NAMING_TEMPLATE));
    SetText(naming, IDE_NAMING_TEMPLATE, L"other");
    CloseWith(naming, IDCANCEL);
    Click(conversion, IDB_CONV_NAMING);
    naming = WaitForDialogWith(IDE_NAMING_TEMPLATE);
    EXPECT_EQ(L"<SRC>_<NUM>", TextOf(naming, IDE_NAMING_TEMPLATE));
    SaveScreenshot(naming, L"naming_template");
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingDialogs, NamesTheFilesOfARunByTheTemplate) {
  AddPicture(L"one.bmp");
  AddPicture(L"two.bmp");
  WithNamingDialog([](HWND conversion, HWND naming) {
    SetText(naming, IDE_NAMING_TEMPLATE, L"<NUM>-<SRC>");
    CloseWith(naming, IDOK);
    Click(conversion, IDB_CONV_SELECT_ALL);
    ConvertAndWait(conversion);
  });
  EXPECT_EQ((std::vector<std::wstring>{L"0-one.jpg", L"1-two.jpg"}), Outputs());
}

TEST_F(NamingDialogs, RenameOffersTheNumberAsSuffixAtFirst) {
  WithRenameDialog([](HWND, HWND rename) {
    EXPECT_TRUE(IsChecked(rename, IDX_RENAME_SUFFIX));
    EXPECT_EQ(3, ComboCount(rename, IDC_RENAME_TAG));
    EXPECT_EQ(L"FileName0", RenameSample(rename, 0));
    EXPECT_EQ(L"FileName24", RenameSample(rename, 24));
    SaveScreenshot(rename, L"rename");
    CloseWith(rename, IDCANCEL);
  });
}

TEST_F(NamingDialogs, RenamePutsTheTagInFront) {
  WithRenameDialog([](HWND, HWND rename) {
    Click(rename, IDX_RENAME_PREFIX);
    SelectCombo(rename, IDC_RENAME_TAG, 1);
    EXPECT_EQ(L"aFileName", RenameSample(rename, 0));
    EXPECT_EQ(L"bFileName", RenameSample(rename, 1));
    CloseWith(rename, IDCANCEL);
  });
}

TEST_F(NamingDialogs, RenameWritesLettersOfAMixedCounterInUpperCase) {
  WithRenameDialog([](HWND, HWND rename) {
    Click(rename, IDX_RENAME_PREFIX);
    SelectCombo(rename, IDC_RENAME_TAG, 2);
    Check(rename, IDX_RENAME_ALNUM_UPPER, true);
    EXPECT_EQ(L"AFileName", RenameSample(rename, 10));
    CloseWith(rename, IDCANCEL);
  });
}

TEST_F(NamingDialogs, RenameOpensWithSuffixAgainAfterPrefixWasChosen) {
  WithRenameDialog([](HWND conversion, HWND rename) {
    Click(rename, IDX_RENAME_PREFIX);
    CloseWith(rename, IDOK);
    Click(conversion, IDB_CONV_CUSTOMIZE);
    rename = WaitForDialogWith(IDX_RENAME_PREFIX);
    EXPECT_TRUE(IsChecked(rename, IDX_RENAME_SUFFIX));
    CloseWith(rename, IDCANCEL);
  });
}

}  // namespace
