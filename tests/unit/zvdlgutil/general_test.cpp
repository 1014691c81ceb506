#include "services/zvdlgutil/general.h"

#include <gmock/gmock.h>

#include "platform/win32.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(General, CentimetersAndInchesConvertBothWays) {
  EXPECT_DOUBLE_EQ(1.0, CZVGeneral::CentimeterToInch(2.54));
  EXPECT_DOUBLE_EQ(25.4, CZVGeneral::InchToCentimeter(10));
  EXPECT_DOUBLE_EQ(7.25, CZVGeneral::CentimeterToInch(CZVGeneral::InchToCentimeter(7.25)));
}

TEST(General, FlagsArrayHoldsTheSingleBitsOfTheMask) {
  EXPECT_THAT(CZVGeneral::ConvertToFlagsArray(0b1011, 4), ElementsAre(1, 2, 8));
  EXPECT_THAT(CZVGeneral::ConvertToFlagsArray(0, 32), IsEmpty());
}

TEST(General, FlagsArrayLooksAtTheLowestBitsAlone) {
  EXPECT_THAT(CZVGeneral::ConvertToFlagsArray(0xFF, 3), ElementsAre(1, 2, 4));
  EXPECT_THAT(CZVGeneral::ConvertToFlagsArray(0xFF, 0), IsEmpty());
  EXPECT_THAT(CZVGeneral::ConvertToFlagsArray(0xFF, -1), IsEmpty());
  EXPECT_THAT(CZVGeneral::ConvertToFlagsArray(0x80000001, 100), ElementsAre(1, INT32_MIN));
}

// Counts the messages that reach it.
class CountingWindow {
 public:
  CountingWindow() {
    handle_ = ::CreateWindowExW(0, L"STATIC", nullptr, WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    ::SetWindowLongPtrW(handle_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    ::SetWindowLongPtrW(handle_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure));
  }
  ~CountingWindow() { ::DestroyWindow(handle_); }

  void Post(UINT message) { ::PostMessageW(handle_, message, 0, 0); }

  int count = 0;
  bool endless = false;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const self = reinterpret_cast<CountingWindow*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_APP) {
      ++self->count;
      if (self->endless) {
        self->Post(WM_APP);
      }
      return 0;
    }
    return ::DefWindowProcW(window, message, wParam, lParam);
  }

  HWND handle_;
};

TEST(General, WaitForAppIdleHandlesWhatWaits) {
  CountingWindow window;
  for (int i = 0; i < 5; ++i) {
    window.Post(WM_APP);
  }
  CZVGeneral::WaitForAppIdle();
  EXPECT_EQ(5, window.count);
}

TEST(General, WaitForAppIdleLeavesAQuitMessageForTheLoopOutside) {
  CountingWindow window;
  ::PostQuitMessage(42);
  CZVGeneral::WaitForAppIdle();
  MSG message;
  ASSERT_TRUE(::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(42u, message.wParam);
}

TEST(General, WaitForAppIdleReturnsFromAStreamWithoutEnd) {
  CountingWindow window;
  window.endless = true;
  window.Post(WM_APP);
  CZVGeneral::WaitForAppIdle();
  EXPECT_GT(window.count, 1);
  window.endless = false;
  CZVGeneral::WaitForAppIdle();
}

}  // namespace
