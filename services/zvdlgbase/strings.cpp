// The table of texts: replacements first, then this module's string resources in the user's language.
#include <algorithm>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

#include "services/zvdlgbase/guard.h"
#include "services/zvdlgbase/module.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgbase/zvdlgbase.h"

namespace {

struct Replacements {
  std::mutex mutex;
  std::unordered_map<uint32_t, std::wstring> texts;
};

Replacements& TheReplacements() {
  static Replacements replacements;
  return replacements;
}

// Points into the resource, which has no terminator; empty when there is none of that id.
std::wstring_view ResourceText(uint32_t id) {
  if (id > 0xFFFF) {
    return {};
  }
  // A buffer length of 0 asks for the address of the text instead of a copy.
  const wchar_t* text = nullptr;
  const int length = ::LoadStringW(KernelModule(), id, reinterpret_cast<LPWSTR>(&text), 0);
  return length > 0 ? std::wstring_view(text, static_cast<size_t>(length)) : std::wstring_view();
}

// Calls use(text) while the text cannot change; ERROR_BAD_ARGUMENT when there is no text of that id.
template <class Use>
int32_t WithText(uint32_t id, Use use) {
  Replacements& replacements = TheReplacements();
  const std::lock_guard lock(replacements.mutex);
  const auto replaced = replacements.texts.find(id);
  if (replaced != replacements.texts.end()) {
    return use(std::wstring_view(replaced->second));
  }
  const std::wstring_view text = ResourceText(id);
  return text.empty() ? ERROR_BAD_ARGUMENT : use(text);
}

}  // namespace

int32_t GetDialogStringLength(uint32_t id, uint32_t* length) {
  if (!length) {
    return ERROR_BAD_ARGUMENT;
  }
  *length = 0;
  return Guarded([&] {
    return WithText(id, [&](std::wstring_view text) {
      *length = static_cast<uint32_t>(text.size());
      return SUCCESS;
    });
  });
}

int32_t GetDialogStringText(uint32_t id, wchar_t* buffer, uint32_t bufferLength) {
  if (!buffer || bufferLength == 0) {
    return ERROR_BAD_ARGUMENT;
  }
  buffer[0] = L'\0';
  return Guarded([&] {
    return WithText(id, [&](std::wstring_view text) {
      if (text.size() >= bufferLength) {
        return ERROR_BUFFER_TOO_SMALL;
      }
      *std::copy(text.begin(), text.end(), buffer) = L'\0';
      return SUCCESS;
    });
  });
}

int32_t SetDialogStringText(uint32_t id, const wchar_t* text) {
  return Guarded([&] {
    Replacements& replacements = TheReplacements();
    const std::lock_guard lock(replacements.mutex);
    if (text) {
      replacements.texts.insert_or_assign(id, text);
    } else {
      replacements.texts.erase(id);
    }
    return SUCCESS;
  });
}

int32_t DialogKernelReady(void) {
  const bool textsServed = !ResourceText(IDS_OK).empty();
  const bool catalogueServed = GetFirstFormatPosition() >= 0;
  return textsServed && catalogueServed ? SUCCESS : ERROR_KERNEL_NOT_READY;
}
