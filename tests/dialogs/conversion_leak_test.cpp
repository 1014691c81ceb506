// Opening and closing the batch conversion dialog, and the dialogs that it starts, again and again leaves nothing behind.
#include "resources/conversion_tools_ids.h"
#include "resources/naming_ids.h"
#include "tests/dialogs/conversion_fixture.h"

namespace {

using namespace zvtest;

class ConversionLeaks : public ConversionDialog {};

TEST_F(ConversionLeaks, OpeningAndClosingEitherWayLeavesNothingBehind) {
  AddPicture(L"1.bmp");
  AddPicture(L"2.tif", {40, 20, FMT_TIFF, 3});
  int turn = 0;
  ExpectNothingLeftBehind([&] {
    if (++turn % 2) {
      RunAndClose([](HWND) {});
    } else {
      Run([](HWND dialog) {
        PressKey(dialog, VK_ESCAPE);
        WaitUntilClosed(dialog);
      });
    }
  });
}

TEST_F(ConversionLeaks, ARefusedStartLeavesNothingBehind) {
  params.fileList = L"";
  const LeakCheck fewer = {.times = 50, .heapSlack = 16 * 1024};
  ExpectNothingLeftBehind([this] { EXPECT_EQ(ERROR_DIALOG_FAILED, Z_DlgFileConversion(parent.hwnd(), &params)); },
                          fewer);
}

struct Tool {
  const char* name;
  int button;   // that starts it
  int control;  // that it alone has
};
constexpr Tool kTools[] = {{"NamingTemplate", IDB_CONV_NAMING, IDE_NAMING_TEMPLATE},
                           {"CollisionTemplate", IDB_CONV_CUSTOMIZE, IDX_RENAME_PREFIX},
                           {"Resize", IDB_CONV_RESIZE, IDX_RESIZE_ENABLE},
                           {"Rotate", IDB_CONV_ROTATE, IDE_ROTATE_ANGLE},
                           {"Pages", IDB_CONV_PAGE_OPTIONS, IDX_PAGES_ALL}};

class ToolLeaks : public ConversionDialog, public ::testing::WithParamInterface<Tool> {};
INSTANTIATE_TEST_SUITE_P(OfEach, ToolLeaks, ::testing::ValuesIn(kTools),
                         [](const auto& tool) { return std::string(tool.param.name); });

// Wine 8 keeps 24 bytes for each static control that was ever made, and a naming dialog has 19 of them; one temporary window
// object of ours for each would be a multiple of that.
constexpr size_t kSlackForLabels = 64 * 1024 + 200 * 20 * 24;

TEST_P(ToolLeaks, OpeningAndClosingLeavesNothingBehind) {
  params.overwriteMode = OVERWRITE_RENAME;
  AddPicture(L"1.bmp");
  RunAndClose([](HWND dialog) {
    int turn = 0;
    ExpectNothingLeftBehind(
        [&] {
          Click(dialog, GetParam().button);
          const HWND tool = WaitForDialogWith(GetParam().control);
          Click(tool, ++turn % 2 ? IDOK : IDCANCEL);
          WaitUntilClosed(tool);
          WaitUntilIdle(dialog);
        },
        {.heapSlack = kSlackForLabels});
  });
}

// Progress, question and report, all in one run.
TEST_F(ConversionLeaks, RunsWithAQuestionAndAReportLeaveNothingBehind) {
  params.overwriteMode = OVERWRITE_ASK;
  params.logReport = 1;
  AddPicture(L"1.bmp");
  out.AddFile(L"1.jpg", {1});
  RunAndClose([](HWND dialog) {
    ExpectNothingLeftBehind([dialog] {
      Click(dialog, IDB_CONV_CONVERT);
      Click(WaitForDialogWith(IDB_CONV_ASK_SKIP), IDB_CONV_ASK_SKIP);
      const HWND log = WaitForDialogWith(IDL_LOG);
      Click(log, IDOK);
      WaitUntilClosed(log);
      WaitUntilIdle(dialog);
    });
  });
}

}  // namespace
