#include "common/ansi_text.h"

size_t ListLength(const char* list) {
  size_t length = 0;
  while (list[length] != '\0') {
    length += strlen(list + length) + 1;
  }
  return length;
}

CoreBlock<wchar_t> ConvertBlock(const char* text, size_t bytes) {
  constexpr size_t kTerminators = 2;
  CoreBlock<wchar_t> wide = NewCoreBlock<wchar_t>(bytes + kTerminators);
  if (wide && bytes > 0) {
    ::MultiByteToWideChar(CP_ACP, 0, text, static_cast<int>(bytes), wide.get(), static_cast<int>(bytes));
  }
  return wide;
}

void MoveToLastString(const char** list) {
  for (const char* next = *list; *next != '\0'; next += strlen(next) + 1) {
    *list = next;
  }
}
