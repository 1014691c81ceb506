// The rules of the open dialog that need no window: its filter, its buffer, its flags, and how the text that the shell hands
// over becomes a list of files.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/win32.h"

// Room for the names of a selection, in characters, when the caller's own buffer is small.
inline constexpr uint32_t kSelectionLength = 26'000;

// The filter to show: the caller's own, or the built-in table when that is missing or empty.
const wchar_t* ChooseOpenFilter(const wchar_t* callerFilter, uint32_t dialogFlags);
// The platform's flags: those of the caller (OFN_...) with what the dialog needs, as DLG_OPEN_... dialogFlags ask.
DWORD OpenDialogFlags(DWORD callerFlags, uint32_t dialogFlags, bool hasHelp);
// Characters of the dialog's own file buffer for a caller's nMaxFile.
uint32_t SelectionLengthFor(uint32_t callerLength);

// The rows of the platform's box of file types: the pairs of the filter, below the custom pair where one is shown.
struct FileTypeRows {
  const wchar_t* filter;
  const wchar_t* customFilter;  // may be null
  int32_t count;                // of the rows shown
};
// The extension that a row stands for, counted from 0: its pattern's first, three characters at most; empty without a filter.
// Nothing when the one in force stays: the pattern is *.*, or there is no such row.
std::optional<std::wstring> DefaultExtension(const FileTypeRows& rows, int32_t row);

// One or more null-ended strings, ended by an empty one. A single one is a file; else the first is a folder, and the others
// are files in it, in their order.
std::vector<std::wstring> ParseSelectionList(const wchar_t* list);
// A folder and quoted names, separated by blanks; without a quotation mark all of it is one file.
std::vector<std::wstring> ParseQuotedSelection(const std::wstring& text);

// A system by what GetVersion answers: platform 2 is the family that today's systems belong to, 1 the one before it.
struct SystemVersion {
  DWORD platform;
  DWORD major;
  DWORD minor;
};
SystemVersion SystemVersionOf(DWORD getVersionAnswer);
// Systems whose shell brings no places bar of the right kind: neither 5.1 nor any of major version 6.
bool IsOldStyleShell(const SystemVersion& version);
// Whether the layout sets the bottom of the file list. A resizable dialog does so itself, but not on the oldest systems.
bool LayoutEndsList(DWORD openFileNameFlags, const SystemVersion& version);
