// The picture that the viewer shows: one page of one file, loaded through zvfile and owned here.
#ifndef ZV_DEMO_PICTURE_H
#define ZV_DEMO_PICTURE_H

#include <windows.h>

#include <string>

#include "services/zvfile/zvfile.h"

class Picture {
 public:
  Picture() = default;
  ~Picture() { Clear(); }
  Picture(const Picture&) = delete;
  Picture& operator=(const Picture&) = delete;

  // Replaces the picture by a page of a file. On failure the former picture stays and the code is returned.
  int32_t Load(const std::wstring& path, int page);
  void Clear();

  bool IsEmpty() const { return (bitmap_.flags & BITMAP_FLAG_ALLOCATED) == 0; }
  BITMAPHANDLE* Bitmap() { return &bitmap_; }
  const std::wstring& Path() const { return path_; }
  int Page() const { return info_.pageNumber; }
  int PageCount() const { return info_.totalPages; }
  // Size as shown, the view perspective applied.
  SIZE Size() const;
  // "name - 640 x 480, 24 bits, JPEG, page 1 of 3"
  std::wstring Description() const;

 private:
  BITMAPHANDLE bitmap_{};
  FILEINFO info_{};
  std::wstring path_;
};

#endif
