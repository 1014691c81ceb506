#include "services/zvcore/zvcore.h"
#include "tests/unit/zvcore/test_bitmap.h"

namespace {

int32_t ZV_CALL AnswerOne(int32_t, void*) { return SUCCESS; }
int32_t ZV_CALL AnswerTwo(int32_t, void*) { return 2; }
int32_t ZV_CALL KeepPercent(int32_t percent, void* userData) {
  *static_cast<int32_t*>(userData) = percent;
  return SUCCESS;
}

class StatusChannel : public testing::Test {
 protected:
  ~StatusChannel() override { SetStatusCallback(nullptr, nullptr, nullptr, nullptr); }
};

TEST_F(StatusChannel, WithoutAFunctionReportsSucceed) { EXPECT_EQ(ReportStatus(50), SUCCESS); }

TEST_F(StatusChannel, SwapGivesTheFormerPair) {
  int first = 0, second = 0;
  STATUSCALLBACK old = &AnswerTwo;
  void* oldData = &first;
  EXPECT_EQ(SetStatusCallback(&AnswerOne, &first, &old, &oldData), SUCCESS);
  EXPECT_EQ(old, nullptr);
  EXPECT_EQ(oldData, nullptr);
  EXPECT_EQ(SetStatusCallback(&AnswerTwo, &second, &old, &oldData), SUCCESS);
  EXPECT_EQ(old, &AnswerOne);
  EXPECT_EQ(oldData, &first);
  EXPECT_EQ(SetStatusCallback(nullptr, nullptr, nullptr, nullptr), SUCCESS);
  EXPECT_EQ(ReportStatus(1), SUCCESS);
}

TEST_F(StatusChannel, FunctionGetsPercentAndUserData) {
  int32_t percent = 0;
  SetStatusCallback(&KeepPercent, &percent, nullptr, nullptr);
  EXPECT_EQ(ReportStatus(42), SUCCESS);
  EXPECT_EQ(percent, 42);
}

TEST_F(StatusChannel, AnyAnswerButOneIsAnAbort) {
  SetStatusCallback(&AnswerTwo, nullptr, nullptr, nullptr);
  EXPECT_EQ(ReportStatus(0), ERROR_USER_ABORT);
}

TEST_F(StatusChannel, LongWorkReportsRisingPercentagesUpToAHundred) {
  TestBitmap bitmap(400, 400, {24});
  StatusProbe probe;
  ASSERT_EQ(SizeBitmap(&bitmap, 200, 300, SIZE_BICUBIC), SUCCESS);
  EXPECT_TRUE(probe.rising);
  EXPECT_EQ(probe.last, 100);
  EXPECT_GT(probe.calls, 50);
  EXPECT_LE(probe.calls, 101);
}

}  // namespace
