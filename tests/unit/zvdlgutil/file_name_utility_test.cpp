#include "services/zvdlgutil/file_name_utility.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct Case {
  const wchar_t* path;
  const wchar_t* folder;
  const wchar_t* name;
  const wchar_t* extension;
};

constexpr Case kCases[] = {
    {L"C:\\pictures\\holiday.jpg", L"C:\\pictures", L"holiday", L"jpg"},
    {L"C:\\holiday.jpg", L"C:", L"holiday", L"jpg"},
    {L"holiday.jpg", L"", L"holiday", L"jpg"},
    {L"\\holiday.jpg", L"", L"holiday", L"jpg"},
    {L"C:holiday.jpg", L"C:", L"holiday", L"jpg"},
    {L"C:\\a\\several.dots.in.name.tiff", L"C:\\a", L"several.dots.in.name", L"tiff"},
    {L"C:\\a\\no_extension", L"C:\\a", L"no_extension", L""},
    {L"C:\\a.b\\no_extension", L"C:\\a.b", L"no_extension", L""},
    {L"C:\\a\\trailing.", L"C:\\a", L"trailing", L""},
    {L"C:\\a\\.profile", L"C:\\a", L".profile", L""},
    {L"C:\\a\\.profile.bak", L"C:\\a", L".profile", L"bak"},
    {L"C:\\a\\..", L"C:\\a", L"..", L""},
    {L"C:\\a\\...x", L"C:\\a", L"...x", L""},
    {L"C:\\a\\", L"C:\\a", L"", L""},
    {L"C:\\", L"C:", L"", L""},
    {L"", L"", L"", L""},
    {L"\\\\server\\share\\scan 1.png", L"\\\\server\\share", L"scan 1", L"png"},
    {L"C:/mixed\\slashes/x.bmp", L"C:/mixed\\slashes", L"x", L"bmp"},
    {L"C:\\\x56FE\x50CF\\\x7167\x7247.jpg", L"C:\\\x56FE\x50CF", L"\x7167\x7247", L"jpg"},
    {L"C:\\a\\\xD83D\xDE00.e\x0301.png", L"C:\\a", L"\xD83D\xDE00.e\x0301", L"png"},
    {L"C:\\a\\x.JPEG", L"C:\\a", L"x", L"JPEG"},
    {L"C:\\a\\x. jpg", L"C:\\a", L"x", L" jpg"},
};

TEST(FileNameUtility, PathsAreCutIntoFolderNameAndExtension) {
  for (const Case& one : kCases) {
    SCOPED_TRACE(std::string(one.path, one.path + wcslen(one.path)));
    EXPECT_STREQ(one.folder, CZVFileNameUtility::ExtractFilePath(one.path));
    EXPECT_STREQ(one.name, CZVFileNameUtility::ExtractFileName(one.path));
    EXPECT_STREQ(one.extension, CZVFileNameUtility::ExtractFileExt(one.path));
  }
}

TEST(FileNameUtility, ReplacingTheNameByItselfGivesThePathBack) {
  for (const Case& one : kCases) {
    EXPECT_STREQ(one.path, CZVFileNameUtility::UpdateFileName(one.path, one.name));
  }
}

TEST(FileNameUtility, NewNameKeepsFolderAndExtension) {
  EXPECT_STREQ(L"C:\\a\\x0.jpg", CZVFileNameUtility::UpdateFileName(L"C:\\a\\x.jpg", L"x0"));
  EXPECT_STREQ(L"x0.jpg", CZVFileNameUtility::UpdateFileName(L"x.jpg", L"x0"));
  EXPECT_STREQ(L"C:\\a\\new", CZVFileNameUtility::UpdateFileName(L"C:\\a\\old", L"new"));
  EXPECT_STREQ(L"C:\\a\\v1.2.png", CZVFileNameUtility::UpdateFileName(L"C:\\a\\v1.png", L"v1.2"));
  EXPECT_STREQ(L"C:\\a\\.png", CZVFileNameUtility::UpdateFileName(L"C:\\a\\v1.png", L""));
}

TEST(FileNameUtility, LongPathsAreNotCut) {
  const std::wstring folder = L"\\\\?\\C:\\" + std::wstring(5000, L'f');
  const std::wstring name(3000, L'n');
  const CString path((folder + L"\\" + name + L".tif"));
  EXPECT_STREQ(folder.c_str(), CZVFileNameUtility::ExtractFilePath(path));
  EXPECT_STREQ(name.c_str(), CZVFileNameUtility::ExtractFileName(path));
  EXPECT_STREQ(L"tif", CZVFileNameUtility::ExtractFileExt(path));
}

}  // namespace
