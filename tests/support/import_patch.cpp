#include "tests/support/import_patch.h"

#include <gtest/gtest.h>

#include <cstring>

namespace zvtest {

namespace {

// Where the module keeps the address of an imported function.
ULONG_PTR* FindImport(HMODULE module, const char* function) {
  auto* const base = reinterpret_cast<BYTE*>(module);
  const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
  const IMAGE_DATA_DIRECTORY& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
  for (; library->Name != 0; ++library) {
    const auto* name = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
    auto* address = reinterpret_cast<ULONG_PTR*>(base + library->FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++address) {
      if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) {
        continue;
      }
      const auto* const import = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
      if (std::strcmp(reinterpret_cast<const char*>(import->Name), function) == 0) {
        return address;
      }
    }
  }
  return nullptr;
}

ULONG_PTR Exchange(ULONG_PTR* place, ULONG_PTR value) {
  DWORD protection = 0;
  ::VirtualProtect(place, sizeof(*place), PAGE_READWRITE, &protection);
  const ULONG_PTR former = *place;
  *place = value;
  ::VirtualProtect(place, sizeof(*place), protection, &protection);
  return former;
}

}  // namespace

ImportPatch::ImportPatch(const wchar_t* module, const char* function, ULONG_PTR replacement) {
  const HMODULE loaded = ::GetModuleHandleW(module);
  place_ = loaded ? FindImport(loaded, function) : nullptr;
  if (place_) {
    former_ = Exchange(place_, replacement);
  } else {
    ADD_FAILURE() << "the module does not import " << function;
  }
}

ImportPatch::~ImportPatch() {
  if (place_) {
    Exchange(place_, former_);
  }
}

}  // namespace zvtest
