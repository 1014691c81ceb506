// The preview in folders where not everything is well: damaged and empty files, folders with the names of pictures, files that
// vanish or are locked. Nothing of it shows a message; the pane says that there is no preview, and the next file is shown.
#include "tests/dialogs/open_preview_fixture.h"

namespace {

using namespace zvtest;

// The first part of a file, as a broken copy leaves it.
void Cut(const std::wstring& path, size_t kept) {
  const HANDLE file = ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(INVALID_HANDLE_VALUE, file);
  ::SetFilePointer(file, static_cast<LONG>(kept), nullptr, FILE_BEGIN);
  ::SetEndOfFile(file);
  ::CloseHandle(file);
}

// After each of the names the pane says that there is no preview, and after each a good picture comes up again.
void ExpectNoPreviewOf(HWND dialog, const std::vector<std::wstring>& names) {
  for (const std::wstring& name : names) {
    SCOPED_TRACE(testing::Message() << std::string(name.begin(), name.end()));
    SelectFile(dialog, L"red.bmp");
    WaitForColor(dialog, kRed);
    SelectFile(dialog, name);
    WaitForNoPreview(dialog);
    EXPECT_FALSE(IsEnabled(dialog, kOpenPageEdit));
    EXPECT_FALSE(IsEnabled(dialog, kOpenDeletePage));
    EXPECT_EQ(nullptr, FindMessageBox());
    SelectFile(dialog, L"red.bmp");
    WaitForColor(dialog, kRed);
  }
}

TEST_F(OpenPane, SaysThatThereIsNoPreviewOfDamagedFiles) {
  std::vector<std::wstring> names;
  struct Kind {
    const wchar_t* name;
    int32_t format;
  };
  for (const Kind& kind : {Kind{L"cut.jpg", FMT_JPEG},
                           {L"cut.png", FMT_PNG},
                           {L"cut.tif", FMT_TIFF},
                           {L"cut.gif", FMT_GIF},
                           {L"cut.bmp", FMT_BMP},
                           {L"cut.cmp", FMT_CMP},
                           {L"cut.jp2", FMT_JP2}}) {
    WriteSolid(folder.File(kind.name), kGreen, kind.format);
    Cut(folder.File(kind.name), 60);
    names.emplace_back(kind.name);
  }
  for (const wchar_t* const name : {L"garbage.jpg", L"garbage.tif", L"garbage.png", L"garbage.xyz"}) {
    folder.AddFile(name, {'n', 'o', ' ', 'p', 'i', 'c', 't', 'u', 'r', 'e', 0, 255, 17});
    names.emplace_back(name);
  }
  Look([&](HWND dialog) { ExpectNoPreviewOf(dialog, names); }, static_cast<int>(names.size()) + 2);
}

TEST_F(OpenPane, SaysThatThereIsNoPreviewOfFilesThatEndInTheirPixels) {
  WriteSolid(folder.File(L"half.bmp"), kGreen);
  Cut(folder.File(L"half.bmp"), 200'000);
  WriteSolid(folder.File(L"half.png"), kGreen, FMT_PNG);
  Cut(folder.File(L"half.png"), ContentOf(folder.File(L"half.png")).size() / 2);
  Look(
      [](HWND dialog) {
        for (const wchar_t* const name : {L"half.bmp", L"half.png"}) {
          SelectFile(dialog, L"red.bmp");
          WaitForColor(dialog, kRed);
          SelectFile(dialog, name);
          WaitForNoPreview(dialog);
          SelectFile(dialog, L"red.bmp");
          WaitForColor(dialog, kRed);
        }
      },
      4);
}

TEST_F(OpenPane, SaysThatThereIsNoPreviewOfEmptyFiles) {
  folder.AddFile(L"empty.jpg");
  folder.AddFile(L"empty.tif");
  Look([](HWND dialog) { ExpectNoPreviewOf(dialog, {L"empty.jpg", L"empty.tif"}); }, 4);
}

TEST_F(OpenPane, SaysThatThereIsNoPreviewOfAFolderWithTheNameOfAPicture) {
  folder.AddFolder(L"folder.jpg");
  Look(
      [](HWND dialog) {
        SelectFile(dialog, L"red.bmp");
        WaitForColor(dialog, kRed);
        SelectFile(dialog, L"folder.jpg");
        SelectFile(dialog, L"blue.bmp");
        WaitForColor(dialog, kBlue);
      },
      3);
}

TEST_F(OpenPane, SurvivesAFileThatVanishesWhileItIsListed) {
  WriteSolid(folder.File(L"gone.bmp"), kGreen);
  Look(
      [this](HWND dialog) {
        SelectFile(dialog, L"red.bmp");
        WaitForColor(dialog, kRed);
        ASSERT_TRUE(::DeleteFileW(folder.File(L"gone.bmp").c_str()));
        SelectFile(dialog, L"gone.bmp");
        WaitForNoPreview(dialog);
        SelectFile(dialog, L"blue.bmp");
        WaitForColor(dialog, kBlue);
      },
      3);
}

TEST_F(OpenPane, SurvivesAFileThatVanishesWhileItIsSelected) {
  WriteSolid(folder.File(L"gone.tif"), kGreen, FMT_TIFF);
  WriteSolid(folder.File(L"gone.tif"), kRed, FMT_TIFF, 2);
  Look(
      [this](HWND dialog) {
        SelectFile(dialog, L"gone.tif");
        WaitForColor(dialog, kGreen);
        ASSERT_TRUE(::DeleteFileW(folder.File(L"gone.tif").c_str()));
        SetText(dialog, kOpenPageEdit, L"2");
        WaitForNoPreview(dialog);
        EXPECT_EQ(L"1", TextOf(dialog, kOpenPageEdit));
        SelectFile(dialog, L"blue.bmp");
        WaitForColor(dialog, kBlue);
      },
      3);
}

TEST_F(OpenPane, SaysThatThereIsNoPreviewOfALockedFileUntilItIsFree) {
  WriteSolid(folder.File(L"locked.bmp"), kGreen);
  HANDLE lock = ::CreateFileW(folder.File(L"locked.bmp").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(INVALID_HANDLE_VALUE, lock);
  Look(
      [&](HWND dialog) {
        ExpectNoPreviewOf(dialog, {L"locked.bmp"});
        ::CloseHandle(lock);
        SelectFile(dialog, L"locked.bmp");
        WaitForColor(dialog, kGreen);
      },
      3);
}

struct Asked {
  std::wstring path;
  int32_t page = 0;
  int32_t size = 0;
  int times = 0;
};

int32_t ZV_CALL HandOverGreen(OPENDLGPREVIEWREQUEST* request, void* userData) {
  auto& asked = *static_cast<Asked*>(userData);
  ++asked.times;
  asked.path = request->fileName;
  asked.page = request->pageNumber;
  asked.size = static_cast<int32_t>(request->uStructSize);
  static BITMAPHANDLE green;
  green = MakeSolid(kGreen);
  request->bitmap = &green;
  return SUCCESS;
}

TEST_F(OpenPane, AsksTheCallerForAFileThatCannotBeReadAndFreesTheAnswer) {
  folder.AddFile(L"own format.xyz", {'o', 'w', 'n'});
  Asked asked;
  call.params.previewCallback = HandOverGreen;
  call.params.previewCallbackUserData = &asked;
  const int64_t blocks = CoreBlockCount();
  Look(
      [&](HWND dialog) {
        SelectFile(dialog, L"red.bmp");
        WaitForColor(dialog, kRed);
        SelectFile(dialog, L"own format.xyz");
        WaitForNoPreview(dialog);
      },
      3);
  EXPECT_EQ(folder.File(L"own format.xyz"), asked.path);
  EXPECT_EQ(1, asked.page);
  EXPECT_EQ(544, asked.size);
  EXPECT_EQ(blocks, CoreBlockCount());
}

int32_t ZV_CALL HandOverNothing(OPENDLGPREVIEWREQUEST*, void* userData) {
  ++static_cast<Asked*>(userData)->times;
  return ERROR_FILE_FORMAT;
}

TEST_F(OpenPane, AsksTheCallerOnlyForFilesThatCannotBeRead) {
  folder.AddFile(L"own format.xyz", {'o', 'w', 'n'});
  Asked asked;
  call.params.previewCallback = HandOverNothing;
  call.params.previewCallbackUserData = &asked;
  Look(
      [&](HWND dialog) {
        const int before = asked.times;
        SelectFile(dialog, L"red.bmp");
        WaitForColor(dialog, kRed);
        SelectFile(dialog, L"blue.bmp");
        WaitForColor(dialog, kBlue);
        EXPECT_EQ(before, asked.times);
        SelectFile(dialog, L"own format.xyz");
        WaitForNoPreview(dialog);
        EXPECT_LT(before, asked.times);
      },
      3);
}

// A drawing of four inches each way, all green.
std::vector<uint8_t> MakeDrawing() {
  const RECT frame = {0, 0, 10160, 10160};
  const HDC device = ::CreateEnhMetaFileW(nullptr, nullptr, &frame, nullptr);
  ::SetMapMode(device, MM_HIMETRIC);
  const HBRUSH brush = ::CreateSolidBrush(kGreen);
  const RECT all = {-100, 100, 10300, -10300};
  ::FillRect(device, &all, brush);
  ::DeleteObject(brush);
  const HENHMETAFILE drawing = ::CloseEnhMetaFile(device);
  std::vector<uint8_t> bytes(::GetEnhMetaFileBits(drawing, 0, nullptr));
  ::GetEnhMetaFileBits(drawing, static_cast<UINT>(bytes.size()), bytes.data());
  ::DeleteEnhMetaFile(drawing);
  return bytes;
}

TEST_F(OpenPane, KeepsTheDrawingInThePaneWhenAPictureIsChosenAmongDrawings) {
  folder.AddFile(L"drawing.emf", MakeDrawing());
  call.params.flags |= DLG_OPEN_VECTOR_ONLY;
  call.openFileName.lpstrFilter = L"All\0*.*\0";
  Look(
      [](HWND dialog) {
        SelectFile(dialog, L"drawing.emf");
        WaitForColor(dialog, kGreen);
        SelectFile(dialog, L"red.bmp");
        EXPECT_FALSE(HoldsWithin(300, [=] { return !IsNear(PaneColor(dialog), kGreen); }));
      },
      3);
}

}  // namespace
