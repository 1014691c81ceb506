// The rules of a text that is to become a number: which texts a user may pass through while typing, and how numbers are
// written and read. No window in it. The decimal point is "."; "," is taken for it, since users of most locales type
// it.
#pragma once

#include "platform/cstring.h"

struct NumberTextRules {
  bool numericsOnly = false;
  bool acceptNegative = false;
  bool acceptFloat = false;
  int fractionalDigits = -1;  // -1: any number
};

// True when the text is a number of these rules or the beginning of one: "", "-", "1.", ".5". Without numericsOnly
// every text is.
bool IsNumberInProgress(const CString& text, const NumberTextRules& rules);
// The number at the start of the text; 0 when there is none.
double ParseNumber(const CString& text);
// At most `fractionalDigits` digits behind the point (6 for -1), no zeros at the end.
CString FormatNumber(double value, int fractionalDigits);
