// CZVNumberingControls: the controls for one numbering tag of a naming template, in a dialog that shows one such set at a
// time: mask, increment, start, and for the tags with letters the ends of the ranges and the upper case box.
#pragma once

#include <array>

#include "naming/naming_settings.h"
#include "platform/controls.h"
#include "platform/data_exchange.h"
#include "services/zvdlgwidgets/edit_ctrl.h"
#include "services/zvdlgwidgets/mask_edit.h"
#include "services/zvdlgwidgets/value_combo.h"

using NumberField = int32_t NAMINGTEMPLATESETTINGS::*;

// What a set edits; null where the tag has no such parameter.
struct NumberingFields {
  int32_t tag;
  bool digitsOnlyMask;
  CString NAMINGTEMPLATESETTINGS::*mask;
  NumberField increment;
  NumberField start;
  NumberField upperCase = nullptr;
  NumberField letterFrom = nullptr, letterTo = nullptr;
  NumberField digitFrom = nullptr, digitTo = nullptr;
};
extern const NumberingFields kNumericFields;
extern const NumberingFields kAlphaFields;
extern const NumberingFields kAlnumFields;

// With which controls; 0 where the field is null.
struct NumberingIds {
  int maskLabel, mask;
  int incrementLabel, increment;
  int startLabel, start;
  int upperCase = 0;
  int lettersLabel = 0, letterFrom = 0, letterTo = 0;
  int digitsLabel = 0, digitFrom = 0, digitTo = 0;
};

// String ids of the labels, which the two dialogs have each for themselves.
struct NumberingTexts {
  UINT mask, increment, start, letterRange, digitRange, upperCase;
};

class CZVNumberingControls {
 public:
  CZVNumberingControls(const NumberingFields& fields, const NumberingIds& ids);

  int32_t Tag() const { return fields_.tag; }
  void DoDataExchange(CDataExchange* exchange);
  // Limits and masks, once the controls are bound.
  void SetUp();
  void SetTexts(CWnd& dialog, const NumberingTexts& texts) const;
  // A range end that is no letter or digit is not written.
  void Load(CWnd& dialog, const NAMINGTEMPLATESETTINGS& settings);
  void Store(const CWnd& dialog, NAMINGTEMPLATESETTINGS& settings) const;
  void Show(CWnd& dialog, bool show) const;
  // Whether a notification of that control tells of a changed setting.
  bool IsChange(UINT controlId, UINT code) const;

 private:
  static constexpr size_t kRangeEnds = 4;
  struct RangeEnd {
    int id;
    NumberField field;
    bool isLetter;
    wchar_t fallback;
    CZVMaskEdit edit;
  };

  std::array<int, 13> AllIds() const;

  const NumberingFields& fields_;
  const NumberingIds ids_;
  CZVEditCtrl mask_;
  CZVValueCombo increment_;
  CZVValueCombo start_;
  std::array<RangeEnd, kRangeEnds> ends_;
};
