// The formats of the association dialog as flat data: one entry an extension. Parsing of the lists that a caller passes, and
// nothing else; no window, no registry.
#pragma once

#include "platform/collections.h"
#include "platform/cstring.h"

struct FORMATSTRUCT {
  CString extension;  // with its leading point, in the case given
  CString name;
};

using CFormatArray = CArray<FORMATSTRUCT, const FORMATSTRUCT&>;

// What the dialog offers when the caller names no formats: pairs of name and patterns like those of a file filter, ended by
// an empty name.
extern const wchar_t kBuiltInFormats[];

// The name that the user sees: what stands before the bracket with the patterns. A text without a bracket, or with one in
// front, is kept whole. Otherwise it is cut at the bracket or at its last blank, whichever comes first; a text with a bracket
// and no blank at all has no name.
CString FormatName(const CString& text);
// Appends an entry for each extension in the patterns ("*.jpg;*.jpeg"): from a point to the next semicolon or the end.
void AppendExtensions(const CString& patterns, const CString& name, CFormatArray& formats);
// Appends all entries of a list in the form of kBuiltInFormats.
void ParseFormats(const wchar_t* list, CFormatArray& formats);

// The extensions of a list joined without a separator, in upper case, each with its point. Every entry of the list is
// followed by two zero characters, and an empty entry ends it. Null gives an empty text.
CString JoinSelected(const wchar_t* list);
