// The parameters of all tags of a naming template, and the two small records by which they reach the dialogs that edit a
// template. In memory only: they never cross the library's border, and nothing of them is stored.
#pragma once

#include <cstdint>

#include "platform/cstring.h"

// The range at a field is the one that the dialogs keep to.
struct NAMINGTEMPLATESETTINGS {
  CString numericMask;           // digits, 260 characters at most
  int32_t numericIncrement = 1;  // 0 to 1000
  int32_t numericStart = 0;      // 0 to 1000
  CString alphaMask;             // 260 characters at most
  int32_t alphaIncrement = 1;    // 0 to 1000
  int32_t alphaStart = 0;        // 0 to 1000
  int32_t alphaUpperCase = 0;    // 0 or 1
  int32_t alphaFrom = L'a';      // a to z, as all letter ends
  int32_t alphaTo = L'z';
  CString alnumMask;           // 260 characters at most
  int32_t alnumIncrement = 1;  // 0 to 1000
  int32_t alnumStart = 0;      // 0 to 1000
  int32_t alnumUpperCase = 0;  // 0 or 1
  int32_t alnumAlphaFrom = L'a';
  int32_t alnumAlphaTo = L'z';
  int32_t alnumNumericFrom = L'0';  // 0 to 9, as all digit ends
  int32_t alnumNumericTo = L'9';
  int32_t dateType = 0;  // 0 or 1
  int32_t timeType = 0;  // 0 to 3
  int32_t caseMode = 0;  // CASE_...
};

// What becomes of the letters of the source name.
enum NamingCase : int32_t { CASE_KEEP = 0, CASE_UPPER = 1, CASE_LOWER = 2, CASE_SWAP = 3 };

// The settings belong to whoever shows the dialog.
struct NAMINGTEMPLATEDATA {
  CString namingTemplate;
  CString sampleName = L"FileName";
  NAMINGTEMPLATESETTINGS* settings = nullptr;
};

struct RENAMETEMPLATEDATA {
  int32_t tagId = 0;     // the numbering tag to add
  int32_t position = 0;  // 1 before the name, 0 behind it
  CString namingTemplate;
  CString sampleName = L"FileName";
  NAMINGTEMPLATESETTINGS* settings = nullptr;
};
