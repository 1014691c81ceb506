#include "services/zvdlgwidgets/bitmap_button.h"

#include "platform/dc.h"
#include "tests/unit/zvdlgwidgets/widget_host.h"

namespace {

constexpr int kButton = 104;

// A plain picture of one colour with a transparent frame of magenta.
unique_hbitmap Picture(COLORREF color) {
  const unique_window_dc screen(nullptr);
  unique_hbitmap bitmap(::CreateCompatibleBitmap(screen.get(), 16, 16));
  const unique_hdc memory(::CreateCompatibleDC(screen.get()));
  const dc_selection selected(memory.get(), bitmap.get());
  const RECT all = {0, 0, 16, 16}, inner = {2, 2, 14, 14};
  const unique_hbrush magenta(::CreateSolidBrush(RGB(255, 0, 255))), plain(::CreateSolidBrush(color));
  ::FillRect(memory.get(), &all, magenta.get());
  ::FillRect(memory.get(), &inner, plain.get());
  return bitmap;
}

class BitmapButton : public testing::Test {
 protected:
  BitmapButton() {
    button_.SubclassDlgItem(kButton, &host_);
    const unique_hbitmap picture = Picture(RGB(0, 0, 200));
    button_.SetPicture(picture.get());
  }

  // The colour in the middle of the button, as it is drawn.
  COLORREF Middle() {
    button_.RedrawWindow();
    CRect client;
    button_.GetClientRect(&client);
    const CClientDC device(&button_);
    return device.GetPixel(client.Width() / 2, client.Height() / 2);
  }
  bool ShowsColour() {
    const COLORREF color = Middle();
    return GetBValue(color) > 150 && GetRValue(color) < 50;
  }

  WidgetHost host_;
  CZVBitmapButton button_;
};

TEST_F(BitmapButton, ShowsItsPicture) { EXPECT_TRUE(ShowsColour()); }

TEST_F(BitmapButton, DisabledItShowsThePictureGreyed) {
  button_.EnableWindow(FALSE);
  const COLORREF color = Middle();
  EXPECT_EQ(GetRValue(color), GetGValue(color));
  EXPECT_FALSE(ShowsColour());
  button_.EnableWindow(TRUE);
  EXPECT_TRUE(ShowsColour());
}

TEST_F(BitmapButton, ClicksWithSpaceAndDoubleClickCountLikeAPushButtons) {
  button_.SetFocus();
  WidgetHost::Press(VK_SPACE);
  EXPECT_EQ(1, host_.CountOf(kButton, BN_CLICKED));
  const LPARAM inside = MAKELPARAM(5, 5);
  button_.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, inside);
  button_.SendMessage(WM_LBUTTONUP, 0, inside);
  button_.SendMessage(WM_LBUTTONDBLCLK, MK_LBUTTON, inside);
  button_.SendMessage(WM_LBUTTONUP, 0, inside);
  EXPECT_EQ(3, host_.CountOf(kButton, BN_CLICKED));
}

TEST_F(BitmapButton, EnterOnItPressesItAndNotTheDefaultButton) {
  host_.GotoDlgCtrl(&button_);
  WidgetHost::Press(VK_RETURN);
  EXPECT_EQ(1, host_.CountOf(kButton, BN_CLICKED));
  EXPECT_EQ(0, host_.CountOf(IDOK, BN_CLICKED));
}

TEST_F(BitmapButton, DownKeyOpensADropDownButton) {
  button_.SetFocus();
  button_.SetStyleEx(ZVBBS_DROPDOWN);
  WidgetHost::Press(VK_DOWN);
  EXPECT_EQ(1, host_.CountOf(kButton, BN_CLICKED));
  button_.SetStyleEx(0);
  WidgetHost::Press(VK_DOWN);
  EXPECT_EQ(1, host_.CountOf(kButton, BN_CLICKED)) << "elsewhere the key moves on to the next control";
}

TEST_F(BitmapButton, MissingResourceIsToldAndLeavesAPlainButton) {
  EXPECT_FALSE(button_.LoadBitmap(9999));
  EXPECT_FALSE(button_.LoadDisabledBitmap(9999));
  EXPECT_FALSE(ShowsColour());
}

TEST_F(BitmapButton, TextIsReadableForOtherPrograms) { EXPECT_STREQ(L"Picture", TextOf(button_)); }

TEST_F(BitmapButton, ToolTipAppearsWithATextAndGoesWithTheButton) {
  button_.SetToolTipText(L"Add files");
  const HWND tip = ::FindWindowW(TOOLTIPS_CLASSW, nullptr);
  ASSERT_NE(nullptr, tip);
  TTTOOLINFOW tool{};
  tool.cbSize = sizeof tool;
  wchar_t text[80] = L"";
  tool.lpszText = text;
  ASSERT_TRUE(::SendMessageW(tip, TTM_ENUMTOOLSW, 0, reinterpret_cast<LPARAM>(&tool)));
  tool.lpszText = text;
  ::SendMessageW(tip, TTM_GETTEXTW, 80, reinterpret_cast<LPARAM>(&tool));
  EXPECT_STREQ(L"Add files", text);
  EXPECT_EQ(reinterpret_cast<UINT_PTR>(button_.m_hWnd), tool.uId);
}

}  // namespace
