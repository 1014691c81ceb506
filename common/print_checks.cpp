#include "common/print_checks.h"

#include "platform/afx.h"
#include "services/zvcore/result_codes.h"

namespace {

// The printer's least margins must leave the wanted ones possible.
int32_t CheckMargins(const RECT& margin, const RECT& minimum) {
  const bool possible = minimum.left <= margin.left && minimum.top <= margin.top && minimum.right <= margin.right &&
                        minimum.bottom <= margin.bottom;
  return possible ? SUCCESS : ERROR_BAD_ARGUMENT;
}

}  // namespace

int32_t CheckStitchedPrint(const STITCHEDPRINTDLGPARAMS& params) {
  if (!AfxIsValidAddress(params.pBitmapList, sizeof(DLGBITMAPLIST), FALSE) || params.pBitmapList->count < 1) {
    return ERROR_BAD_ARGUMENT;
  }
  return CheckMargins(params.rcMargin, params.rcMinMargin);
}

int32_t CheckPrintPreview(const PRINTPREVIEWDLGPARAMS& params) {
  if (!AfxIsValidAddress(params.pBitmap, sizeof(BITMAPHANDLE), FALSE)) {
    return ERROR_BAD_ARGUMENT;
  }
  if (!(params.pBitmap->flags & BITMAP_FLAG_ALLOCATED)) {
    return ERROR_NO_IMAGE;
  }
  if (params.pBitmap->flags & BITMAP_FLAG_COMPRESSED) {
    return ERROR_BITMAP_REFUSED;
  }
  return CheckMargins(params.rcMargin, params.rcMinMargin);
}
