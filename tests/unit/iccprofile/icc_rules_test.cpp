#include "iccprofile/icc_rules.h"

#include <gtest/gtest.h>

#include "services/zvdlgbase/string_ids.h"

namespace {

TEST(HoldsProfile, WhenAnyOfTheThreeFieldsIsSet) {
  ICCPROFILEDATA profile = {};
  profile.uStructSize = sizeof(profile);
  profile.version = 0x04000000;
  EXPECT_FALSE(HoldsProfile(profile));
  profile.dataSize = 1;
  EXPECT_TRUE(HoldsProfile(profile));
  profile.dataSize = 0;
  profile.data = &profile;
  EXPECT_TRUE(HoldsProfile(profile));
  profile.data = nullptr;
  ICCPROFILETAG tag = {};
  profile.tags = &tag;
  EXPECT_TRUE(HoldsProfile(profile));
}

TEST(MessageFor, EightCodesHaveTextsOfTheirOwn) {
  constexpr struct {
    int32_t code;
    uint32_t textId;
  } kExpected[] = {{-16, 4502},   {-812, 4503}, {-817, 4504}, {-813, 4505},
                   {-1153, 4506}, {-14, 4507},  {-5, 4508},   {-1154, 4509}};
  for (const auto& expected : kExpected) {
    EXPECT_EQ(expected.textId, MessageFor(expected.code).textId) << expected.code;
    EXPECT_FALSE(MessageFor(expected.code).takesCode) << expected.code;
  }
}

TEST(MessageFor, AnyOtherCodeIsNamedInTheText) {
  for (const int32_t code : {0, -1, -13, -15, -17, -1155, 2}) {
    EXPECT_EQ(4510u, MessageFor(code).textId) << code;
    EXPECT_TRUE(MessageFor(code).takesCode) << code;
  }
}

TEST(TitleFor, SaysWhatIsShown) {
  EXPECT_EQ(4485u, TitleFor(true, true));
  EXPECT_EQ(4486u, TitleFor(true, false));
  EXPECT_EQ(4487u, TitleFor(false, true));
}

}  // namespace
