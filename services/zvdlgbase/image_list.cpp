#include <algorithm>
#include <new>

#include "services/zvdlgbase/zvdlgbase.h"

int32_t ConvertImageListToWide(const DLGBITMAPLIST* ansi, DLGBITMAPLIST* wide) {
  if (!wide) {
    return ERROR_BAD_ARGUMENT;
  }
  *wide = {sizeof *wide, nullptr, 0};
  if (!ansi || ansi->count < 0 || (ansi->count > 0 && !ansi->items)) {
    return ERROR_BAD_ARGUMENT;
  }
  if (ansi->uStructSize != sizeof *ansi) {
    return ERROR_BAD_RECORD_SIZE;
  }
  if (ansi->count == 0) {
    return SUCCESS;
  }
  wide->items = new (std::nothrow) DLGBITMAPLISTITEM[static_cast<size_t>(ansi->count)];
  if (!wide->items) {
    return ERROR_OUT_OF_MEMORY;
  }
  std::copy_n(ansi->items, ansi->count, wide->items);
  wide->count = ansi->count;
  return SUCCESS;
}

int32_t FreeWideImageList(DLGBITMAPLIST* wide) {
  if (!wide) {
    return ERROR_BAD_ARGUMENT;
  }
  delete[] wide->items;
  *wide = {sizeof *wide, nullptr, 0};
  return SUCCESS;
}
