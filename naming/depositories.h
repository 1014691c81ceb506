// The five tables behind the naming language: one set per process, unlocked, made at their first use. All but the date
// formats hold texts of the dialog kernel's string table, which a caller may change; Refill... reads them anew, and every
// new processor does.
#pragma once

#include "naming/string_depository.h"

enum NamingTag : int32_t { TAG_NUM = 0, TAG_ALPHA = 1, TAG_ALPHANUM = 2, TAG_DATE = 3, TAG_TIME = 4, TAG_SRC = 5 };
inline constexpr int32_t kNamingTagCount = 6;
inline constexpr int32_t kCaseCount = 4;
inline constexpr int32_t kDateTypeCount = 2;
inline constexpr int32_t kTimeTypeCount = 4;
// Time type n has the date format of this id plus n.
inline constexpr int32_t kFirstTimeFormat = 2;

CStringDepository& TagTexts();       // by NamingTag, brackets included
CStringDepository& DateTypeNames();  // by NAMINGTEMPLATESETTINGS.dateType
CStringDepository& TimeTypeNames();  // by NAMINGTEMPLATESETTINGS.timeType
CStringDepository& CaseNames();      // by NamingCase
CStringDepository& DateFormats();    // by the format id of CZVDateGenerator: formats of wcsftime

// Case names, tags, date types and time types, in that order.
void RefillDepositories();
