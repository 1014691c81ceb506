// The step of the open dialog between OK and the reading of the files in which the user sets how each file is to be loaded.
// The frame in which that happens is behind an interface; this file owns the record that goes to it and the rules of what its
// answer means.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "loadoptions/load_options_data.h"

class LoadOptionsFrame {
 public:
  virtual ~LoadOptionsFrame() = default;
  // Takes the record, which stays the caller's. SUCCESS; 0 when there is nothing to show; ERROR_BAD_ARGUMENT.
  virtual int32_t SetOptions(FILELOADOPTIONSDLGDATA* data) = 0;
  // IDOK, IDCANCEL, or anything else for a dialog that failed.
  virtual INT_PTR DoModal() = 0;
};

// Has nothing to offer for any file, so that the open dialog stays up.
class EmptyLoadOptionsFrame : public LoadOptionsFrame {
 public:
  int32_t SetOptions(FILELOADOPTIONSDLGDATA*) override { return 0; }
  INT_PTR DoModal() override { return IDCANCEL; }
};

// Null when it cannot be made.
using LoadOptionsFrameMaker = std::function<std::unique_ptr<LoadOptionsFrame>()>;

struct LoadOptionsRequest {
  uint32_t dialogFlags = 0;  // DLG_OPEN_...
  int32_t page = 1;          // of the page edit
  int32_t xDpi = 0;          // load resolution in force before the dialog
  int32_t yDpi = 0;
};

// What the open dialog does next.
enum class AfterLoadOptions {
  kStayOpen,
  kReadFiles,
  kEnd  // with the status
};

struct LoadOptionsOutcome {
  AfterLoadOptions next;
  int32_t status;
};

// Runs the frame over the list. The list is changed only for kReadFiles; what the frame allocated otherwise is freed.
LoadOptionsOutcome RunLoadOptions(const LoadOptionsFrameMaker& makeFrame, const LoadOptionsRequest& request,
                                  std::vector<OPENDLGFILEDATA>& list);

// The LOADPAGE_ bits that DLG_OPEN_ bits stand for.
uint32_t LoadPageFlags(uint32_t dialogFlags);
