// Files that make trouble in the open dialog: damaged and empty ones, folders that look like pictures, files that vanish or that
// another program holds. None of them may end in a crash or in a message for each look at it.
#include "tests/dialogs/open_selection_fixture.h"

namespace {

using namespace zvtest;

// The whole file for nobody else, as another program would hold it.
class LockedFile {
 public:
  explicit LockedFile(const std::wstring& path)
      : file_(::CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr)) {
    EXPECT_NE(INVALID_HANDLE_VALUE, file_);
  }
  LockedFile(const LockedFile&) = delete;
  LockedFile& operator=(const LockedFile&) = delete;
  ~LockedFile() { ::CloseHandle(file_); }

 private:
  HANDLE file_;
};

int32_t InfoCodeOf(const std::wstring& path) {
  FILEINFO info = {};
  info.uStructSize = sizeof(info);
  return GetFileInfo(path.c_str(), &info, sizeof(info), 0, nullptr);
}

// Whether the pane shows the red half that every good picture of these tests has.
bool PaneShowsPicture(HWND dialog) {
  const HWND pane = Control(dialog, kOpenPane);
  RECT client;
  ::GetClientRect(pane, &client);
  const HDC window = ::GetDC(pane);
  bool red = false;
  for (int x = client.left; x < client.right && !red; x += 5) {
    red = ::GetPixel(window, x, client.bottom / 2) == RGB(255, 0, 0);
  }
  ::ReleaseDC(pane, window);
  return red;
}

class OpenTrouble : public OpenSelectionTest {
 protected:
  OpenTrouble() {
    good = AddPicture(L"good.bmp", {.width = 120, .height = 80});
    call.params.flags =
        DLG_OPEN_SHOW_PAGE_CONTROLS | DLG_OPEN_SHOW_DELETE_PAGE | DLG_OPEN_SHOW_PREVIEW | DLG_OPEN_SHOW_FILE_INFO;
    call.params.showPreview = 1;
  }
  void AddFile(const std::wstring& name, const std::vector<uint8_t>& bytes = {}) {
    folder.AddFile(name, bytes);
    ++pictures;
  }
  // The first bytes of a real picture.
  void AddCut(const std::wstring& name, int32_t format, int32_t bits = 24) {
    const std::wstring path = AddPicture(name, {.width = 200, .height = 100, .format = format, .bits = bits});
    const HANDLE file = ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ::SetFilePointer(file, static_cast<LONG>(::GetFileSize(file, nullptr) / 3), nullptr, FILE_BEGIN);
    EXPECT_TRUE(::SetEndOfFile(file));
    ::CloseHandle(file);
  }
  std::wstring good;
};

TEST_F(OpenTrouble, AFolderOfDamagedFilesIsBrowsedWithoutAWord) {
  AddFile(L"empty.jpg");
  AddFile(L"empty.tif");
  AddFile(L"noise.png", {'n', 'o', ' ', 'p', 'i', 'c', 't', 'u', 'r', 'e'});
  AddFile(L"loop.tif", {'I', 'I', 42, 0, 8, 0, 0, 0, 0, 0, 8, 0, 0, 0});
  AddCut(L"cut.bmp", FMT_BMP);
  AddCut(L"cut.gif", FMT_GIF, 8);
  AddCut(L"cut.jpg", FMT_JPEG);
  AddCut(L"cut.png", FMT_PNG);
  AddCut(L"cut.tif", FMT_TIFF);
  folder.AddFolder(L"folder.bmp");
  ++pictures;
  ASSERT_EQ(SUCCESS_DLG_OK, Open([](HWND dialog) {
              for (const std::wstring& name : ListedFiles(dialog)) {
                if (name != L"good.bmp") {
                  ChooseFile(dialog, L"good.bmp");
                  WaitUntil([=] { return PaneShowsPicture(dialog); }, "the pane shows the good picture");
                  SelectFile(dialog, name);
                  // Some shells leave the last file in the name box, and so in the pane, while a folder is selected.
                  if (name != L"folder.bmp") {
                    WaitUntil([=] { return !PaneShowsPicture(dialog); },
                              "the pane shows its text for " + std::string(name.begin(), name.end()));
                  }
                  EXPECT_EQ(nullptr, FindMessageBox()) << "no message for a look";
                  EXPECT_FALSE(IsEnabled(dialog, kOpenPageEdit));
                }
              }
              ChooseFile(dialog, L"good.bmp");
              Click(dialog, IDOK);
            }));
  ASSERT_EQ(1, call.params.fileCount);
  EXPECT_EQ(good, Opened().fileName);
}

TEST_F(OpenTrouble, AllDamagedFilesOfAFolderAreToleratedAtOnce) {
  AddFile(L"empty.jpg");
  AddFile(L"noise.png", {'n', 'o'});
  AddCut(L"cut.png", FMT_PNG);
  call.openFileName.Flags = OFN_ALLOWMULTISELECT;
  call.params.flags |= DLG_OPEN_TOLERATE_FAILED_FILES | DLG_OPEN_LOAD_BITMAP | DLG_OPEN_MAKE_THUMBNAIL;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"\"empty.jpg\" \"good.bmp\" \"noise.png\" \"cut.png\""));
  ASSERT_EQ(4, call.params.fileCount);
  for (const int i : {0, 2}) {
    EXPECT_EQ(0, Opened(i).format);
    EXPECT_EQ(0u, Opened(i).optionFlags);
    EXPECT_NE(nullptr, Opened(i).fileInfo);
    EXPECT_EQ(nullptr, Opened(i).formatOptions);
    ASSERT_NE(nullptr, Opened(i).bitmap);
    EXPECT_FALSE(Opened(i).bitmap->flags & BITMAP_FLAG_ALLOCATED);
  }
  EXPECT_TRUE(Opened(1).bitmap->flags & BITMAP_FLAG_ALLOCATED);
  EXPECT_TRUE(Opened(1).thumbnail->flags & BITMAP_FLAG_ALLOCATED);
  EXPECT_EQ(FMT_PNG, Opened(3).format) << "its header is whole";
  EXPECT_FALSE(Opened(3).bitmap->flags & BITMAP_FLAG_ALLOCATED);
}

TEST_F(OpenTrouble, AnEmptyFileEndsWithItsCode) {
  AddFile(L"empty.jpg");
  EXPECT_EQ(ERROR_FILE_EMPTY, OpenByName(L"empty.jpg"));
  EXPECT_EQ(nullptr, call.params.files);
}

TEST_F(OpenTrouble, ADamagedFileAmongManyFreesAllOfThem) {
  AddFile(L"noise.png", {'n', 'o'});
  for (int i = 0; i < 20; ++i) {
    AddPicture(L"fine " + std::to_wstring(i) + L".bmp");
  }
  std::wstring names;
  for (int i = 0; i < 20; ++i) {
    names += L"\"fine " + std::to_wstring(i) + L".bmp\" ";
  }
  const int64_t blocks = CoreBlockCount();
  call.openFileName.Flags = OFN_ALLOWMULTISELECT;
  call.params.flags = DLG_OPEN_LOAD_BITMAP | DLG_OPEN_MAKE_THUMBNAIL;
  EXPECT_EQ(InfoCodeOf(folder.File(L"noise.png")), OpenByName(names + L"\"noise.png\""));
  EXPECT_EQ(nullptr, call.params.files);
  EXPECT_EQ(0, call.params.fileCount);
  EXPECT_EQ(blocks, CoreBlockCount());
}

TEST_F(OpenTrouble, AFolderNamedLikeAPictureIsEntered) {
  folder.AddFolder(L"folder.bmp");
  ++pictures;
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Open([](HWND dialog) {
              TypeName(dialog, L"folder.bmp");
              Click(dialog, IDOK);
              WaitUntil([=] { return ListedFiles(dialog).empty(); }, "the folder is entered");
              Click(dialog, IDCANCEL);
            }));
}

TEST_F(OpenTrouble, AFileThatVanishesWhileSelectedIsNoLongerThere) {
  const std::wstring pages = AddPicture(L"pages.tif", {.format = FMT_TIFF, .pages = 3});
  call.params.flags |= DLG_OPEN_FILE_MAY_NOT_EXIST;
  EXPECT_EQ(ERROR_FILE_MISSING, Open([&](HWND dialog) {
              ChooseFile(dialog, L"pages.tif");
              WaitUntil([=] { return IsEnabled(dialog, kOpenPageEdit); }, "there are pages to choose from");
              EXPECT_TRUE(::DeleteFileW(pages.c_str()));
              SetText(dialog, kOpenPageEdit, L"2");
              EXPECT_EQ(nullptr, FindMessageBox()) << "no message for a look";
              EXPECT_EQ(L"1", TextOf(dialog, kOpenPageEdit));
              WaitUntil([=] { return !IsEnabled(dialog, kOpenPageEdit); }, "no pages are left to choose from");
              TypeName(dialog, L"pages.tif");
              Click(dialog, IDOK);
            }));
  EXPECT_EQ(nullptr, call.params.files);
}

TEST_F(OpenTrouble, DeletingAPageOfAVanishedFileFails) {
  const std::wstring pages = AddPicture(L"pages.tif", {.format = FMT_TIFF, .pages = 3});
  Open([&](HWND dialog) {
    ChooseFile(dialog, L"pages.tif");
    WaitUntil([=] { return IsEnabled(dialog, kOpenDeletePage); }, "there are pages to delete");
    EXPECT_TRUE(::DeleteFileW(pages.c_str()));
    Click(dialog, kOpenDeletePage);
    const HWND question = WaitForMessageBox();
    Click(question, IDYES);
    WaitUntilClosed(question);
    const HWND message = WaitForMessageBox();
    Click(message, FindControl(message, IDOK) ? IDOK : IDCANCEL);
    WaitUntilClosed(message);
    Click(dialog, IDCANCEL);
  });
  EXPECT_EQ(INVALID_FILE_ATTRIBUTES, ::GetFileAttributesW(pages.c_str())) << "and none is made";
}

TEST_F(OpenTrouble, ALockedFileIsBrowsedWithoutAWordAndEndsWithItsCode) {
  const std::wstring locked = AddPicture(L"locked.bmp");
  const LockedFile lock(locked);
  const int32_t code = InfoCodeOf(locked);
  ASSERT_LT(code, 0);
  EXPECT_EQ(code, Open([](HWND dialog) {
              ChooseFile(dialog, L"good.bmp");
              WaitUntil([=] { return PaneShowsPicture(dialog); }, "the pane shows the good picture");
              ChooseFile(dialog, L"locked.bmp");
              WaitUntil([=] { return !PaneShowsPicture(dialog); }, "the pane shows its text");
              EXPECT_EQ(nullptr, FindMessageBox()) << "no message for a look";
              Click(dialog, IDOK);
            }));
  EXPECT_EQ(nullptr, call.params.files);
}

TEST_F(OpenTrouble, ALockedFileAmongOthersIsTolerated) {
  const LockedFile lock(AddPicture(L"locked.bmp"));
  call.openFileName.Flags = OFN_ALLOWMULTISELECT;
  call.params.flags |= DLG_OPEN_TOLERATE_FAILED_FILES | DLG_OPEN_LOAD_BITMAP;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"\"locked.bmp\" \"good.bmp\""));
  ASSERT_EQ(2, call.params.fileCount);
  EXPECT_FALSE(Opened(0).bitmap->flags & BITMAP_FLAG_ALLOCATED);
  EXPECT_EQ(120, Opened(1).bitmap->width);
}

TEST_F(OpenTrouble, InformationOfADamagedFileSaysWhyOnce) {
  AddFile(L"noise.png", {'n', 'o'});
  Open([](HWND dialog) {
    ChooseFile(dialog, L"noise.png");
    Command(OpenHook(dialog), kOpenFileInfoCommand);
    const HWND message = WaitForMessageBox();
    EXPECT_NE(std::wstring::npos, TextOf(message, 65535).find(L"noise.png"));
    EXPECT_NE(std::wstring::npos, TextOf(message, 65535).find(L"-14")) << "the code";
    Click(message, FindControl(message, IDOK) ? IDOK : IDCANCEL);
    WaitUntilClosed(message);
    EXPECT_EQ(nullptr, FindMessageBox());
    Click(dialog, IDCANCEL);
  });
}

TEST_F(OpenTrouble, DrawingsAloneHaveInformationWhenOnlyDrawingsAreWanted) {
  const std::wstring drawing = folder.File(L"drawing.emf");
  const RECT frame = {0, 0, 2540, 2540};
  const HDC device = ::CreateEnhMetaFileW(nullptr, drawing.c_str(), &frame, nullptr);
  ::Rectangle(device, 5, 5, 50, 50);
  ::DeleteEnhMetaFile(::CloseEnhMetaFile(device));
  ++pictures;
  call.params.flags |= DLG_OPEN_VECTOR_ONLY;
  call.openFileName.lpstrFilter = L"All\0*.*\0";
  ASSERT_EQ(SUCCESS_DLG_OK, Open([](HWND dialog) {
              ChooseFile(dialog, L"good.bmp");
              Command(OpenHook(dialog), kOpenFileInfoCommand);
              const HWND message = WaitForMessageBox();
              Click(message, FindControl(message, IDOK) ? IDOK : IDCANCEL);
              WaitUntilClosed(message);
              ChooseFile(dialog, L"drawing.emf");
              ::SendMessageW(OpenHook(dialog), WM_COMMAND, kOpenFileInfoCommand, 0);
              EXPECT_EQ(nullptr, FindMessageBox());
              Click(dialog, IDOK);
            }));
  ASSERT_EQ(1, call.params.fileCount);
  EXPECT_EQ(FMT_EMF, Opened().format);
}

TEST_F(OpenTrouble, OkTakesAPictureAlsoWhenOnlyDrawingsAreWanted) {
  call.params.flags |= DLG_OPEN_VECTOR_ONLY;
  ASSERT_EQ(SUCCESS_DLG_OK, Open([](HWND dialog) {
              ChooseFile(dialog, L"good.bmp");
              Click(dialog, IDOK);
            }));
  ASSERT_EQ(1, call.params.fileCount);
  EXPECT_EQ(good, Opened().fileName);
  EXPECT_EQ(FMT_BMP, Opened().format);
}

}  // namespace
