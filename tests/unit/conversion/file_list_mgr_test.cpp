// The list manager over a real list view, in a plain window.
#include "conversion/file_list_mgr.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/dialog_driver.h"

namespace {

class FileList : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(list.CreateEx(0, WC_LISTVIEWW, L"", WS_CHILD | LVS_REPORT | LVS_SHOWSELALWAYS, 0, 0, 502, 200,
                              parent.hwnd(), nullptr));
    ASSERT_TRUE(manager.Attach(&list));
  }
  void TearDown() override { manager.RemoveAll(); }

  CString Row(int row) { return list.GetItemText(row, 0); }
  void AddThree() {
    EXPECT_TRUE(manager.AddFile(L"C:\\a\\1.jpg"));
    EXPECT_TRUE(manager.AddFile(L"C:\\a\\2.jpg"));
    EXPECT_TRUE(manager.AddFile(L"C:\\a\\3.jpg"));
  }

  zvtest::ParentWindow parent;
  CListCtrl list;
  CZVFileListMgr manager{2, L"File", L"Pages"};
};

TEST_F(FileList, SharesItsWidthFourToOne) {
  EXPECT_EQ(400, list.GetColumnWidth(0));
  EXPECT_EQ(100, list.GetColumnWidth(1));
}

TEST_F(FileList, CannotBeAttachedToNothing) {
  CListCtrl unborn;
  EXPECT_FALSE(manager.Attach(nullptr));
  EXPECT_FALSE(manager.Attach(&unborn));
}

TEST_F(FileList, ShowsFullPathsUntilToldOtherwise) {
  AddThree();
  EXPECT_STREQ(L"C:\\a\\2.jpg", Row(1));
  manager.SetDisplayFlags(kShowFileName);
  EXPECT_STREQ(L"2.jpg", Row(1));
  EXPECT_STREQ(L"C:\\a\\2.jpg", manager.GetPath(1));
}

TEST_F(FileList, RefusesAPathThatItHas) {
  AddThree();
  EXPECT_FALSE(manager.AddFile(L"C:\\a\\2.jpg"));
  EXPECT_EQ(3, manager.GetItemCount());
}

TEST_F(FileList, TellsPathsApartByCase) {
  EXPECT_TRUE(manager.AddFile(L"C:\\A.jpg"));
  EXPECT_TRUE(manager.AddFile(L"C:\\a.jpg"));
  EXPECT_TRUE(manager.ContainsPath(L"C:\\a.jpg"));
  EXPECT_FALSE(manager.ContainsPath(L"C:\\a.JPG"));
}

TEST_F(FileList, TakesAPathTwiceWhenDuplicatesAreAllowed) {
  manager.SetDisplayFlags(SHOW_NAME | SHOW_EXTENSION);
  EXPECT_TRUE(manager.AddFile(L"C:\\a.jpg"));
  EXPECT_TRUE(manager.AddFile(L"C:\\a.jpg"));
  manager.RemoveFile(0);
  EXPECT_TRUE(manager.ContainsPath(L"C:\\a.jpg"));
  manager.RemoveFile(0);
  EXPECT_FALSE(manager.ContainsPath(L"C:\\a.jpg"));
}

TEST_F(FileList, ForgetsARemovedPath) {
  AddThree();
  manager.RemoveFile(1);
  EXPECT_FALSE(manager.ContainsPath(L"C:\\a\\2.jpg"));
  EXPECT_STREQ(L"C:\\a\\3.jpg", manager.GetPath(1));
  EXPECT_STREQ(L"C:\\a\\3.jpg", Row(1));
  EXPECT_TRUE(manager.AddFile(L"C:\\a\\2.jpg"));
}

TEST_F(FileList, RemovesTheLastRowForANegativeNumber) {
  AddThree();
  manager.RemoveFile(-1);
  EXPECT_EQ(2, manager.GetItemCount());
  EXPECT_STREQ(L"C:\\a\\2.jpg", manager.GetPath(1));
}

TEST_F(FileList, ANewRowHasNoPages) {
  AddThree();
  CONVERSIONFILEOPTIONS options;
  ASSERT_TRUE(manager.GetItemOptions(0, options));
  EXPECT_EQ(0, options.pageTotal);
  EXPECT_EQ(0, options.pageCount);
  EXPECT_EQ(nullptr, options.pages);
}

TEST_F(FileList, KeepsARecordForEachRow) {
  AddThree();
  CONVERSIONFILEOPTIONS options;
  options.pageTotal = 7;
  EXPECT_TRUE(manager.SetItemOptions(options, 1));
  options.pageTotal = 0;
  EXPECT_TRUE(manager.GetItemOptions(1, options));
  EXPECT_EQ(7, options.pageTotal);
  EXPECT_FALSE(manager.SetItemOptions(options, 3));
  EXPECT_FALSE(manager.GetItemOptions(-1, options));
}

TEST_F(FileList, CopyingARecordInLeavesTheRemoveFlagAlone) {
  AddThree();
  EXPECT_TRUE(manager.SetRemoveFlag(1, 1));
  EXPECT_TRUE(manager.SetItemOptions(CONVERSIONFILEOPTIONS(), 1));
  manager.RemoveFlagged();
  ASSERT_EQ(2, manager.GetItemCount());
  EXPECT_STREQ(L"C:\\a\\3.jpg", manager.GetPath(1));
}

TEST_F(FileList, IsEmptyWhenAllRowsWereFlagged) {
  AddThree();
  for (int row = 0; row < 3; ++row) {
    manager.SetRemoveFlag(1, row);
  }
  manager.RemoveFlagged();
  EXPECT_EQ(0, manager.GetItemCount());
  EXPECT_FALSE(manager.ContainsPath(L"C:\\a\\1.jpg"));
}

struct Removal {
  CZVFileListMgr* manager;
  std::vector<int> rows;
  std::vector<int> pageTotals;
};

void NoteRemoval(int32_t zero, int32_t* row, uint64_t userData) {
  EXPECT_EQ(0, zero);
  auto* const removal = reinterpret_cast<Removal*>(userData);
  CONVERSIONFILEOPTIONS options;
  EXPECT_TRUE(removal->manager->GetItemOptions(*row, options));
  removal->rows.push_back(*row);
  removal->pageTotals.push_back(options.pageTotal);
}

TEST_F(FileList, AsksTheRemoveCallbackWhileTheRecordCanBeRead) {
  AddThree();
  CONVERSIONFILEOPTIONS options;
  options.pageTotal = 5;
  manager.SetItemOptions(options, 2);
  Removal removal{&manager, {}, {}};
  manager.SetRemoveCallback(&NoteRemoval, reinterpret_cast<uint64_t>(&removal));
  manager.RemoveFile(2);
  EXPECT_EQ(std::vector<int>{2}, removal.rows);
  EXPECT_EQ(std::vector<int>{5}, removal.pageTotals);
}

TEST_F(FileList, SelectsOneRowAndClearsTheSelection) {
  AddThree();
  EXPECT_EQ(-1, manager.GetFirstSelected());
  EXPECT_TRUE(manager.SelectItem(1));
  EXPECT_EQ(1, manager.GetFirstSelected());
  EXPECT_FALSE(manager.SelectItem(3));
  EXPECT_FALSE(manager.SelectItem(-1));
  manager.ClearSelection();
  EXPECT_EQ(-1, manager.GetFirstSelected());
}

TEST_F(FileList, SetsTextsWithinRowsAndColumnsAlone) {
  AddThree();
  EXPECT_TRUE(manager.SetSubItemText(0, 1, L"1,2"));
  EXPECT_STREQ(L"1,2", list.GetItemText(0, 1));
  EXPECT_FALSE(manager.SetSubItemText(0, 2, L"x"));
  EXPECT_FALSE(manager.SetSubItemText(3, 0, L"x"));
  EXPECT_FALSE(manager.DeleteColumn(-1));
  EXPECT_TRUE(manager.DeleteColumn(1));
}

TEST_F(FileList, GivesNoPathOutsideItsRows) {
  AddThree();
  CString path = L"kept";
  EXPECT_TRUE(manager.GetPath(-1).IsEmpty());
  EXPECT_TRUE(manager.GetPath(3).IsEmpty());
  EXPECT_FALSE(manager.GetPath(path, 4));
  EXPECT_TRUE(manager.GetPath(path, 0));
  EXPECT_STREQ(L"C:\\a\\1.jpg", path);
}

TEST_F(FileList, AnIndexReplacesThePathAndAddsARow) {
  AddThree();
  EXPECT_FALSE(manager.AddFile(L"C:\\new.jpg", 3));
  EXPECT_TRUE(manager.AddFile(L"C:\\new.jpg", 1));
  EXPECT_EQ(4, manager.GetItemCount());
  EXPECT_STREQ(L"C:\\new.jpg", manager.GetPath(1));
  EXPECT_STREQ(L"C:\\a\\3.jpg", manager.GetPath(2));
  EXPECT_FALSE(manager.ContainsPath(L"C:\\a\\2.jpg"));
}

TEST_F(FileList, AttachingAgainThrowsTheRowsAway) {
  AddThree();
  manager.SetDisplayFlags(kShowFileName);
  EXPECT_TRUE(manager.Attach(&list));
  EXPECT_EQ(0, manager.GetItemCount());
  EXPECT_FALSE(manager.ContainsPath(L"C:\\a\\1.jpg"));
  AddThree();
  EXPECT_STREQ(L"C:\\a\\1.jpg", Row(0));
}

TEST_F(FileList, AddsTenThousandFilesInLinearTime) {
  const auto addThousand = [this](int series) {
    const ULONGLONG start = ::GetTickCount64();
    for (int i = 0; i < 5000; ++i) {
      CString path;
      path.Format(L"C:\\folder\\%d-%d.jpg", series, i);
      manager.AddFile(path);
    }
    return ::GetTickCount64() - start;
  };
  list.SetRedraw(FALSE);
  const ULONGLONG first = addThousand(1);
  const ULONGLONG second = addThousand(2);
  EXPECT_EQ(10000, manager.GetItemCount());
  EXPECT_LT(second, 2 * first + 500);
}

TEST(FileListColumns, AnyCountButTwoMeansOne) {
  const zvtest::ParentWindow parent;
  CListCtrl list;
  ASSERT_TRUE(list.CreateEx(0, WC_LISTVIEWW, L"", WS_CHILD | LVS_REPORT, 0, 0, 500, 200, parent.hwnd(), nullptr));
  CZVFileListMgr manager(3, L"File", L"Pages");
  ASSERT_TRUE(manager.Attach(&list));
  manager.AddFile(L"C:\\a.jpg");
  EXPECT_TRUE(manager.SetSubItemText(0, 0, L"x"));
  EXPECT_FALSE(manager.SetSubItemText(0, 1, L"x"));
  manager.RemoveAll();
}

}  // namespace
