// The public header is the same to a C and to a C++ compiler, and both see the documented wire formats.
#include <gtest/gtest.h>

#include <cstring>

#include "include/zvfiledlg.h"
#include "tests/abi/layout_in_c.h"

namespace {

struct Place {
  const char* name;
  size_t documented;
  size_t inCpp;
};

#define SIZE(record, bytes) {#record, bytes, sizeof(record)},
#define FIELD(record, field, at) {#record "." #field, at, offsetof(record, field)},
const Place kPlaces[] = {
#include "tests/abi/places.inc"
};

TEST(PublicRecords, HaveTheirDocumentedPlacesInCpp) {
  for (const Place& place : kPlaces) {
    EXPECT_EQ(place.documented, place.inCpp) << place.name;
  }
}

TEST(PublicRecords, HaveTheirDocumentedPlacesInC) {
  size_t index = 0;
  for (const FieldPlace* inC = kPlacesInC; inC->name; ++inC, ++index) {
    ASSERT_LT(index, std::size(kPlaces));
    EXPECT_STREQ(kPlaces[index].name, inC->name);
    EXPECT_EQ(kPlaces[index].documented, inC->place) << inC->name;
  }
  EXPECT_EQ(std::size(kPlaces), index);
}

TEST(OpenFileName, HasTheSizeThatTheDialogsFillIn) { EXPECT_EQ(152u, sizeof(OPENFILENAMEW)); }

TEST(Exports, AnswerACallFromC) {
  int results[15] = {};
  ASSERT_EQ(15, CallEveryExportFromC(results));
  for (const int result : results) {
    EXPECT_EQ(ERROR_BAD_ARGUMENT, result);
  }
}

}  // namespace
