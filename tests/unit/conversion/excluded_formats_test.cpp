// The formats that the conversion dialog leaves out of its lists. The catalogue has none at present, so the test answers for
// the dialog kernel: its own pointer takes the place of the import of that one function.
#include <windows.h>

#include <algorithm>
#include <vector>

#include "conversion/file_conversion_dlg.h"
#include "resources/conversion_ids.h"
#include "services/zvdlgbase/zvdlgbase.h"
#include "tests/support/pictures.h"
#include "tests/unit/conversion/tool_dialog_fixture.h"

namespace {
std::vector<int32_t> excludedFileFormats;
int32_t AnswerForKernel(int32_t fileFormat) {
  return std::ranges::find(excludedFileFormats, fileFormat) != excludedFileFormats.end();
}
}  // namespace

// The name that the linker gives to the pointer of an imported function.
extern "C" int32_t (*const __imp_IsFormatExcludedFromList)(int32_t) = &AnswerForKernel;

namespace {

using namespace zvtest;

constexpr int32_t kJpeg = 0, kPng = 1;  // catalogue formats

class ExcludedFormats : public ToolDialog {
 protected:
  ExcludedFormats() {
    params.uStructSize = sizeof(params);
    params.uiFlags = 0x0007fffe;
    const std::wstring picture = folder.File(L"harbour.bmp");
    EXPECT_TRUE(WritePicture(picture, {}));
    files.assign(picture.c_str(), picture.c_str() + picture.size() + 1);
    files.push_back(L'\0');
    params.fileList = files.data();
  }
  ~ExcludedFormats() override { excludedFileFormats.clear(); }

  void Offer(const std::vector<int32_t>& formats) {
    for (const int32_t format : formats) offered.push_back({0, format, 0, nullptr});
    params.formats = offered.data();
    params.formatCount = static_cast<int32_t>(offered.size());
  }
  void Run(const std::function<void(HWND)>& script) {
    Drive(
        [this](CWnd* owner) {
          CZVFileConversionDlg dialog(owner);
          EXPECT_EQ(SUCCESS, dialog.Initialize(params));
          return dialog.DoModal();
        },
        IDL_CONV_FORMATS,
        [&](HWND dialog) {
          WaitUntil([dialog] { return ::IsWindowVisible(dialog); }, "the dialog shows");
          script(dialog);
          End(dialog, IDB_CONV_CLOSE);
        });
  }
  static std::vector<std::wstring> SubtypesOf(HWND dialog) {
    std::vector<std::wstring> texts;
    for (int i = 0; i < ComboCount(dialog, IDC_CONV_SUBTYPE); ++i) {
      texts.push_back(ComboText(dialog, IDC_CONV_SUBTYPE, i));
    }
    return texts;
  }

  TemporaryFolder folder;
  std::vector<wchar_t> files;
  std::vector<FILECONVERSIONFORMAT> offered;
  FILECONVERSIONDLGPARAMS params = {};
};

TEST_F(ExcludedFormats, AreLeftOutOfTheWholeCatalogue) {
  int all = 0;
  Run([&](HWND dialog) { all = ListBoxCount(dialog, IDL_CONV_FORMATS); });
  excludedFileFormats = {FMT_PNG};
  Run([&](HWND dialog) {
    EXPECT_EQ(all - 1, ListBoxCount(dialog, IDL_CONV_FORMATS));
    EXPECT_NE(L"PNG", ListBoxText(dialog, IDL_CONV_FORMATS, 1));
  });
}

TEST_F(ExcludedFormats, AreLeftOutOfTheGivenOnes) {
  excludedFileFormats = {FMT_PNG};
  Offer({kPng, kJpeg});
  Run([](HWND dialog) {
    ASSERT_EQ(1, ListBoxCount(dialog, IDL_CONV_FORMATS));
    EXPECT_EQ(L"JPEG", ListBoxText(dialog, IDL_CONV_FORMATS, 0));
  });
}

TEST_F(ExcludedFormats, AloneLeaveNothingToChooseOrRun) {
  excludedFileFormats = {FMT_PNG};
  Offer({kPng});
  Run([](HWND dialog) {
    EXPECT_EQ(0, ListBoxCount(dialog, IDL_CONV_FORMATS));
    for (const int id : {IDC_CONV_BPP, IDC_CONV_SUBTYPE, IDB_CONV_SETTINGS}) EXPECT_FALSE(IsEnabled(dialog, id)) << id;
    ::SendMessageW(Control(dialog, IDB_CONV_CONVERT), BM_CLICK, 0, 0);
    EXPECT_TRUE(::IsWindowEnabled(dialog)) << "no run stands over the dialog";
  });
}

TEST_F(ExcludedFormats, AreLeftOutOfTheSubtypes) {
  Offer({kJpeg});
  std::vector<std::wstring> all;
  Run([&](HWND dialog) { all = SubtypesOf(dialog); });
  ASSERT_EQ(3u, all.size());
  excludedFileFormats = {FMT_JPEG_422};
  Run([&](HWND dialog) { EXPECT_EQ((std::vector<std::wstring>{all[0], all[2]}), SubtypesOf(dialog)); });
}

}  // namespace
