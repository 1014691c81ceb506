// The path that every wide export takes from its call to its result: enter the library, ask the dialog kernel, check the
// record and the parent, run the family's own part. Nothing that is thrown on the way leaves it, and a refused call has
// touched nothing.
#pragma once

#include <array>
#include <cstdint>

#include "common/library_context.h"
#include "platform/wnd.h"
#include "services/zvcore/result_codes.h"

// What a family's record looks like from the outside. The address test always covers the newest revision.
struct RecordFamily {
  uint32_t addressSize;
  std::array<uint32_t, 4> acceptedSizes;  // 0 ends the list
  bool needsParent;                       // false: the parent is handed to a common dialog, which does without
};

inline constexpr RecordFamily kDirectoryFamily = {60, {60}, false};
inline constexpr RecordFamily kOpenFamily = {104, {104, 100}, false};
inline constexpr RecordFamily kSaveFamily = {874, {874, 870, 813, 796}, false};
inline constexpr RecordFamily kProfileFamily = {1144, {1144}, true};
inline constexpr RecordFamily kConversionFamily = {1128, {1128}, true};
inline constexpr RecordFamily kAssociationFamily = {56, {56}, true};
inline constexpr RecordFamily kStitchedPrintFamily = {96, {96}, true};
inline constexpr RecordFamily kPrintPreviewFamily = {96, {96}, true};

// Kernel, address, size tag, parent: the code of the first that fails, or SUCCESS.
int32_t CheckCall(const RecordFamily& family, HWND parent, const void* record);
// The code for the exception being handled.
int32_t CodeOfCurrentException() noexcept;

// What a call that has passed the checks needs for its dialogs: the window classes of our own controls, which stay. At its end
// the position point is taken back that no dialog has used, since a later dialog is not to stand there.
class DialogScope {
 public:
  DialogScope();
  DialogScope(const DialogScope&) = delete;
  DialogScope& operator=(const DialogScope&) = delete;
  ~DialogScope();
};

// `body` takes the parent as a window object (null for a null parent) and gives the result.
template <class Body>
int32_t EnterLibrary(const RecordFamily& family, HWND parent, const void* record, Body body) noexcept {
  try {
    const LibraryContext context;
    const int32_t status = CheckCall(family, parent, record);
    if (status != SUCCESS) {
      return status;
    }
    const DialogScope scope;
    return body(CWnd::FromHandle(parent));
  } catch (...) {
    return CodeOfCurrentException();
  }
}
