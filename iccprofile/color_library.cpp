#include "iccprofile/color_library.h"

namespace {

constexpr wchar_t kFileName[] = L"zvcolor.dll";

template <class Function>
bool Find(HMODULE module, const char* name, Function& function) {
  function = reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(module, name)));
  return function != nullptr;
}

}  // namespace

int32_t ColorLibrary::Bind() {
  module_.reset(::LoadLibraryW(kFileName));
  if (!module_) {
    return ERROR_COLOR_LIBRARY_MISSING;
  }
  const bool found[] = {Find(module_.get(), "Z_InitICCProfile", functions_.initProfile),
                        Find(module_.get(), "Z_FillICCProfileFromICCFile", functions_.fillProfileFromIccFile),
                        Find(module_.get(), "Z_FreeICCProfile", functions_.freeProfile),
                        Find(module_.get(), "Z_GenerateICCFile", functions_.generateIccFile),
                        Find(module_.get(), "Z_LoadICCProfile", functions_.loadProfile),
                        Find(module_.get(), "Z_SaveICCProfile", functions_.saveProfile)};
  for (const bool isThere : found) {
    if (!isThere) {
      Release();
      return ERROR_COLOR_LIBRARY_MISSING;
    }
  }
  return SUCCESS;
}

void ColorLibrary::Release() {
  functions_ = {};
  module_.reset();
}
