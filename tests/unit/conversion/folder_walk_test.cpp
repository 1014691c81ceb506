#include "conversion/folder_walk.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "tests/support/dialog_driver.h"

namespace {

std::set<std::wstring> Collected(const std::wstring& folder, bool recursive) {
  CStringArray files;
  CollectFiles(folder.c_str(), recursive, files);
  std::set<std::wstring> names;
  for (const CString& file : files) {
    names.insert(file.str().substr(folder.size()));
  }
  EXPECT_EQ(names.size(), static_cast<size_t>(files.GetSize()));
  return names;
}

TEST(FolderWalk, FindsTheFilesOfTheFolderAlone) {
  const zvtest::TemporaryFolder folder;
  folder.AddFile(L"a.jpg");
  folder.AddFile(L"no extension");
  folder.AddFolder(L"below");
  folder.AddFile(L"below\\c.jpg");
  EXPECT_EQ((std::set<std::wstring>{L"\\a.jpg", L"\\no extension"}), Collected(folder.path(), false));
}

TEST(FolderWalk, FindsWhatIsBelowWhenAsked) {
  const zvtest::TemporaryFolder folder;
  folder.AddFile(L"a.jpg");
  folder.AddFolder(L"below");
  folder.AddFile(L"below\\c.jpg");
  EXPECT_EQ((std::set<std::wstring>{L"\\a.jpg", L"\\below\\c.jpg"}), Collected(folder.path(), true));
}

TEST(FolderWalk, FindsNothingInAFolderThatIsNotThere) {
  const zvtest::TemporaryFolder folder;
  EXPECT_TRUE(Collected(folder.File(L"absent"), false).empty());
}

TEST(FolderTree, CreatesEveryMissingFolder) {
  const zvtest::TemporaryFolder folder;
  const std::wstring deep = folder.File(L"one\\two\\three");
  EXPECT_TRUE(CreateFolderTree(deep.c_str()));
  EXPECT_TRUE(IsExistingFolder(deep.c_str()));
  EXPECT_TRUE(CreateFolderTree(deep.c_str()));
}

TEST(FolderTree, AcceptsABackslashAtTheEnd) {
  const zvtest::TemporaryFolder folder;
  EXPECT_TRUE(CreateFolderTree((folder.File(L"one\\two") + L"\\").c_str()));
  EXPECT_TRUE(IsExistingFolder(folder.File(L"one\\two").c_str()));
}

TEST(FolderTree, CannotStandBelowAFile) {
  const zvtest::TemporaryFolder folder;
  const std::wstring file = folder.AddFile(L"file");
  EXPECT_FALSE(CreateFolderTree((file + L"\\below").c_str()));
  EXPECT_FALSE(CreateFolderTree(file.c_str()));
  EXPECT_FALSE(CreateFolderTree(L""));
}

}  // namespace
