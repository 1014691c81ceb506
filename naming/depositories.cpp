#include "naming/depositories.h"

#include "services/zvdlgutil/dialog_string.h"

namespace {

constexpr UINT kTagStrings[kNamingTagCount] = {4571, 4572, 4573, 4574, 4575, 4576};
constexpr UINT kDateTypeStrings[kDateTypeCount] = {4417,
                                                   4416};  // in falling order: the kernel has the long form second
constexpr UINT kTimeTypeStrings[kTimeTypeCount] = {4418, 4419, 4420, 4421};
constexpr UINT kCaseStrings[kCaseCount] = {4412, 4413, 4414, 4415};

template <size_t count>
void Refill(CStringDepository& depository, const UINT (&stringIds)[count]) {
  for (size_t id = 0; id < count; ++id) {
    depository.AddString(static_cast<int32_t>(id), LoadDialogString(stringIds[id]));
  }
}

// "#" drops the leading zeros of the number it stands on. The times are joined by "-", since ":" cannot stand in a file name.
const CStringDepositoryEntry kLongDate(0, L"%A, %B %d, %Y");
const CStringDepositoryEntry kShortDate(1, L"%a, %b %d, %y");
const CStringDepositoryEntry kTime24WithSeconds(2, L"%#H-%M-%S");
const CStringDepositoryEntry kTime24(3, L"%#H-%M");
const CStringDepositoryEntry kTime12WithSeconds(4, L"%#I-%M-%S %p");
const CStringDepositoryEntry kTime12(5, L"%#I-%M %p");

struct Depositories {
  Depositories() { Refill(); }

  void Refill() {
    ::Refill(cases, kCaseStrings);
    ::Refill(tags, kTagStrings);
    ::Refill(dateTypes, kDateTypeStrings);
    ::Refill(timeTypes, kTimeTypeStrings);
  }

  CStringDepository cases{0};
  CStringDepository tags{0};
  CStringDepository dateTypes{0};
  CStringDepository timeTypes{0};
  CStringDepository dateFormats{6,        &kLongDate,          &kShortDate, &kTime24WithSeconds,
                                &kTime24, &kTime12WithSeconds, &kTime12};
};

Depositories& All() {
  static Depositories depositories;
  return depositories;
}

}  // namespace

CStringDepository& TagTexts() { return All().tags; }
CStringDepository& DateTypeNames() { return All().dateTypes; }
CStringDepository& TimeTypeNames() { return All().timeTypes; }
CStringDepository& CaseNames() { return All().cases; }
CStringDepository& DateFormats() { return All().dateFormats; }

void RefillDepositories() { All().Refill(); }
