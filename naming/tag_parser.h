// CZVTagParser cuts a naming template into literal text and the tags that it was told of. A tag is "<", any characters but
// ">", and ">", matched without regard to case. What looks like a tag but is none comes back as text, brackets included.
// There is no escape character, and no input is an error. One parser serves one template at a time.
#pragma once

#include <cstdint>

#include "naming/string_map_key.h"

enum NamingToken : int32_t { TOKEN_END = 0, TOKEN_TEXT = 1, TOKEN_TAG = 2 };

class CZVTagParser {
 public:
  CZVTagParser();
  virtual ~CZVTagParser() = default;

  // Enters a tag by its text with brackets; a tag of the same text is replaced. 1, or 0 when memory ran out.
  int32_t AddTag(const CString& text, int32_t id);
  // The id, or -1.
  int32_t FindTag(const CString& text) const;
  void SetTemplate(const CString& text);
  // Gives the next piece of the template, with the id of a TOKEN_TAG; id is -1 for text.
  NamingToken GetNextToken(CString& token, int32_t& id);

 private:
  int32_t position_ = 0;
  CString template_;
  CMap<CStringMapKey, const CStringMapKey&, int32_t, int32_t> tags_{10};
};
