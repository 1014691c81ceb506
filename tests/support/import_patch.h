// Puts a function of the test in the place of one that a module of this process imports, so that a test can say what the
// system answers to that module. The object's end puts the import back. All calls of the module come to the replacement, also
// those of other threads; other modules notice nothing.
#pragma once

#include <windows.h>

namespace zvtest {

class ImportPatch {
 public:
  // Fails the test when the module is not loaded or does not import a function of that name.
  template <class Function>
  ImportPatch(const wchar_t* module, const char* function, Function* replacement)
      : ImportPatch(module, function, reinterpret_cast<ULONG_PTR>(replacement)) {}
  ImportPatch(const wchar_t* module, const char* function, ULONG_PTR replacement);
  ImportPatch(const ImportPatch&) = delete;
  ImportPatch& operator=(const ImportPatch&) = delete;
  ~ImportPatch();

 private:
  ULONG_PTR* place_;  // in the module's table of imports
  ULONG_PTR former_ = 0;
};

}  // namespace zvtest
