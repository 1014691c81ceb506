// The parameters of the tags in the two naming dialogs: their limits, what an emptied place counts as, and the tag menu.
#include "services/zvdlgwidgets/value_combo.h"
#include "tests/dialogs/naming_fixture.h"

namespace {

using namespace zvtest;

class NamingSettings : public NamingDialogs {};

LRESULT Ask(HWND dialog, int control, UINT message) { return ::SendMessageW(Control(dialog, control), message, 0, 0); }

TEST_F(NamingSettings, LimitTheTemplateAndTheMasks) {
  WithNamingDialog([](HWND, HWND naming) {
    EXPECT_EQ(100, Ask(naming, IDE_NAMING_TEMPLATE, EM_GETLIMITTEXT));
    for (const int mask : {IDE_NAMING_NUM_MASK, IDE_NAMING_ALPHA_MASK, IDE_NAMING_ALNUM_MASK}) {
      EXPECT_EQ(260, Ask(naming, mask, EM_GETLIMITTEXT)) << mask;
    }
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingSettings, TakeDigitsAloneForTheMaskOfANumber) {
  WithNamingDialog([](HWND, HWND naming) {
    for (const wchar_t character : {L'0', L'a', L'0', L'-'}) {
      ::SendMessageW(Control(naming, IDE_NAMING_NUM_MASK), WM_CHAR, character, 1);
      ::SendMessageW(Control(naming, IDE_NAMING_ALPHA_MASK), WM_CHAR, character, 1);
    }
    EXPECT_EQ(L"00", TextOf(naming, IDE_NAMING_NUM_MASK));
    EXPECT_EQ(L"0a0-", TextOf(naming, IDE_NAMING_ALPHA_MASK));
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingSettings, KeepIncrementAndStartWithin0And1000) {
  constexpr std::pair<int, int> kCombos[] = {{IDC_NAMING_NUM_INCREMENT, 1},   {IDC_NAMING_NUM_START, 0},
                                             {IDC_NAMING_ALPHA_INCREMENT, 1}, {IDC_NAMING_ALPHA_START, 0},
                                             {IDC_NAMING_ALNUM_INCREMENT, 1}, {IDC_NAMING_ALNUM_START, 0}};
  WithNamingDialog([&](HWND, HWND naming) {
    for (const auto& [combo, start] : kCombos) {
      EXPECT_EQ(start, Ask(naming, combo, ZVVCM_GETVALUE)) << combo;
      EXPECT_EQ(0, Ask(naming, combo, ZVVCM_GETMINIMUM)) << combo;
      EXPECT_EQ(1000, Ask(naming, combo, ZVVCM_GETMAXIMUM)) << combo;
    }
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingSettings, TheMaskIsAPrefixThatLimitsTheNumber) {
  WithNamingDialog([](HWND, HWND naming) {
    SetText(naming, IDE_NAMING_TEMPLATE, L"<NUM>");
    SetText(naming, IDE_NAMING_NUM_MASK, L"00");
    SetText(naming, IDC_NAMING_NUM_START, L"99");
    EXPECT_EQ(L"0099", Sample(naming, 0));
    EXPECT_EQ(L"10", Sample(naming, 1));
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingSettings, AnEmptiedEndOfARangeCountsAsItsDefault) {
  WithNamingDialog([](HWND, HWND naming) {
    SetText(naming, IDE_NAMING_TEMPLATE, L"<ALPHA>");
    SelectCombo(naming, IDC_NAMING_TAG, 1);
    const HWND from = Control(naming, IDE_NAMING_ALPHA_FROM);
    SetText(naming, IDE_NAMING_ALPHA_FROM, L"m");
    EXPECT_EQ(L"m", Sample(naming, 0));
    ::SendMessageW(from, EM_SETSEL, 0, -1);
    ::SendMessageW(from, WM_CHAR, VK_BACK, 1);
    EXPECT_EQ(L"a", TextOf(from)) << "the prompt shows";
    EXPECT_EQ(L"a", Sample(naming, 0));
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingSettings, RangesOfDigitsAndLettersMakeOneAlphabet) {
  WithNamingDialog([](HWND, HWND naming) {
    SetText(naming, IDE_NAMING_TEMPLATE, L"<ALPHANUM>");
    SelectCombo(naming, IDC_NAMING_TAG, 2);
    SetText(naming, IDE_NAMING_ALNUM_DIGIT_FROM, L"3");
    SetText(naming, IDE_NAMING_ALNUM_DIGIT_TO, L"5");
    SetText(naming, IDE_NAMING_ALNUM_LETTER_FROM, L"x");
    SetText(naming, IDE_NAMING_ALNUM_LETTER_TO, L"y");
    EXPECT_EQ(L"3", Sample(naming, 0));
    EXPECT_EQ(L"y", Sample(naming, 4));
    EXPECT_EQ(L"43", Sample(naming, 5));
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingSettings, ATimeFormatChangesTheSampleAtOnce) {
  WithNamingDialog([](HWND, HWND naming) {
    SetText(naming, IDE_NAMING_TEMPLATE, L"<TIME>");
    SelectCombo(naming, IDC_NAMING_TAG, 4);
    ASSERT_EQ(4, ComboCount(naming, IDC_NAMING_TIME));
    const auto dashes = [naming] {
      const std::wstring text = Sample(naming, 0);
      return std::count(text.begin(), text.end(), L'-');
    };
    EXPECT_EQ(2, dashes()) << "hours, minutes and seconds";
    SelectCombo(naming, IDC_NAMING_TIME, 1);
    EXPECT_EQ(1, dashes());
    SelectCombo(naming, IDC_NAMING_TIME, 3);
    EXPECT_EQ(L'M', Sample(naming, 0).back()) << "half of the day";
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingSettings, AllOfThemAreThereAgainAfterOK) {
  WithNamingDialog([](HWND conversion, HWND naming) {
    SetText(naming, IDE_NAMING_NUM_MASK, L"007");
    SetText(naming, IDC_NAMING_ALPHA_INCREMENT, L"3");
    SetText(naming, IDE_NAMING_ALPHA_TO, L"q");
    Check(naming, IDX_NAMING_ALNUM_UPPER, true);
    SetText(naming, IDE_NAMING_ALNUM_DIGIT_FROM, L"4");
    SelectCombo(naming, IDC_NAMING_DATE, 1);
    SelectCombo(naming, IDC_NAMING_TIME, 2);
    SelectCombo(naming, IDC_NAMING_CASE, 3);
    CloseWith(naming, IDOK);
    naming = OpenNaming(conversion);
    EXPECT_EQ(L"007", TextOf(naming, IDE_NAMING_NUM_MASK));
    EXPECT_EQ(3, Ask(naming, IDC_NAMING_ALPHA_INCREMENT, ZVVCM_GETVALUE));
    EXPECT_EQ(L"a", TextOf(naming, IDE_NAMING_ALPHA_FROM));
    EXPECT_EQ(L"q", TextOf(naming, IDE_NAMING_ALPHA_TO));
    EXPECT_TRUE(IsChecked(naming, IDX_NAMING_ALNUM_UPPER));
    EXPECT_FALSE(IsChecked(naming, IDX_NAMING_ALPHA_UPPER));
    EXPECT_EQ(L"4", TextOf(naming, IDE_NAMING_ALNUM_DIGIT_FROM));
    EXPECT_EQ(1, ComboSelection(naming, IDC_NAMING_DATE));
    EXPECT_EQ(2, ComboSelection(naming, IDC_NAMING_TIME));
    EXPECT_EQ(3, ComboSelection(naming, IDC_NAMING_CASE));
    EXPECT_EQ(0, ComboSelection(naming, IDC_NAMING_TAG)) << "the first tag is shown again";
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingSettings, OfTheCollisionTemplateAreItsOwn) {
  WithRenameDialog([](HWND conversion, HWND rename) {
    SetText(rename, IDC_RENAME_NUM_START, L"40");
    EXPECT_EQ(L"FileName40", RenameSample(rename, 0));
    CloseWith(rename, IDOK);
    const HWND naming = OpenNaming(conversion);
    EXPECT_EQ(0, Ask(naming, IDC_NAMING_NUM_START, ZVVCM_GETVALUE));
    CloseWith(naming, IDCANCEL);
    rename = OpenRename(conversion);
    EXPECT_EQ(40, Ask(rename, IDC_RENAME_NUM_START, ZVVCM_GETVALUE));
    CloseWith(rename, IDCANCEL);
  });
}

TEST_F(NamingSettings, TheSampleColumnGrowsWithTheNames) {
  WithNamingDialog([](HWND, HWND naming) {
    const LRESULT before = Ask(naming, IDL_NAMING_SAMPLES, LVM_GETCOLUMNWIDTH);
    SetText(naming, IDE_NAMING_TEMPLATE, std::wstring(100, L'W'));
    const LRESULT after = Ask(naming, IDL_NAMING_SAMPLES, LVM_GETCOLUMNWIDTH);
    EXPECT_GT(after, before);
    EXPECT_LE(after, ::GetSystemMetrics(SM_CXFULLSCREEN));
    const std::wstring text = Sample(naming, 0);
    const LRESULT width = ::SendMessageW(Control(naming, IDL_NAMING_SAMPLES), LVM_GETSTRINGWIDTHW, 0,
                                         reinterpret_cast<LPARAM>(text.c_str()));
    EXPECT_GE(after, std::min<LRESULT>(width + 12, ::GetSystemMetrics(SM_CXFULLSCREEN)));
    CloseWith(naming, IDCANCEL);
  });
}

TEST_F(NamingSettings, TheTagButtonDropsAMenuOfTheSixTagsBelowItself) {
  WithNamingDialog([](HWND, HWND naming) {
    Click(naming, IDB_NAMING_TAGS);
    HWND popup = nullptr;
    WaitUntil([&] { return (popup = ::FindWindowW(L"#32768", nullptr)) && ::IsWindowVisible(popup); }, "the tag menu");
    const auto menu = reinterpret_cast<HMENU>(::SendMessageW(popup, MN_GETHMENU, 0, 0));
    constexpr UINT kCommands[] = {ID_NAMING_TAG_NUM,  ID_NAMING_TAG_ALPHA, ID_NAMING_TAG_ALPHANUM,
                                  ID_NAMING_TAG_DATE, ID_NAMING_TAG_TIME,  ID_NAMING_TAG_SRC};
    ASSERT_EQ(6, ::GetMenuItemCount(menu));
    for (int i = 0; i < 6; ++i) {
      wchar_t text[32] = L"";
      ::GetMenuStringW(menu, static_cast<UINT>(i), text, 32, MF_BYPOSITION);
      EXPECT_EQ(ComboText(naming, IDC_NAMING_TAG, i), text);
      EXPECT_EQ(kCommands[i], ::GetMenuItemID(menu, i));
    }
    RECT button, place;
    ::GetWindowRect(Control(naming, IDB_NAMING_TAGS), &button);
    ::GetWindowRect(popup, &place);
    EXPECT_EQ(button.left, place.left);
    EXPECT_EQ(button.bottom, place.top);
    ::PostMessageW(naming, WM_CANCELMODE, 0, 0);
    WaitUntil([popup] { return !::IsWindow(popup) || !::IsWindowVisible(popup); }, "the menu is gone");
    CloseWith(naming, IDCANCEL);
  });
}

}  // namespace
