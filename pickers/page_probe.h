// Asks a file about its pages. The two load redirection values of the file library are cleared around each question.
#pragma once

#include <cstdint>

#include "platform/win32.h"

// Whether the file has a second page.
bool IsMultiPage(LPCWSTR path);
// Whether the file has that page, from 1. `reported` takes the page, or for one behind the last the last one; it stays as it
// is when the file cannot be read. A page below 1 is not asked for.
bool ProbePage(LPCWSTR path, int32_t page, int32_t* reported);
