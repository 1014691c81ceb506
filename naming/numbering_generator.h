// CZVNumberingGenerator writes a counter as a decimal number, in letters, or in digits and letters. Generate shows the
// counter and Advance raises it, so a tag that stands twice in a template shows one number twice. Ranges may be given in
// either order. Values that a range cannot show in one character take more; there is no wrap and no limit.
#pragma once

#include <cstdint>

#include "platform/cstring.h"

enum NumberingType : int32_t { NUMBERING_NUMERIC = 0, NUMBERING_ALPHA = 1, NUMBERING_ALPHANUM = 2 };

class CZVNumberingGenerator {
 public:
  explicit CZVNumberingGenerator(int32_t type = NUMBERING_NUMERIC) : type_(type) {}
  virtual ~CZVNumberingGenerator() = default;

  // The counter's text behind the mask. A mask shorter than the text cuts the text to its own length and is not shown;
  // any other mask is put in front as it stands.
  virtual CString Generate() const;
  // Adds the increment. 1.
  int32_t Advance();

  void SetCounter(int32_t counter) { counter_ = counter; }
  void SetIncrement(int32_t increment) { increment_ = increment; }
  // Ends of the ranges, as character codes.
  void SetNumericFrom(int32_t character) { numericFrom_ = character; }
  void SetNumericTo(int32_t character) { numericTo_ = character; }
  void SetAlphaFrom(int32_t character) { alphaFrom_ = character; }
  void SetAlphaTo(int32_t character) { alphaTo_ = character; }
  void SetUpperCase(int32_t upperCase) { upperCase_ = upperCase; }
  void SetType(int32_t type) { type_ = type; }
  void SetMask(const CString& mask) { mask_ = mask; }

 private:
  CString LettersAlone() const;
  CString DigitsAndLetters() const;
  CString Cased(int32_t character) const;

  int32_t counter_ = 0;
  int32_t increment_ = 1;
  int32_t numericFrom_ = L'0';
  int32_t alphaFrom_ = L'a';
  int32_t numericTo_ = L'9';
  int32_t alphaTo_ = L'z';
  int32_t upperCase_ = 0;
  int32_t type_;
  CString mask_;
};
