#include "naming/numbering_generator.h"

#include <algorithm>
#include <cstdlib>

namespace {

struct CharacterRange {
  CharacterRange(int32_t from, int32_t to) : low(std::min(from, to)), span(std::abs(from - to) + 1) {}
  int32_t low;
  int32_t span;
};

}  // namespace

CString CZVNumberingGenerator::Generate() const {
  CString text;
  switch (type_) {
    case NUMBERING_NUMERIC: text.Format(L"%d", counter_); break;
    case NUMBERING_ALPHA: text = LettersAlone(); break;
    case NUMBERING_ALPHANUM: text = DigitsAndLetters(); break;
    default: break;
  }
  if (mask_.IsEmpty()) {
    return text;
  }
  return mask_.GetLength() < text.GetLength() ? text.Left(mask_.GetLength()) : mask_ + text;
}

int32_t CZVNumberingGenerator::Advance() {
  counter_ = static_cast<int32_t>(static_cast<uint32_t>(counter_) + static_cast<uint32_t>(increment_));
  return 1;
}

CString CZVNumberingGenerator::LettersAlone() const {
  const CharacterRange letters(alphaFrom_, alphaTo_);
  CString text;
  if (letters.span < 2) {  // one letter: written in unary
    const CString letter = Cased(letters.low);
    for (int32_t i = 0; i <= counter_ && counter_ >= 0; ++i) {
      text += letter;
    }
    return text;
  }
  int32_t rest = counter_;
  do {
    text = Cased(letters.low + rest % letters.span) + text;
    rest /= letters.span;
  } while (rest >= 1);
  return text;
}

CString CZVNumberingGenerator::DigitsAndLetters() const {
  const CharacterRange letters(alphaFrom_, alphaTo_);
  const CharacterRange digits(numericFrom_, numericTo_);
  const int32_t base = digits.span + letters.span;
  CString text;
  int32_t rest = counter_;
  do {
    const int32_t value = rest % base;
    text = Cased(value < digits.span ? digits.low + value : letters.low + value - digits.span) + text;
    rest /= base;
  } while (rest != 0);
  return text;
}

CString CZVNumberingGenerator::Cased(int32_t character) const {
  CString text(static_cast<wchar_t>(character));
  if (upperCase_) {
    text.MakeUpper();
  }
  return text;
}
