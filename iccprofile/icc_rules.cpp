#include "iccprofile/icc_rules.h"

#include <algorithm>
#include <iterator>

#include "services/zvdlgbase/string_ids.h"

namespace {

struct KnownFailure {
  int32_t code;
  uint32_t textId;
};

// The codes are those of zvcolor and zvcore.
constexpr KnownFailure kKnownFailures[] = {
    {-16, IDS_ICC_ERROR_LIMIT},        {-812, IDS_ICC_ERROR_NO_PROFILE},     {-817, IDS_ICC_ERROR_NOT_SUPPORTED},
    {-813, IDS_ICC_ERROR_BAD_PROFILE}, {-1153, IDS_ICC_ERROR_BAD_VERSION},   {-14, IDS_ICC_ERROR_FILE_FORMAT},
    {-5, IDS_ICC_ERROR_FILE_ACCESS},   {-1154, IDS_ICC_ERROR_EMPTY_PROFILE},
};

}  // namespace

bool HoldsProfile(const ICCPROFILEDATA& profile) {
  return profile.dataSize != 0 || profile.data != nullptr || profile.tags != nullptr;
}

FailureMessage MessageFor(int32_t code) {
  const auto* known = std::find_if(std::begin(kKnownFailures), std::end(kKnownFailures),
                                   [code](const KnownFailure& failure) { return failure.code == code; });
  return known == std::end(kKnownFailures) ? FailureMessage{IDS_ICC_ERROR_OTHER, true}
                                           : FailureMessage{known->textId, false};
}

uint32_t TitleFor(bool showsLoad, bool showsSave) {
  return showsLoad && showsSave ? IDS_ICC_TITLE : showsLoad ? IDS_ICC_TITLE_LOAD : IDS_ICC_TITLE_SAVE;
}
