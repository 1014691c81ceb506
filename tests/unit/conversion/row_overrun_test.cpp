// A load that reports more rows than its file has. No codec does that, so the test answers for the file library: its own pointer
// takes the place of the import of that one function.
#include "tests/unit/conversion/conversion_run_fixture.h"

namespace {
std::vector<int32_t> answers;  // of the run to the reports

int32_t ZV_CALL LoadTooManyRows(const wchar_t*, BITMAPHANDLE* bitmap, uint32_t, int32_t, int32_t, uint32_t,
                                FILELOADCALLBACK callback, void* userData, const LOADFILEOPTION*, FILEINFO*) {
  FILEINFO info = {};
  info.height = 20;
  for (const int32_t rows : {10, 10, 1, 1}) {
    answers.push_back(callback(&info, bitmap, nullptr, 0, 0, rows, userData));
  }
  return answers.back();
}
}  // namespace

// The name that the linker gives to the pointer of an imported function.
extern "C" decltype(&LoadTooManyRows) const __imp_LoadImageFile = &LoadTooManyRows;

namespace {

using namespace zvtest;

TEST_F(ConversionRun, ALoadOfMoreRowsThanItsFileHasFailsTheFile) {
  AddPicture(L"a.png", 40, 20, FMT_PNG);
  settings.deleteSource = true;
  Convert();
  EXPECT_EQ(CONVERSION_FAILED, LastStatus());
  EXPECT_EQ((std::vector<int32_t>{SUCCESS, SUCCESS, ERROR_USER_ABORT, ERROR_USER_ABORT}), answers);
  EXPECT_EQ(0u, FileCount(out.path()));
  EXPECT_TRUE(host.deletedRows.empty());
}

}  // namespace
