// The built-in filters of the open dialog: pairs of name and pattern, ended by an empty string.
#pragma once

inline constexpr int kVectorFilterPairs = 20;
inline constexpr int kOpenFilterPairs = 92;

extern const wchar_t kVectorFilter[];  // drawings
extern const wchar_t kOpenFilter[];    // everything that can be read
