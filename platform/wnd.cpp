#include "platform/wnd.h"

#include <algorithm>
#include <atomic>
#include <set>
#include <utility>

#include "platform/afx.h"
#include "platform/gdi.h"
#include "platform/menu.h"
#include "platform/message_map.h"
#include "platform/thread_state.h"

IMPLEMENT_DYNAMIC(CWnd, CObject)

BEGIN_MESSAGE_MAP(CWnd, CCmdTarget)
END_MESSAGE_MAP()

const CWnd CWnd::wndTop{HWND_TOP};
const CWnd CWnd::wndBottom{HWND_BOTTOM};
const CWnd CWnd::wndTopMost{HWND_TOPMOST};
const CWnd CWnd::wndNoTopMost{HWND_NOTOPMOST};

namespace {

// The property under which a window keeps its object. Several modules of one process may carry this framework, and none
// may see the others' objects, so the name is made from an address of this module.
class ObjectPropertyAtom {
 public:
  ObjectPropertyAtom() {
    CString name;
    name.Format(L"zv window object %lu %p", ::GetCurrentProcessId(), static_cast<const void*>(this));
    atom_ = ::GlobalAddAtomW(name);
  }
  ObjectPropertyAtom(const ObjectPropertyAtom&) = delete;
  ObjectPropertyAtom& operator=(const ObjectPropertyAtom&) = delete;
  // Atoms outlive their process unless they are deleted.
  ~ObjectPropertyAtom() { ::GlobalDeleteAtom(atom_); }

  LPCWSTR Name() const { return MAKEINTATOM(atom_); }

 private:
  ATOM atom_;
};

LPCWSTR ObjectProperty() {
  static const ObjectPropertyAtom atom;
  return atom.Name();
}

// Reading a property costs a round trip to another process on some systems, and every message needs one. So each thread
// remembers its latest answers, until any object of the module is bound or unbound.
struct RememberedObject {
  HWND window;
  CWnd* object;
  unsigned generation;
};

std::atomic<unsigned> bindingGeneration = 1;

RememberedObject& RememberedSlot(HWND window) {
  constexpr size_t kSlots = 64;
  static thread_local RememberedObject slots[kSlots];
  return slots[(reinterpret_cast<UINT_PTR>(window) >> 1) % kSlots];
}

bool IsSpecial(HWND window) {
  const auto value = reinterpret_cast<INT_PTR>(window);
  return value >= -2 && value <= 1;
}

// Subclasses the window being created on this thread before it gets its first message. The system's window classes know
// nothing of our creation parameter, so the only earlier moment is this hook.
class CreationHook {
 public:
  explicit CreationHook(CWnd* object)
      : object_(object),
        outer_(std::exchange(current_, this)),
        hook_(::SetWindowsHookExW(WH_CBT, &CreationHook::Procedure, nullptr, ::GetCurrentThreadId())) {}
  CreationHook(const CreationHook&) = delete;
  CreationHook& operator=(const CreationHook&) = delete;
  ~CreationHook() {
    ::UnhookWindowsHookEx(hook_);
    current_ = outer_;
  }

  // Whether a window came so far as to be bound to the object.
  bool Met() const { return !object_; }

 private:
  static LRESULT CALLBACK Procedure(int code, WPARAM wParam, LPARAM lParam) {
    CreationHook* const hook = current_;
    if (code == HCBT_CREATEWND && hook && hook->object_) {
      std::exchange(hook->object_, nullptr)->SubclassWindow(reinterpret_cast<HWND>(wParam));
    }
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
  }

  static thread_local CreationHook* current_;
  CWnd* object_;
  CreationHook* outer_;
  HHOOK hook_;
};

thread_local CreationHook* CreationHook::current_ = nullptr;

}  // namespace

CWnd::~CWnd() {
  if (m_hWnd && !IsSpecial(m_hWnd)) {
    DestroyWindow();
  }
}

LPCTSTR AfxRegisterWndClass(UINT classStyle, HCURSOR cursor, HBRUSH background, HICON icon) {
  // Held by the set, so that the returned pointer stays valid.
  static std::set<CString> names;
  CString name;
  name.Format(L"ZVWnd:%p:%x:%p:%p:%p", static_cast<void*>(AfxGetInstanceHandle()), classStyle,
              static_cast<void*>(cursor), static_cast<void*>(background), static_cast<void*>(icon));
  const auto [position, isNew] = names.insert(name);
  if (isNew) {
    WNDCLASSW windowClass = {};
    windowClass.style = classStyle;
    windowClass.lpfnWndProc = ::DefWindowProcW;
    windowClass.hInstance = AfxGetInstanceHandle();
    windowClass.hIcon = icon;
    windowClass.hCursor = cursor;
    windowClass.hbrBackground = background;
    windowClass.lpszClassName = *position;
    ::RegisterClassW(&windowClass);
  }
  return *position;
}

BOOL CWnd::Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect, CWnd* parent, UINT id,
                  CCreateContext* context) {
  return CreateEx(0, className, windowName, style | WS_CHILD, rect, parent, id, context);
}

BOOL CWnd::CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect, CWnd* parent,
                    UINT id, LPVOID parameter) {
  return CreateEx(exStyle, className, windowName, style, rect.left, rect.top, rect.right - rect.left,
                  rect.bottom - rect.top, parent ? parent->m_hWnd : nullptr,
                  reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), parameter);
}

BOOL CWnd::CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, int x, int y, int width,
                    int height, HWND parent, HMENU idOrMenu, LPVOID parameter) {
  if (!className) {
    className = AfxRegisterWndClass(CS_DBLCLKS, ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)),
                                    reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1));
  }
  CREATESTRUCTW create = {};
  create.lpCreateParams = parameter;
  create.hInstance = AfxGetInstanceHandle();
  create.hMenu = idOrMenu;
  create.hwndParent = parent;
  create.cy = height;
  create.cx = width;
  create.y = y;
  create.x = x;
  create.style = static_cast<LONG>(style);
  create.lpszName = windowName;
  create.lpszClass = className;
  create.dwExStyle = exStyle;
  if (!PreCreateWindow(create)) {
    PostNcDestroy();
    return FALSE;
  }
  const CreationHook hook(this);
  const HWND window = ::CreateWindowExW(create.dwExStyle, create.lpszClass, create.lpszName,
                                        static_cast<DWORD>(create.style), create.x, create.y, create.cx, create.cy,
                                        create.hwndParent, create.hMenu, create.hInstance, create.lpCreateParams);
  if (!window && !hook.Met()) {
    PostNcDestroy();
  }
  return window != nullptr;
}

BOOL CWnd::DestroyWindow() {
  if (!m_hWnd) {
    return FALSE;
  }
  const HWND window = m_hWnd;
  const BOOL destroyed = ::DestroyWindow(window);
  if (m_hWnd == window) {
    Detach();
  }
  return destroyed;
}

BOOL CWnd::Attach(HWND window) {
  if (!window || m_hWnd) {
    return FALSE;
  }
  if (!::SetPropW(window, ObjectProperty(), this)) {
    return FALSE;
  }
  m_hWnd = window;
  ++bindingGeneration;
  return TRUE;
}

HWND CWnd::Detach() {
  const HWND window = std::exchange(m_hWnd, nullptr);
  if (window && FromHandlePermanent(window) == this) {
    ::RemovePropW(window, ObjectProperty());
    ++bindingGeneration;
  }
  superProcedure_ = nullptr;
  return window;
}

BOOL CWnd::SubclassWindow(HWND window) {
  if (!Attach(window)) {
    return FALSE;
  }
  PreSubclassWindow();
  superProcedure_ =
      reinterpret_cast<WNDPROC>(::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&AfxWndProc)));
  return superProcedure_ != nullptr;
}

BOOL CWnd::SubclassDlgItem(UINT id, CWnd* parent) {
  return SubclassWindow(::GetDlgItem(parent->m_hWnd, static_cast<int>(id)));
}

HWND CWnd::UnsubclassWindow() {
  const auto ours = reinterpret_cast<LONG_PTR>(&AfxWndProc);
  if (superProcedure_ && ::GetWindowLongPtrW(m_hWnd, GWLP_WNDPROC) == ours) {
    ::SetWindowLongPtrW(m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(superProcedure_));
  }
  return Detach();
}

CWnd* CWnd::FromHandlePermanent(HWND window) {
  if (!window) {
    return nullptr;
  }
  RememberedObject& slot = RememberedSlot(window);
  const unsigned generation = bindingGeneration;
  if (slot.window != window || slot.generation != generation) {
    slot = {window, static_cast<CWnd*>(::GetPropW(window, ObjectProperty())), generation};
  }
  return slot.object;
}

CWnd* CWnd::FromHandle(HWND window) {
  if (!window) {
    return nullptr;
  }
  if (CWnd* const object = FromHandlePermanent(window)) {
    return object;
  }
  return ThreadState::Get().Temporary<CWnd>(window, [](CWnd& wrapper, HWND handle) { wrapper.m_hWnd = handle; });
}

CFont* CWnd::GetFont() const { return CFont::FromHandle(reinterpret_cast<HFONT>(SendMessage(WM_GETFONT))); }

void CWnd::SetFont(CFont* font, BOOL redraw) {
  SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(font ? font->GetSafeHandle() : nullptr), redraw != FALSE);
}

CMenu* CWnd::GetMenu() const { return CMenu::FromHandle(::GetMenu(m_hWnd)); }

BOOL CWnd::SetMenu(CMenu* menu) { return ::SetMenu(m_hWnd, menu ? menu->GetSafeHmenu() : nullptr); }

CMenu* CWnd::GetSystemMenu(BOOL revert) const { return CMenu::FromHandle(::GetSystemMenu(m_hWnd, revert)); }

CDC* CWnd::GetDC() { return CDC::FromHandle(::GetDC(m_hWnd)); }

int CWnd::ReleaseDC(CDC* dc) { return ::ReleaseDC(m_hWnd, dc->GetSafeHdc()); }

void CWnd::CenterWindow(CWnd* alternateOwner) {
  const bool isChild = (GetStyle() & WS_CHILD) != 0;
  HWND owner = alternateOwner ? alternateOwner->m_hWnd : isChild ? ::GetParent(m_hWnd) : ::GetWindow(m_hWnd, GW_OWNER);
  if (owner && !isChild && (!::IsWindowVisible(owner) || ::IsIconic(owner))) {
    owner = nullptr;
  }
  MONITORINFO monitor = {};
  monitor.cbSize = sizeof(monitor);
  ::GetMonitorInfoW(::MonitorFromWindow(owner ? owner : m_hWnd, MONITOR_DEFAULTTONEAREST), &monitor);
  CRect area = monitor.rcWork;
  CRect center = area;
  if (isChild) {
    ::GetClientRect(owner, area);
    center = area;
  } else if (owner) {
    ::GetWindowRect(owner, center);
  }
  CRect window;
  GetWindowRect(window);
  const int maximumX = std::max<int>(area.left, area.right - window.Width());
  const int maximumY = std::max<int>(area.top, area.bottom - window.Height());
  const int x = std::clamp<int>(center.CenterPoint().x - window.Width() / 2, area.left, maximumX);
  const int y = std::clamp<int>(center.CenterPoint().y - window.Height() / 2, area.top, maximumY);
  SetWindowPos(nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}
