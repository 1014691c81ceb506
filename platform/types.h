// The few integer and string types that CString and the collections share with the platform headers. On Windows they
// come from there; elsewhere the same names are declared here, so that the portable parts compile natively.
#pragma once

#ifdef _WIN32
#include "platform/win32.h"
#else
#include <cstddef>
#include <cstdint>

using BOOL = int;
using BYTE = unsigned char;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = unsigned int;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;
using TCHAR = wchar_t;
using LPCWSTR = const wchar_t*;
using LPCTSTR = const wchar_t*;
using LPWSTR = wchar_t*;
using LPTSTR = wchar_t*;
using LPCSTR = const char*;

inline constexpr BOOL FALSE = 0;
inline constexpr BOOL TRUE = 1;
#endif

#ifndef _T
#define _T(text) L##text
#endif

// An opaque place in a map or list; null is "none".
struct AFX_POSITION;
using POSITION = AFX_POSITION*;
