// unique_handle owns one platform handle: it closes the handle with the function named in its type, and is moved but
// never copied. The aliases below are the kinds of handle in use; a new kind is one more line. A borrowed handle (one
// that somebody else closes) is passed on as the plain handle type, never wrapped. None of the operations throws.
#pragma once

#include <cstdint>
#include <utility>

#include "platform/scope_exit.h"
#include "platform/win32.h"

template <class Handle, auto Close, std::intptr_t Invalid = 0>
class [[nodiscard]] unique_handle {
 public:
  unique_handle() = default;
  explicit unique_handle(Handle handle) noexcept : handle_(handle) {}
  unique_handle(unique_handle&& other) noexcept : handle_(other.release()) {}
  unique_handle& operator=(unique_handle&& other) noexcept {
    reset(other.release());
    return *this;
  }
  unique_handle(const unique_handle&) = delete;
  unique_handle& operator=(const unique_handle&) = delete;
  ~unique_handle() { reset(); }

  Handle get() const noexcept { return handle_; }
  explicit operator bool() const noexcept { return handle_ != invalid(); }

  // Gives the handle up to the caller, who closes it.
  [[nodiscard]] Handle release() noexcept { return std::exchange(handle_, invalid()); }

  // Closes what is held and takes over `handle`. The error code of the thread survives the closing.
  void reset(Handle handle = invalid()) noexcept {
    if (handle_ != invalid() && handle_ != handle) {
      const DWORD error = ::GetLastError();
      Close(handle_);
      ::SetLastError(error);
    }
    handle_ = handle;
  }

  // For functions that give a handle through an out parameter: closes what is held first.
  Handle* put() noexcept {
    reset();
    return &handle_;
  }

  static Handle invalid() noexcept { return reinterpret_cast<Handle>(Invalid); }

 private:
  Handle handle_ = invalid();
};

namespace handle_closers {
inline void GdiObject(HGDIOBJ object) { ::DeleteObject(object); }
inline void Module(HMODULE module) { ::FreeLibrary(module); }
inline void Global(HGLOBAL memory) { ::GlobalFree(memory); }
}  // namespace handle_closers

using unique_hbitmap = unique_handle<HBITMAP, handle_closers::GdiObject>;
using unique_hfont = unique_handle<HFONT, handle_closers::GdiObject>;
using unique_hbrush = unique_handle<HBRUSH, handle_closers::GdiObject>;
using unique_hpen = unique_handle<HPEN, handle_closers::GdiObject>;
using unique_hrgn = unique_handle<HRGN, handle_closers::GdiObject>;
using unique_hpalette = unique_handle<HPALETTE, handle_closers::GdiObject>;
using unique_hicon = unique_handle<HICON, ::DestroyIcon>;
using unique_hcursor = unique_handle<HCURSOR, ::DestroyCursor>;
using unique_hmenu = unique_handle<HMENU, ::DestroyMenu>;
using unique_haccel = unique_handle<HACCEL, ::DestroyAcceleratorTable>;
using unique_himagelist = unique_handle<HIMAGELIST, ::ImageList_Destroy>;
using unique_hkey = unique_handle<HKEY, ::RegCloseKey>;
using unique_hfile = unique_handle<HANDLE, ::CloseHandle, -1>;
using unique_kernel_handle = unique_handle<HANDLE, ::CloseHandle>;
using unique_hfind = unique_handle<HANDLE, ::FindClose, -1>;
using unique_hmodule = unique_handle<HMODULE, handle_closers::Module>;
using unique_hglobal = unique_handle<HGLOBAL, handle_closers::Global>;
using unique_hdc = unique_handle<HDC, ::DeleteDC>;
using unique_hwnd = unique_handle<HWND, ::DestroyWindow>;

// The device context of a window (GetDC), given back to that window. A null window means the screen.
class unique_window_dc {
 public:
  explicit unique_window_dc(HWND window) noexcept : window_(window), dc_(::GetDC(window)) {}
  unique_window_dc(const unique_window_dc&) = delete;
  unique_window_dc& operator=(const unique_window_dc&) = delete;
  ~unique_window_dc() {
    if (dc_) {
      ::ReleaseDC(window_, dc_);
    }
  }

  HDC get() const noexcept { return dc_; }
  explicit operator bool() const noexcept { return dc_ != nullptr; }

 private:
  HWND window_;
  HDC dc_;
};

// Selects an object into a device context for the length of a scope. Owns neither.
class dc_selection {
 public:
  dc_selection(HDC dc, HGDIOBJ object) noexcept : dc_(dc), previous_(::SelectObject(dc, object)) {}
  dc_selection(const dc_selection&) = delete;
  dc_selection& operator=(const dc_selection&) = delete;
  ~dc_selection() {
    if (previous_ && previous_ != HGDI_ERROR) {
      ::SelectObject(dc_, previous_);
    }
  }

 private:
  HDC dc_;
  HGDIOBJ previous_;
};

// Selects and realises a palette for the length of a scope. A null palette does nothing.
class dc_palette_selection {
 public:
  dc_palette_selection(HDC dc, HPALETTE palette, bool background) noexcept : dc_(dc) {
    if (palette) {
      previous_ = ::SelectPalette(dc, palette, background);
      ::RealizePalette(dc);
    }
  }
  dc_palette_selection(const dc_palette_selection&) = delete;
  dc_palette_selection& operator=(const dc_palette_selection&) = delete;
  ~dc_palette_selection() {
    if (previous_) {
      ::SelectPalette(dc_, previous_, TRUE);
    }
  }

 private:
  HDC dc_;
  HPALETTE previous_ = nullptr;
};
