#include "pickers/open_progress.h"

#include <gtest/gtest.h>

#include <vector>

#include "services/zvcore/zvcore.h"

namespace {

constexpr int32_t kHeight = 100;  // rows

struct Calls {
  int32_t answer = SUCCESS;
  std::vector<int32_t> file;
  std::vector<int32_t> overall;
};

int32_t ZV_CALL Record(OPENDLGFILEDATA*, int32_t overall, int32_t file, void* userData) {
  auto& calls = *static_cast<Calls*>(userData);
  calls.overall.push_back(overall);
  calls.file.push_back(file);
  return calls.answer;
}

class Progress : public ::testing::Test {
 protected:
  Progress() { file.fileInfo = &info; }
  std::vector<int32_t> FilePercentsOfRows(uint32_t flags) {
    OpenProgress progress(Record, &calls, flags, 1);
    progress.BeginFile(&file, 0);
    for (int row = 0; row < 100; ++row) {
      EXPECT_EQ(SUCCESS, progress.AddRows(1, kHeight));
    }
    return calls.file;
  }

  FILEINFO info = {};
  OPENDLGFILEDATA file = {};
  Calls calls;
};

TEST_F(Progress, ReportsEveryPercentOfABitmapAlone) {
  const std::vector<int32_t> percents = FilePercentsOfRows(DLG_OPEN_LOAD_BITMAP);
  ASSERT_EQ(100u, percents.size());
  EXPECT_EQ(1, percents.front());
  EXPECT_EQ(100, percents.back());
}

TEST_F(Progress, HalvesTheLoadAndDropsOddValuesWithAThumbnail) {
  const std::vector<int32_t> percents = FilePercentsOfRows(DLG_OPEN_LOAD_BITMAP | DLG_OPEN_MAKE_THUMBNAIL);
  ASSERT_EQ(50u, percents.size());
  EXPECT_EQ(1, percents.front());
  EXPECT_EQ(50, percents.back());
}

TEST_F(Progress, GivesTheSecondHalfToTheThumbnail) {
  OpenProgress progress(Record, &calls, DLG_OPEN_MAKE_THUMBNAIL, 2);
  progress.BeginFile(&file, 0);
  EXPECT_EQ(SUCCESS, progress.Report(OpenProgress::kThumbnailOfBitmap, 0));
  EXPECT_EQ(SUCCESS, progress.Report(OpenProgress::kThumbnailOfFile, 51));
  EXPECT_TRUE(calls.file.empty()) << "nothing and odd values are dropped";
  progress.Report(OpenProgress::kThumbnailOfBitmap, 2);
  progress.Report(OpenProgress::kThumbnailOfFile, 100);
  EXPECT_EQ((std::vector<int32_t>{51, 100}), calls.file);
  EXPECT_EQ((std::vector<int32_t>{0, 50}), calls.overall) << "the whole moves when a file is done";
}

TEST_F(Progress, CallsNobodyForNothing) {
  OpenProgress progress(Record, &calls, 0, 1);
  progress.BeginFile(&file, 0);
  EXPECT_EQ(0, progress.Report(OpenProgress::kLoad, 0));
  EXPECT_EQ(0, progress.Report(7, 50)) << "no such phase";
  EXPECT_TRUE(calls.file.empty());
}

TEST_F(Progress, SucceedsWithoutAStatusFunction) {
  OpenProgress progress(nullptr, nullptr, 0, 1);
  progress.BeginFile(&file, 0);
  EXPECT_EQ(SUCCESS, progress.Report(OpenProgress::kLoad, 50));
  EXPECT_EQ(SUCCESS, progress.AddRows(50, kHeight));
}

TEST_F(Progress, ReportsAPercentageOnce) {
  OpenProgress progress(Record, &calls, DLG_OPEN_LOAD_BITMAP, 1);
  progress.BeginFile(&file, 0);
  for (int row = 0; row < 30; ++row) {
    progress.AddRows(1, 10 * kHeight);
  }
  EXPECT_EQ((std::vector<int32_t>{1, 2, 3}), calls.file);
}

TEST_F(Progress, SetsTheWholeInThePhaseOfTheWhole) {
  OpenProgress progress(Record, &calls, 0, 4);
  progress.BeginFile(&file, 0);
  progress.Report(OpenProgress::kLoad, 30);
  progress.Report(OpenProgress::kOverall, 25);
  EXPECT_EQ((std::vector<int32_t>{30, 30}), calls.file);
  EXPECT_EQ((std::vector<int32_t>{0, 25}), calls.overall);
}

TEST_F(Progress, StopsWhenMoreRowsComeThanTheFileHas) {
  OpenProgress progress(Record, &calls, 0, 1);
  progress.BeginFile(&file, 0);
  EXPECT_EQ(ERROR_USER_ABORT, progress.AddRows(102, kHeight));
  EXPECT_TRUE(progress.IsStopped());
  EXPECT_EQ(ERROR_USER_ABORT, progress.AddRows(1, kHeight)) << "for good";
}

TEST_F(Progress, StopsBeforeItsFirstFile) {
  OpenProgress progress(Record, &calls, 0, 1);
  EXPECT_EQ(ERROR_USER_ABORT, progress.AddRows(1, kHeight));
  EXPECT_EQ(ERROR_USER_ABORT, OpenProgress::OnRows(nullptr, nullptr, nullptr, 0, 0, 1, nullptr));
}

class StoppingAnswer : public Progress, public ::testing::WithParamInterface<int32_t> {};
class GoingAnswer : public Progress, public ::testing::WithParamInterface<int32_t> {};

TEST_P(StoppingAnswer, EndsTheLoadAtTheNextRows) {
  calls.answer = GetParam();
  OpenProgress progress(Record, &calls, 0, 1);
  progress.BeginFile(&file, 0);
  EXPECT_EQ(SUCCESS, progress.AddRows(10, kHeight));
  EXPECT_TRUE(progress.IsStopped());
  EXPECT_EQ(ERROR_USER_ABORT, progress.AddRows(10, kHeight));
  EXPECT_EQ(ERROR_USER_ABORT, progress.ReportThumbnail(OpenProgress::kThumbnailOfBitmap, 10));
}

TEST_P(GoingAnswer, LetsTheLoadGoOn) {
  calls.answer = GetParam();
  OpenProgress progress(Record, &calls, 0, 1);
  progress.BeginFile(&file, 0);
  EXPECT_EQ(SUCCESS, progress.AddRows(10, kHeight));
  EXPECT_FALSE(progress.IsStopped());
}

INSTANTIATE_TEST_SUITE_P(StatusFunction, StoppingAnswer, ::testing::Values(100, ERROR_USER_ABORT, 4, -1));
INSTANTIATE_TEST_SUITE_P(StatusFunction, GoingAnswer, ::testing::Values(0, 1, 2, 3));

}  // namespace
