#include "platform/data_exchange.h"

#include <cerrno>
#include <cwchar>
#include <cwctype>
#include <limits>

namespace {

CString ControlText(HWND control) {
  WindowHandle window;
  window.m_hWnd = control;
  CString text;
  window.GetWindowText(text);
  return text;
}

// Setting an equal text again would flicker and lose the caret.
void SetControlText(HWND control, LPCTSTR text) {
  if (ControlText(control) != text) {
    ::SetWindowTextW(control, text);
  }
}

bool OnlyBlanks(const wchar_t* text) {
  while (std::iswspace(static_cast<wint_t>(*text))) {
    ++text;
  }
  return *text == L'\0';
}

template <class Number>
bool ParseNumber(LPCWSTR text, Number& value) {
  if (OnlyBlanks(text)) {
    return false;
  }
  wchar_t* end = nullptr;
  errno = 0;
  if constexpr (std::is_floating_point_v<Number>) {
    const double parsed = std::wcstod(text, &end);
    value = static_cast<Number>(parsed);
  } else {
    const long long parsed = std::wcstoll(text, &end, 10);
    if (parsed < static_cast<long long>(std::numeric_limits<Number>::min()) ||
        parsed > static_cast<long long>(std::numeric_limits<Number>::max())) {
      return false;
    }
    value = static_cast<Number>(parsed);
  }
  return errno == 0 && OnlyBlanks(end);
}

template <class Number>
void ExchangeNumber(CDataExchange* exchange, int id, Number& value) {
  const HWND control = exchange->PrepareEditCtrl(id);
  if (exchange->m_bSaveAndValidate) {
    if (!ParseNumber(ControlText(control).GetString(), value)) {
      exchange->Fail();
    }
    return;
  }
  CString text;
  if constexpr (std::is_floating_point_v<Number>) {
    text.Format(L"%.*g", std::numeric_limits<Number>::digits10, static_cast<double>(value));
  } else {
    text.Format(L"%I64d", static_cast<long long>(value));
  }
  SetControlText(control, text);
}

void ExchangeIndex(CDataExchange* exchange, int id, int& index, UINT getMessage, UINT setMessage) {
  const HWND control = exchange->PrepareCtrl(id);
  if (exchange->m_bSaveAndValidate) {
    index = static_cast<int>(::SendMessageW(control, getMessage, 0, 0));
  } else {
    ::SendMessageW(control, setMessage, static_cast<WPARAM>(index), 0);
  }
}

void RequireRange(CDataExchange* exchange, bool inRange) {
  if (exchange->m_bSaveAndValidate && !inRange) {
    exchange->Fail();
  }
}

}  // namespace

HWND CDataExchange::PrepareCtrl(int id) {
  lastControl_ = ::GetDlgItem(m_pDlgWnd->m_hWnd, id);
  lastIsEdit_ = false;
  if (!lastControl_) {
    AfxThrowNotSupportedException();
  }
  return lastControl_;
}

HWND CDataExchange::PrepareEditCtrl(int id) {
  const HWND control = PrepareCtrl(id);
  lastIsEdit_ = true;
  return control;
}

void CDataExchange::Fail() {
  if (m_bSaveAndValidate && lastControl_) {
    ::MessageBeep(static_cast<UINT>(-1));
    ::SetFocus(lastControl_);
    if (lastIsEdit_) {
      ::SendMessageW(lastControl_, EM_SETSEL, 0, -1);
    }
  }
  AfxThrowUserException();
}

BOOL CWnd::UpdateData(BOOL saveAndValidate) {
  CDataExchange exchange(this, saveAndValidate);
  try {
    DoDataExchange(&exchange);
    return TRUE;
  } catch (CUserException* e) {
    e->Delete();
    return FALSE;
  }
}

void DDX_Control(CDataExchange* exchange, int id, CWnd& control) {
  if (!control.m_hWnd && !control.SubclassWindow(exchange->PrepareCtrl(id))) {
    AfxThrowNotSupportedException();
  }
}

void DDX_Text(CDataExchange* exchange, int id, CString& value) {
  const HWND control = exchange->PrepareEditCtrl(id);
  if (exchange->m_bSaveAndValidate) {
    value = ControlText(control);
  } else {
    SetControlText(control, value);
  }
}

void DDX_Text(CDataExchange* exchange, int id, BYTE& value) { ExchangeNumber(exchange, id, value); }
void DDX_Text(CDataExchange* exchange, int id, short& value) { ExchangeNumber(exchange, id, value); }
void DDX_Text(CDataExchange* exchange, int id, int& value) { ExchangeNumber(exchange, id, value); }
void DDX_Text(CDataExchange* exchange, int id, UINT& value) { ExchangeNumber(exchange, id, value); }
void DDX_Text(CDataExchange* exchange, int id, long& value) { ExchangeNumber(exchange, id, value); }
void DDX_Text(CDataExchange* exchange, int id, DWORD& value) { ExchangeNumber(exchange, id, value); }
void DDX_Text(CDataExchange* exchange, int id, float& value) { ExchangeNumber(exchange, id, value); }
void DDX_Text(CDataExchange* exchange, int id, double& value) { ExchangeNumber(exchange, id, value); }

void DDX_Text(CDataExchange* exchange, int id, LPTSTR value, int size) {
  const HWND control = exchange->PrepareEditCtrl(id);
  if (!exchange->m_bSaveAndValidate) {
    SetControlText(control, value);
  } else if (::GetWindowTextLengthW(control) >= size) {
    exchange->Fail();
  } else {
    ::GetWindowTextW(control, value, size);
  }
}

void DDX_Check(CDataExchange* exchange, int id, int& value) {
  ExchangeIndex(exchange, id, value, BM_GETCHECK, BM_SETCHECK);
}

void DDX_Radio(CDataExchange* exchange, int id, int& value) {
  HWND control = exchange->PrepareCtrl(id);
  if (exchange->m_bSaveAndValidate) {
    value = -1;
  }
  // The group runs up to the next control that starts one; other kinds of control may stand in it.
  int index = 0;
  do {
    if (::SendMessageW(control, WM_GETDLGCODE, 0, 0) & DLGC_RADIOBUTTON) {
      if (!exchange->m_bSaveAndValidate) {
        ::SendMessageW(control, BM_SETCHECK, index == value ? BST_CHECKED : BST_UNCHECKED, 0);
      } else if (::SendMessageW(control, BM_GETCHECK, 0, 0) == BST_CHECKED) {
        value = index;
      }
      ++index;
    }
    control = ::GetWindow(control, GW_HWNDNEXT);
  } while (control && !(::GetWindowLongW(control, GWL_STYLE) & WS_GROUP));
}

void DDX_CBIndex(CDataExchange* exchange, int id, int& index) {
  ExchangeIndex(exchange, id, index, CB_GETCURSEL, CB_SETCURSEL);
}

void DDX_CBString(CDataExchange* exchange, int id, CString& value) {
  const HWND control = exchange->PrepareCtrl(id);
  if (exchange->m_bSaveAndValidate) {
    value = ControlText(control);
  } else if (::SendMessageW(control, CB_SELECTSTRING, static_cast<WPARAM>(-1),
                            reinterpret_cast<LPARAM>(value.GetString())) == CB_ERR) {
    SetControlText(control, value);
  }
}

void DDX_CBStringExact(CDataExchange* exchange, int id, CString& value) {
  const HWND control = exchange->PrepareCtrl(id);
  if (exchange->m_bSaveAndValidate) {
    value = ControlText(control);
    return;
  }
  const LRESULT index =
      ::SendMessageW(control, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(value.GetString()));
  if (index < 0) {
    SetControlText(control, value);
  } else {
    ::SendMessageW(control, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
  }
}

void DDX_LBIndex(CDataExchange* exchange, int id, int& index) {
  ExchangeIndex(exchange, id, index, LB_GETCURSEL, LB_SETCURSEL);
}

void DDX_LBString(CDataExchange* exchange, int id, CString& value) {
  const HWND control = exchange->PrepareCtrl(id);
  if (!exchange->m_bSaveAndValidate) {
    ::SendMessageW(control, LB_SELECTSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(value.GetString()));
    return;
  }
  value.Empty();
  const LRESULT index = ::SendMessageW(control, LB_GETCURSEL, 0, 0);
  const LRESULT length = index < 0 ? 0 : ::SendMessageW(control, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0);
  if (length > 0) {
    ::SendMessageW(control, LB_GETTEXT, static_cast<WPARAM>(index),
                   reinterpret_cast<LPARAM>(value.GetBufferSetLength(static_cast<int>(length) + 1)));
    value.ReleaseBuffer();
  }
}

void DDX_Slider(CDataExchange* exchange, int id, int& value) {
  const HWND control = exchange->PrepareCtrl(id);
  if (exchange->m_bSaveAndValidate) {
    value = static_cast<int>(::SendMessageW(control, TBM_GETPOS, 0, 0));
  } else {
    ::SendMessageW(control, TBM_SETPOS, TRUE, value);
  }
}

void DDX_Scroll(CDataExchange* exchange, int id, int& value) {
  const HWND control = exchange->PrepareCtrl(id);
  if (exchange->m_bSaveAndValidate) {
    value = ::GetScrollPos(control, SB_CTL);
  } else {
    ::SetScrollPos(control, SB_CTL, value, TRUE);
  }
}

void DDV_MaxChars(CDataExchange* exchange, const CString& value, int maximum) {
  RequireRange(exchange, value.GetLength() <= maximum);
}

void DDV_MinMaxInt(CDataExchange* exchange, int value, int minimum, int maximum) {
  RequireRange(exchange, value >= minimum && value <= maximum);
}

void DDV_MinMaxUInt(CDataExchange* exchange, UINT value, UINT minimum, UINT maximum) {
  RequireRange(exchange, value >= minimum && value <= maximum);
}

void DDV_MinMaxDouble(CDataExchange* exchange, double value, double minimum, double maximum) {
  RequireRange(exchange, value >= minimum && value <= maximum);
}
