// The catalogue of formats that can be saved, as one constexpr table: format -> bit depths -> sub types. What is listed
// here is what the file library writes; a format that it no longer writes, or newly does, is a change of this table and
// of file_format_table.cpp, and of nothing else.
#pragma once

#include <cstdint>
#include <span>

struct SubtypeEntry {
  int32_t nameId;
  int32_t extensionId;
  int32_t fileFormat;
  uint32_t optionFlags;
};

// With sub types, extensionId is kExtensionInSubtype and the option flags are those of sub type 1.
struct BppEntry {
  int32_t bitsPerPixel;
  int32_t extensionId;
  uint32_t optionFlags;
  std::span<const SubtypeEntry> subtypes;
};

struct FormatEntry {
  int32_t nameId;
  int32_t fileFormat;
  int32_t defaultBitsPerPixel;
  std::span<const BppEntry> bpps;
};

inline constexpr int32_t kExtensionInSubtype = -1;

// The index of an entry is its format id.
std::span<const FormatEntry> Catalogue();

// Null for an id, depth or sub type that the catalogue does not hold.
const FormatEntry* FindFormat(int32_t format);
const BppEntry* FindBpp(int32_t format, int32_t bitsPerPixel);
const SubtypeEntry* FindSubtype(int32_t format, int32_t bitsPerPixel, int32_t subtype);
