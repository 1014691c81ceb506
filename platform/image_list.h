// CImageList: pictures of one size. It destroys its list unless the list came from FromHandle or was detached.
#pragma once

#include "platform/gdi.h"
#include "platform/object.h"
#include "platform/win32.h"

class CImageList : public CObject {
 public:
  CImageList() = default;
  ~CImageList() override { DeleteImageList(); }

  static CImageList* FromHandle(HIMAGELIST list);
  BOOL Attach(HIMAGELIST list) { return (m_hImageList = list) != nullptr; }
  HIMAGELIST Detach();
  HIMAGELIST GetSafeHandle() const { return m_hImageList; }
  operator HIMAGELIST() const { return m_hImageList; }
  void ReleaseTemporary() { m_hImageList = nullptr; }
  BOOL DeleteImageList() { return m_hImageList && ::ImageList_Destroy(Detach()); }

  BOOL Create(int width, int height, UINT flags, int initial, int grow) {
    return Attach(::ImageList_Create(width, height, flags, initial, grow));
  }
  // A bitmap resource, cut into pictures `width` wide; `mask` becomes transparent.
  BOOL Create(UINT bitmapId, int width, int grow, COLORREF mask);

  int GetImageCount() const { return ::ImageList_GetImageCount(m_hImageList); }
  BOOL GetImageInfo(int image, IMAGEINFO* info) const { return ::ImageList_GetImageInfo(m_hImageList, image, info); }
  // Each returns the new picture's index, or -1. The bitmap or icon stays the caller's.
  int Add(CBitmap* image, CBitmap* mask);
  int Add(CBitmap* image, COLORREF mask) { return ::ImageList_AddMasked(m_hImageList, *image, mask); }
  int Add(HICON icon) { return ::ImageList_ReplaceIcon(m_hImageList, -1, icon); }
  BOOL Replace(int image, CBitmap* bitmap, CBitmap* mask);
  BOOL Remove(int image) { return ::ImageList_Remove(m_hImageList, image); }
  COLORREF SetBkColor(COLORREF color) { return ::ImageList_SetBkColor(m_hImageList, color); }
  BOOL Draw(CDC* dc, int image, POINT at, UINT style) {
    return ::ImageList_Draw(m_hImageList, image, dc->GetSafeHdc(), at.x, at.y, style);
  }
  HICON ExtractIcon(int image) { return ::ImageList_GetIcon(m_hImageList, image, ILD_NORMAL); }

  HIMAGELIST m_hImageList = nullptr;
};
