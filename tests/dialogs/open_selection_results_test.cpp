// What the open dialog hands over for each chosen file, field by field, and what it reports on the way.
#include "tests/dialogs/open_selection_fixture.h"
#include "tests/support/leak_check.h"

namespace {

using namespace zvtest;

// A drawing of that many hundredths of a millimetre each way.
void WriteMetafile(const std::wstring& path, int width, int height) {
  const RECT frame = {0, 0, width, height};
  const HDC device = ::CreateEnhMetaFileW(nullptr, path.c_str(), &frame, nullptr);
  ASSERT_NE(nullptr, device);
  ::Ellipse(device, 0, 0, 40, 30);
  ::DeleteEnhMetaFile(::CloseEnhMetaFile(device));
}

class OpenResults : public OpenSelectionTest {
 protected:
  OpenResults() {
    GetLoadDpi(&formerX, &formerY);
    call.openFileName.Flags = OFN_ALLOWMULTISELECT;
  }
  ~OpenResults() override {
    SetLoadDpi(formerX, formerY);
    SetLoadSize(FMT_ICO, 0, 0);
    SetLoadSize(FMT_JP2, 0, 0);
  }
  void ExpectCommonFields(const OPENDLGFILEDATA& file, const std::wstring& path, int32_t format) const {
    EXPECT_EQ(660u, file.uStructSize);
    EXPECT_EQ(path, file.fileName);
    EXPECT_EQ(format, file.format);
    EXPECT_EQ(16u, file.optionFlags);
    EXPECT_EQ(1, file.pageNumber);
    EXPECT_EQ(0, file.passes);
    ASSERT_NE(nullptr, file.fileInfo);
    EXPECT_EQ(2212u, ::GlobalSize(file.fileInfo));
    EXPECT_EQ(2212u, file.fileInfo->uStructSize);
    EXPECT_EQ(format, file.fileInfo->format);
    EXPECT_EQ(path.substr(path.rfind(L'\\') + 1), file.fileInfo->name);
    const RASTERIZEDOCOPTION none = {};
    EXPECT_EQ(0, memcmp(&none, &file.rasterizeDoc, sizeof(none)));
  }
  int32_t formerX = 0, formerY = 0;
};

TEST_F(OpenResults, AnOrdinaryPictureHasItsInformationAndNoLoadSettings) {
  const std::wstring path = AddPicture(L"plain.png", {.width = 33, .height = 22, .format = FMT_PNG});
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"plain.png"));
  ASSERT_EQ(1, call.params.fileCount);
  EXPECT_EQ(660u, ::GlobalSize(call.params.files));
  ExpectCommonFields(Opened(), path, FMT_PNG);
  EXPECT_EQ(33, Opened().fileInfo->width);
  EXPECT_EQ(22, Opened().fileInfo->height);
  EXPECT_EQ(24, Opened().fileInfo->bitsPerPixel);
  EXPECT_EQ(nullptr, Opened().formatOptions);
  EXPECT_EQ(nullptr, Opened().bitmap);
  EXPECT_EQ(nullptr, Opened().thumbnail);
}

TEST_F(OpenResults, AMetafileHasTheResolutionInForce) {
  const std::wstring path = folder.File(L"drawing.emf");
  WriteMetafile(path, 2540, 1270);
  pictures = 1;
  SetLoadDpi(100, 200);
  call.params.flags = DLG_OPEN_LOAD_BITMAP | DLG_OPEN_MAKE_THUMBNAIL;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"drawing.emf"));
  ExpectCommonFields(Opened(), path, FMT_EMF);
  ASSERT_EQ(sizeof(PAIRFORMATOPTION), ::GlobalSize(Opened().formatOptions));
  const auto* const option = static_cast<const PAIRFORMATOPTION*>(Opened().formatOptions);
  EXPECT_EQ(100, option->x);
  EXPECT_EQ(200, option->y);
  ASSERT_NE(nullptr, Opened().bitmap);
  EXPECT_NEAR(100, Opened().bitmap->width, 2) << "an inch";
  EXPECT_NEAR(100, Opened().bitmap->height, 2) << "half an inch";
  ASSERT_NE(nullptr, Opened().thumbnail);
  EXPECT_NEAR(150, Opened().thumbnail->width, 3);
  int32_t x = 0, y = 0;
  GetLoadDpi(&x, &y);
  EXPECT_EQ(100, x) << "the setting is as it was";
  EXPECT_EQ(200, y);
}

TEST_F(OpenResults, FilesOfSeveralSizesHaveTheLoadSizeOfTheirFormat) {
  const std::wstring icon = AddPicture(L"icon.ico", {.width = 32, .height = 32, .format = FMT_ICO, .bits = 32});
  const std::wstring wavelets = AddPicture(L"wavelets.jp2", {.width = 64, .height = 48, .format = FMT_JP2});
  SetLoadSize(FMT_ICO, 32, 32);
  call.params.flags = DLG_OPEN_LOAD_BITMAP;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"\"icon.ico\" \"wavelets.jp2\""));
  ASSERT_EQ(2, call.params.fileCount);
  EXPECT_EQ(2u * 660u, ::GlobalSize(call.params.files));
  ExpectCommonFields(Opened(0), icon, FMT_ICO);
  ASSERT_EQ(sizeof(PAIRFORMATOPTION), ::GlobalSize(Opened(0).formatOptions));
  const auto* const iconSize = static_cast<const PAIRFORMATOPTION*>(Opened(0).formatOptions);
  EXPECT_EQ(32, iconSize->x);
  EXPECT_EQ(32, iconSize->y);
  EXPECT_EQ(32, Opened(0).bitmap->width);
  ExpectCommonFields(Opened(1), wavelets, FMT_JP2);
  const auto* const waveletSize = static_cast<const PAIRFORMATOPTION*>(Opened(1).formatOptions);
  ASSERT_NE(nullptr, waveletSize);
  EXPECT_EQ(0, waveletSize->x);
  EXPECT_EQ(64, Opened(1).bitmap->width);
  int32_t width = 0, height = 0;
  GetLoadSize(FMT_ICO, &width, &height, nullptr);
  EXPECT_EQ(32, width) << "the setting is as it was";
}

TEST_F(OpenResults, BitmapAndThumbnailAreHandlesOfTheirOwn) {
  AddPicture(L"wide.jpg", {.width = 640, .height = 320, .format = FMT_JPEG});
  call.params.flags = DLG_OPEN_LOAD_BITMAP | DLG_OPEN_MAKE_THUMBNAIL;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"wide.jpg"));
  const BITMAPHANDLE* const bitmap = Opened().bitmap;
  const BITMAPHANDLE* const thumbnail = Opened().thumbnail;
  ASSERT_NE(nullptr, bitmap);
  ASSERT_NE(nullptr, thumbnail);
  EXPECT_EQ(272u, ::GlobalSize(const_cast<BITMAPHANDLE*>(bitmap)));
  EXPECT_EQ(272u, ::GlobalSize(const_cast<BITMAPHANDLE*>(thumbnail)));
  EXPECT_TRUE(bitmap->flags & BITMAP_FLAG_ALLOCATED);
  EXPECT_EQ(640, bitmap->width);
  EXPECT_EQ(320, bitmap->height);
  EXPECT_TRUE(thumbnail->flags & BITMAP_FLAG_ALLOCATED);
  EXPECT_EQ(150, thumbnail->width);
  EXPECT_EQ(75, thumbnail->height);
  EXPECT_EQ(bitmap->bitsPerPixel, thumbnail->bitsPerPixel);
  EXPECT_EQ(bitmap->colorOrder, thumbnail->colorOrder);
  EXPECT_EQ(bitmap->viewPerspective, thumbnail->viewPerspective);
  EXPECT_NE(bitmap->data, thumbnail->data);
}

TEST_F(OpenResults, AThumbnailOfAPaletteImageKeepsItsColours) {
  AddPicture(L"colours.gif", {.width = 300, .height = 300, .format = FMT_GIF, .bits = 8});
  call.params.flags = DLG_OPEN_MAKE_THUMBNAIL;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"colours.gif"));
  EXPECT_EQ(nullptr, Opened().bitmap);
  const BITMAPHANDLE* const thumbnail = Opened().thumbnail;
  ASSERT_NE(nullptr, thumbnail);
  EXPECT_EQ(8, thumbnail->bitsPerPixel);
  BITMAPHANDLE colors = *thumbnail;
  Opened().thumbnail->flags &= ~BITMAP_FLAG_ALLOCATED;  // the copy owns the pixels from here on
  ASSERT_EQ(SUCCESS, ConvertBitmapDepth(&colors, 24, ORDER_BGR, nullptr, 0));
  std::vector<uint8_t> row(static_cast<size_t>(colors.bytesPerLine));
  ASSERT_GT(CopyBitmapRow(&colors, row.data(), 75, colors.bytesPerLine), 0);
  EXPECT_GT(row[2], 240) << "red on the left";
  EXPECT_GT(row[3 * 149], 240) << "blue on the right";
  FreeBitmap(&colors);
}

TEST_F(OpenResults, FlagsSayHowEachFileIsLoaded) {
  AddPicture(L"a.jpg", {.format = FMT_JPEG});
  AddPicture(L"b.jpg", {.format = FMT_JPEG});
  call.params.flags = DLG_OPEN_LOAD_COMPRESSED | DLG_OPEN_LOAD_ROTATED | DLG_OPEN_LOAD_BITMAP;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"\"a.jpg\" \"b.jpg\""));
  ASSERT_EQ(2, call.params.fileCount);
  for (int i = 0; i < 2; ++i) {
    EXPECT_NE(0, Opened(i).loadCompressed);
    EXPECT_NE(0, Opened(i).loadRotated);
    EXPECT_EQ(40, Opened(i).bitmap->width);
  }
}

TEST_F(OpenResults, PagesAreCountedOnRequestAlone) {
  AddPicture(L"pages.tif", {.format = FMT_TIFF, .pages = 4});
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"pages.tif"));
  EXPECT_EQ(1, Opened().fileInfo->totalPages);
  call.FreeFiles();
  call.params.flags = DLG_OPEN_FULL_FILE_INFO | DLG_OPEN_LOAD_BITMAP;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"pages.tif"));
  EXPECT_EQ(4, Opened().fileInfo->totalPages) << "and the load of a page keeps the count";
}

// --- Progress ---

struct Reports {
  std::function<int32_t(int32_t overall, int32_t file)> answer = [](int32_t, int32_t) { return SUCCESS; };
  std::vector<int32_t> overall, file;
  std::vector<std::wstring> names;
};

int32_t ZV_CALL TakeReport(OPENDLGFILEDATA* file, int32_t overall, int32_t percent, void* userData) {
  auto& reports = *static_cast<Reports*>(userData);
  reports.overall.push_back(overall);
  reports.file.push_back(percent);
  reports.names.emplace_back(file->fileName);
  return reports.answer(overall, percent);
}

class OpenProgressReports : public OpenResults {
 protected:
  OpenProgressReports() {
    first = AddPicture(L"first.bmp", {.width = 200, .height = 1000});
    second = AddPicture(L"second.bmp", {.width = 200, .height = 1000});
    call.params.statusCallback = TakeReport;
    call.params.statusCallbackUserData = &reports;
  }
  int32_t OpenBoth() { return OpenByName(L"\"first.bmp\" \"second.bmp\""); }
  bool AnyOdd() const {
    return std::ranges::any_of(reports.file, [](int32_t percent) { return percent % 2 != 0; });
  }
  std::wstring first, second;
  Reports reports;
};

TEST_F(OpenProgressReports, GoUpToAllForEachFileAndMoveTheWholeAtItsEnd) {
  call.params.flags = DLG_OPEN_LOAD_BITMAP;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenBoth());
  const auto fileEnd = std::ranges::find(reports.file, 100);
  ASSERT_NE(reports.file.end(), fileEnd);
  const auto firstCount = static_cast<size_t>(fileEnd - reports.file.begin()) + 1;
  EXPECT_TRUE(std::is_sorted(reports.file.begin(), fileEnd));
  EXPECT_EQ(0, reports.overall.front());
  EXPECT_EQ(50, reports.overall[firstCount - 1]);
  EXPECT_EQ(100, reports.overall.back());
  EXPECT_EQ(100, reports.file.back());
  EXPECT_EQ(first, reports.names.front());
  EXPECT_EQ(second, reports.names.back());
}

TEST_F(OpenProgressReports, HaveOddValuesForBitmapsAloneOnly) {
  call.params.flags = DLG_OPEN_LOAD_BITMAP;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenBoth());
  EXPECT_TRUE(AnyOdd());
}

TEST_F(OpenProgressReports, GiveTheFirstHalfToTheLoadAndTheSecondToTheThumbnail) {
  for (const uint32_t flags : {DLG_OPEN_MAKE_THUMBNAIL, DLG_OPEN_MAKE_THUMBNAIL | DLG_OPEN_LOAD_BITMAP}) {
    reports.file.clear();
    call.params.flags = flags;
    ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"first.bmp"));
    EXPECT_TRUE(std::ranges::is_sorted(reports.file));
    EXPECT_EQ(100, reports.file.back());
    const auto half = std::ranges::find_if(reports.file, [](int32_t percent) { return percent > 50; });
    EXPECT_GT(half - reports.file.begin(), 5) << "steps of the load";
    EXPECT_GT(reports.file.end() - half, 5) << "steps of the thumbnail";
    call.FreeFiles();
  }
}

TEST_F(OpenProgressReports, AreNoneWithoutBitmapAndThumbnail) {
  ASSERT_EQ(SUCCESS_DLG_OK, OpenBoth());
  EXPECT_TRUE(reports.file.empty());
}

class OpenStop : public OpenProgressReports, public ::testing::WithParamInterface<int32_t> {};
class OpenGoOn : public OpenProgressReports, public ::testing::WithParamInterface<int32_t> {};

TEST_P(OpenStop, EndsTheCallWithoutFiles) {
  for (const uint32_t flags : {DLG_OPEN_LOAD_BITMAP, DLG_OPEN_MAKE_THUMBNAIL}) {
    const int64_t blocks = CoreBlockCount();
    reports.file.clear();
    reports.answer = [](int32_t, int32_t) { return GetParam(); };
    call.params.flags = flags;
    EXPECT_EQ(ERROR_USER_ABORT, OpenBoth());
    EXPECT_EQ(nullptr, call.params.files);
    EXPECT_EQ(0, call.params.fileCount);
    EXPECT_EQ(1u, reports.file.size()) << "who has stopped is not asked again";
    EXPECT_EQ(blocks, CoreBlockCount()) << "nothing is left";
  }
}

TEST_P(OpenGoOn, IsAnyAnswerThatDoesNotStop) {
  call.params.flags = DLG_OPEN_LOAD_BITMAP;
  reports.answer = [](int32_t, int32_t) { return GetParam(); };
  ASSERT_EQ(SUCCESS_DLG_OK, OpenBoth());
  EXPECT_EQ(2, call.params.fileCount);
}

INSTANTIATE_TEST_SUITE_P(Answers, OpenStop, ::testing::Values(ERROR_USER_ABORT, 100));
INSTANTIATE_TEST_SUITE_P(Answers, OpenGoOn, ::testing::Values(1, 0, 2, 3));

TEST_F(OpenProgressReports, StopAtTheEndOfALaterFileFreesTheFilesBefore) {
  const int64_t blocks = CoreBlockCount();
  call.params.flags = DLG_OPEN_LOAD_BITMAP;
  reports.answer = [](int32_t overall, int32_t) { return overall == 100 ? ERROR_USER_ABORT : SUCCESS; };
  EXPECT_EQ(ERROR_USER_ABORT, OpenBoth());
  EXPECT_EQ(nullptr, call.params.files);
  EXPECT_EQ(blocks, CoreBlockCount());
}

TEST_F(OpenProgressReports, StopWithinALaterFileKeepsTheFilesBefore) {
  call.params.flags = DLG_OPEN_LOAD_BITMAP;
  // The first file's own end moves the whole to 50: only what comes after it stops.
  bool firstDone = false;
  reports.answer = [&](int32_t overall, int32_t) {
    const bool within = firstDone;
    firstDone = overall == 50;
    return within ? ERROR_USER_ABORT : SUCCESS;
  };
  ASSERT_EQ(SUCCESS_DLG_OK, OpenBoth());
  ASSERT_EQ(2, call.params.fileCount);
  EXPECT_TRUE(Opened(0).bitmap->flags & BITMAP_FLAG_ALLOCATED);
  EXPECT_FALSE(Opened(1).bitmap->flags & BITMAP_FLAG_ALLOCATED);
}

TEST_F(OpenProgressReports, OpeningWithPicturesLeavesNothingBehind) {
  call.params.flags = DLG_OPEN_LOAD_BITMAP | DLG_OPEN_MAKE_THUMBNAIL;
  bool stops = false;
  reports.answer = [&](int32_t, int32_t percent) { return stops && percent > 60 ? ERROR_USER_ABORT : SUCCESS; };
  ExpectNothingLeftBehind(
      [&] {
        stops = !stops;
        reports.file.clear();
        reports.overall.clear();
        reports.names.clear();
        ASSERT_EQ(stops ? ERROR_USER_ABORT : SUCCESS_DLG_OK, OpenByName(L"first.bmp"));
        call.FreeFiles();
      },
      {.warmUp = 20, .times = 80, .systemLeaves = SystemOpenDialogLeaves()});
}

}  // namespace
