#include "pickers/page_probe.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "services/zvfile/zvfile.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/import_patch.h"
#include "tests/support/pictures.h"

namespace {

using namespace zvtest;

class PageProbe : public ::testing::Test {
 protected:
  PageProbe() {
    EXPECT_TRUE(WritePicture(pages, {.format = FMT_TIFF, .pages = 3}));
    EXPECT_TRUE(WritePicture(single, {}));
  }
  TemporaryFolder folder;
  std::wstring pages = folder.File(L"pages.tif");
  std::wstring single = folder.File(L"single.bmp");
};

TEST_F(PageProbe, TellsFilesWithPagesFromThoseWithOne) {
  EXPECT_TRUE(IsMultiPage(pages.c_str()));
  EXPECT_FALSE(IsMultiPage(single.c_str()));
  EXPECT_FALSE(IsMultiPage(folder.File(L"none.tif").c_str()));
}

TEST_F(PageProbe, FindsTheLastPageAndNamesItForOneBehindIt) {
  int32_t page = 0;
  EXPECT_TRUE(ProbePage(pages.c_str(), 3, &page));
  EXPECT_EQ(3, page);
  EXPECT_FALSE(ProbePage(pages.c_str(), 4, &page));
  EXPECT_EQ(3, page);
  EXPECT_FALSE(ProbePage(single.c_str(), 2, &page));
  EXPECT_EQ(1, page);
}

TEST_F(PageProbe, NamesNoPageOfAFileThatCannotBeRead) {
  int32_t page = 77;
  EXPECT_FALSE(ProbePage(folder.File(L"none.tif").c_str(), 1, &page));
  EXPECT_FALSE(ProbePage(folder.AddFile(L"damaged.tif", {'I', 'I', 42, 0, 8, 0, 0, 0}).c_str(), 2, &page));
  EXPECT_EQ(77, page);
}

TEST_F(PageProbe, AsksForNoPageBelowOne) {
  int32_t page = 77;
  EXPECT_FALSE(ProbePage(pages.c_str(), 0, &page));
  EXPECT_FALSE(ProbePage(pages.c_str(), -1, &page));
  EXPECT_EQ(77, page);
  EXPECT_FALSE(ProbePage(pages.c_str(), 1, nullptr));
}

TEST_F(PageProbe, PutsBackTheRedirectionOfTheProcess) {
  int first = 0, second = 0;
  SetLoadRedirect(&first, &second);
  EXPECT_TRUE(IsMultiPage(pages.c_str()));
  void* after[2] = {};
  GetLoadRedirect(&after[0], &after[1]);
  EXPECT_EQ(&first, after[0]);
  EXPECT_EQ(&second, after[1]);
  SetLoadRedirect(nullptr, nullptr);
}

// The redirection in force at each question to the file library.
std::vector<std::pair<void*, void*>> redirections;
int32_t NoteRedirection(const ZVCHAR* path, FILEINFO* info, uint32_t recordSize, uint32_t flags,
                        const LOADFILEOPTION* option) {
  auto& [first, second] = redirections.emplace_back();
  GetLoadRedirect(&first, &second);
  const auto ask = reinterpret_cast<decltype(&GetFileInfo)>(
      reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"zvfile.dll"), "GetFileInfo")));
  return ask(path, info, recordSize, flags, option);
}

TEST_F(PageProbe, AsksWithoutTheRedirectionOfTheProcess) {
  int first = 0, second = 0;
  SetLoadRedirect(&first, &second);
  redirections.clear();
  {
    const ImportPatch info(nullptr, "GetFileInfo", &NoteRedirection);
    EXPECT_TRUE(IsMultiPage(pages.c_str()));
    int32_t page = 0;
    EXPECT_TRUE(ProbePage(pages.c_str(), 3, &page));
    EXPECT_FALSE(ProbePage(pages.c_str(), 4, &page));
  }
  SetLoadRedirect(nullptr, nullptr);
  ASSERT_GE(redirections.size(), 3u);
  for (const auto& [firstMeanwhile, secondMeanwhile] : redirections) {
    EXPECT_EQ(nullptr, firstMeanwhile);
    EXPECT_EQ(nullptr, secondMeanwhile);
  }
}

}  // namespace
