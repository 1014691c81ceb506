// The colour library, found at run time, so that everything else works without it. Either all six of its functions are there
// or none is.
#pragma once

#include "platform/unique_handle.h"
#include "services/zvcolor/icc_profile_data.h"
#include "services/zvcore/zvcore.h"
#include "services/zvfile/option_records.h"

class ColorLibrary {
 public:
  // ERROR_COLOR_LIBRARY_MISSING when there is no such library on the system's search path, or one without all the functions.
  int32_t Bind();
  // Clears the functions and lets the library go.
  void Release();
  bool IsBound() const { return static_cast<bool>(module_); }

  // As services/zvcolor/zvcolor.h tells; null until Bind succeeds.
  struct Functions {
    int32_t(ZV_CALL* initProfile)(ICCPROFILEDATA* profile, uint32_t recordSize) = nullptr;
    int32_t(ZV_CALL* fillProfileFromIccFile)(const wchar_t* path, ICCPROFILEDATA* profile) = nullptr;
    int32_t(ZV_CALL* freeProfile)(ICCPROFILEDATA* profile) = nullptr;
    int32_t(ZV_CALL* generateIccFile)(const ICCPROFILEDATA* profile, const wchar_t* path) = nullptr;
    int32_t(ZV_CALL* loadProfile)(const wchar_t* path, ICCPROFILEDATA* profile, const LOADFILEOPTION* option) = nullptr;
    int32_t(ZV_CALL* saveProfile)(const wchar_t* path, const ICCPROFILEDATA* profile,
                                  const SAVEFILEOPTION* option) = nullptr;
  };
  const Functions* operator->() const { return &functions_; }

 private:
  unique_hmodule module_;
  Functions functions_;
};
