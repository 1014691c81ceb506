#include "pickers/directory_rules.h"

#include <gtest/gtest.h>

#include "services/zvcore/result_codes.h"

namespace {

DIRECTORYDLGPARAMS UsableParams() {
  static wchar_t buffer[10];
  DIRECTORYDLGPARAMS params = {};
  params.uStructSize = sizeof(params);
  params.directoryBuffer = buffer;
  params.bufferLength = 10;
  return params;
}

TEST(DirectoryParams, NeedABufferWithRoomAndAFilterIndexThatIsNotNegative) {
  EXPECT_EQ(SUCCESS, CheckDirectoryParams(UsableParams()));
  DIRECTORYDLGPARAMS params = UsableParams();
  params.directoryBuffer = nullptr;
  EXPECT_EQ(ERROR_BAD_ARGUMENT, CheckDirectoryParams(params));
  params = UsableParams();
  params.bufferLength = 0;
  EXPECT_EQ(ERROR_BAD_ARGUMENT, CheckDirectoryParams(params));
  params = UsableParams();
  params.filterIndex = -1;
  EXPECT_EQ(ERROR_BAD_ARGUMENT, CheckDirectoryParams(params));
}

TEST(DeliveredFolder, PassesTheStatusOn) {
  wchar_t buffer[8] = L"before";
  EXPECT_EQ(SUCCESS, DeliverFolder(L"C:\\a", SUCCESS, buffer, 8));
  EXPECT_STREQ(L"C:\\a", buffer);
  EXPECT_EQ(101, DeliverFolder(L"D:\\b", 101, buffer, 8));
  EXPECT_STREQ(L"D:\\b", buffer) << "after Cancel the folder is handed over too";
}

TEST(DeliveredFolder, NeedsRoomForItsTerminator) {
  wchar_t buffer[8] = L"before";
  EXPECT_EQ(ERROR_BUFFER_TOO_SMALL, DeliverFolder(L"C:\\a", SUCCESS, buffer, 4));
  EXPECT_STREQ(L"before", buffer);
  EXPECT_EQ(SUCCESS, DeliverFolder(L"C:\\a", SUCCESS, buffer, 5));
}

TEST(DeliveredFolder, OverridesEveryStatusWhenTheBufferIsTooSmall) {
  wchar_t buffer[2] = L"";
  EXPECT_EQ(ERROR_BUFFER_TOO_SMALL, DeliverFolder(L"C:\\a", 101, buffer, 2));
  EXPECT_EQ(ERROR_BUFFER_TOO_SMALL, DeliverFolder(L"C:\\a", ERROR_DIALOG_FAILED, buffer, 2));
}

TEST(FolderInFileSystem, IsEmptyForThePlacesThatHaveAClassInsteadOfAPath) {
  EXPECT_STREQ(L"C:\\a", FolderInFileSystem(L"C:\\a"));
  EXPECT_STREQ(L"\\\\server\\share", FolderInFileSystem(L"\\\\server\\share"));
  EXPECT_STREQ(L"", FolderInFileSystem(L"::{20d04fe0-3aea-1069-a2d8-08002b30309d}"));
  EXPECT_STREQ(L"", FolderInFileSystem(L""));
}

bool operator==(const RECT& a, const RECT& b) {
  return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

// A list of 300 x 100, OK above Cancel with 4 pixels between them, 70 x 20 each.
CompactLayoutInput Input(bool hasHelp) {
  CompactLayoutInput input = {};
  input.list = {10, 30, 310, 130};
  input.label = {5, 200, 65, 213};
  input.ok = {320, 140, 390, 160};
  input.cancel = {320, 164, 390, 184};
  input.hookWidth = 400;
  input.hasHelp = hasHelp;
  return input;
}

TEST(CompactLayout, GrowsTheListByOneButtonHeightPerButtonBeyondTheFirst) {
  EXPECT_TRUE((RECT{10, 30, 310, 150}) == LayOutCompactPicker(Input(false)).list);
  EXPECT_TRUE((RECT{10, 30, 310, 170}) == LayOutCompactPicker(Input(true)).list);
}

TEST(CompactLayout, PutsLabelAndEditInTheRowUnderTheList) {
  const CompactLayout layout = LayOutCompactPicker(Input(false));
  EXPECT_TRUE((RECT{10, 154, 70, 174}) == layout.label) << "own width, height of OK";
  EXPECT_TRUE((RECT{73, 154, 310, 174}) == layout.edit) << "to the right edge of the list";
}

TEST(CompactLayout, CentresTwoButtonsWithoutHelp) {
  const CompactLayout layout = LayOutCompactPicker(Input(false));
  const int first = (400 - 2 * 70 - 4) / 2;
  EXPECT_TRUE((RECT{first, 178, first + 70, 198}) == layout.ok);
  EXPECT_TRUE((RECT{first + 74, 178, first + 144, 198}) == layout.cancel);
  EXPECT_TRUE((RECT{0, 0, 0, 0}) == layout.help);
}

TEST(CompactLayout, CentresThreeButtonsWithHelp) {
  const CompactLayout layout = LayOutCompactPicker(Input(true));
  const int first = (400 - 3 * 70 - 2 * 4) / 2;
  EXPECT_TRUE((RECT{first, 198, first + 70, 218}) == layout.ok);
  EXPECT_TRUE((RECT{first + 148, 198, first + 218, 218}) == layout.help);
}

}  // namespace
