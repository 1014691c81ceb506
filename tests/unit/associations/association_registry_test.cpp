// Against the system's registry, with extensions that nobody else has. Every test removes its keys.
#include "associations/association_registry.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr wchar_t kExtension[] = L".zvregistrytest";
constexpr wchar_t kUserKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts\\.zvregistrytest";
constexpr wchar_t kProgram[] = L"Zorvane.RegistryTest";

class SystemAssociations : public testing::Test {
 protected:
  SystemAssociations() { Clean(); }
  ~SystemAssociations() override { Clean(); }

  static void Clean() {
    ::RegDeleteTreeW(HKEY_CLASSES_ROOT, kExtension);
    ::RegDeleteTreeW(HKEY_CURRENT_USER, kUserKey);
  }
  struct Value {
    DWORD type = 0;
    DWORD bytes = 0;
    std::wstring text;
    bool operator==(const Value&) const = default;
  };
  static Value Read(HKEY root, const wchar_t* key, const wchar_t* name) {
    Value value;
    wchar_t buffer[600] = L"";
    value.bytes = sizeof(buffer);
    if (::RegGetValueW(root, key, name, RRF_RT_ANY, &value.type, buffer, &value.bytes) != ERROR_SUCCESS) return {};
    value.text = buffer;
    return value;
  }
  static void WriteDefault(const std::wstring& text) {
    ASSERT_EQ(ERROR_SUCCESS, ::RegSetKeyValueW(HKEY_CLASSES_ROOT, kExtension, nullptr, REG_SZ, text.c_str(),
                                               static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))));
  }

  CAssociationRegistry& registry = SystemAssociationRegistry();
};

TEST_F(SystemAssociations, AMissingKeyHasNoOwner) {
  EXPECT_FALSE(registry.ReadOwner(kExtension));
  EXPECT_EQ(ERROR_FILE_NOT_FOUND, registry.TestWriteAccess(kExtension));
}

TEST_F(SystemAssociations, AKeyWithoutAValueHasAnEmptyOwner) {
  HKEY key;
  ASSERT_EQ(ERROR_SUCCESS, ::RegCreateKeyW(HKEY_CLASSES_ROOT, kExtension, &key));
  ::RegCloseKey(key);
  ASSERT_TRUE(registry.ReadOwner(kExtension));
  EXPECT_STREQ(L"", *registry.ReadOwner(kExtension));
  EXPECT_EQ(ERROR_SUCCESS, registry.TestWriteAccess(kExtension));
}

TEST_F(SystemAssociations, AnOwnerOf129CharactersIsReadAndALongerOneReadsAsEmpty) {
  WriteDefault(std::wstring(129, L'x'));
  EXPECT_EQ(129, registry.ReadOwner(kExtension)->GetLength());
  WriteDefault(std::wstring(130, L'x'));
  EXPECT_STREQ(L"", *registry.ReadOwner(kExtension));
}

TEST_F(SystemAssociations, AnOwnerIsWrittenAsTextWithItsTerminator) {
  EXPECT_EQ(ERROR_SUCCESS, registry.WriteOwner(kExtension, kProgram));
  EXPECT_EQ((Value{REG_SZ, sizeof(kProgram), kProgram}), Read(HKEY_CLASSES_ROOT, kExtension, nullptr));
  EXPECT_STREQ(kProgram, *registry.ReadOwner(kExtension));
}

TEST_F(SystemAssociations, AnEmptyOwnerIsTwoBytesAndKeepsTheKey) {
  WriteDefault(L"somebody");
  EXPECT_EQ(ERROR_SUCCESS, registry.WriteOwner(kExtension, L""));
  EXPECT_EQ((Value{REG_SZ, 2, L""}), Read(HKEY_CLASSES_ROOT, kExtension, nullptr));
}

TEST_F(SystemAssociations, TheUsersChoiceIsWrittenOnlyWhereTheShellHasAKey) {
  registry.WriteUserChoice(kExtension, kProgram);
  HKEY key;
  EXPECT_EQ(ERROR_FILE_NOT_FOUND, ::RegOpenKeyW(HKEY_CURRENT_USER, kUserKey, &key));
  ASSERT_EQ(ERROR_SUCCESS, ::RegCreateKeyW(HKEY_CURRENT_USER, kUserKey, &key));
  ::RegCloseKey(key);
  registry.WriteUserChoice(kExtension, kProgram);
  const Value expected = {REG_SZ, sizeof(kProgram), kProgram};
  EXPECT_EQ(expected, Read(HKEY_CURRENT_USER, kUserKey, L"ProgID"));
  EXPECT_EQ(expected, Read(HKEY_CURRENT_USER, kUserKey, L"Application"));
}

}  // namespace
