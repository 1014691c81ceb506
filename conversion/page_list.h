// The page selection of a file: the text that a user types, such as "3,12,5-9", turned into numbers, and those numbers fitted
// to a file of a given length. No window in it.
#pragma once

#include <cstdint>
#include <vector>

#include "conversion/records.h"
#include "platform/cstring.h"

// Page numbers from 1, in the order of first mention, each once; a range counts upwards whichever end is named first.
// Characters that are neither digits nor separators are passed over after the digits of an item. False for an empty item, a
// number below 1, a range with three ends or one of more than a million pages; `pages` is then undefined.
//
// A range takes the entry that was added last as its first end. When that number had been mentioned before, the last entry
// is another one: "3,7,3-5" takes the 7 and gives 3, 5, 6, 7.
bool ParsePageList(const CString& text, std::vector<int32_t>& pages);

// Those of the pages that a file of pageTotal pages has, in the order given; all of them for an empty selection.
std::vector<int32_t> ClipPages(const std::vector<int32_t>& pages, int32_t pageTotal);

// Gives the record a page array of its own, which is freed with FreePages. A selection without entries still gets an array.
void AssignPages(CONVERSIONFILEOPTIONS& options, const std::vector<int32_t>& pages);
void FreePages(CONVERSIONFILEOPTIONS& options);
