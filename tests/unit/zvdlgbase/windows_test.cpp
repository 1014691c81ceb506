#include "services/zvdlgbase/zvdlgbase.h"

#include <gtest/gtest.h>

namespace {

// A top-level window that is never shown.
class HiddenWindow {
 public:
  HiddenWindow(int width, int height)
      : handle_(::CreateWindowExW(0, L"STATIC", nullptr, WS_POPUP, 300, 200, width, height, nullptr, nullptr, nullptr,
                                  nullptr)) {}
  ~HiddenWindow() { ::DestroyWindow(handle_); }

  HWND handle() const { return handle_; }
  RECT rectangle() const {
    RECT rectangle{};
    ::GetWindowRect(handle_, &rectangle);
    return rectangle;
  }

 private:
  HWND handle_;
};

RECT WorkArea() {
  RECT area{};
  ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
  return area;
}

TEST(DialogPlacing, WindowGoesToThePoint) {
  const HiddenWindow window(100, 80);
  const RECT area = WorkArea();
  ASSERT_EQ(SUCCESS, PositionDialogWindow(window.handle(), {area.left + 30, area.top + 40}));
  EXPECT_EQ(area.left + 30, window.rectangle().left);
  EXPECT_EQ(area.top + 40, window.rectangle().top);
  EXPECT_EQ(100, window.rectangle().right - window.rectangle().left);
}

TEST(DialogPlacing, WindowIsKeptInsideTheWorkArea) {
  const HiddenWindow window(100, 80);
  const RECT area = WorkArea();
  ASSERT_EQ(SUCCESS, PositionDialogWindow(window.handle(), {area.right + 5000, area.bottom - 10}));
  EXPECT_EQ(area.right, window.rectangle().right);
  EXPECT_EQ(area.bottom, window.rectangle().bottom);
  ASSERT_EQ(SUCCESS, PositionDialogWindow(window.handle(), {-5000, -5000}));
  EXPECT_EQ(area.left, window.rectangle().left);
  EXPECT_EQ(area.top, window.rectangle().top);
}

TEST(DialogPlacing, WindowLargerThanTheScreenShowsItsUpperLeftCorner) {
  const RECT area = WorkArea();
  const HiddenWindow window(area.right - area.left + 200, 80);
  ASSERT_EQ(SUCCESS, PositionDialogWindow(window.handle(), {area.left + 50, area.top}));
  EXPECT_EQ(area.left, window.rectangle().left);
}

TEST(DialogPlacing, NoWindowIsRefused) { EXPECT_EQ(ERROR_BAD_ARGUMENT, PositionDialogWindow(nullptr, {0, 0})); }

TEST(DialogFont, IsTheUsersMessageFontAndStaysTheSame) {
  const HFONT font = GetDialogFont();
  ASSERT_NE(nullptr, font);
  EXPECT_EQ(font, GetDialogFont());
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  ASSERT_TRUE(::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0));
  LOGFONTW description{};
  ASSERT_EQ(static_cast<int>(sizeof description), ::GetObjectW(font, sizeof description, &description));
  EXPECT_STREQ(metrics.lfMessageFont.lfFaceName, description.lfFaceName);
  EXPECT_EQ(metrics.lfMessageFont.lfHeight, description.lfHeight);
}

}  // namespace
