#include "services/zvdlgwidgets/value_combo.h"

#include "platform/module_context.h"
#include "services/zvdlgwidgets/value_range.h"

CZVValueCombo::CZVValueCombo(int minimum, int maximum, int defaultValue, UINT flags)
    : minimum_(0), maximum_(0), value_(defaultValue), flags_(flags) {
  SetRange(minimum, maximum);
}

BOOL CZVValueCombo::Create(DWORD style, const RECT& rectangle, CWnd* parent, UINT id) {
  if (!RegisterWidgetClasses(AfxGetInstanceHandle()) ||
      !CWnd::Create(ZV_VALUE_COMBO_CLASS, nullptr, style, rectangle, parent, id)) {
    return FALSE;
  }
  GiveSettings();
  return TRUE;
}

void CZVValueCombo::PreSubclassWindow() { GiveSettings(); }

void CZVValueCombo::GiveSettings() const {
  SendMessage(ZVVCM_SETFLAGS, flags_);
  SendMessage(ZVVCM_SETRANGE, static_cast<WPARAM>(minimum_), maximum_);
  SendMessage(ZVVCM_SETVALUE, static_cast<WPARAM>(value_));
}

void CZVValueCombo::SetRange(int minimum, int maximum) {
  const ValueRange range = ValueRange::Of(minimum, maximum);
  minimum_ = range.minimum;
  maximum_ = range.maximum;
  value_ = range.Clamp(value_);
  if (m_hWnd) {
    SendMessage(ZVVCM_SETRANGE, static_cast<WPARAM>(minimum_), maximum_);
  }
}

int CZVValueCombo::GetMinRangeValue() const { return minimum_; }

int CZVValueCombo::GetMaxRangeValue() const { return maximum_; }

void CZVValueCombo::SetValue(int value) {
  value_ = ValueRange{minimum_, maximum_}.Clamp(value);
  if (m_hWnd) {
    SendMessage(ZVVCM_SETVALUE, static_cast<WPARAM>(value_));
  }
}

int CZVValueCombo::GetValue() const { return m_hWnd ? static_cast<int>(SendMessage(ZVVCM_GETVALUE)) : value_; }

void CZVValueCombo::SetFlags(UINT flags) {
  flags_ = flags;
  if (m_hWnd) {
    SendMessage(ZVVCM_SETFLAGS, flags_);
  }
}
