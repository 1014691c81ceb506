// The run on real files, with a host that stands in for the dialog.
#include "conversion/conversion_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "conversion/run_rules.h"
#include "naming/naming_template_processor.h"
#include "naming/unique_name.h"
#include "services/zvdlgbase/zvdlgbase.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/pictures.h"

namespace {

constexpr UINT kExtensionText = 60001;  // a text of the tests' own

class Host final : public CZVConversionHost {
 public:
  CString GetSourcePath(int row) override { return sources.at(row); }
  bool GetSourceOptions(int row, CONVERSIONFILEOPTIONS& result) override {
    result = options[row];
    return true;
  }
  const CONVERSIONFORMATITEM* GetFormatItem(int row) override {
    return row >= 0 && row < static_cast<int>(formats.size()) ? &formats[static_cast<size_t>(row)] : nullptr;
  }
  CString GetDestinationFolder() override { return folder; }
  CString ExpandName(const CString& name) override { return processor.ProcessTemplate(nameTemplate, name); }
  CString FindFreeName(const CString& destination) override {
    return renameFinds ? MakeUniqueName(destination, collision, &CZVConversionRun::FileExists) : CString();
  }
  int32_t AskOverwrite(const CString& destination) override {
    questions.push_back(destination.str());
    return answer;
  }
  void ReportDeletionFailure(const CString& source) override { undeleted.push_back(source.str()); }
  void MarkSourceDeleted(int row) override { deletedRows.push_back(row); }

  std::vector<CString> sources;
  std::map<int, CONVERSIONFILEOPTIONS> options;
  std::vector<CONVERSIONFORMATITEM> formats;
  CString folder;
  CString nameTemplate = L"<SRC>";
  CZVNamingTemplateProcessor processor;
  NAMINGTEMPLATESETTINGS collisionSettings;
  RENAMETEMPLATEDATA collision{0, 0, L"<SRC><NUM>", L"FileName", &collisionSettings};
  bool renameFinds = true;
  int32_t answer = ANSWER_ABORT;
  std::vector<std::wstring> questions;
  std::vector<std::wstring> undeleted;
  std::vector<int> deletedRows;
};

std::vector<char> Content(const std::wstring& path) {
  std::vector<char> content;
  if (FILE* const file = _wfopen(path.c_str(), L"rb")) {
    char buffer[4096];
    for (size_t got = fread(buffer, 1, sizeof buffer, file); got > 0; got = fread(buffer, 1, sizeof buffer, file)) {
      content.insert(content.end(), buffer, buffer + got);
    }
    fclose(file);
  }
  return content;
}

size_t FileCount(const std::wstring& folder) {
  size_t count = 0;
  WIN32_FIND_DATAW entry;
  const HANDLE search = ::FindFirstFileW((folder + L"\\*").c_str(), &entry);
  if (search != INVALID_HANDLE_VALUE) {
    do {
      count += (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) ? 0 : 1;
    } while (::FindNextFileW(search, &entry));
    ::FindClose(search);
  }
  return count;
}

class ConversionRun : public ::testing::Test {
 protected:
  void SetUp() override {
    ::SetDialogStringText(kExtensionText, L"bmp");
    host.folder = out.path().c_str();
    host.formats.resize(1);
    host.formats[0].extensionStringId = kExtensionText;
    host.formats[0].fileFormat = FMT_BMP;
    host.formats[0].bitsPerPixel = 24;
    ::GetDefaultSaveFileOption(&host.formats[0].saveOption, sizeof(SAVEFILEOPTION));
    ::GetDefaultJ2KOptions(&host.formats[0].j2kOption, sizeof(J2KSAVEOPTION));
  }

  std::wstring AddPicture(const std::wstring& name, int width = 40, int height = 20, int format = FMT_BMP,
                          int pages = 1) {
    const std::wstring path = in.File(name);
    EXPECT_TRUE(zvtest::WritePicture(path, {width, height, format, pages}));
    host.sources.push_back(path.c_str());
    return path;
  }

  CArray<LOGREPORTITEM>& Convert(int row = 0, int formatRow = 0) {
    CZVConversionRun run(host, settings);
    run.SetStatus(status ? &ReportStatus : nullptr, this);
    EXPECT_EQ(1, run.ConvertQueueItem(row, formatRow, log));
    return log;
  }
  int LastStatus() { return log[log.GetUpperBound()].status; }

  static FILEINFO Info(const std::wstring& path) {
    FILEINFO info = {};
    info.uStructSize = sizeof info;
    EXPECT_EQ(SUCCESS, GetFileInfo(path.c_str(), &info, sizeof info, 1, nullptr));
    return info;
  }
  static bool Exists(const std::wstring& path) { return CZVConversionRun::FileExists(path.c_str()); }
  std::wstring Out(const std::wstring& name) const { return out.File(name); }

  static int32_t ZV_CALL ReportStatus(int32_t percent, void* test) {
    return static_cast<ConversionRun*>(test)->status(percent);
  }

  zvtest::TemporaryFolder in;
  zvtest::TemporaryFolder out;
  Host host;
  ConversionSettings settings;
  CArray<LOGREPORTITEM> log;
  std::function<int32_t(int32_t)> status;
};

TEST_F(ConversionRun, WritesTheFileAndSaysSo) {
  const std::wstring source = AddPicture(L"a.bmp");
  Convert();
  ASSERT_EQ(1, log.GetSize());
  EXPECT_EQ(CONVERSION_OK, log[0].status);
  EXPECT_STREQ(source.c_str(), log[0].source);
  EXPECT_STREQ(Out(L"a.bmp").c_str(), log[0].destination);
  EXPECT_EQ(40, Info(Out(L"a.bmp")).width);
  EXPECT_TRUE(Exists(source));
}

TEST_F(ConversionRun, KeepsNamesOfAllScripts) {
  AddPicture(L"\x5BAB two  dots.v1 \xD83D\xDE00 e\x0301.bmp");
  Convert();
  EXPECT_TRUE(Exists(Out(L"\x5BAB two  dots.v1 \xD83D\xDE00 e\x0301.bmp")));
}

TEST_F(ConversionRun, WritesBesideTheSourceWhenToldTo) {
  AddPicture(L"a.bmp");
  host.nameTemplate = L"<SRC>-new";
  settings.useOriginalFolder = true;
  Convert();
  EXPECT_TRUE(Exists(in.File(L"a-new.bmp")));
  EXPECT_EQ(0u, FileCount(out.path()));
}

TEST_F(ConversionRun, ReportsHalfOfEachStepSoThatTheBarRisesTwiceTo50) {
  AddPicture(L"a.bmp", 40, 200);
  std::vector<int32_t> reports;
  status = [&](int32_t percent) {
    reports.push_back(percent);
    return SUCCESS;
  };
  Convert();
  reports.erase(std::unique(reports.begin(), reports.end()), reports.end());
  const auto top = std::find(reports.begin(), reports.end(), 50);
  ASSERT_NE(reports.end(), top);
  EXPECT_TRUE(std::is_sorted(reports.begin(), top + 1));
  ASSERT_NE(reports.end(), top + 1);
  EXPECT_LT(top[1], 5);
  EXPECT_TRUE(std::is_sorted(top + 1, reports.end()));
  EXPECT_EQ(50, reports.back());
}

TEST_F(ConversionRun, AnAnswerToStopFailsTheFileAndLeavesNoDebris) {
  const std::wstring source = AddPicture(L"a.bmp", 40, 200);
  for (const int32_t stopAt : {0, 10, 49}) {
    for (const bool duringSave : {false, true}) {
      log.RemoveAll();
      bool saving = false;
      int32_t last = -1;
      status = [&](int32_t percent) {
        saving = saving || percent < last;
        last = percent;
        return percent >= stopAt && saving == duringSave ? ERROR_USER_ABORT : SUCCESS;
      };
      Convert();
      EXPECT_EQ(CONVERSION_FAILED, log[0].status) << stopAt << duringSave;
      EXPECT_EQ(0u, FileCount(out.path())) << stopAt << duringSave;
      EXPECT_TRUE(Exists(source));
    }
  }
}

TEST_F(ConversionRun, AnAbortedSaveLeavesTheOldDestination) {
  AddPicture(L"a.bmp", 40, 200);
  out.AddFile(L"a.bmp", {1, 2, 3});
  settings.overwriteMode = OVERWRITE_REPLACE;
  int calls = 0;
  status = [&](int32_t) { return ++calls > 60 ? ERROR_USER_ABORT : SUCCESS; };
  Convert();
  EXPECT_EQ(CONVERSION_FAILED, log[0].status);
  EXPECT_EQ((std::vector<char>{1, 2, 3}), Content(Out(L"a.bmp")));
  EXPECT_EQ(1u, FileCount(out.path()));
}

TEST_F(ConversionRun, SkipLeavesTheDestinationAndTheSource) {
  const std::wstring source = AddPicture(L"a.bmp");
  out.AddFile(L"a.bmp", {7});
  settings.overwriteMode = OVERWRITE_SKIP;
  settings.deleteSource = true;
  Convert();
  EXPECT_EQ(CONVERSION_SKIPPED, log[0].status);
  EXPECT_EQ(std::vector<char>{7}, Content(Out(L"a.bmp")));
  EXPECT_TRUE(Exists(source));
}

TEST_F(ConversionRun, ReplaceWritesOverTheDestination) {
  AddPicture(L"a.bmp");
  out.AddFile(L"a.bmp", {7});
  settings.overwriteMode = OVERWRITE_REPLACE;
  Convert();
  EXPECT_EQ(CONVERSION_OK, log[0].status);
  EXPECT_EQ(40, Info(Out(L"a.bmp")).width);
}

TEST_F(ConversionRun, ReplaceOfTheSourceItselfNeverDeletesIt) {
  const std::wstring source = AddPicture(L"a.bmp");
  settings.useOriginalFolder = true;
  settings.overwriteMode = OVERWRITE_REPLACE;
  settings.deleteSource = true;
  settings.resize.enabled = 1;
  settings.resize.width = 10;
  settings.resize.height = 5;
  Convert();
  EXPECT_EQ(CONVERSION_OK, log[0].status);
  EXPECT_TRUE(host.deletedRows.empty());
  EXPECT_EQ(10, Info(source).width);
}

TEST_F(ConversionRun, RenameCountsUpFromZeroWithoutTouchingTheOutputNumbers) {
  AddPicture(L"a.bmp");
  settings.overwriteMode = OVERWRITE_RENAME;
  for (int i = 0; i < 3; ++i) {
    Convert();
  }
  EXPECT_STREQ(Out(L"a.bmp").c_str(), log[0].destination);
  EXPECT_STREQ(Out(L"a0.bmp").c_str(), log[1].destination);
  EXPECT_STREQ(Out(L"a1.bmp").c_str(), log[2].destination);
  EXPECT_STREQ(L"3", host.processor.ProcessTemplate(L"<NUM>", L"x"));
}

TEST_F(ConversionRun, RenameWithoutAFreeNameSkips) {
  AddPicture(L"a.bmp");
  out.AddFile(L"a.bmp", {7});
  settings.overwriteMode = OVERWRITE_RENAME;
  host.renameFinds = false;
  Convert();
  EXPECT_EQ(CONVERSION_SKIPPED, log[0].status);
}

TEST_F(ConversionRun, AsksOnlyAboutADestinationThatExists) {
  AddPicture(L"a.bmp");
  Convert();
  EXPECT_TRUE(host.questions.empty());
  host.answer = ANSWER_SKIP;
  Convert();
  EXPECT_EQ(std::vector<std::wstring>{Out(L"a.bmp")}, host.questions);
  EXPECT_EQ(CONVERSION_SKIPPED, LastStatus());
  host.answer = ANSWER_RENAME;
  Convert();
  EXPECT_TRUE(Exists(Out(L"a0.bmp")));
  host.answer = ANSWER_REPLACE;
  Convert();
  EXPECT_EQ(CONVERSION_OK, LastStatus());
  EXPECT_EQ(2u, FileCount(out.path()));
}

TEST_F(ConversionRun, AbortAnswerGivesALineWithoutPaths) {
  AddPicture(L"a.bmp");
  out.AddFile(L"a.bmp", {7});
  Convert();
  ASSERT_EQ(1, log.GetSize());
  EXPECT_EQ(CONVERSION_ABORTED, log[0].status);
  EXPECT_TRUE(log[0].source.IsEmpty());
  EXPECT_TRUE(log[0].destination.IsEmpty());
}

TEST_F(ConversionRun, AFolderOfThatNameCountsAsAnExistingDestination) {
  AddPicture(L"a.bmp");
  out.AddFolder(L"a.bmp");
  settings.overwriteMode = OVERWRITE_SKIP;
  Convert();
  EXPECT_EQ(CONVERSION_SKIPPED, log[0].status);
}

TEST_F(ConversionRun, DeletesTheSourceOnceItIsConverted) {
  const std::wstring source = AddPicture(L"a.bmp");
  settings.deleteSource = true;
  Convert();
  EXPECT_EQ(std::vector<int>{0}, host.deletedRows);
  EXPECT_FALSE(Exists(source));
  EXPECT_TRUE(Exists(Out(L"a.bmp")));
}

TEST_F(ConversionRun, ReportsASourceThatCannotBeDeletedAndGoesOn) {
  const std::wstring source = AddPicture(L"a.bmp");
  const HANDLE held = ::CreateFileW(source.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(INVALID_HANDLE_VALUE, held);
  settings.deleteSource = true;
  Convert();
  ::CloseHandle(held);
  EXPECT_EQ(CONVERSION_OK, log[0].status);
  EXPECT_EQ(std::vector<std::wstring>{source}, host.undeleted);
  EXPECT_TRUE(host.deletedRows.empty());
}

TEST_F(ConversionRun, AFailedFileIsNeverDeleted) {
  const std::wstring source = in.AddFile(L"broken.bmp", {'B', 'M', 1, 2, 3});
  host.sources.push_back(source.c_str());
  settings.deleteSource = true;
  Convert();
  EXPECT_EQ(CONVERSION_FAILED, log[0].status);
  EXPECT_TRUE(Exists(source));
  EXPECT_EQ(0u, FileCount(out.path()));
}

TEST_F(ConversionRun, FailsAFileWhoseFolderIsGone) {
  AddPicture(L"a.bmp");
  host.folder = (out.path() + L"\\absent").c_str();
  Convert();
  EXPECT_EQ(CONVERSION_FAILED, log[0].status);
  EXPECT_TRUE(Exists(in.File(L"a.bmp")));
}

TEST_F(ConversionRun, FailsOnAReadOnlyDestinationAndLeavesItAlone) {
  AddPicture(L"a.bmp");
  const std::wstring destination = out.AddFile(L"a.bmp", {7});
  ASSERT_TRUE(::SetFileAttributesW(destination.c_str(), FILE_ATTRIBUTE_READONLY));
  settings.overwriteMode = OVERWRITE_REPLACE;
  settings.deleteSource = true;
  Convert();
  ::SetFileAttributesW(destination.c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(CONVERSION_FAILED, log[0].status);
  EXPECT_EQ(std::vector<char>{7}, Content(destination));
  EXPECT_EQ(1u, FileCount(out.path()));
  EXPECT_TRUE(Exists(in.File(L"a.bmp")));
}

TEST_F(ConversionRun, FailsWhereAFolderIsInTheWay) {
  AddPicture(L"a.bmp");
  out.AddFolder(L"a.bmp");
  settings.overwriteMode = OVERWRITE_REPLACE;
  Convert();
  EXPECT_EQ(CONVERSION_FAILED, log[0].status);
  EXPECT_EQ(0u, FileCount(out.path()));
}

TEST_F(ConversionRun, FailsADamagedFileAndGoesOnWithTheNext) {
  const std::wstring damaged = AddPicture(L"a.png", 300, 200, FMT_PNG);
  AddPicture(L"b.bmp");
  const HANDLE file = ::CreateFileW(damaged.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(INVALID_HANDLE_VALUE, file);
  ::SetFilePointer(file, 60, nullptr, FILE_BEGIN);
  ::SetEndOfFile(file);
  ::CloseHandle(file);
  Convert(0);
  Convert(1);
  EXPECT_EQ(CONVERSION_FAILED, log[0].status);
  EXPECT_EQ(CONVERSION_OK, log[1].status);
  EXPECT_EQ(1u, FileCount(out.path()));
}

TEST_F(ConversionRun, RefusesAPathOf260CharactersAndTriesOneOf259) {
  AddPicture(L"a.bmp");
  const int room = kDestinationPathLimit - 1 - static_cast<int>(out.path().size()) - 5;  // "\" and ".bmp"
  host.nameTemplate = CString(L'n', room);
  Convert();
  EXPECT_EQ(259, log[0].destination.GetLength());
  EXPECT_NE(CONVERSION_PATH_TOO_LONG, log[0].status);
  host.nameTemplate = CString(L'n', room + 1);
  Convert();
  EXPECT_EQ(260, log[1].destination.GetLength());
  EXPECT_EQ(CONVERSION_PATH_TOO_LONG, log[1].status);
}

TEST_F(ConversionRun, FailsWithoutAFormatRowOrAnExtension) {
  AddPicture(L"a.bmp");
  Convert(0, 1);
  EXPECT_EQ(CONVERSION_FAILED, LastStatus());
  EXPECT_TRUE(log[0].destination.IsEmpty());
  Convert(0, -1);
  EXPECT_EQ(CONVERSION_FAILED, LastStatus());
  host.formats[0].extensionStringId = 60002;
  Convert();
  EXPECT_EQ(CONVERSION_FAILED, LastStatus());
  EXPECT_STREQ(L"0", host.processor.ProcessTemplate(L"<NUM>", L"x")) << "no name was made";
}

CONVERSIONFILEOPTIONS Pages(std::vector<int32_t>& pages, int32_t total) {
  CONVERSIONFILEOPTIONS options;
  options.pageTotal = total;
  options.pageCount = static_cast<int32_t>(pages.size());
  options.pages = pages.data();
  return options;
}

TEST_F(ConversionRun, ConvertsThePagesInTheOrderOfTheSelection) {
  AddPicture(L"a.tif", 40, 20, FMT_TIFF, 3);
  std::vector<int32_t> pages = {3, 1};
  host.options[0] = Pages(pages, 3);
  host.nameTemplate = L"<SRC>-<NUM>";
  Convert();
  ASSERT_EQ(2, log.GetSize());
  EXPECT_EQ(42, Info(Out(L"a-0.bmp")).width);
  EXPECT_EQ(40, Info(Out(L"a-1.bmp")).width);
}

TEST_F(ConversionRun, APageBeyondTheFileFailsAndTheOthersGoOn) {
  AddPicture(L"a.tif", 40, 20, FMT_TIFF, 3);
  std::vector<int32_t> pages = {1, 9, 2};
  host.options[0] = Pages(pages, 3);
  host.nameTemplate = L"<SRC>-<NUM>";
  Convert();
  ASSERT_EQ(3, log.GetSize());
  EXPECT_EQ(CONVERSION_OK, log[0].status);
  EXPECT_EQ(CONVERSION_FAILED, log[1].status);
  EXPECT_STREQ(Out(L"a-1.bmp").c_str(), log[1].destination);
  EXPECT_EQ(CONVERSION_OK, log[2].status);
  EXPECT_EQ(41, Info(Out(L"a-2.bmp")).width);
}

TEST_F(ConversionRun, TheLastPageAloneDecidesAboutTheSource) {
  const std::wstring source = AddPicture(L"a.tif", 40, 20, FMT_TIFF, 2);
  settings.deleteSource = true;
  host.nameTemplate = L"<SRC>-<NUM>";
  std::vector<int32_t> pages = {1, 9};
  host.options[0] = Pages(pages, 2);
  Convert();
  EXPECT_TRUE(Exists(source));
  pages = {9, 1};
  Convert();
  EXPECT_FALSE(Exists(source));
}

TEST_F(ConversionRun, AbortOnASecondPageKeepsTheSource) {
  const std::wstring source = AddPicture(L"a.tif", 40, 20, FMT_TIFF, 2);
  settings.deleteSource = true;
  std::vector<int32_t> pages = {1, 2};
  host.options[0] = Pages(pages, 2);
  Convert();
  ASSERT_EQ(2, log.GetSize());
  EXPECT_EQ(CONVERSION_OK, log[0].status);
  EXPECT_EQ(CONVERSION_ABORTED, log[1].status);
  EXPECT_TRUE(Exists(source));
}

TEST_F(ConversionRun, WithoutASelectionTheFirstPageAloneIsConverted) {
  AddPicture(L"a.tif", 40, 20, FMT_TIFF, 3);
  Convert();
  ASSERT_EQ(1, log.GetSize());
  EXPECT_EQ(40, Info(Out(L"a.bmp")).width);
}

TEST_F(ConversionRun, ASelectionOfOnePageConvertsThatPage) {
  AddPicture(L"a.tif", 40, 20, FMT_TIFF, 3);
  std::vector<int32_t> pages = {2};
  host.options[0] = Pages(pages, 3);
  Convert();
  ASSERT_EQ(1, log.GetSize());
  EXPECT_EQ(41, Info(Out(L"a.bmp")).width);
}

TEST_F(ConversionRun, ASelectionWithoutPagesConvertsTheFirst) {
  AddPicture(L"a.tif", 40, 20, FMT_TIFF, 3);
  int32_t none = 99;
  host.options[0].pageCount = 0;
  host.options[0].pages = &none;
  Convert();
  EXPECT_EQ(40, Info(Out(L"a.bmp")).width);
}

TEST_F(ConversionRun, PagesWithoutANumberInTheirNameMeetTheOverwriteRule) {
  AddPicture(L"a.tif", 40, 20, FMT_TIFF, 3);
  std::vector<int32_t> pages = {1, 2, 3};
  host.options[0] = Pages(pages, 3);
  settings.overwriteMode = OVERWRITE_REPLACE;
  Convert();
  EXPECT_EQ(1u, FileCount(out.path()));
  EXPECT_EQ(42, Info(Out(L"a.bmp")).width);
}

TEST_F(ConversionRun, RotatesBeforeItSaves) {
  AddPicture(L"a.bmp", 40, 20);
  settings.rotate.angle = 9000;
  settings.rotate.flags = ROTATE_RESIZE;
  Convert();
  EXPECT_EQ(20, Info(Out(L"a.bmp")).width);
  EXPECT_EQ(40, Info(Out(L"a.bmp")).height);
}

TEST_F(ConversionRun, ResizesAfterItRotates) {
  AddPicture(L"a.bmp", 40, 20);
  settings.rotate.angle = 9000;
  settings.rotate.flags = ROTATE_RESIZE;
  settings.resize.enabled = 1;
  settings.resize.unit = RESIZE_UNIT_PERCENT;
  settings.resize.width = 50;
  settings.resize.height = 25;
  settings.resize.method = 4;
  Convert();
  EXPECT_EQ(10, Info(Out(L"a.bmp")).width);
  EXPECT_EQ(10, Info(Out(L"a.bmp")).height);
}

TEST_F(ConversionRun, AResizeMakesGoodForARotationThatFailed) {
  AddPicture(L"a.bmp", 40, 20);
  settings.rotate.angle = 4500;
  settings.rotate.flags = 0xffffffff;
  settings.resize.enabled = 1;
  settings.resize.width = 8;
  settings.resize.height = 8;
  Convert();
  EXPECT_EQ(CONVERSION_OK, log[0].status);
}

TEST_F(ConversionRun, AResizeToNothingFailsTheFile) {
  AddPicture(L"a.bmp");
  settings.resize.enabled = 1;
  settings.resize.width = 0;
  Convert();
  EXPECT_EQ(CONVERSION_FAILED, log[0].status);
  EXPECT_EQ(0u, FileCount(out.path()));
}

TEST_F(ConversionRun, PutsBackStatusFunctionAndJpeg2000Options) {
  AddPicture(L"a.bmp");
  J2KSAVEOPTION former = {};
  GetDefaultJ2KOptions(&former, sizeof former);
  former.tileWidth = 77;
  SetJ2KOptions(&former);
  static int outsideCalls;
  outsideCalls = 0;
  const STATUSCALLBACK outside = [](int32_t, void*) ZV_CALL -> int32_t {
    ++outsideCalls;
    return SUCCESS;
  };
  SetStatusCallback(outside, this, nullptr, nullptr);
  settings.resize.enabled = 1;
  settings.resize.width = 20;
  settings.resize.height = 10;
  Convert();
  EXPECT_EQ(0, outsideCalls);
  J2KSAVEOPTION after = {};
  GetJ2KOptions(&after, sizeof after);
  EXPECT_EQ(77u, after.tileWidth);
  STATUSCALLBACK restored = nullptr;
  void* restoredData = nullptr;
  SetStatusCallback(nullptr, nullptr, &restored, &restoredData);
  EXPECT_EQ(outside, restored);
  EXPECT_EQ(this, restoredData);
}

TEST_F(ConversionRun, NumbersRunOnOverFilesAndPages) {
  AddPicture(L"a.bmp");
  AddPicture(L"b.bmp");
  host.nameTemplate = L"img<NUM>";
  Convert(0);
  Convert(1);
  EXPECT_TRUE(Exists(Out(L"img0.bmp")));
  EXPECT_TRUE(Exists(Out(L"img1.bmp")));
}

}  // namespace
