#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgbase/zvdlgbase.h"

#include <gmock/gmock.h>

#include <map>
#include <set>
#include <string>

namespace {

struct IdRow {
  uint32_t id;
  const char* name;
};

constexpr IdRow kIds[] = {
#include "string_id_rows.inc"
};

std::wstring Text(uint32_t id) {
  uint32_t length = 0;
  if (GetDialogStringLength(id, &length) != SUCCESS) {
    return {};
  }
  std::wstring text(length + 1, L'\xFFFF');
  EXPECT_EQ(SUCCESS, GetDialogStringText(id, text.data(), length + 1));
  EXPECT_EQ(L'\0', text[length]) << "the length counts what stands before the terminator";
  text.resize(length);
  return text;
}

TEST(DialogStrings, KernelIsReady) { EXPECT_EQ(1, DialogKernelReady()); }

TEST(DialogStrings, EveryNamedIdHasAText) {
  EXPECT_GT(std::size(kIds), 700u);
  for (const IdRow& row : kIds) {
    EXPECT_FALSE(Text(row.id).empty()) << row.name << " = " << row.id;
  }
}

TEST(DialogStrings, NoTwoNamesShareAnId) {
  std::map<uint32_t, const char*> names;
  for (const IdRow& row : kIds) {
    const auto [entry, isNew] = names.emplace(row.id, row.name);
    EXPECT_TRUE(isNew) << row.name << " and " << entry->second;
  }
}

TEST(DialogStrings, ALabelHasOneMnemonicAtMost) {
  for (const IdRow& row : kIds) {
    const std::wstring text = Text(row.id);
    int mnemonics = 0;
    for (size_t i = 0; i < text.size(); ++i) {
      if (text[i] == L'&') {
        const bool isPlainAmpersand = i + 1 < text.size() && text[i + 1] == L'&';
        mnemonics += isPlainAmpersand ? 0 : 1;
        i += isPlainAmpersand ? 1 : 0;
      }
    }
    EXPECT_LE(mnemonics, 1) << row.name;
  }
}

TEST(DialogStrings, CommonButtonsAreServedById) {
  EXPECT_EQ(L"OK", Text(0));
  EXPECT_EQ(L"Cancel", Text(1));
  EXPECT_EQ(L"Help", Text(2));
}

TEST(DialogStrings, TagTextsAreWrappedInAngleBrackets) {
  const std::wstring expected[] = {L"<NUM>", L"<ALPHA>", L"<ALPHANUM>", L"<DATE>", L"<TIME>", L"<SRC>"};
  for (uint32_t tag = 0; tag < std::size(expected); ++tag) {
    EXPECT_EQ(expected[tag], Text(4571 + tag));
  }
}

TEST(DialogStrings, FormatsTakeTheArgumentsThatTheirDialogsGive) {
  const std::map<uint32_t, std::vector<std::wstring>> arguments = {
      {IDS_ASK_MESSAGE, {L"%s"}},
      {IDS_PROGRESS_LINE, {L"%s", L"%s"}},
      {IDS_ADD_LINE, {L"%s"}},
      {IDS_CONV_PREVIEW_FAILED_TEXT, {L"%s"}},
      {IDS_CONV_DELETE_FAILED_TEXT, {L"%s"}},
      {IDS_CONV_CREATE_FOLDER_TEXT, {L"%s"}},
      {IDS_CONV_CREATE_FAILED_TEXT, {L"%s"}},
      {IDS_SAVE_OVERWRITE_PAGE_TEXT, {L"%s"}},
      {IDS_SAVE_OVERWRITE_TEXT, {L"%s"}},
      {IDS_OPEN_DELETE_PAGE_TEXT, {L"%d"}},
      {IDS_OPEN_READ_FAILED_TEXT, {L"%d", L"%s"}},
      {IDS_ICC_ERROR_OTHER, {L"%d"}},
      {IDS_ICC_LOADED_TEXT, {L"%s"}},
      {IDS_ICC_SAVED_TEXT, {L"%s"}},
  };
  for (const IdRow& row : kIds) {
    std::vector<std::wstring> found;
    const std::wstring text = Text(row.id);
    for (size_t percent = text.find(L'%'); percent != std::wstring::npos; percent = text.find(L'%', percent + 1)) {
      found.push_back(text.substr(percent, 2));
    }
    const auto expected = arguments.find(row.id);
    EXPECT_EQ(expected == arguments.end() ? std::vector<std::wstring>() : expected->second, found) << row.name;
  }
}

TEST(DialogStrings, TextsOutsideAsciiArriveAsTheyAreWritten) {
  EXPECT_EQ(L"%s \x2192 %s", Text(IDS_PROGRESS_LINE));
  EXPECT_EQ(L"&Counter-Clockwise by 90\x00B0", Text(IDS_PRINT_MENU_ROTATE_LEFT));
}

TEST(DialogStrings, UnknownIdIsRefusedAndLeavesEmptyText) {
  uint32_t length = 77;
  EXPECT_EQ(ERROR_BAD_ARGUMENT, GetDialogStringLength(60000, &length));
  EXPECT_EQ(0u, length);
  wchar_t buffer[] = L"before";
  EXPECT_EQ(ERROR_BAD_ARGUMENT, GetDialogStringText(60000, buffer, std::size(buffer)));
  EXPECT_STREQ(L"", buffer);
  EXPECT_EQ(ERROR_BAD_ARGUMENT, GetDialogStringText(0x10000, buffer, std::size(buffer))) << "beyond 16 bits";
}

TEST(DialogStrings, NullAndEmptyBuffersAreRefused) {
  wchar_t buffer[8] = L"x";
  EXPECT_EQ(ERROR_BAD_ARGUMENT, GetDialogStringLength(0, nullptr));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, GetDialogStringText(0, nullptr, 8));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, GetDialogStringText(0, buffer, 0));
}

TEST(DialogStrings, BufferMustHoldTheTerminatorToo) {
  wchar_t buffer[8] = L"before";
  EXPECT_EQ(ERROR_BUFFER_TOO_SMALL, GetDialogStringText(IDS_OK, buffer, 2));
  EXPECT_STREQ(L"", buffer);
  EXPECT_EQ(SUCCESS, GetDialogStringText(IDS_OK, buffer, 3));
  EXPECT_STREQ(L"OK", buffer);
}

TEST(DialogStrings, ReplacementIsReadUntilItIsTakenAway) {
  const std::wstring original = Text(IDS_OPEN_OK);
  ASSERT_EQ(SUCCESS, SetDialogStringText(IDS_OPEN_OK, L"Open this"));
  EXPECT_EQ(L"Open this", Text(IDS_OPEN_OK));
  ASSERT_EQ(SUCCESS, SetDialogStringText(IDS_OPEN_OK, original.c_str()));
  EXPECT_EQ(original, Text(IDS_OPEN_OK));
  ASSERT_EQ(SUCCESS, SetDialogStringText(IDS_OPEN_OK, L""));
  EXPECT_EQ(L"", Text(IDS_OPEN_OK)) << "an empty text replaces as well";
  ASSERT_EQ(SUCCESS, SetDialogStringText(IDS_OPEN_OK, nullptr));
  EXPECT_EQ(original, Text(IDS_OPEN_OK));
}

TEST(DialogStrings, ApplicationMayAddAText) {
  ASSERT_EQ(SUCCESS, SetDialogStringText(70000, L"own"));
  EXPECT_EQ(L"own", Text(70000));
  ASSERT_EQ(SUCCESS, SetDialogStringText(70000, nullptr));
  EXPECT_EQ(L"", Text(70000));
}

}  // namespace
