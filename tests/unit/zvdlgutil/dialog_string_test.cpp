#include "services/zvdlgutil/dialog_string.h"

#include <gtest/gtest.h>

#include "services/zvdlgbase/zvdlgbase.h"

namespace {

TEST(DialogString, TextComesFromTheKernel) { EXPECT_STREQ(L"Cancel", LoadDialogString(1)); }

TEST(DialogString, UnknownIdGivesAnEmptyText) { EXPECT_TRUE(LoadDialogString(60000).IsEmpty()); }

TEST(DialogString, ReplacedTextIsSeenAtOnce) {
  ASSERT_EQ(SUCCESS, SetDialogStringText(1, L"Never mind"));
  EXPECT_STREQ(L"Never mind", LoadDialogString(1));
  ASSERT_EQ(SUCCESS, SetDialogStringText(1, L""));
  EXPECT_STREQ(L"", LoadDialogString(1));
  ASSERT_EQ(SUCCESS, SetDialogStringText(1, nullptr));
}

}  // namespace
