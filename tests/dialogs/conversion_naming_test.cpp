// The two dialogs that make naming templates, opened from the conversion dialog.
#include <ctime>
#include <cwchar>

#include "tests/dialogs/naming_fixture.h"

namespace {

using namespace zvtest;

// As the long date form has it.
std::wstring Today() {
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  localtime_s(&local, &now);
  wchar_t text[128] = L"";
  std::wcsftime(text, 128, L"%A, %B %d, %Y", &local);
  return text;
}

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

TEST_F(NamingDialogs, StartsAnEmptyTemplateWithATagFromTheMenu) {
  WithNamingDialog([](HWND, HWND naming) {
    SetText(naming, IDE_NAMING_TEMPLATE, L"");
    ::SendMessageW(naming, WM_COMMAND, ID_NAMING_TAG_DATE, 0);
    EXPECT_EQ(L"<DATE>", TextOf(naming, IDE_NAMING_TEMPLATE));
    const HWND edit = Control(naming, IDE_NAMING_TEMPLATE);
    EXPECT_EQ(edit, FocusOf(naming));
    EXPECT_EQ(MAKELONG(6, 6), ::SendMessageW(edit, EM_GETSEL, 0, 0)) << "the caret stands at the end";
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingDialogs, TakesATagThatFillsTheTemplateToItsLastCharacter) {
  WithNamingDialog([](HWND, HWND naming) {
    SetText(naming, IDE_NAMING_TEMPLATE, std::wstring(94, L'x'));
    ::SendMessageW(naming, WM_COMMAND, ID_NAMING_TAG_SRC, 0);
    EXPECT_EQ(std::wstring(94, L'x') + L" <SRC>", TextOf(naming, IDE_NAMING_TEMPLATE));
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
    ::PostMessageW(naming, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(naming, IDC_NAMING_TAG)), TRUE);
    Click(naming, IDOK);
    const HWND box = WaitForMessageBox();
    EXPECT_EQ(KernelText(910), TextOf(box, 0xffff));
    EXPECT_EQ(KernelText(911), TextOf(box));
    Dismiss(box);
    WaitUntil([naming] { return FocusOf(naming) == Control(naming, IDE_NAMING_TEMPLATE); }, "focus on the template");
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

// The day may change while the dialog is open.
TEST_F(NamingDialogs, AcceptsTodaysDateAsPartOfAName) {
  WithNamingDialog([](HWND, HWND naming) {
    const std::wstring before = Today();
    SetText(naming, IDE_NAMING_TEMPLATE, L"<DATE>");
    const std::wstring after = Today();
    EXPECT_TRUE(Sample(naming, 0) == before || Sample(naming, 0) == after);
    EXPECT_EQ(25, ListViewCount(naming, IDL_NAMING_SAMPLES));
    CloseWith(naming, IDOK);
  });
}

TEST_F(NamingDialogs, KeepsTheTemplateOfOKAndForgetsThatOfCancel) {
  WithNamingDialog([](HWND conversion, HWND naming) {
    SetText(naming, IDE_NAMING_TEMPLATE, L"<SRC>_<NUM>");
    CloseWith(naming, IDOK);
    naming = OpenNaming(conversion);
    EXPECT_EQ(L"<SRC>_<NUM>", TextOf(naming, IDE_NAMING_TEMPLATE));
    SetText(naming, IDE_NAMING_TEMPLATE, L"other");
    CloseWith(naming, IDCANCEL);
    naming = OpenNaming(conversion);
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
    ClickAndWait(conversion, IDB_CONV_SELECT_ALL);
    ConvertAndWait(conversion);
  });
  EXPECT_EQ((std::vector<std::wstring>{L"0-one.jpg", L"1-two.jpg"}), Outputs());
}

TEST_F(NamingDialogs, NumbersTheFilesOfEachRunFromTheStart) {
  AddPicture(L"one.bmp");
  AddPicture(L"two.bmp");
  params.overwriteMode = OVERWRITE_REPLACE;
  const std::vector<std::wstring> expected = {L"5-one.jpg", L"7-two.jpg"};
  WithNamingDialog([&](HWND conversion, HWND naming) {
    SetText(naming, IDE_NAMING_TEMPLATE, L"<NUM>-<SRC>");
    SetText(naming, IDC_NAMING_NUM_START, L"5");
    SetText(naming, IDC_NAMING_NUM_INCREMENT, L"2");
    CloseWith(naming, IDOK);
    ClickAndWait(conversion, IDB_CONV_SELECT_ALL);
    ConvertAndWait(conversion);
    EXPECT_EQ(expected, Outputs());
    for (const std::wstring& name : expected) {
      EXPECT_TRUE(::DeleteFileW(out.File(name).c_str())) << "so that the next run shows what it writes";
    }
    ConvertAndWait(conversion);
    EXPECT_EQ(expected, Outputs());
    ConvertAndWait(conversion);
    EXPECT_EQ(expected, Outputs()) << "in place of the files that are there";
  });
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
    ClickAndWait(rename, IDX_RENAME_PREFIX);
    SelectCombo(rename, IDC_RENAME_TAG, 1);
    EXPECT_EQ(L"aFileName", RenameSample(rename, 0));
    EXPECT_EQ(L"bFileName", RenameSample(rename, 1));
    CloseWith(rename, IDCANCEL);
  });
}

TEST_F(NamingDialogs, RenameWritesLettersOfAMixedCounterInUpperCase) {
  WithRenameDialog([](HWND, HWND rename) {
    ClickAndWait(rename, IDX_RENAME_PREFIX);
    SelectCombo(rename, IDC_RENAME_TAG, 2);
    Check(rename, IDX_RENAME_ALNUM_UPPER, true);
    EXPECT_EQ(L"AFileName", RenameSample(rename, 10));
    CloseWith(rename, IDCANCEL);
  });
}

TEST_F(NamingDialogs, RenameOpensWithSuffixAgainAfterPrefixWasChosen) {
  WithRenameDialog([](HWND conversion, HWND rename) {
    ClickAndWait(rename, IDX_RENAME_PREFIX);
    CloseWith(rename, IDOK);
    rename = OpenRename(conversion);
    EXPECT_TRUE(IsChecked(rename, IDX_RENAME_SUFFIX));
    EXPECT_EQ(L"FileName0", RenameSample(rename, 0));
    CloseWith(rename, IDCANCEL);
  });
}

// The prefix of the first OK holds for a run; the next OK makes the template anew from what the dialog then shows.
TEST_F(NamingDialogs, RenameOverwritesThePrefixFormWithTheSuffixFormWhenItIsOpenedAgain) {
  AddPicture(L"one.bmp");
  out.AddFile(L"one.jpg", {1});
  WithRenameDialog([](HWND conversion, HWND rename) {
    ClickAndWait(rename, IDX_RENAME_PREFIX);
    CloseWith(rename, IDOK);
    ClickAndWait(conversion, IDB_CONV_SELECT_ALL);
    ConvertAndWait(conversion);
    CloseWith(OpenRename(conversion), IDOK);
    ConvertAndWait(conversion);
  });
  EXPECT_EQ((std::vector<std::wstring>{L"0one.jpg", L"one.jpg", L"one0.jpg"}), Outputs());
}

TEST_F(NamingDialogs, RenameRefusesANameThatTheMaskSpoilsAndLeavesTheFocus) {
  WithRenameDialog([](HWND, HWND rename) {
    SelectCombo(rename, IDC_RENAME_TAG, 1);
    SetText(rename, IDE_RENAME_ALPHA_MASK, L"a:b");
    EXPECT_EQ(L"FileNamea:ba", RenameSample(rename, 0));
    Click(rename, IDOK);
    const HWND box = WaitForMessageBox();
    EXPECT_EQ(KernelText(910), TextOf(box, 0xffff));
    EXPECT_EQ(KernelText(911), TextOf(box));
    Dismiss(box);
    EXPECT_NE(Control(rename, IDE_RENAME_ALPHA_MASK), FocusOf(rename));
    CloseWith(rename, IDCANCEL);
  });
}

}  // namespace
