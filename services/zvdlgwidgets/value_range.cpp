#include "services/zvdlgwidgets/value_range.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cwchar>

ValueRange ValueRange::Of(int first, int second) { return {std::min(first, second), std::max(first, second)}; }

int ValueRange::Clamp(int64_t value) const { return static_cast<int>(std::clamp<int64_t>(value, minimum, maximum)); }

int ValueRange::PageStep() const {
  const int64_t span = int64_t{maximum} - minimum;
  return static_cast<int>(std::max<int64_t>(1, span / 10));
}

int ValueRange::ValueAt(int position, int length) const {
  if (length <= 0) {
    return minimum;
  }
  const int64_t span = int64_t{maximum} - minimum;
  const int64_t inside = std::clamp(position, 0, length);
  return static_cast<int>(minimum + (inside * span + length / 2) / length);
}

int ValueRange::PositionOf(int value, int length) const {
  const int64_t span = int64_t{maximum} - minimum;
  if (span == 0) {
    return 0;
  }
  return static_cast<int>(((int64_t{Clamp(value)} - minimum) * length + span / 2) / span);
}

std::optional<int> ParseWholeNumber(const CString& text) {
  CString trimmed = text;
  trimmed.Trim();
  wchar_t* end = nullptr;
  errno = 0;
  const long long value = std::wcstoll(trimmed, &end, 10);
  if (trimmed.IsEmpty() || *end != L'\0' || errno == ERANGE || value < INT_MIN || value > INT_MAX) {
    return std::nullopt;
  }
  return static_cast<int>(value);
}
