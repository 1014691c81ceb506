// What the ICC profile dialog decides without a window.
#pragma once

#include <cstdint>

#include "services/zvcolor/icc_profile_data.h"

// A record holds a profile unless its size and both of its pointers are zero.
bool HoldsProfile(const ICCPROFILEDATA& profile);

// The string id of the message for a failed load or save. `takesCode`: the text is a format with the code as its argument.
struct FailureMessage {
  uint32_t textId;
  bool takesCode;
};
FailureMessage MessageFor(int32_t code);

// The title's string id; at least one group is shown.
uint32_t TitleFor(bool showsLoad, bool showsSave);
