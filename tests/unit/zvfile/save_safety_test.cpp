// What a save does to the disk: the destination is replaced in one step or left alone, and no other file stays.
#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/resource.h>

#include <csignal>
#endif

#include "file_test_support.h"

namespace {

using namespace zvtest;
namespace fs = std::filesystem;

constexpr int32_t kFormats[] = {FMT_JPEG, FMT_PNG, FMT_BMP, FMT_CMP, FMT_WEBP, FMT_JP2, FMT_TIFF, FMT_GIF};

TEST(Save, ReplacesAnExistingFile) {
  TestFolder folder;
  for (const int32_t format : kFormats) {
    const auto path = folder.Path(u"a.bin");
    WriteBytes(path, {'o', 'l', 'd'});
    Picture source = MakePicture(30, 30, 24), loaded;
    EXPECT_EQ(Save(path, source, format), SUCCESS);
    EXPECT_EQ(Load(path, loaded), SUCCESS) << format;
    EXPECT_EQ(folder.FileCount(), 1u);
  }
}

TEST(Save, OntoAReadOnlyFileFailsAndKeepsIt) {
  TestFolder folder;
  const auto path = folder.Path(u"a.png");
  WriteBytes(path, {'o', 'l', 'd'});
  fs::permissions(path, fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                  fs::perm_options::remove);
  Picture source = MakePicture(30, 30, 24);
  for (const int32_t format : kFormats) EXPECT_EQ(Save(path, source, format), ERROR_FILE_WRITE);
  EXPECT_EQ(folder.FileCount(), 1u);
  EXPECT_EQ(ReadBytes(path), (std::vector<uint8_t>{'o', 'l', 'd'}));
  fs::permissions(path, fs::perms::owner_write, fs::perm_options::add);
}

TEST(Save, IntoAMissingFolderOrOntoAFolderFails) {
  TestFolder folder;
  Picture source = MakePicture(30, 30, 24);
  EXPECT_EQ(Save(folder.Path(u"missing") / "a.png", source, FMT_PNG), ERROR_FILE_WRITE);
  fs::create_directory(folder.Path(u"folder.png"));
  EXPECT_EQ(Save(folder.Path(u"folder.png"), source, FMT_PNG), ERROR_FILE_WRITE);
  EXPECT_EQ(folder.FileCount(), 1u);
}

#ifndef _WIN32
// Lets no file grow beyond a size while it lives: writing then fails in the middle, as it does on a full disk.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : formerHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &former_);
    const rlimit limit{bytes, former_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &former_);
    std::signal(SIGXFSZ, formerHandler_);
  }

 private:
  rlimit former_{};
  void (*formerHandler_)(int);
};

TEST(Save, OntoAFullDiskFailsAndKeepsTheOldFile) {
  TestFolder folder;
  const auto path = folder.Path(u"a.bin");
  WriteBytes(path, {'o', 'l', 'd'});
  Picture source = MakePicture(300, 300, 24);
  for (const int32_t format : kFormats) {
    int32_t result = SUCCESS;
    {
      const FileSizeLimit full(1000);
      result = Save(path, source, format);
    }
    EXPECT_EQ(result, ERROR_FILE_WRITE) << format;
    EXPECT_EQ(ReadBytes(path), (std::vector<uint8_t>{'o', 'l', 'd'})) << format;
    EXPECT_EQ(folder.FileCount(), 1u) << format;
  }
}
#endif

TEST(Save, OverTheFileThatWasLoadedWorks) {
  TestFolder folder;
  for (const int32_t format : kFormats) {
    const auto path = folder.Path(u"same");
    Picture source = MakePicture(30, 30, 24), loaded, again;
    ASSERT_EQ(Save(path, source, format), SUCCESS);
    ASSERT_EQ(Load(path, loaded), SUCCESS);
    loaded->viewPerspective = VIEW_BOTTOM_RIGHT;
    EXPECT_EQ(Save(path, loaded, format), SUCCESS) << format;
    EXPECT_EQ(Load(path, again), SUCCESS);
    EXPECT_EQ(folder.FileCount(), 1u);
  }
}

TEST(Names, OfAnyScriptAndShapeWork) {
  TestFolder folder;
  Picture source = MakePicture(16, 16, 24);
  const std::u16string names[] = {u"with spaces and (brackets).png",
                                  u"several.dots.in.a.name.png",
                                  u"noextension",
                                  u"\u65E5\u672C\u8A9E\u306E\u5199\u771F.png",
                                  u"\u0628\u0637\u0627\u0642\u0629.png",
                                  u"\U0001F4F7\U0001F308.png",
                                  u"e\u0301a\u0308.png",
                                  u"UPPER.PNG",
                                  u"a%20b#c&d.png"};
  for (const std::u16string& name : names) {
    const auto path = folder.Path(name);
    Picture loaded;
    FILEINFO info;
    EXPECT_EQ(Save(path, source, FMT_PNG, 24, 6), SUCCESS) << path;
    ASSERT_EQ(Info(path, info), SUCCESS) << path;
    const std::u16string reported(info.name, info.name + name.size());
    EXPECT_EQ(reported, name);
    EXPECT_EQ(Load(path, loaded), SUCCESS) << path;
    EXPECT_EQ(DifferentPixels(source.bitmap, loaded.bitmap), 0);
  }
  EXPECT_EQ(folder.FileCount(), std::size(names));
}

TEST(Names, OfPathsBeyond260CharactersWork) {
  TestFolder folder;
  fs::path deep = folder.Folder();
#ifdef _WIN32
  deep = fs::path(L"\\\\?\\" + deep.wstring());
#endif
  while (deep.u16string().size() < 320) {
    deep /= std::string(40, 'd');
    fs::create_directory(deep);
  }
  const fs::path path = deep / u"\u5199\u771F.png";
  ZvText plain = Text(path);
#ifdef _WIN32
  plain = plain.substr(4);  // without the prefix, as an application has it
#endif
  Picture source = MakePicture(16, 16, 24), loaded;
  EXPECT_EQ(SaveBitmapToFile(plain.c_str(), &source, FMT_PNG, 24, 6, nullptr), SUCCESS);
  EXPECT_EQ(LoadBitmapFile(plain.c_str(), &loaded, sizeof(BITMAPHANDLE), 0, 4, nullptr, nullptr), SUCCESS);
  EXPECT_EQ(DifferentPixels(source.bitmap, loaded.bitmap), 0);
  std::error_code ignored;
  fs::path top = folder.Folder() / std::string(40, 'd');
#ifdef _WIN32
  top = fs::path(L"\\\\?\\" + top.wstring());
#endif
  fs::remove_all(top, ignored);
}

}  // namespace
