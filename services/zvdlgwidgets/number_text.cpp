#include "services/zvdlgwidgets/number_text.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

namespace {

constexpr int kDefaultFractionalDigits = 6;

bool IsDigit(wchar_t character) { return character >= L'0' && character <= L'9'; }
bool IsPoint(wchar_t character) { return character == L'.' || character == L','; }

}  // namespace

bool IsNumberInProgress(const CString& text, const NumberTextRules& rules) {
  if (!rules.numericsOnly) {
    return true;
  }
  const std::wstring& characters = text.str();
  auto position = characters.begin();
  if (position != characters.end() && *position == L'-') {
    if (!rules.acceptNegative) {
      return false;
    }
    ++position;
  }
  position = std::find_if_not(position, characters.end(), IsDigit);
  if (position == characters.end()) {
    return true;
  }
  if (!rules.acceptFloat || !IsPoint(*position)) {
    return false;
  }
  const auto fraction = position + 1;
  const bool digitsOnly = std::all_of(fraction, characters.end(), IsDigit);
  return digitsOnly && (rules.fractionalDigits < 0 || characters.end() - fraction <= rules.fractionalDigits);
}

// Not by the runtime's own conversion, which follows the locale of the application.
double ParseNumber(const CString& text) {
  std::string plain;
  for (const wchar_t character : text.str()) {
    if (IsDigit(character) || character == L'-' || character == L'+') {
      plain += static_cast<char>(character);
    } else if (IsPoint(character)) {
      plain += '.';
    } else if (character != L' ' || !plain.empty()) {
      break;
    }
  }
  size_t position = 0;
  double sign = 1;
  if (position < plain.size() && (plain[position] == '-' || plain[position] == '+')) {
    sign = plain[position] == '-' ? -1 : 1;
    ++position;
  }
  double value = 0;
  for (; position < plain.size() && IsDigit(static_cast<wchar_t>(plain[position])); ++position) {
    value = value * 10 + (plain[position] - '0');
  }
  if (position < plain.size() && plain[position] == '.') {
    double fraction = 0, scale = 1;
    for (++position; position < plain.size() && IsDigit(static_cast<wchar_t>(plain[position])); ++position) {
      fraction = fraction * 10 + (plain[position] - '0');
      scale *= 10;
    }
    value += fraction / scale;
  }
  return sign * value;
}

CString FormatNumber(double value, int fractionalDigits) {
  if (!std::isfinite(value)) {
    return L"0";
  }
  const int digits = fractionalDigits < 0 ? kDefaultFractionalDigits : fractionalDigits;
  const double scale = std::pow(10.0, digits);
  const bool isNegative = value < 0;
  double whole = 0;
  double fraction = std::round(std::modf(std::fabs(value), &whole) * scale);
  if (fraction >= scale) {
    whole += 1;
    fraction = 0;
  }
  CString text;
  text.Format(L"%.0f", whole);
  if (fraction > 0) {
    CString tail;
    tail.Format(L"%0*.0f", digits, fraction);
    tail.TrimRight(L'0');
    text += L".";
    text += tail;
  }
  const bool isZero = whole == 0 && fraction == 0;
  return isNegative && !isZero ? L"-" + text : text;
}
