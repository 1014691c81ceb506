// Dialog templates built in memory, so that the framework's tests need no resource file.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "platform/win32.h"

namespace zvtest {

class DialogTemplate {
 public:
  explicit DialogTemplate(const std::wstring& title, DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME,
                          short width = 200, short height = 120) {
    // DLGTEMPLATE, then no menu, the standard class, the title and no font.
    Put(style);
    Put(DWORD{0});
    Put(WORD{0});
    for (const short value : {short{10}, short{10}, width, height}) {
      Put(value);
    }
    Put(WORD{0});
    Put(WORD{0});
    PutText(title);
  }

  DialogTemplate& Add(WORD classAtom, WORD id, DWORD style, const std::wstring& text, short x = 5, short y = 5) {
    StartItem(id, style, x, y);
    Put(WORD{0xFFFF});
    Put(classAtom);
    return EndItem(text);
  }
  DialogTemplate& Add(const std::wstring& className, WORD id, DWORD style, const std::wstring& text, short x = 5,
                      short y = 5) {
    StartItem(id, style, x, y);
    PutText(className);
    return EndItem(text);
  }
  DialogTemplate& Button(WORD id, const std::wstring& text, DWORD style = BS_PUSHBUTTON | WS_TABSTOP) {
    return Add(kButton, id, style, text);
  }
  DialogTemplate& Edit(WORD id, DWORD style = WS_TABSTOP | WS_BORDER) { return Add(kEdit, id, style, L""); }
  DialogTemplate& Combo(WORD id, DWORD style = CBS_DROPDOWNLIST | WS_TABSTOP) { return Add(kCombo, id, style, L""); }

  LPCDLGTEMPLATE Get() const { return reinterpret_cast<LPCDLGTEMPLATE>(bytes_.data()); }

  static constexpr WORD kButton = 0x0080;
  static constexpr WORD kEdit = 0x0081;
  static constexpr WORD kStatic = 0x0082;
  static constexpr WORD kListBox = 0x0083;
  static constexpr WORD kCombo = 0x0085;

 private:
  template <class Value>
  void Put(Value value) {
    const auto* const first = reinterpret_cast<const unsigned char*>(&value);
    bytes_.insert(bytes_.end(), first, first + sizeof(value));
  }
  void PutText(const std::wstring& text) {
    for (const wchar_t character : text) {
      Put(character);
    }
    Put(L'\0');
  }
  void StartItem(WORD id, DWORD style, short x, short y) {
    bytes_.resize((bytes_.size() + 3) & ~size_t{3});
    Put(DWORD{style | WS_CHILD | WS_VISIBLE});
    Put(DWORD{0});
    for (const short value : {x, y, short{80}, short{14}}) {
      Put(value);
    }
    Put(id);
    WORD count = 0;
    std::memcpy(&count, bytes_.data() + kCountOffset, sizeof(count));
    ++count;
    std::memcpy(bytes_.data() + kCountOffset, &count, sizeof(count));
  }
  DialogTemplate& EndItem(const std::wstring& text) {
    PutText(text);
    Put(WORD{0});
    return *this;
  }

  static constexpr size_t kCountOffset = 8;
  std::vector<unsigned char> bytes_;
};

}  // namespace zvtest
