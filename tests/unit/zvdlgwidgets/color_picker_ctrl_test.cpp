#include "services/zvdlgwidgets/color_picker_ctrl.h"

#include "platform/dc.h"
#include "tests/unit/zvdlgwidgets/widget_host.h"

namespace {

constexpr int kPicker = 105;
constexpr int kRedEdit = 706;  // of the system's colour dialog
constexpr int kHelpButton = 1038;

HWND ColorDialog() {
  HWND found = nullptr;
  ::EnumThreadWindows(
      ::GetCurrentThreadId(),
      [](HWND window, LPARAM out) -> BOOL {
        if (::GetDlgItem(window, kRedEdit) && ::IsWindowVisible(window)) {
          *reinterpret_cast<HWND*>(out) = window;
          return FALSE;
        }
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&found));
  return found;
}

// What the user does in the colour dialog once it is up; run by a timer, since the dialog has a loop of its own.
void (*script)(HWND dialog) = nullptr;

void CALLBACK RunScript(HWND, UINT, UINT_PTR timer, DWORD) {
  const HWND dialog = ColorDialog();
  if (dialog) {
    ::KillTimer(nullptr, timer);
    script(dialog);
  }
}

std::vector<int> helpedControls;

class ColorPicker : public testing::Test {
 protected:
  ColorPicker() { picker_.SubclassDlgItem(kPicker, &host_); }

  static void Prepare(void (*steps)(HWND dialog)) {
    script = steps;
    ::SetTimer(nullptr, 0, 10, &RunScript);
  }
  void Open(void (*steps)(HWND dialog)) {
    Prepare(steps);
    picker_.SendMessage(BM_CLICK);
  }

  WidgetHost host_;
  CZVColorPickerCtrl picker_;
};

TEST_F(ColorPicker, ShowsTheColourThatIsSetWithoutANotification) {
  picker_.SetRGB(10, 200, 30);
  EXPECT_EQ(RGB(10, 200, 30), picker_.GetRGBColorRef());
  EXPECT_EQ(0, host_.CountOf(kPicker, ZVN_VALUECHANGED));
  picker_.RedrawWindow();
  CRect client;
  picker_.GetClientRect(&client);
  const CClientDC device(&picker_);
  EXPECT_EQ(RGB(10, 200, 30), device.GetPixel(client.Width() / 4, client.Height() / 2));
}

TEST_F(ColorPicker, NewChoiceIsReported) {
  picker_.SetRGB(RGB(1, 2, 3));
  Open([](HWND dialog) {
    ::SetDlgItemInt(dialog, kRedEdit, 77, FALSE);
    ::SendMessageW(dialog, WM_COMMAND, IDOK, 0);
  });
  EXPECT_EQ(77, GetRValue(picker_.GetRGBColorRef()));
  EXPECT_EQ(1, host_.CountOf(kPicker, ZVN_VALUECHANGED));
}

TEST_F(ColorPicker, SpaceEnterAndTheDownKeyOpenTheChoice) {
  int expected = 0;
  for (const UINT key : {VK_SPACE, VK_RETURN, VK_DOWN}) {
    picker_.SetRGB(RGB(1, 2, 3));
    host_.GotoDlgCtrl(&picker_);
    Prepare([](HWND dialog) {
      ::SetDlgItemInt(dialog, kRedEdit, 77, FALSE);
      ::SendMessageW(dialog, WM_COMMAND, IDOK, 0);
    });
    WidgetHost::Press(key);
    EXPECT_EQ(RGB(77, 2, 3), picker_.GetRGBColorRef()) << key;
    EXPECT_EQ(++expected, host_.CountOf(kPicker, ZVN_VALUECHANGED)) << key;
    EXPECT_EQ(picker_.m_hWnd, ::GetFocus()) << "the focus is back on the well";
  }
  EXPECT_EQ(0, host_.CountOf(IDOK, BN_CLICKED)) << "Enter went to the well alone";
}

TEST_F(ColorPicker, CancelledChoiceChangesNothing) {
  picker_.SetRGB(RGB(1, 2, 3));
  Open([](HWND dialog) { ::SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0); });
  EXPECT_EQ(RGB(1, 2, 3), picker_.GetRGBColorRef());
  EXPECT_EQ(0, host_.CountOf(kPicker, ZVN_VALUECHANGED));
}

TEST_F(ColorPicker, HelpButtonOfTheDialogReachesTheCallback) {
  helpedControls.clear();
  picker_.SetHelp([](uint32_t, int32_t controlId, void*) { helpedControls.push_back(controlId); }, nullptr, 118);
  Open([](HWND dialog) {
    ::SendMessageW(dialog, WM_COMMAND, kHelpButton, 0);
    ::SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
  });
  EXPECT_THAT(helpedControls, testing::ElementsAre(kPicker));
}

}  // namespace
