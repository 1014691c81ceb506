#include "demo/picture.h"

#include <utility>

int32_t Picture::Load(const std::wstring& path, int page) {
  LOADFILEOPTION option{};
  GetDefaultLoadFileOption(&option, sizeof option);
  option.pageNumber = page;

  FILEINFO info{};
  info.uStructSize = sizeof info;
  int32_t result = GetFileInfo(path.c_str(), &info, sizeof info, 1, &option);
  if (result != SUCCESS) return result;

  BITMAPHANDLE bitmap{};
  bitmap.uStructSize = sizeof bitmap;
  result = LoadImageFile(path.c_str(), &bitmap, sizeof bitmap, 0, ORDER_BGR_OR_GRAY, LOADFILE_ALLOCATE | LOADFILE_STORE,
                         nullptr, nullptr, &option, nullptr);
  if (result != SUCCESS) return result;

  Clear();
  MoveBitmapHandle(&bitmap_, &bitmap, sizeof bitmap_);
  info_ = info;
  path_ = path;
  return SUCCESS;
}

void Picture::Clear() {
  if (!IsEmpty()) FreeBitmap(&bitmap_);
  bitmap_ = {};
  info_ = {};
  path_.clear();
}

SIZE Picture::Size() const {
  SIZE size{bitmap_.width, bitmap_.height};
  if (bitmap_.viewPerspective >= VIEW_LEFT_TOP) std::swap(size.cx, size.cy);
  return size;
}

std::wstring Picture::Description() const {
  if (IsEmpty()) return L"No picture";
  const SIZE size = Size();
  std::wstring text = info_.name;
  text += L" - " + std::to_wstring(size.cx) + L" x " + std::to_wstring(size.cy) + L", " +
          std::to_wstring(bitmap_.bitsPerPixel) + L" bits, " + info_.compression;
  if (info_.totalPages > 1)
    text += L", page " + std::to_wstring(info_.pageNumber) + L" of " + std::to_wstring(info_.totalPages);
  return text;
}
