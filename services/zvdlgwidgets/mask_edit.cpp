#include "services/zvdlgwidgets/mask_edit.h"

#include <algorithm>

#include "services/zvdlgwidgets/clipboard_text.h"

namespace {

bool IsPlace(wchar_t maskCharacter) {
  return maskCharacter == L'0' || maskCharacter == L'<' || maskCharacter == L'>' || maskCharacter == L'?';
}

bool IsLetter(wchar_t character) {
  return (character >= L'a' && character <= L'z') || (character >= L'A' && character <= L'Z');
}

// The character as the place keeps it, or 0 when it does not belong there.
wchar_t Accepted(wchar_t maskCharacter, wchar_t character) {
  if (maskCharacter == L'0') {
    return character >= L'0' && character <= L'9' ? character : L'\0';
  }
  if (!IsLetter(character)) {
    return L'\0';
  }
  const wchar_t lower = static_cast<wchar_t>(character | 0x20);
  return maskCharacter == L'<' ? lower : maskCharacter == L'>' ? static_cast<wchar_t>(lower & ~0x20) : character;
}

}  // namespace

CZVMaskEdit::CZVMaskEdit(LPCWSTR mask, wchar_t promptCharacter) : mask_(mask), promptCharacter_(promptCharacter) {}

void CZVMaskEdit::SetMask(LPCWSTR mask) {
  mask_ = mask;
  if (m_hWnd) {
    ShowText(EmptyText(), 0);
  }
}

void CZVMaskEdit::SetPromptChar(wchar_t promptCharacter) {
  promptCharacter_ = promptCharacter;
  if (m_hWnd) {
    ShowText(EmptyText(), 0);
  }
}

// The window procedure is still the plain edit's here.
void CZVMaskEdit::PreSubclassWindow() {
  CString text;
  GetWindowText(text);
  ::SetWindowTextW(m_hWnd, FitToMask(text));
}

CString CZVMaskEdit::EmptyText() const { return FitToMask(CString()); }

// Characters of `text` fill the places in order; what does not belong in a place is passed over.
CString CZVMaskEdit::FitToMask(const CString& text) const {
  CString fitted;
  int next = 0;
  for (int i = 0; i < mask_.GetLength(); ++i) {
    wchar_t shown = mask_[i];
    if (IsPlace(shown)) {
      shown = L'\0';
      while (!shown && next < text.GetLength()) {
        shown = Accepted(mask_[i], text[next++]);
      }
      shown = shown ? shown : promptCharacter_;
    }
    fitted += shown;
  }
  return fitted;
}

// The places at or behind, and before, a position; -1 when there is none.
int CZVMaskEdit::NextPlace(int position) const {
  for (int i = std::max(position, 0); i < mask_.GetLength(); ++i) {
    if (IsPlace(mask_[i])) {
      return i;
    }
  }
  return -1;
}

int CZVMaskEdit::PreviousPlace(int position) const {
  for (int i = std::min(position, mask_.GetLength()) - 1; i >= 0; --i) {
    if (IsPlace(mask_[i])) {
      return i;
    }
  }
  return -1;
}

void CZVMaskEdit::ShowText(const CString& text, int caret) {
  DefWindowProc(WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.GetString()));
  DefWindowProc(EM_SETSEL, static_cast<WPARAM>(caret), caret);
}

bool CZVMaskEdit::TypeCharacter(wchar_t character) {
  int start = 0, end = 0;
  GetSel(start, end);
  // Behind the last place the last one is meant, so that a box with one place can be typed into again and again.
  const int place = NextPlace(start) >= 0 ? NextPlace(start) : PreviousPlace(mask_.GetLength());
  const wchar_t accepted = place >= 0 ? Accepted(mask_[place], character) : L'\0';
  if (!accepted) {
    return false;
  }
  if (end > start) {
    ErasePlaces(start, end);
  }
  CString text;
  GetWindowText(text);
  text.SetAt(place, accepted);
  const int following = NextPlace(place + 1);
  ShowText(text, following >= 0 ? following : place + 1);
  return true;
}

void CZVMaskEdit::ErasePlaces(int first, int last) {
  CString text;
  GetWindowText(text);
  for (int i = first; i < std::min(last, mask_.GetLength()); ++i) {
    if (IsPlace(mask_[i])) {
      text.SetAt(i, promptCharacter_);
    }
  }
  ShowText(text, first);
}

LRESULT CZVMaskEdit::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  if (mask_.IsEmpty() || (GetStyle() & ES_READONLY)) {
    return CEdit::WindowProc(message, wParam, lParam);
  }
  int start = 0, end = 0;
  switch (message) {
    case WM_SETTEXT: {
      const CString fitted = FitToMask(reinterpret_cast<LPCWSTR>(lParam));
      return DefWindowProc(WM_SETTEXT, 0, reinterpret_cast<LPARAM>(fitted.GetString()));
    }
    case WM_CHAR:
      GetSel(start, end);
      if (wParam == VK_BACK) {
        end > start ? ErasePlaces(start, end) : ErasePlaces(std::max(PreviousPlace(start), 0), start);
        return 0;
      }
      if (wParam >= L' ') {
        if (!TypeCharacter(static_cast<wchar_t>(wParam))) {
          ::MessageBeep(MB_OK);
        }
        return 0;
      }
      break;
    case WM_KEYDOWN:
      if (wParam == VK_DELETE) {
        GetSel(start, end);
        ErasePlaces(start, end > start ? end : start + 1);
        return 0;
      }
      break;
    case WM_PASTE: {
      const CString pasted = ReadClipboardText(*this);
      for (const wchar_t character : pasted.str()) {
        TypeCharacter(character);
      }
      return 0;
    }
    case WM_CUT: DefWindowProc(WM_COPY, 0, 0); [[fallthrough]];
    case WM_CLEAR:
      GetSel(start, end);
      ErasePlaces(start, end);
      return 0;
    default: break;
  }
  return CEdit::WindowProc(message, wParam, lParam);
}
