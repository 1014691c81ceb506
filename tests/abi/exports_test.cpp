// What the module shows to the outside: fifteen undecorated names and nothing else.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include <windows.h>

namespace {

const std::vector<std::string> kNames = {"Z_DlgFileConversion",
                                         "Z_DlgFileConversionA",
                                         "Z_DlgFilesAssociation",
                                         "Z_DlgFilesAssociationA",
                                         "Z_DlgGetDirectory",
                                         "Z_DlgGetDirectoryA",
                                         "Z_DlgICCProfile",
                                         "Z_DlgICCProfileA",
                                         "Z_DlgOpen",
                                         "Z_DlgOpenA",
                                         "Z_DlgPrintPreview",
                                         "Z_DlgPrintStitchedImages",
                                         "Z_DlgPrintStitchedImagesA",
                                         "Z_DlgSave",
                                         "Z_DlgSaveA"};

class Exports : public ::testing::Test {
 protected:
  Exports() : module(::LoadLibraryW(L"zvfiledlg.dll")) {}
  ~Exports() override { ::FreeLibrary(module); }

  const IMAGE_EXPORT_DIRECTORY* Directory() const {
    const auto* const base = reinterpret_cast<const uint8_t*>(module);
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& entry = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    return reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(base + entry.VirtualAddress);
  }
  std::vector<std::string> ExportedNames() const {
    const auto* const base = reinterpret_cast<const char*>(module);
    const auto* const names = reinterpret_cast<const DWORD*>(base + Directory()->AddressOfNames);
    std::vector<std::string> result;
    for (DWORD i = 0; i < Directory()->NumberOfNames; ++i) {
      result.push_back(base + names[i]);
    }
    std::ranges::sort(result);
    return result;
  }

  HMODULE module;
};

TEST_F(Exports, AreExactlyTheFifteenNames) {
  ASSERT_NE(nullptr, module);
  EXPECT_EQ(kNames, ExportedNames());
  EXPECT_EQ(15u, Directory()->NumberOfFunctions) << "nothing is exported by number alone";
}

TEST_F(Exports, CanAllBeFoundByName) {
  for (const std::string& name : kNames) {
    EXPECT_NE(nullptr, reinterpret_cast<void*>(::GetProcAddress(module, name.c_str()))) << name;
  }
}

TEST_F(Exports, CallThemselvesByTheModulesName) {
  EXPECT_STREQ("zvfiledlg.dll", reinterpret_cast<const char*>(module) + Directory()->Name);
}

TEST_F(Exports, CarryVersionAndManifest) {
  EXPECT_NE(nullptr, ::FindResourceW(module, MAKEINTRESOURCEW(VS_VERSION_INFO), MAKEINTRESOURCEW(16)));
  EXPECT_NE(nullptr, ::FindResourceW(module, MAKEINTRESOURCEW(2), MAKEINTRESOURCEW(24)));
}

}  // namespace
