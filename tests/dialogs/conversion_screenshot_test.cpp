// Pictures of the batch conversion dialogs, for the eye, and the layout faults that a machine can see: texts that do not fit
// their control, controls that overlap or stand outside the dialog.
#include "tests/dialogs/conversion_fixture.h"

namespace {

using namespace zvtest;

class ConversionLayout : public ConversionDialog {
 protected:
  // The layout is that of the system's resolution, not of 96 dpi stretched.
  static void SetUpTestSuite() { ::SetProcessDPIAware(); }

  static std::wstring ClassOf(HWND window) {
    wchar_t name[64] = L"";
    ::GetClassNameW(window, name, 64);
    return name;
  }
  static bool IsGroupBox(HWND window) {
    return ClassOf(window) == L"Button" && (::GetWindowLongW(window, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX;
  }
  static SIZE TextSize(HWND control) {
    const HDC device = ::GetDC(control);
    const HGDIOBJ former = ::SelectObject(device, reinterpret_cast<HFONT>(::SendMessageW(control, WM_GETFONT, 0, 0)));
    const std::wstring text = TextOf(control);
    RECT area = {0, 0, 10000, 0};
    ::DrawTextW(device, text.c_str(), -1, &area, DT_CALCRECT | DT_SINGLELINE);
    ::SelectObject(device, former);
    ::ReleaseDC(control, device);
    return {area.right, area.bottom};
  }

  // Buttons and one-line labels hold their whole text.
  static void ExpectTextsFit(HWND dialog) {
    for (HWND child = ::GetWindow(dialog, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
      const std::wstring kind = ClassOf(child);
      if (!::IsWindowVisible(child) || (kind != L"Button" && kind != L"Static")) {
        continue;
      }
      RECT client;
      ::GetClientRect(child, &client);
      const LONG style = ::GetWindowLongW(child, GWL_STYLE) & BS_TYPEMASK;
      if (kind == L"Button" && style == BS_OWNERDRAW) {
        continue;  // a picture; its text is for screen readers
      }
      const bool hasBox =
          kind == L"Button" && style != BS_PUSHBUTTON && style != BS_DEFPUSHBUTTON && !IsGroupBox(child);
      const bool wraps =
          kind == L"Static" && (style & SS_TYPEMASK) == SS_LEFT && client.bottom > 2 * TextSize(child).cy;
      const int box = hasBox ? ::GetSystemMetrics(SM_CXMENUCHECK) + 4 : 0;
      if (!wraps) {
        EXPECT_LE(TextSize(child).cx + box, client.right) << ::GetDlgCtrlID(child);
      }
    }
  }

  static void ExpectNoOverlap(HWND dialog) {
    std::vector<HWND> children;
    RECT client;
    ::GetClientRect(dialog, &client);
    for (HWND child = ::GetWindow(dialog, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
      if (::IsWindowVisible(child) && !IsGroupBox(child)) {
        children.push_back(child);
      }
    }
    for (size_t i = 0; i < children.size(); ++i) {
      const int first = ::GetDlgCtrlID(children[i]);
      const RECT a = RectIn(dialog, first);
      EXPECT_TRUE(a.left >= 0 && a.top >= 0 && a.right <= client.right && a.bottom <= client.bottom) << first;
      for (size_t k = i + 1; k < children.size(); ++k) {
        const int second = ::GetDlgCtrlID(children[k]);
        const RECT b = RectIn(dialog, second);
        RECT common;
        EXPECT_FALSE(::IntersectRect(&common, &a, &b)) << first << " and " << second;
      }
    }
  }
  static void ExpectGoodLayout(HWND dialog, const std::wstring& name) {
    ExpectTextsFit(dialog);
    ExpectNoOverlap(dialog);
    EXPECT_TRUE(SaveScreenshot(dialog, name));
  }
};

void ZV_CALL IgnoreHelp(uint32_t, int32_t, void*) {}

TEST_F(ConversionLayout, OfTheDialogWithEverythingOffered) {
  AddPicture(L"harbour at dawn.tif", {160, 120, FMT_TIFF, 12});
  AddPicture(L"\x5BAB\x6BBF \x2013 a name that is rather long for a list of files.bmp", {60, 90});
  params.overwriteMode = OVERWRITE_RENAME;
  params.helpCallback = &IgnoreHelp;
  RunAndClose([](HWND dialog) { ExpectGoodLayout(dialog, L"conversion"); });
}

TEST_F(ConversionLayout, OfTheDialogWithoutOffers) {
  AddPicture(L"harbour at dawn.bmp");
  params.uiFlags = 0;
  params.fullPath = 1;
  RunAndClose([](HWND dialog) { ExpectGoodLayout(dialog, L"conversion_plain"); });
}

TEST_F(ConversionLayout, OfTheProgressDialogAndTheOverwriteQuestion) {
  Offer({1});
  for (int i = 0; i < 3; ++i) {
    AddPicture(L"a picture of the harbour at dawn, taken from the old pier " + std::to_wstring(i) + L".bmp",
               {2000, 1500});
  }
  out.AddFile(L"a picture of the harbour at dawn, taken from the old pier 1.png", {1});
  RunAndClose([](HWND dialog) {
    Click(dialog, IDB_CONV_SELECT_ALL);
    Click(dialog, IDB_CONV_CONVERT);
    const HWND ask = WaitForDialogWith(IDB_CONV_ASK_REPLACE);
    ExpectGoodLayout(ask, L"conversion_overwrite");
    const HWND progress = WaitForDialogWith(IDP_CONV_TOTAL);
    ExpectGoodLayout(progress, L"conversion_progress");
    Click(ask, IDB_CONV_ASK_ABORT);
    WaitUntilIdle(dialog);
  });
}

}  // namespace
