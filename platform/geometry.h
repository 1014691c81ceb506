// CPoint, CSize and CRect: the platform's POINT, SIZE and RECT with arithmetic. They own nothing, add no field, and may
// be passed wherever the platform wants the plain record. Units are whatever the caller uses, mostly pixels.
#pragma once

#include "platform/win32.h"

class CSize : public tagSIZE {
 public:
  constexpr CSize() : tagSIZE{0, 0} {}
  constexpr CSize(int width, int height) : tagSIZE{width, height} {}
  constexpr CSize(const SIZE& size) : tagSIZE(size) {}

  bool operator==(const SIZE& other) const { return cx == other.cx && cy == other.cy; }
  CSize& operator+=(const SIZE& other) { return cx += other.cx, cy += other.cy, *this; }
  CSize& operator-=(const SIZE& other) { return cx -= other.cx, cy -= other.cy, *this; }
  CSize operator+(const SIZE& other) const { return CSize(cx + other.cx, cy + other.cy); }
  CSize operator-(const SIZE& other) const { return CSize(cx - other.cx, cy - other.cy); }
  CSize operator-() const { return CSize(-cx, -cy); }
};

class CPoint : public tagPOINT {
 public:
  constexpr CPoint() : tagPOINT{0, 0} {}
  constexpr CPoint(int left, int top) : tagPOINT{left, top} {}
  constexpr CPoint(const POINT& point) : tagPOINT(point) {}
  // The two signed 16-bit coordinates of a mouse message.
  explicit CPoint(LPARAM packed) : tagPOINT{static_cast<short>(LOWORD(packed)), static_cast<short>(HIWORD(packed))} {}

  void Offset(int dx, int dy) { x += dx, y += dy; }
  void SetPoint(int newX, int newY) { x = newX, y = newY; }
  bool operator==(const POINT& other) const { return x == other.x && y == other.y; }
  CPoint& operator+=(const SIZE& size) { return x += size.cx, y += size.cy, *this; }
  CPoint& operator-=(const SIZE& size) { return x -= size.cx, y -= size.cy, *this; }
  CPoint operator+(const SIZE& size) const { return CPoint(x + size.cx, y + size.cy); }
  CPoint operator-(const SIZE& size) const { return CPoint(x - size.cx, y - size.cy); }
  CPoint operator+(const POINT& other) const { return CPoint(x + other.x, y + other.y); }
  CSize operator-(const POINT& other) const { return CSize(x - other.x, y - other.y); }
};

class CRect : public tagRECT {
 public:
  constexpr CRect() : tagRECT{0, 0, 0, 0} {}
  constexpr CRect(int l, int t, int r, int b) : tagRECT{l, t, r, b} {}
  constexpr CRect(const RECT& rect) : tagRECT(rect) {}
  CRect(const POINT& point, const SIZE& size) : tagRECT{point.x, point.y, point.x + size.cx, point.y + size.cy} {}
  CRect(const POINT& topLeft, const POINT& bottomRight) : tagRECT{topLeft.x, topLeft.y, bottomRight.x, bottomRight.y} {}

  operator LPRECT() { return this; }
  operator LPCRECT() const { return this; }

  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  CSize Size() const { return CSize(Width(), Height()); }
  CPoint TopLeft() const { return CPoint(left, top); }
  CPoint BottomRight() const { return CPoint(right, bottom); }
  CPoint CenterPoint() const { return CPoint((left + right) / 2, (top + bottom) / 2); }
  // Empty means no area; null means all four coordinates are zero.
  BOOL IsRectEmpty() const { return right <= left || bottom <= top; }
  BOOL IsRectNull() const { return left == 0 && right == 0 && top == 0 && bottom == 0; }
  BOOL PtInRect(POINT point) const { return point.x >= left && point.x < right && point.y >= top && point.y < bottom; }
  BOOL EqualRect(LPCRECT other) const { return *this == *other; }

  void SetRect(int l, int t, int r, int b) { left = l, top = t, right = r, bottom = b; }
  void SetRectEmpty() { SetRect(0, 0, 0, 0); }
  void CopyRect(LPCRECT other) { static_cast<tagRECT&>(*this) = *other; }
  void InflateRect(int dx, int dy) { InflateRect(dx, dy, dx, dy); }
  void InflateRect(SIZE size) { InflateRect(size.cx, size.cy); }
  void InflateRect(int l, int t, int r, int b) { left -= l, top -= t, right += r, bottom += b; }
  void DeflateRect(int dx, int dy) { InflateRect(-dx, -dy); }
  void DeflateRect(SIZE size) { InflateRect(-size.cx, -size.cy); }
  void DeflateRect(int l, int t, int r, int b) { InflateRect(-l, -t, -r, -b); }
  void OffsetRect(int dx, int dy) { left += dx, right += dx, top += dy, bottom += dy; }
  void OffsetRect(POINT point) { OffsetRect(point.x, point.y); }
  void MoveToX(int x) { OffsetRect(x - left, 0); }
  void MoveToY(int y) { OffsetRect(0, y - top); }
  void MoveToXY(int x, int y) { OffsetRect(x - left, y - top); }
  void MoveToXY(POINT point) { MoveToXY(point.x, point.y); }
  // Swaps coordinates so that neither width nor height is negative.
  void NormalizeRect();
  // Both put the result here and tell whether it has an area.
  BOOL IntersectRect(LPCRECT first, LPCRECT second) { return ::IntersectRect(this, first, second); }
  BOOL UnionRect(LPCRECT first, LPCRECT second) { return ::UnionRect(this, first, second); }
  BOOL SubtractRect(LPCRECT first, LPCRECT second) { return ::SubtractRect(this, first, second); }

  bool operator==(const RECT& other) const {
    return left == other.left && top == other.top && right == other.right && bottom == other.bottom;
  }
  void operator+=(POINT point) { OffsetRect(point); }
  void operator-=(POINT point) { OffsetRect(-point.x, -point.y); }
  CRect operator+(POINT point) const { return CRect(left + point.x, top + point.y, right + point.x, bottom + point.y); }
  CRect operator-(POINT point) const { return CRect(left - point.x, top - point.y, right - point.x, bottom - point.y); }
};

inline void CRect::NormalizeRect() {
  SetRect(left < right ? left : right, top < bottom ? top : bottom, left < right ? right : left,
          top < bottom ? bottom : top);
}
