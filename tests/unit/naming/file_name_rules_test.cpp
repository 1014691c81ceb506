#include "naming/file_name_rules.h"

#include <gtest/gtest.h>

namespace {

TEST(LegalFileName, HasAtLeastOneCharacter) {
  EXPECT_FALSE(IsLegalFileName(CString()));
  EXPECT_FALSE(IsLegalFileName(L""));
  EXPECT_TRUE(IsLegalFileName(L"x"));
}

TEST(LegalFileName, HoldsNoneOfTheNineCharactersThatTheSystemRefuses) {
  for (const wchar_t character : {L'"', L'/', L'\\', L':', L'?', L'<', L'>', L'*', L'|'}) {
    EXPECT_FALSE(IsLegalFileName(CString(L"a") + CString(character) + L"b")) << static_cast<char>(character);
    EXPECT_FALSE(IsLegalFileName(CString(character))) << static_cast<char>(character);
  }
}

TEST(LegalFileName, MayBeOfAnyScriptWithDotsBlanksAndSigns) {
  EXPECT_TRUE(IsLegalFileName(L"harbour at dawn.v2 (1) [x] & more, 100%"));
  EXPECT_TRUE(IsLegalFileName(L"\u5bab\u6bbf \U0001f600"));
}

TEST(LegalFileName, IsNotATagThatStayedAsText) { EXPECT_FALSE(IsLegalFileName(L"name<FOO>")); }

}  // namespace
