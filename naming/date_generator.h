// CZVDateGenerator writes the present local date or time in one of the formats of DateFormats(). Nothing caches the clock:
// two expansions of one run may show different times.
#pragma once

#include <cstdint>
#include <ctime>

#include "platform/cstring.h"

class CZVDateGenerator {
 public:
  virtual ~CZVDateGenerator() = default;

  // Empty when the format id is unknown, the clock fails or the text exceeds 127 characters.
  virtual CString Generate() const;
  void SetFormatId(int32_t formatId) { formatId_ = formatId; }

 private:
  int32_t formatId_ = 4;
};

// The moment in the local time zone, by a format of wcsftime; empty on failure.
CString FormatLocalTime(std::time_t moment, const CString& format);
