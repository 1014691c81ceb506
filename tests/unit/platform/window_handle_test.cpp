// What a wrapper without a window does not do: the platform takes a null window for the desktop, or for the calling thread.
#include "platform/window_handle.h"

#include <gtest/gtest.h>

#include "tests/support/dialog_driver.h"

namespace {

class WithoutWindow : public ::testing::Test {
 protected:
  WithoutWindow() {
    ::UpdateWindow(other.hwnd());
    zvtest::WaitUntil([this] { return !NeedsPaint(); }, "the other window is painted");
  }

  bool NeedsPaint() const {
    MSG message;
    while (::PeekMessageW(&message, other.hwnd(), 0, 0, PM_REMOVE | PM_QS_SENDMESSAGE | PM_QS_POSTMESSAGE)) {
      ::DispatchMessageW(&message);
    }
    return ::GetUpdateRect(other.hwnd(), nullptr, FALSE) != FALSE;
  }

  zvtest::ParentWindow other;
  WindowHandle handle;
};

TEST_F(WithoutWindow, NothingIsPaintedAnew) {
  handle.Invalidate();
  EXPECT_FALSE(NeedsPaint()) << "Invalidate";
  const RECT part = {0, 0, 4000, 4000};
  handle.InvalidateRect(&part);
  EXPECT_FALSE(NeedsPaint()) << "InvalidateRect";
  EXPECT_FALSE(handle.RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN));
  EXPECT_FALSE(NeedsPaint()) << "RedrawWindow";
  handle.ValidateRect(nullptr);
  EXPECT_FALSE(NeedsPaint()) << "ValidateRect";
}

TEST_F(WithoutWindow, NoMessageGoesToTheThread) {
  EXPECT_FALSE(handle.PostMessage(WM_APP));
  MSG message;
  EXPECT_FALSE(::PeekMessageW(&message, nullptr, WM_APP, WM_APP, PM_REMOVE));
}

TEST_F(WithoutWindow, NoTimerOfTheThreadIsSetOrStopped) {
  EXPECT_EQ(0u, handle.SetTimer(1, 60'000));
  const UINT_PTR timer = ::SetTimer(nullptr, 0, 60'000, nullptr);
  EXPECT_FALSE(handle.KillTimer(timer));
  EXPECT_TRUE(::KillTimer(nullptr, timer)) << "it still ran";
}

TEST_F(WithoutWindow, AnotherWindowsLockStays) {
  ASSERT_TRUE(::LockWindowUpdate(other.hwnd()));
  EXPECT_FALSE(handle.LockWindowUpdate());
  EXPECT_FALSE(::LockWindowUpdate(other.hwnd())) << "it is locked already";
  ::LockWindowUpdate(nullptr);
}

}  // namespace
