#include "pickers/load_options_step.h"

#include <gtest/gtest.h>

#include "pickers/opened_files.h"

namespace {

// A frame that answers as it is told and looks at the record on the way.
struct Script {
  int32_t accepts = SUCCESS;
  INT_PTR answer = IDOK;
  std::function<void(FILELOADOPTIONSDLGDATA& data)> work;
  int runs = 0;
};

class ScriptedFrame : public LoadOptionsFrame {
 public:
  explicit ScriptedFrame(Script& script) : script_(script) {}
  int32_t SetOptions(FILELOADOPTIONSDLGDATA* data) override {
    data_ = data;
    return script_.accepts;
  }
  INT_PTR DoModal() override {
    ++script_.runs;
    if (script_.work) {
      script_.work(*data_);
    }
    return script_.answer;
  }

 private:
  Script& script_;
  FILELOADOPTIONSDLGDATA* data_ = nullptr;
};

class LoadOptionsStep : public ::testing::Test {
 protected:
  LoadOptionsOutcome Run() {
    return RunLoadOptions([this] { return std::make_unique<ScriptedFrame>(script); }, request, list);
  }
  Script script;
  LoadOptionsRequest request = {DLG_OPEN_CONTEXT_HELP | DLG_OPEN_LOADPAGE_PDF, 4, 300, 200};
  std::vector<OPENDLGFILEDATA> list = MakeFileList({L"C:\\a.tif", L"C:\\b.jpg"}, 0);
};

TEST_F(LoadOptionsStep, HandsTheRecordOver) {
  script.work = [](FILELOADOPTIONSDLGDATA& data) {
    EXPECT_EQ(80u, data.uStructSize);
    ASSERT_EQ(2, data.files.GetSize());
    EXPECT_STREQ(L"C:\\b.jpg", data.files[1].fileName);
    EXPECT_EQ(4, data.defaultPage);
    EXPECT_EQ(300, data.defaultXDpi);
    EXPECT_EQ(200, data.defaultYDpi);
    EXPECT_EQ(1u, data.pageHelp);
    EXPECT_EQ(nullptr, data.reserved64);
    EXPECT_EQ(LOADPAGE_PDF, data.pageFlags);
  };
  Run();
  EXPECT_EQ(1, script.runs);
}

TEST_F(LoadOptionsStep, StartsARecordAtPageOne) { EXPECT_EQ(1, FILELOADOPTIONSDLGDATA().defaultPage); }

TEST_F(LoadOptionsStep, TakesTheListBackOnOk) {
  script.work = [](FILELOADOPTIONSDLGDATA& data) {
    data.files[0].pageNumber = 3;
    data.files[1].passes = 2;
  };
  const LoadOptionsOutcome outcome = Run();
  EXPECT_EQ(AfterLoadOptions::kReadFiles, outcome.next);
  EXPECT_EQ(SUCCESS, outcome.status);
  EXPECT_EQ(3, list[0].pageNumber);
  EXPECT_EQ(2, list[1].passes);
}

TEST_F(LoadOptionsStep, StaysOpenOnCancelWithTheListAsItWas) {
  script.answer = IDCANCEL;
  script.work = [](FILELOADOPTIONSDLGDATA& data) {
    data.files[0].pageNumber = 3;
    data.files[0].fileInfo = static_cast<FILEINFO*>(::GlobalAlloc(GPTR, sizeof(FILEINFO)));
    data.files[0].formatOptions = ::GlobalAlloc(GPTR, 12);
  };
  EXPECT_EQ(AfterLoadOptions::kStayOpen, Run().next);
  EXPECT_EQ(0, list[0].pageNumber);
  EXPECT_EQ(nullptr, list[0].fileInfo) << "what the frame read is freed, not taken over";
}

TEST_F(LoadOptionsStep, StaysOpenWhenTheFrameRefuses) {
  for (const int32_t refusal : {0, ERROR_BAD_ARGUMENT}) {
    script.accepts = refusal;
    EXPECT_EQ(AfterLoadOptions::kStayOpen, Run().next);
  }
  EXPECT_EQ(0, script.runs);
  EXPECT_EQ(2u, list.size());
}

TEST_F(LoadOptionsStep, StaysOpenWhenTheUserHasRemovedEveryFile) {
  script.work = [](FILELOADOPTIONSDLGDATA& data) { data.files.RemoveAll(); };
  EXPECT_EQ(AfterLoadOptions::kStayOpen, Run().next);
  EXPECT_EQ(2u, list.size());
}

TEST_F(LoadOptionsStep, EndsTheOpenDialogWhenTheFrameFails) {
  for (const INT_PTR answer : {INT_PTR{0}, INT_PTR{-1}, INT_PTR{7}}) {
    script.answer = answer;
    const LoadOptionsOutcome outcome = Run();
    EXPECT_EQ(AfterLoadOptions::kEnd, outcome.next);
    EXPECT_EQ(ERROR_DIALOG_FAILED, outcome.status);
  }
}

TEST_F(LoadOptionsStep, EndsTheOpenDialogWithoutAFrame) {
  const LoadOptionsOutcome outcome = RunLoadOptions([] { return std::unique_ptr<LoadOptionsFrame>(); }, request, list);
  EXPECT_EQ(AfterLoadOptions::kEnd, outcome.next);
  EXPECT_EQ(-1, outcome.status);
}

TEST_F(LoadOptionsStep, StaysOpenWhileThereIsNothingToOffer) {
  const LoadOptionsOutcome outcome =
      RunLoadOptions([] { return std::make_unique<EmptyLoadOptionsFrame>(); }, request, list);
  EXPECT_EQ(AfterLoadOptions::kStayOpen, outcome.next);
}

TEST(LoadPages, AreNamedBitByBit) {
  constexpr uint32_t kDialogBits[] = {0x2, 0x4, 0x8, 0x10, 0x200, 0x400, 0x800, 0x08000000, 0x10000000, 0x20000000};
  for (uint32_t bit = 0; bit < std::size(kDialogBits); ++bit) {
    EXPECT_EQ(1u << bit, LoadPageFlags(kDialogBits[bit])) << bit;
  }
  EXPECT_EQ(0x3FFu, LoadPageFlags(0xFFFFFFFF));
  EXPECT_EQ(0u, LoadPageFlags(DLG_OPEN_SHOW_PREVIEW | DLG_OPEN_LOAD_BITMAP | DLG_OPEN_CONTEXT_HELP));
}

}  // namespace
