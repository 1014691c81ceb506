// CZVMaskEdit: an edit box with fixed places, each for one kind of character. Typing overwrites the place at the caret
// and goes on to the next one; Delete and Backspace empty places; the prompt character shows, and is read back, where a
// place is empty. Mask characters: "0" a digit, "<" a letter kept in lower case, ">" a letter kept in upper case, "?"
// any letter; every other character stands for itself and is skipped. Letters are those of the basic Latin alphabet.
#pragma once

#include "platform/controls.h"

class CZVMaskEdit : public CEdit {
 public:
  explicit CZVMaskEdit(LPCWSTR mask = L"", wchar_t promptCharacter = L'_');

  // Both empty all places.
  void SetMask(LPCWSTR mask);
  void SetPromptChar(wchar_t promptCharacter);

 protected:
  void PreSubclassWindow() override;
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  bool TypeCharacter(wchar_t character);
  void ErasePlaces(int first, int last);
  int NextPlace(int position) const;
  int PreviousPlace(int position) const;
  CString EmptyText() const;
  CString FitToMask(const CString& text) const;
  void ShowText(const CString& text, int caret);

  CString mask_;
  wchar_t promptCharacter_;
};
