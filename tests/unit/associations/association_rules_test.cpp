#include "associations/association_rules.h"

#include <gmock/gmock.h>

#include "tests/unit/associations/fake_registry.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr wchar_t kProgram[] = L"Zorvane.Test";

class AssociationState : public testing::Test {
 protected:
  int StateOf(const wchar_t* extension) { return ReadAssociationState(registry, extension, program); }

  FakeRegistry registry;
  CString program = kProgram;
};

TEST_F(AssociationState, WithoutAKeyIsUnclaimed) { EXPECT_EQ(kUnclaimed, StateOf(L".png")); }

TEST_F(AssociationState, WithAnEmptyValueIsUnclaimed) {
  registry.owners[L".png"] = L"";
  EXPECT_EQ(kUnclaimed, StateOf(L".png"));
}

TEST_F(AssociationState, IsOursWhateverTheCase) {
  registry.owners[L".png"] = L"zorvane.TEST";
  EXPECT_EQ(kOurs, StateOf(L".png"));
}

TEST_F(AssociationState, IsTheirsWithAnyOtherText) {
  registry.owners[L".png"] = L"Zorvane.Test.1";
  EXPECT_EQ(kTheirs, StateOf(L".png"));
}

TEST_F(AssociationState, IsLockedWithoutWriteAccess) {
  registry.owners = {{L".none", L""}, {L".ours", kProgram}, {L".theirs", L"other"}};
  registry.lockedAtRead = {L".none", L".ours", L".theirs"};
  EXPECT_EQ(kLocked, StateOf(L".none"));
  EXPECT_EQ(kLockedOurs, StateOf(L".ours"));
  EXPECT_EQ(kLocked, StateOf(L".theirs"));
}

TEST_F(AssociationState, OfAnEmptyValueIsOursWithoutAProgramIdentifier) {
  program = L"";
  registry.owners[L".png"] = L"";
  EXPECT_EQ(kOurs, StateOf(L".png"));
  EXPECT_EQ(kUnclaimed, StateOf(L".tif")) << "there is no key";
}

TEST(StartsChecked, WhatIsOursAlsoWhenLocked) {
  EXPECT_TRUE(StartsChecked(kOurs, L".png", L""));
  EXPECT_TRUE(StartsChecked(kLockedOurs, L".png", L""));
  EXPECT_FALSE(StartsChecked(kUnclaimed, L".png", L""));
  EXPECT_FALSE(StartsChecked(kTheirs, L".png", L""));
  EXPECT_FALSE(StartsChecked(kLocked, L".png", L""));
  EXPECT_TRUE(StartsChecked(kOurs, L".png", L".TIF")) << "ours stays checked beside a selection";
}

TEST(StartsChecked, WhatIsSelectedWhateverTheCase) {
  EXPECT_TRUE(StartsChecked(kUnclaimed, L".png", L".TIF.PNG"));
  EXPECT_TRUE(StartsChecked(kTheirs, L".Png", L".TIF.PNG"));
  EXPECT_TRUE(StartsChecked(kLocked, L".png", L".TIF.PNG"));
  EXPECT_FALSE(StartsChecked(kTheirs, L".gif", L".TIF.PNG"));
}

TEST(StartsChecked, AnExtensionThatOccursInsideALongerSelectedOne) {
  EXPECT_TRUE(StartsChecked(kUnclaimed, L".tif", L".TIFF"));
  EXPECT_TRUE(StartsChecked(kUnclaimed, L".tiff", L".TIFF"));
  EXPECT_FALSE(StartsChecked(kUnclaimed, L".tif", L".TI"));
  EXPECT_FALSE(StartsChecked(kUnclaimed, L".tiff", L".TI"));
}

TEST(AssociationChange, DependsOnStateAndBox) {
  EXPECT_EQ(AssociationChange::kClaim, ChangeFor(kUnclaimed, true));
  EXPECT_EQ(AssociationChange::kNone, ChangeFor(kUnclaimed, false));
  EXPECT_EQ(AssociationChange::kNone, ChangeFor(kOurs, true));
  EXPECT_EQ(AssociationChange::kUnclaim, ChangeFor(kOurs, false));
  EXPECT_EQ(AssociationChange::kClaim, ChangeFor(kTheirs, true));
  EXPECT_EQ(AssociationChange::kNone, ChangeFor(kTheirs, false));
  for (const bool isChecked : {false, true}) {
    EXPECT_EQ(AssociationChange::kNone, ChangeFor(kLocked, isChecked));
    EXPECT_EQ(AssociationChange::kNone, ChangeFor(kLockedOurs, isChecked));
  }
}

TEST(ApplyChange, AClaimSetsTheOwnerAndThenTheUsersChoice) {
  FakeRegistry registry;
  AssociationOutcome outcome;
  ApplyChange(registry, AssociationChange::kClaim, L".png", kProgram, outcome);
  EXPECT_THAT(registry.writes, ElementsAre(L".png=Zorvane.Test", L".png user=Zorvane.Test"));
}

TEST(ApplyChange, AnUnclaimEmptiesTheOwnerAndLeavesTheUsersChoice) {
  FakeRegistry registry;
  AssociationOutcome outcome;
  ApplyChange(registry, AssociationChange::kUnclaim, L".png", kProgram, outcome);
  EXPECT_THAT(registry.writes, ElementsAre(L".png="));
}

TEST(ApplyChange, NoChangeTouchesNothing) {
  FakeRegistry registry;
  AssociationOutcome outcome;
  ApplyChange(registry, AssociationChange::kNone, L".png", kProgram, outcome);
  EXPECT_THAT(registry.attempts, IsEmpty());
}

// Each row of the built-in table in turn refuses; all others are written, and the mark tells what happened.
class RefusingRow : public testing::TestWithParam<LONG> {};

TEST_P(RefusingRow, DoesNotKeepTheOthersFromBeingWritten) {
  CFormatArray formats;
  ParseFormats(kBuiltInFormats, formats);
  for (int refusing = 0; refusing < formats.GetSize(); ++refusing) {
    FakeRegistry registry;
    registry.refusals[formats[refusing].extension.GetString()] = GetParam();
    AssociationOutcome outcome;
    for (const FORMATSTRUCT& format : formats) {
      ApplyChange(registry, AssociationChange::kClaim, format.extension, kProgram, outcome);
    }
    EXPECT_EQ(GetParam() == ERROR_ACCESS_DENIED, outcome.isDenied);
    EXPECT_EQ(GetParam() != ERROR_ACCESS_DENIED, outcome.hasFailed);
    EXPECT_EQ(static_cast<size_t>(formats.GetSize()), registry.attempts.size());
    EXPECT_EQ(84u, registry.owners.size()) << "all of the 85 extensions but one";
  }
}

INSTANTIATE_TEST_SUITE_P(Associations, RefusingRow,
                         testing::Values(ERROR_ACCESS_DENIED, ERROR_FILE_NOT_FOUND, ERROR_REGISTRY_CORRUPT));

TEST(LockedRow, IsFoundWhereverItStands) {
  CFormatArray formats;
  ParseFormats(kBuiltInFormats, formats);
  for (int locked = 0; locked < formats.GetSize(); ++locked) {
    FakeRegistry registry;
    registry.lockedAtRead = {formats[locked].extension.GetString()};
    for (const FORMATSTRUCT& format : formats) {
      const int state = ReadAssociationState(registry, format.extension, kProgram);
      EXPECT_EQ(format.extension == formats[locked].extension, IsLocked(state));
    }
  }
}

}  // namespace
