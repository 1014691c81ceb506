// Puts back, when its scope ends, the process-wide settings that the open dialog's work may change: the status function,
// which is also cleared meanwhile, since work of a dialog is no business of the caller's function, the load resolution, and
// the load sizes of the formats that keep several.
#pragma once

#include "services/zvfile/zvfile.h"

class LoadSettingsGuard {
 public:
  LoadSettingsGuard() {
    SetStatusCallback(nullptr, nullptr, &statusFunction_, &statusUserData_);
    GetLoadDpi(&xDpi_, &yDpi_);
    GetLoadSize(FMT_PCD, &pcdWidth_, &pcdHeight_, nullptr);
    GetLoadSize(FMT_ICO, &iconWidth_, &iconHeight_, nullptr);
  }
  LoadSettingsGuard(const LoadSettingsGuard&) = delete;
  LoadSettingsGuard& operator=(const LoadSettingsGuard&) = delete;
  ~LoadSettingsGuard() {
    SetStatusCallback(statusFunction_, statusUserData_, nullptr, nullptr);
    SetLoadDpi(xDpi_, yDpi_);
    SetLoadSize(FMT_ICO, iconWidth_, iconHeight_);
    SetLoadSize(FMT_PCD, pcdWidth_, pcdHeight_);
  }

 private:
  STATUSCALLBACK statusFunction_ = nullptr;
  void* statusUserData_ = nullptr;
  int32_t xDpi_ = 0, yDpi_ = 0;
  int32_t pcdWidth_ = 0, pcdHeight_ = 0;
  int32_t iconWidth_ = 0, iconHeight_ = 0;
};
