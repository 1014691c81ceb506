// Runs that are stopped or lose their ground at every moment there is: what they leave behind.
#include "tests/unit/conversion/conversion_run_fixture.h"

namespace {

using namespace zvtest;

struct Target {
  int32_t format;
  int32_t bits;
};

void PrintTo(const Target& target, std::ostream* out) { *out << target.format << " at " << target.bits << " bits"; }

class StoppedAnywhere : public ConversionRun, public ::testing::WithParamInterface<Target> {
 protected:
  void SetUp() override {
    ConversionRun::SetUp();
    host.formats[0].fileFormat = GetParam().format;
    host.formats[0].bitsPerPixel = GetParam().bits;
    host.formats[0].qFactor = 6;
    settings.overwriteMode = OVERWRITE_REPLACE;
    settings.deleteSource = true;
    settings.rotate.angle = 1250;
    settings.rotate.flags = ROTATE_RESIZE;
  }

  // Converts, stopping at report `stopAt`; gives the number of reports.
  int ConvertStoppingAt(int stopAt) {
    int reports = 0;
    status = [&](int32_t) { return reports++ == stopAt ? ERROR_USER_ABORT : SUCCESS; };
    log.RemoveAll();
    Convert();
    return reports;
  }
};

TEST_P(StoppedAnywhere, LeavesTheSourceAndTheOldDestinationAndNothingElse) {
  const std::wstring source = AddPicture(L"a.png", 50, 90, FMT_PNG);
  const FileBytes original = ReadWholeFile(source);
  const FileBytes old = {'o', 'l', 'd'};
  settings.deleteSource = false;
  const int reports = ConvertStoppingAt(-1);
  ASSERT_EQ(CONVERSION_OK, LastStatus());
  ASSERT_GT(reports, 4);
  settings.deleteSource = true;
  for (int stopAt = 0; stopAt < reports; ++stopAt) {
    out.AddFile(L"a.bmp", old);
    ConvertStoppingAt(stopAt);
    ASSERT_EQ(CONVERSION_FAILED, LastStatus()) << stopAt;
    ASSERT_EQ(original, ReadWholeFile(source)) << stopAt;
    ASSERT_EQ(old, ReadWholeFile(Out(L"a.bmp"))) << stopAt;
    ASSERT_EQ(1u, FileCount(out.path())) << stopAt;
  }
  EXPECT_TRUE(host.deletedRows.empty());
}

INSTANTIATE_TEST_SUITE_P(Formats, StoppedAnywhere,
                         ::testing::Values(Target{FMT_JPEG, 24}, Target{FMT_PNG, 24}, Target{FMT_PNG, 8},
                                           Target{FMT_TIFF_LZW, 24}, Target{FMT_GIF, 8}, Target{FMT_BMP, 24},
                                           Target{FMT_CMP, 24}, Target{FMT_WEBP, 24}, Target{FMT_JP2, 24}));

TEST_F(ConversionRun, StoppingOnePageKeepsThePagesThatAreDone) {
  const std::wstring source = AddPicture(L"a.tif", 40, 90, FMT_TIFF, 3);
  std::vector<int32_t> pages = {1, 2, 3};
  host.options[0].pageTotal = host.options[0].pageCount = 3;
  host.options[0].pages = pages.data();
  host.nameTemplate = L"<SRC>-<NUM>";
  settings.deleteSource = true;
  bool saving = false;
  int32_t last = -1;
  int saves = 0;
  status = [&](int32_t percent) {
    const bool begins = percent < last;  // of the save, then of the next load
    last = percent;
    saving = begins ? !saving : saving;
    saves += begins && saving;
    return saves == 3 && percent > 20 ? ERROR_USER_ABORT : SUCCESS;
  };
  Convert();
  ASSERT_EQ(3, log.GetSize());
  EXPECT_EQ(CONVERSION_OK, log[0].status);
  EXPECT_EQ(CONVERSION_OK, log[1].status);
  EXPECT_EQ(CONVERSION_FAILED, log[2].status);
  EXPECT_EQ(40, Info(Out(L"a-0.bmp")).width);
  EXPECT_EQ(41, Info(Out(L"a-1.bmp")).width);
  EXPECT_EQ(2u, FileCount(out.path()));
  EXPECT_TRUE(Exists(source));
}

TEST_F(ConversionRun, ADestinationFolderThatVanishesDuringASaveFailsTheFile) {
  const std::wstring source = AddPicture(L"a.bmp", 40, 200);
  const std::wstring folder = out.AddFolder(L"there");
  host.folder = folder.c_str();
  settings.deleteSource = true;
  bool moved = false;
  int32_t last = -1;
  status = [&](int32_t percent) {
    if (percent < last) {
      moved = moved || ::MoveFileW(folder.c_str(), out.File(L"gone").c_str());
    }
    last = percent;
    return SUCCESS;
  };
  Convert();
  if (!moved) {
    GTEST_SKIP() << "this system does not let a folder vanish while a file in it is open";
  }
  EXPECT_EQ(CONVERSION_FAILED, log[0].status);
  EXPECT_TRUE(Exists(source));
  EXPECT_FALSE(Exists(folder + L"\\a.bmp"));
}

TEST_F(ConversionRun, ASourceThatVanishesDuringItsLoadLosesNothingElse) {
  const std::wstring source = AddPicture(L"a.png", 40, 200, FMT_PNG);
  out.AddFile(L"a.bmp", {7});
  settings.overwriteMode = OVERWRITE_REPLACE;
  settings.deleteSource = true;
  bool deleted = false;
  status = [&](int32_t) {
    deleted = deleted || ::DeleteFileW(source.c_str());
    return SUCCESS;
  };
  Convert();
  ASSERT_TRUE(deleted);
  // Whether the rest can still be read is the system's to say; the destination is whole in either case.
  if (log[0].status == CONVERSION_OK) {
    EXPECT_EQ(40, Info(Out(L"a.bmp")).width);
  } else {
    EXPECT_EQ(FileBytes{7}, ReadWholeFile(Out(L"a.bmp")));
  }
  EXPECT_EQ(1u, FileCount(out.path()));
}

}  // namespace
