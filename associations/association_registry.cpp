#include "associations/association_registry.h"

#include <shlobj.h>

#include "platform/unique_handle.h"

namespace {

constexpr wchar_t kUserChoices[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts\\";
constexpr DWORD kOwnerBytes = 260;  // the buffer below holds twice that, so that it always ends in a zero

// name null means the default value.
void SetText(HKEY key, const wchar_t* name, const CString& text) {
  const auto bytes = static_cast<DWORD>((static_cast<size_t>(text.GetLength()) + 1) * sizeof(wchar_t));
  ::RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.GetString()), bytes);
}

class SystemRegistry final : public CAssociationRegistry {
 public:
  std::optional<CString> ReadOwner(const CString& extension) override {
    unique_hkey key;
    if (::RegOpenKeyW(HKEY_CLASSES_ROOT, extension, key.put()) != ERROR_SUCCESS) {
      return std::nullopt;
    }
    wchar_t owner[kOwnerBytes] = L"";
    DWORD bytes = kOwnerBytes;
    ::RegQueryValueExW(key.get(), nullptr, nullptr, nullptr, reinterpret_cast<BYTE*>(owner), &bytes);
    return CString(owner);
  }

  LONG TestWriteAccess(const CString& extension) override {
    unique_hkey key;
    return ::RegOpenKeyExW(HKEY_CLASSES_ROOT, extension, 0, KEY_WRITE, key.put());
  }

  LONG WriteOwner(const CString& extension, const CString& programId) override {
    unique_hkey key;
    const LONG result =
        ::RegCreateKeyExW(HKEY_CLASSES_ROOT, extension, 0, nullptr, 0, KEY_WRITE, nullptr, key.put(), nullptr);
    if (result == ERROR_SUCCESS) {
      SetText(key.get(), nullptr, programId);
    }
    return result;
  }

  void WriteUserChoice(const CString& extension, const CString& programId) override {
    unique_hkey key;
    if (::RegOpenKeyExW(HKEY_CURRENT_USER, kUserChoices + extension, 0, KEY_WRITE, key.put()) == ERROR_SUCCESS) {
      SetText(key.get(), L"ProgID", programId);
      SetText(key.get(), L"Application", programId);
    }
  }

  void NotifyShell() override { ::SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr); }
};

}  // namespace

CAssociationRegistry& SystemAssociationRegistry() {
  static SystemRegistry registry;
  return registry;
}
