// The run on real files, with a host that stands in for the dialog.
#include "tests/unit/conversion/conversion_run_fixture.h"

namespace {

using namespace zvtest;

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
  EXPECT_EQ((FileBytes{1, 2, 3}), ReadWholeFile(Out(L"a.bmp")));
  EXPECT_EQ(1u, FileCount(out.path()));
}

TEST_F(ConversionRun, SkipLeavesTheDestinationAndTheSource) {
  const std::wstring source = AddPicture(L"a.bmp");
  out.AddFile(L"a.bmp", {7});
  settings.overwriteMode = OVERWRITE_SKIP;
  settings.deleteSource = true;
  Convert();
  EXPECT_EQ(CONVERSION_SKIPPED, log[0].status);
  EXPECT_EQ(FileBytes{7}, ReadWholeFile(Out(L"a.bmp")));
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
  EXPECT_EQ(FileBytes{7}, ReadWholeFile(destination));
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

}  // namespace
