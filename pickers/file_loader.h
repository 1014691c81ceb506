// Loads one opened file: its bitmap and its thumbnail, each where the entry has a handle for it.
#pragma once

#include <cstdint>

#include "include/zvfiledlg_open.h"
#include "pickers/open_progress.h"

struct LoadOutcome {
  bool loaded = false;  // the image itself came in; a failed thumbnail alone does not clear it
  int32_t result = 1;   // code of the last step
};

// `entry` needs its fileInfo. The class's load settings are set for the length of the call.
LoadOutcome LoadOpenedFile(OPENDLGFILEDATA& entry, OpenProgress& progress);

// The size of a thumbnail: the picture's shape in 150 x 150 pixels, at least 1 pixel each way. Small pictures are enlarged.
struct ThumbnailSize {
  int32_t width;
  int32_t height;
};
ThumbnailSize ThumbnailSizeOf(int32_t width, int32_t height);
