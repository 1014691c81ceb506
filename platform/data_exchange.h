// DDX and DDV: moving values between the controls of a window and the members of its object, in DoDataExchange, called
// by UpdateData. A value that cannot be read makes the field beep, takes the focus there with its text selected, and
// ends the exchange: UpdateData returns false. No message box is shown.
#pragma once

#include "platform/afx.h"
#include "platform/wnd.h"

class CDataExchange {
 public:
  CDataExchange(CWnd* window, BOOL saveAndValidate) : m_bSaveAndValidate(saveAndValidate), m_pDlgWnd(window) {}
  CDataExchange(const CDataExchange&) = delete;
  CDataExchange& operator=(const CDataExchange&) = delete;

  // The control, which Fail will point at. Throws when the window has none of that id: the template is wrong.
  HWND PrepareCtrl(int id);
  HWND PrepareEditCtrl(int id);
  [[noreturn]] void Fail();

  BOOL m_bSaveAndValidate;
  CWnd* m_pDlgWnd;

 private:
  HWND lastControl_ = nullptr;
  bool lastIsEdit_ = false;
};

// Binds the control object, once; later exchanges leave it alone.
void DDX_Control(CDataExchange* exchange, int id, CWnd& control);

void DDX_Text(CDataExchange* exchange, int id, CString& value);
void DDX_Text(CDataExchange* exchange, int id, BYTE& value);
void DDX_Text(CDataExchange* exchange, int id, short& value);
void DDX_Text(CDataExchange* exchange, int id, int& value);
void DDX_Text(CDataExchange* exchange, int id, UINT& value);
void DDX_Text(CDataExchange* exchange, int id, long& value);
void DDX_Text(CDataExchange* exchange, int id, DWORD& value);
void DDX_Text(CDataExchange* exchange, int id, float& value);
void DDX_Text(CDataExchange* exchange, int id, double& value);
// `size` counts characters, the terminator included.
void DDX_Text(CDataExchange* exchange, int id, LPTSTR value, int size);

void DDX_Check(CDataExchange* exchange, int id, int& value);
// `id` is the first radio button of the group (WS_GROUP); the value is 0-based, -1 for none.
void DDX_Radio(CDataExchange* exchange, int id, int& value);
void DDX_CBIndex(CDataExchange* exchange, int id, int& index);
void DDX_CBString(CDataExchange* exchange, int id, CString& value);
void DDX_CBStringExact(CDataExchange* exchange, int id, CString& value);
void DDX_LBIndex(CDataExchange* exchange, int id, int& index);
void DDX_LBString(CDataExchange* exchange, int id, CString& value);
void DDX_Slider(CDataExchange* exchange, int id, int& value);
void DDX_Scroll(CDataExchange* exchange, int id, int& value);

// Both stand right behind the DDX of their value.
void DDV_MaxChars(CDataExchange* exchange, const CString& value, int maximum);
void DDV_MinMaxInt(CDataExchange* exchange, int value, int minimum, int maximum);
void DDV_MinMaxUInt(CDataExchange* exchange, UINT value, UINT minimum, UINT maximum);
void DDV_MinMaxDouble(CDataExchange* exchange, double value, double minimum, double maximum);
