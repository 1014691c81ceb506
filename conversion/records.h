// The plain records behind the batch conversion: what stands behind a row of the dialog's two lists, the queue of a run and
// the lines of its log, and the two transforms that a run applies. None crosses the library's border, none knows a window.
// A page array belongs to the record that stands in the file list; copies of that record merely point at it.
#pragma once

#include "include/zvfiledlg_conversion.h"
#include "platform/array.h"
#include "platform/cstring.h"
#include "services/zvfile/zvfile.h"

enum ConversionStatus : int32_t {
  CONVERSION_OK = 0,
  CONVERSION_SKIPPED = 1,        // the destination existed and was left alone
  CONVERSION_FAILED = 2,         // load, transform or save failed, no destination could be formed, or no such page
  CONVERSION_ABORTED = 3,        // Abort in the overwrite question; such a line has no paths and ends the run
  CONVERSION_PATH_TOO_LONG = 4,  // see kDestinationPathLimit
};

// A row of the File Type list.
struct CONVERSIONFORMATITEM {
  int32_t format = 0;             // id in the catalogue of formats
  int32_t subtype = -1;           // -1: the format has none at this depth
  int32_t extensionStringId = 0;  // extension without its dot
  int32_t fileFormat = 0;         // format number of SaveFile
  int32_t bitsPerPixel = 0;
  int32_t qFactor = 0;
  SAVEFILEOPTION saveOption = {};
  J2KSAVEOPTION j2kOption = {};
  uint32_t settingsFlags = 0;  // SAVEOPT_... of the chosen depth and sub type
};

// A row of the file list. The six load values are carried unread into the load options of a file of which several pages are
// converted.
struct CONVERSIONFILEOPTIONS {
  uint32_t header = 0;
  int32_t reserved = 0;
  DLGHELPCALLBACK helpCallback = nullptr;  // set only while the page selection is being edited
  void* helpUserData = nullptr;
  int32_t allPages = 0;
  int32_t loadXResolution = -1;
  int32_t loadYResolution = -1;
  uint32_t loadFlags = 0;
  int32_t loadPasses = -1;
  int32_t loadReserved = 0;
  uint64_t loadFilePosition = 0;
  int32_t pageTotal = 1;
  int32_t pageCount = -1;    // below 1: no selection
  int32_t* pages = nullptr;  // page numbers from 1; allocated with new[], freed by the owner of the row
};

// One unit of work of a run: a row of the file list and a row of the File Type list.
struct CONVERSIONLISTITEM {
  int32_t fileRow = -1;
  int32_t formatRow = -1;
};

struct LOGREPORTITEM {
  CString source;
  CString destination;
  int32_t status = CONVERSION_FAILED;
};

struct CONVERSIONRUNDATA {
  CArray<LOGREPORTITEM> log;
  CArray<CONVERSIONLISTITEM> queue;
};

struct LOGREPORTDLGDATA {
  CArray<LOGREPORTITEM> log;
  int32_t showFullPath = 1;
};

#pragma pack(push, 1)
struct CONVERSIONROTATEOPTIONS {
  uint32_t uStructSize = 24;
  int32_t angle = 0;  // clockwise, hundredths of a degree, -36000 to 36000
  int32_t resizeToFit = 0;
  uint32_t flags = 0;      // ROTATE_... of RotateBitmap
  uint32_t fillColor = 0;  // COLORREF of the uncovered corners
  int32_t contextHelp = 0;
};

struct CONVERSIONRESIZEOPTIONS {
  uint32_t uStructSize = 28;
  int32_t enabled = 0;
  int32_t width = 1;  // in the unit below
  int32_t height = 1;
  int32_t unit = 0;    // RESIZE_UNIT_...
  int32_t method = 0;  // 0 nearest, 2 bilinear, 4 bicubic
  int32_t contextHelp = 0;
};
#pragma pack(pop)

enum ResizeUnit : int32_t { RESIZE_UNIT_PIXELS = 0, RESIZE_UNIT_PERCENT = 1 };

static_assert(sizeof(CONVERSIONROTATEOPTIONS) == 24 && offsetof(CONVERSIONROTATEOPTIONS, angle) == 4);
static_assert(offsetof(CONVERSIONROTATEOPTIONS, resizeToFit) == 8 && offsetof(CONVERSIONROTATEOPTIONS, flags) == 12);
static_assert(offsetof(CONVERSIONROTATEOPTIONS, fillColor) == 16 &&
              offsetof(CONVERSIONROTATEOPTIONS, contextHelp) == 20);
static_assert(sizeof(CONVERSIONRESIZEOPTIONS) == 28 && offsetof(CONVERSIONRESIZEOPTIONS, enabled) == 4);
static_assert(offsetof(CONVERSIONRESIZEOPTIONS, width) == 8 && offsetof(CONVERSIONRESIZEOPTIONS, height) == 12);
static_assert(offsetof(CONVERSIONRESIZEOPTIONS, unit) == 16 && offsetof(CONVERSIONRESIZEOPTIONS, method) == 20);
static_assert(offsetof(CONVERSIONRESIZEOPTIONS, contextHelp) == 24);
