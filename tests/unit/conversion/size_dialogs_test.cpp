// The resize and rotate dialogs over records of the test's own.
#include <windows.h>

#include <commctrl.h>

#include "conversion/resize_dlg.h"
#include "conversion/rotate_dlg.h"
#include "conversion/rotate_rules.h"
#include "resources/conversion_tools_ids.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgutil/dialog_string.h"
#include "tests/unit/conversion/tool_dialog_fixture.h"

namespace {

using namespace zvtest;

void IgnoreHelp(uint32_t, int32_t, void*) {}

std::wstring KernelText(UINT id) { return LoadDialogString(id).str(); }

class ResizeDialog : public ToolDialog {
 protected:
  int32_t Run(const std::function<void(HWND)>& script) {
    return Drive(
        [this](CWnd* owner) {
          CZVFileConversionDlgResizeDlg dialog(owner);
          dialog.SetHelpCallback(help);
          EXPECT_EQ(SUCCESS, dialog.Initialize(&options));
          return dialog.DoModal();
        },
        IDX_RESIZE_ENABLE, script);
  }
  // Opens and cancels.
  void Look(const std::function<void(HWND)>& script) {
    EXPECT_EQ(IDCANCEL, Run([&](HWND dialog) {
                script(dialog);
                End(dialog, IDCANCEL);
              }));
  }

  CONVERSIONRESIZEOPTIONS options;
  HELPCALLBACK help = nullptr;
};

TEST_F(ResizeDialog, RefusesARecordThatCannotBeRead) {
  CZVFileConversionDlgResizeDlg dialog(nullptr);
  EXPECT_EQ(0, dialog.Initialize(nullptr));
  EXPECT_EQ(0, dialog.Initialize(reinterpret_cast<CONVERSIONRESIZEOPTIONS*>(16)));
}

TEST_F(ResizeDialog, BringsStoredPercentsInto1To100) {
  options = {.enabled = 1, .width = 150, .height = 0, .unit = RESIZE_UNIT_PERCENT};
  Look([](HWND dialog) {
    EXPECT_EQ(L"100", TextOf(dialog, IDC_RESIZE_WIDTH));
    EXPECT_EQ(L"1", TextOf(dialog, IDC_RESIZE_HEIGHT));
    EXPECT_TRUE(IsShown(dialog, IDT_RESIZE_WIDTH_PERCENT));
    EXPECT_TRUE(IsShown(dialog, IDT_RESIZE_HEIGHT_PERCENT));
  });
}

TEST_F(ResizeDialog, BringsStoredPixelsInto1To30000) {
  options = {.enabled = 1, .width = 30001, .height = -5};
  Look([](HWND dialog) {
    EXPECT_EQ(L"30000", TextOf(dialog, IDC_RESIZE_WIDTH));
    EXPECT_EQ(L"1", TextOf(dialog, IDC_RESIZE_HEIGHT));
    EXPECT_FALSE(IsShown(dialog, IDT_RESIZE_WIDTH_PERCENT));
    EXPECT_FALSE(IsShown(dialog, IDT_RESIZE_HEIGHT_PERCENT));
  });
}

TEST_F(ResizeDialog, LowersPixelsForPercentAndWidensTheRangeAgainForPixels) {
  options = {.enabled = 1, .width = 500, .height = 40};
  Look([](HWND dialog) {
    SelectCombo(dialog, IDC_RESIZE_UNIT, 1);
    EXPECT_EQ(L"100", TextOf(dialog, IDC_RESIZE_WIDTH));
    EXPECT_EQ(L"40", TextOf(dialog, IDC_RESIZE_HEIGHT));
    SelectCombo(dialog, IDC_RESIZE_UNIT, 0);
    EXPECT_EQ(L"100", TextOf(dialog, IDC_RESIZE_WIDTH));
    EXPECT_EQ(30000, ::SendMessageW(Control(dialog, IDC_RESIZE_WIDTH), ZVVCM_GETMAXIMUM, 0, 0));
    EXPECT_EQ(30000, ::SendMessageW(Control(dialog, IDC_RESIZE_HEIGHT), ZVVCM_GETMAXIMUM, 0, 0));
  });
}

TEST_F(ResizeDialog, SelectsTheMethodOfTheRecordOrTheFirst) {
  constexpr int kIndexOfMethod[][2] = {{0, 0}, {2, 1}, {4, 2}, {3, 0}, {17, 0}};
  for (const auto& [method, index] : kIndexOfMethod) {
    options.method = method;
    Look([index = index, method = method](HWND dialog) {
      EXPECT_EQ(index, ComboSelection(dialog, IDC_RESIZE_METHOD)) << method;
    });
  }
}

TEST_F(ResizeDialog, OffersUnitsAndMethodsByTheKernelsNames) {
  Look([](HWND dialog) {
    ASSERT_EQ(2, ComboCount(dialog, IDC_RESIZE_UNIT));
    EXPECT_EQ(KernelText(IDS_RESIZE_PIXELS), ComboText(dialog, IDC_RESIZE_UNIT, 0));
    EXPECT_EQ(KernelText(IDS_RESIZE_PERCENT), ComboText(dialog, IDC_RESIZE_UNIT, 1));
    ASSERT_EQ(3, ComboCount(dialog, IDC_RESIZE_METHOD));
    EXPECT_EQ(KernelText(IDS_RESIZE_BICUBIC), ComboText(dialog, IDC_RESIZE_METHOD, 2));
    EXPECT_EQ(KernelText(IDS_RESIZE_TITLE), TextOf(dialog));
  });
}

TEST_F(ResizeDialog, EnablesEverythingButItsButtonsWithTheCheck) {
  constexpr int kControls[] = {
      IDT_RESIZE_WIDTH,          IDC_RESIZE_WIDTH,  IDT_RESIZE_WIDTH_PERCENT, IDT_RESIZE_HEIGHT, IDC_RESIZE_HEIGHT,
      IDT_RESIZE_HEIGHT_PERCENT, IDT_RESIZE_METHOD, IDC_RESIZE_METHOD,        IDT_RESIZE_UNIT,   IDC_RESIZE_UNIT};
  Look([&](HWND dialog) {
    for (const bool on : {false, true, false}) {
      Check(dialog, IDX_RESIZE_ENABLE, on);
      for (const int id : kControls) EXPECT_EQ(on, IsEnabled(dialog, id)) << id;
    }
  });
}

TEST_F(ResizeDialog, WritesAllFieldsOnOK) {
  EXPECT_EQ(IDOK, Run([](HWND dialog) {
              Check(dialog, IDX_RESIZE_ENABLE, true);
              SelectCombo(dialog, IDC_RESIZE_UNIT, 1);
              SetText(dialog, IDC_RESIZE_WIDTH, L"50");
              SetText(dialog, IDC_RESIZE_HEIGHT, L"75");
              SelectCombo(dialog, IDC_RESIZE_METHOD, 2);
              End(dialog, IDOK);
            }));
  EXPECT_EQ(1, options.enabled);
  EXPECT_EQ(50, options.width);
  EXPECT_EQ(75, options.height);
  EXPECT_EQ(4, options.method);
  EXPECT_EQ(RESIZE_UNIT_PERCENT, options.unit);
}

TEST_F(ResizeDialog, SwitchedOffItLeavesTheOtherFieldsOnOK) {
  options = {.enabled = 1, .width = 640, .height = 480, .method = 2};
  Run([](HWND dialog) {
    SetText(dialog, IDC_RESIZE_WIDTH, L"10");
    SelectCombo(dialog, IDC_RESIZE_METHOD, 2);
    Check(dialog, IDX_RESIZE_ENABLE, false);
    End(dialog, IDOK);
  });
  EXPECT_EQ(0, options.enabled);
  EXPECT_EQ(640, options.width);
  EXPECT_EQ(480, options.height);
  EXPECT_EQ(2, options.method);
}

TEST_F(ResizeDialog, HasAQuestionMarkForTheRecordsFlagOrACallback) {
  Look([](HWND dialog) { EXPECT_FALSE(HasQuestionMark(dialog)); });
  options.contextHelp = 1;
  Look([](HWND dialog) {
    EXPECT_TRUE(HasQuestionMark(dialog));
    EXPECT_FALSE(IsShown(dialog, IDB_TOOLS_HELP));
  });
  options.contextHelp = 0;
  help = &IgnoreHelp;
  Look([](HWND dialog) {
    EXPECT_TRUE(HasQuestionMark(dialog));
    EXPECT_TRUE(IsShown(dialog, IDB_TOOLS_HELP));
  });
}

class RotateDialog : public ToolDialog {
 protected:
  int32_t Run(const std::function<void(HWND)>& script) {
    return Drive(
        [this](CWnd* owner) {
          CZVFileConversionDlgRotateDlg dialog(owner);
          dialog.SetOptions(options);
          const INT_PTR result = dialog.DoModal();
          options = dialog.GetOptions();
          return result;
        },
        IDE_ROTATE_ANGLE, script);
  }
  void RunAndOK(const std::function<void(HWND)>& script) {
    EXPECT_EQ(IDOK, Run([&](HWND dialog) {
                script(dialog);
                End(dialog, IDOK);
              }));
  }
  static LRESULT BarPosition(HWND dialog) {
    return ::SendMessageW(Control(dialog, IDS_ROTATE_ANGLE_BAR), TBM_GETPOS, 0, 0);
  }
  static void MoveBar(HWND dialog, LPARAM position) {
    const HWND bar = Control(dialog, IDS_ROTATE_ANGLE_BAR);
    ::SendMessageW(bar, TBM_SETPOS, TRUE, position);
    ::SendMessageW(dialog, WM_HSCROLL, TB_ENDTRACK, reinterpret_cast<LPARAM>(bar));
  }

  CONVERSIONROTATEOPTIONS options;
};

TEST_F(RotateDialog, TakesAnAngleOutOfRangeForNone) {
  options.angle = 36001;
  RunAndOK([](HWND dialog) {
    EXPECT_EQ(L"0", TextOf(dialog, IDE_ROTATE_ANGLE));
    EXPECT_EQ(0, BarPosition(dialog));
  });
  EXPECT_EQ(0, options.angle);
}

TEST_F(RotateDialog, ShowsTheAngleInBothControls) {
  options.angle = -1250;
  RunAndOK([](HWND dialog) {
    EXPECT_EQ(L"-12.5", TextOf(dialog, IDE_ROTATE_ANGLE));
    EXPECT_EQ(-1250, BarPosition(dialog));
  });
  EXPECT_EQ(-1250, options.angle);
}

TEST_F(RotateDialog, TheBarCoversAFullTurnEachWay) {
  RunAndOK([](HWND dialog) {
    const HWND bar = Control(dialog, IDS_ROTATE_ANGLE_BAR);
    EXPECT_EQ(-kLargestAngle, ::SendMessageW(bar, TBM_GETRANGEMIN, 0, 0));
    EXPECT_EQ(kLargestAngle, ::SendMessageW(bar, TBM_GETRANGEMAX, 0, 0));
    EXPECT_EQ(8, ::SendMessageW(Control(dialog, IDE_ROTATE_ANGLE), EM_GETLIMITTEXT, 0, 0));
  });
}

// 0.29 times 100 is a little below 29 in binary: without the guard the edit would turn the bar's 29 into 28.
TEST_F(RotateDialog, TheAngleOfTheBarIsNotReadBackFromTheEdit) {
  RunAndOK([](HWND dialog) {
    MoveBar(dialog, 29);
    EXPECT_EQ(L"0.29", TextOf(dialog, IDE_ROTATE_ANGLE));
    EXPECT_EQ(29, BarPosition(dialog));
  });
  EXPECT_EQ(29, options.angle);
}

TEST_F(RotateDialog, KeepsTheLastValidAngleUntilTheEditIsLeft) {
  RunAndOK([](HWND dialog) {
    SetText(dialog, IDE_ROTATE_ANGLE, L"90");
    SetText(dialog, IDE_ROTATE_ANGLE, L"-360.5");
    EXPECT_EQ(9000, BarPosition(dialog));
    ::SendMessageW(Control(dialog, IDE_ROTATE_ANGLE), WM_KILLFOCUS, 0, 0);
    EXPECT_EQ(L"-360", TextOf(dialog, IDE_ROTATE_ANGLE));
    EXPECT_EQ(-36000, BarPosition(dialog));
  });
  EXPECT_EQ(-36000, options.angle);
}

// Cut to hundredths it would be a full turn.
TEST_F(RotateDialog, ClampsAValueThatIsALittleMoreThanAFullTurn) {
  RunAndOK([](HWND dialog) {
    SetText(dialog, IDE_ROTATE_ANGLE, L"360.004");
    EXPECT_EQ(36000, BarPosition(dialog));
    ::SendMessageW(Control(dialog, IDE_ROTATE_ANGLE), WM_KILLFOCUS, 0, 0);
    EXPECT_EQ(L"360", TextOf(dialog, IDE_ROTATE_ANGLE));
  });
  EXPECT_EQ(36000, options.angle);
}

TEST_F(RotateDialog, SelectsTheInterpolationOfTheFlags) {
  constexpr std::pair<uint32_t, int> kIndexOfFlags[] = {{0, 0}, {ROTATE_RESIZE, 0}, {2, 1}, {4, 2}, {6, 1}};
  for (const auto& [flags, index] : kIndexOfFlags) {
    options.flags = flags;
    RunAndOK([index = index](HWND dialog) { EXPECT_EQ(index, ComboSelection(dialog, IDC_ROTATE_INTERPOLATION)); });
  }
}

TEST_F(RotateDialog, InterpolationAndCanvasReachTheFlags) {
  options.flags = 2;
  RunAndOK([](HWND dialog) {
    SelectCombo(dialog, IDC_ROTATE_INTERPOLATION, 2);
    Check(dialog, IDX_ROTATE_RESIZE, true);
  });
  EXPECT_EQ(5u, options.flags);
  EXPECT_EQ(1, options.resizeToFit);
  RunAndOK([](HWND dialog) {
    EXPECT_TRUE(IsChecked(dialog, IDX_ROTATE_RESIZE));
    Check(dialog, IDX_ROTATE_RESIZE, false);
  });
  EXPECT_EQ(4u, options.flags);
  EXPECT_EQ(0, options.resizeToFit);
}

TEST_F(RotateDialog, ARecordThatGrowsTheCanvasGetsItsFlag) {
  options.resizeToFit = 1;
  options.flags = 0x100;
  RunAndOK([](HWND dialog) { EXPECT_TRUE(IsChecked(dialog, IDX_ROTATE_RESIZE)); });
  EXPECT_EQ(static_cast<uint32_t>(ROTATE_RESIZE), options.flags) << "no interpolation clears the others";
}

TEST_F(RotateDialog, KeepsTheColourOfTheRecord) {
  options.fillColor = RGB(10, 20, 30);
  RunAndOK([](HWND) {});
  EXPECT_EQ(RGB(10, 20, 30), options.fillColor);
}

TEST_F(RotateDialog, HasAQuestionMarkForTheRecordsFlag) {
  RunAndOK([](HWND dialog) { EXPECT_FALSE(HasQuestionMark(dialog)); });
  options.contextHelp = 1;
  RunAndOK([](HWND dialog) {
    EXPECT_TRUE(HasQuestionMark(dialog));
    EXPECT_FALSE(IsShown(dialog, IDB_TOOLS_HELP));
  });
}

}  // namespace
