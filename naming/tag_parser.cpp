#include "naming/tag_parser.h"

#include <exception>

namespace {
constexpr UINT kBuckets = 257;
}

CZVTagParser::CZVTagParser() { tags_.InitHashTable(kBuckets); }

int32_t CZVTagParser::AddTag(const CString& text, int32_t id) {
  try {
    tags_.SetAt(text, id);
  } catch (const std::exception&) {
    return 0;
  }
  return 1;
}

int32_t CZVTagParser::FindTag(const CString& text) const {
  int32_t id = -1;
  tags_.Lookup(text, id);
  return id;
}

void CZVTagParser::SetTemplate(const CString& text) {
  template_ = text;
  position_ = 0;
}

NamingToken CZVTagParser::GetNextToken(CString& token, int32_t& id) {
  enum class State { kDecide, kLiteral, kTag };
  State state = State::kDecide;
  token.Empty();
  id = -1;
  while (position_ < template_.GetLength()) {
    const wchar_t character = template_[position_];
    switch (state) {
      case State::kDecide:
        if (!token.IsEmpty()) {
          return TOKEN_TEXT;
        }
        state = character == L'<' ? State::kTag : State::kLiteral;
        break;
      case State::kLiteral:
        if (character == L'<') {
          state = State::kDecide;
        } else {
          token += character;
          ++position_;
        }
        break;
      case State::kTag:
        token += character;
        ++position_;
        if (character == L'>') {
          state = State::kDecide;
          id = FindTag(token);
          if (id != -1) {
            return TOKEN_TAG;
          }
        }
        break;
    }
  }
  return token.IsEmpty() ? TOKEN_END : TOKEN_TEXT;
}
