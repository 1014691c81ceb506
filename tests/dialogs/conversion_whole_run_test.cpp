// Whole runs as a user sets them up: every dialog of the conversion dialog in one run, and a batch of a thousand files. What
// comes out is held against calculations of its own: names, sizes, pixels, rows of the log.
#include <windows.h>

#include <cmath>
#include <ctime>
#include <map>
#include <numbers>
#include <set>

#include "resources/conversion_tools_ids.h"
#include "resources/naming_ids.h"
#include "tests/dialogs/conversion_fixture.h"
#include "tests/support/file_bytes.h"

namespace {

using namespace zvtest;

constexpr int32_t kJpeg = 0;
constexpr int32_t kPng = 1;
constexpr int32_t kBmp = 4;

struct LogRow {
  std::wstring status, source, destination;
};

class WholeRun : public ConversionDialog {
 protected:
  WholeRun() { params.logReport = 1; }

  static std::vector<LogRow> RowsOf(HWND log) {
    std::vector<LogRow> rows;
    for (int row = 0; row < ListViewCount(log, IDL_LOG); ++row) {
      rows.push_back(
          {ListViewText(log, IDL_LOG, row, 0), ListViewText(log, IDL_LOG, row, 1), ListViewText(log, IDL_LOG, row, 2)});
    }
    return rows;
  }
  static void CloseWith(HWND dialog, int button) {
    Click(dialog, button);
    WaitUntilClosed(dialog);
  }
  static FILEINFO Info(const std::wstring& path) {
    FILEINFO info = {};
    info.uStructSize = sizeof info;
    EXPECT_EQ(SUCCESS, GetFileInfo(path.c_str(), &info, sizeof info, 1, nullptr));
    return info;
  }
};

// --- Every dialog in one run ---

struct Rgb {
  int red, green, blue;
};

// The pages differ in size and colours: four quadrants, each of a colour that tells its page.
constexpr int kPageHeight = 160;
constexpr int PageWidth(int page) { return 240 + 2 * page; }
Rgb QuadrantColor(int page, int quadrant) {
  const int level = 20 * page;
  const Rgb colors[] = {{250, level, 0}, {0, 250, level}, {level, 0, 250}, {220, 220, level}};
  return colors[quadrant];
}

bool WritePages(const std::wstring& path, int pages) {
  for (int page = 1; page <= pages; ++page) {
    BITMAPHANDLE bitmap = {};
    if (InitBitmapHandle(&bitmap, sizeof bitmap, PageWidth(page), kPageHeight, 24) != SUCCESS ||
        AllocateBitmap(&bitmap, 0) != SUCCESS) {
      return false;
    }
    std::vector<uint8_t> row(static_cast<size_t>(bitmap.bytesPerLine));
    for (int y = 0; y < bitmap.height; ++y) {
      for (int x = 0; x < bitmap.width; ++x) {
        const Rgb color = QuadrantColor(page, (y < kPageHeight / 2 ? 0 : 2) + (x < bitmap.width / 2 ? 0 : 1));
        uint8_t* const pixel = &row[static_cast<size_t>(3 * x)];
        pixel[0] = static_cast<uint8_t>(color.blue);
        pixel[1] = static_cast<uint8_t>(color.green);
        pixel[2] = static_cast<uint8_t>(color.red);
      }
      PutBitmapRow(&bitmap, row.data(), y, bitmap.bytesPerLine);
    }
    SAVEFILEOPTION option = {};
    GetDefaultSaveFileOption(&option, sizeof option);
    option.pageNumber = page;
    const int32_t saved = SaveBitmapToFile(path.c_str(), &bitmap, FMT_TIFF_LZW, 24, 0, &option);
    FreeBitmap(&bitmap);
    if (saved != SUCCESS) {
      return false;
    }
  }
  return true;
}

Rgb PixelAt(const BITMAPHANDLE& bitmap, int x, int y) {
  std::vector<uint8_t> row(static_cast<size_t>(bitmap.bytesPerLine));
  CopyBitmapRow(&bitmap, row.data(), y, bitmap.bytesPerLine);
  const uint8_t* const pixel = &row[static_cast<size_t>(3 * x)];
  return {pixel[2], pixel[1], pixel[0]};
}

void ExpectNear(const Rgb& wanted, const Rgb& found, const std::string& what) {
  constexpr int kTolerance = 8;  // JPEG, far from any edge
  EXPECT_NEAR(wanted.red, found.red, kTolerance) << what;
  EXPECT_NEAR(wanted.green, found.green, kTolerance) << what;
  EXPECT_NEAR(wanted.blue, found.blue, kTolerance) << what;
}

constexpr double kAngle = 12.5;
constexpr double kScale = 0.5;

// A page turned clockwise on a canvas that grew, then halved: where its quadrants are and what lies in the corners.
void ExpectTurnedPage(const std::wstring& path, int page) {
  const std::string what = "page " + std::to_string(page);
  BITMAPHANDLE bitmap = {};
  ASSERT_EQ(SUCCESS, LoadBitmapFile(path.c_str(), &bitmap, sizeof bitmap, 24, ORDER_BGR, nullptr, nullptr)) << what;
  const double turn = kAngle * std::numbers::pi / 180;
  const double width = PageWidth(page), height = kPageHeight;
  const double canvasWidth = width * std::cos(turn) + height * std::sin(turn);
  const double canvasHeight = width * std::sin(turn) + height * std::cos(turn);
  EXPECT_NEAR(canvasWidth * kScale, bitmap.width, 1.01) << what;
  EXPECT_NEAR(canvasHeight * kScale, bitmap.height, 1.01) << what;
  // The points beside the axes would lie in a neighbour if the page were turned the other way or not at all.
  constexpr struct { double x, y; } kFromCentre[] = {{0.25, 0.25}, {0.4, 0.1}, {0.08, 0.4}};
  for (int quadrant = 0; quadrant < 4; ++quadrant) {
    for (const auto& [across, down] : kFromCentre) {
      const double fromCentreX = (quadrant % 2 ? across : -across) * width;
      const double fromCentreY = (quadrant / 2 ? down : -down) * height;
      const double x = canvasWidth / 2 + fromCentreX * std::cos(turn) - fromCentreY * std::sin(turn);
      const double y = canvasHeight / 2 + fromCentreX * std::sin(turn) + fromCentreY * std::cos(turn);
      const Rgb found = PixelAt(bitmap, static_cast<int>(x * kScale), static_cast<int>(y * kScale));
      ExpectNear(QuadrantColor(page, quadrant), found, what + ", quadrant " + std::to_string(quadrant));
    }
  }
  for (const int x : {1, bitmap.width - 2}) {
    for (const int y : {1, bitmap.height - 2}) {
      ExpectNear({0, 0, 0}, PixelAt(bitmap, x, y), what + ", an uncovered corner");
    }
  }
  FreeBitmap(&bitmap);
}

std::wstring Today() {
  const std::time_t now = std::time(nullptr);
  wchar_t text[128];
  std::wcsftime(text, std::size(text), L"%A, %B %d, %Y", std::localtime(&now));
  return text;
}

class EveryDialogInOneRun : public WholeRun {
 protected:
  static constexpr int kPages[] = {1, 3, 5, 6, 7};

  EveryDialogInOneRun() {
    Offer({kJpeg, kPng, kBmp});
    params.overwriteMode = OVERWRITE_ASK;
    source = in.File(L"scan.tif");
    EXPECT_TRUE(WritePages(source, 10));
    AddToList(source);
  }

  static void SetTemplate(HWND dialog) {
    Click(dialog, IDB_CONV_NAMING);
    const HWND naming = WaitForDialogWith(IDE_NAMING_TEMPLATE);
    SetText(naming, IDE_NAMING_TEMPLATE, L"<SRC> <NUM><ALPHA> <DATE>");
    CloseWith(naming, IDOK);
  }
  static void SetPages(HWND dialog) {
    Click(dialog, IDB_CONV_PAGE_OPTIONS);
    const HWND pages = WaitForDialogWith(IDX_PAGES_ALL);
    Click(pages, IDX_PAGES_LIST);
    WaitUntil([pages] { return IsEnabled(pages, IDE_PAGES_LIST); }, "the page list can be typed");
    SetText(pages, IDE_PAGES_LIST, L"1,3,5-7");
    CloseWith(pages, IDOK);
    EXPECT_EQ(L"1,3,5,6,7", ListViewText(dialog, IDL_CONV_FILES, 0, 1));
  }
  static void SetRotation(HWND dialog) {
    Click(dialog, IDB_CONV_ROTATE);
    const HWND rotate = WaitForDialogWith(IDE_ROTATE_ANGLE);
    SetText(rotate, IDE_ROTATE_ANGLE, L"12.5");
    SelectCombo(rotate, IDC_ROTATE_INTERPOLATION, 2);
    Check(rotate, IDX_ROTATE_RESIZE, true);
    CloseWith(rotate, IDOK);
  }
  static void SetSize(HWND dialog) {
    Click(dialog, IDB_CONV_RESIZE);
    const HWND resize = WaitForDialogWith(IDX_RESIZE_ENABLE);
    Check(resize, IDX_RESIZE_ENABLE, true);
    SelectCombo(resize, IDC_RESIZE_UNIT, 1);
    SetText(resize, IDC_RESIZE_WIDTH, L"50");
    SetText(resize, IDC_RESIZE_HEIGHT, L"50");
    SelectCombo(resize, IDC_RESIZE_METHOD, 2);
    CloseWith(resize, IDOK);
  }

  // The name of output n of the run, counted from 0: five pages as JPEG, five as PNG, five as BMP. None is above 25, so that
  // the letter is one letter.
  std::wstring Name(int n) const {
    const wchar_t* const extensions[] = {L".jpg", L".png", L".bmp"};
    return L"scan " + std::to_wstring(n) + static_cast<wchar_t>(L'a' + n) + L" " + today + extensions[n / 5];
  }
  static int PageOf(int n) { return kPages[n % 5]; }

  void Answer(int n, int button) const {
    const HWND ask = WaitForDialogWith(IDB_CONV_ASK_REPLACE);
    EXPECT_NE(std::wstring::npos, TextOf(ask, IDE_CONV_ASK_MESSAGE).find(out.File(Name(n)))) << n;
    CloseWith(ask, button);
  }

  std::wstring source;
  const std::wstring today = Today();
};

TEST_F(EveryDialogInOneRun, NamesTurnsResizesAndAsksAsItWasTold) {
  constexpr int kReplaced = 1, kRenamed = 3, kSkipped = 8, kAborted = 13;
  for (const int n : {kReplaced, kRenamed, kSkipped, kAborted}) {
    out.AddFile(Name(n), {7});
  }
  std::vector<LogRow> rows;
  RunAndClose([&](HWND dialog) {
    SetTemplate(dialog);
    SetPages(dialog);
    SetRotation(dialog);
    SetSize(dialog);
    SelectListBoxRows(dialog, IDL_CONV_FORMATS, {0, 1, 2});
    Click(dialog, IDB_CONV_CONVERT);
    Answer(kReplaced, IDB_CONV_ASK_REPLACE);
    Answer(kRenamed, IDB_CONV_ASK_RENAME);
    Answer(kSkipped, IDB_CONV_ASK_SKIP);
    Answer(kAborted, IDB_CONV_ASK_ABORT);
    const HWND log = WaitForDialogWith(IDL_LOG);
    rows = RowsOf(log);
    SaveScreenshot(log, L"whole_run_log");
    CloseWith(log, IDOK);
  });
  if (today != Today()) {
    GTEST_SKIP() << "the date changed during the run";
  }

  // What follows the abort is not converted, and the abort itself has no row.
  std::map<std::wstring, bool> wantedRows;
  std::set<std::wstring> wantedFiles = {Name(kRenamed), Name(kSkipped), Name(kAborted)};
  for (int n = 0; n < kAborted; ++n) {
    std::wstring name = Name(n);
    if (n == kRenamed) {
      name.insert(name.size() - 4, L"0");
    }
    wantedRows[out.File(name)] = n != kSkipped;
    wantedFiles.insert(name);
    if (n != kSkipped) {
      ExpectTurnedPage(out.File(name), PageOf(n));
    }
  }
  const std::vector<std::wstring> files = Outputs();
  EXPECT_EQ(wantedFiles, std::set<std::wstring>(files.begin(), files.end()));
  for (const int n : {kRenamed, kSkipped, kAborted}) {
    WIN32_FILE_ATTRIBUTE_DATA left = {};
    ::GetFileAttributesExW(out.File(Name(n)).c_str(), GetFileExInfoStandard, &left);
    EXPECT_EQ(1u, left.nFileSizeLow) << "the file that was in the way of " << n;
  }
  ASSERT_EQ(wantedRows.size(), rows.size());
  for (const LogRow& row : rows) {
    EXPECT_EQ(source, row.source);
    ASSERT_TRUE(wantedRows.contains(row.destination)) << "a row for something else";
    EXPECT_EQ(wantedRows[row.destination] ? L"Succeeded" : L"Failed", row.status);
    wantedRows.erase(row.destination);
  }
  EXPECT_EQ(10, Info(source).totalPages) << "the source is what it was";
}

// --- A large batch ---

class ThousandFiles : public WholeRun {
 protected:
  static constexpr int kFiles = 1000;
  static constexpr DWORD kBatchPatience = 300'000;

  ThousandFiles() {
    Offer({kPng});
    const std::wstring sample = in.File(L"sample.png");
    EXPECT_TRUE(WritePicture(sample, {24, 16, FMT_PNG}));
    const std::vector<uint8_t> whole = ReadWholeFile(sample);
    for (int n = 0; n < kFiles; ++n) {
      std::vector<uint8_t> content = whole;
      const bool bad = n % 100 == 37;
      if (bad) {
        Damage(content, n / 100);
      }
      const std::wstring path = in.AddFile(L"f" + std::to_wstring(n) + L".png", content);
      AddToList(path);
      if (bad) {
        damaged.insert(path);
      }
    }
  }

  // Ten ways to lose the image behind a header that still reads well.
  static void Damage(std::vector<uint8_t>& png, int way) {
    constexpr char kImageChunk[] = "IDAT";
    const auto image = std::search(png.begin(), png.end(), kImageChunk, kImageChunk + 4);
    const auto at = static_cast<size_t>(image - png.begin());
    if (way < 5) {
      png.resize(at + 4 + static_cast<size_t>(way) * 2);  // cut short
    } else {
      std::fill(png.begin() + static_cast<ptrdiff_t>(at) + 4 + (way - 5), png.end(), uint8_t{0xA5});  // overwritten
    }
  }

  std::set<std::wstring> damaged;
};

TEST_F(ThousandFiles, TenDamagedOnesFailAndTheOthersArrive) {
  ASSERT_EQ(10u, damaged.size());
  std::vector<LogRow> rows;
  RunAndClose([&](HWND dialog) {
    ASSERT_EQ(kFiles, ListViewCount(dialog, IDL_CONV_FILES));
    Click(dialog, IDB_CONV_SELECT_ALL);
    WaitUntil([=] { return static_cast<int>(SelectedListViewRows(dialog, IDL_CONV_FILES).size()) == kFiles; },
              "all files chosen");
    Click(dialog, IDB_CONV_CONVERT);
    ASSERT_TRUE(HoldsWithin(kBatchPatience, [] { return FindDialogTitled(L"Conversion Log-Report ") != nullptr; }));
    const HWND log = WaitForDialogWith(IDL_LOG);
    rows = RowsOf(log);
    CloseWith(log, IDOK);
    ASSERT_TRUE(HoldsWithin(kBatchPatience, [dialog] { return ::IsWindowEnabled(dialog) != FALSE; }));
    EXPECT_EQ(kFiles, ListViewCount(dialog, IDL_CONV_FILES));
  });
  std::set<std::wstring> failed;
  int succeeded = 0;
  for (const LogRow& row : rows) {
    if (row.status == L"Succeeded") {
      ++succeeded;
    } else {
      failed.insert(row.source);
    }
  }
  EXPECT_EQ(damaged, failed);
  EXPECT_EQ(kFiles - 10, succeeded);
  const std::vector<std::wstring> outputs = Outputs();
  EXPECT_EQ(static_cast<size_t>(kFiles) - 10, outputs.size());
  for (const std::wstring& name : outputs) {
    const FILEINFO info = Info(out.File(name));
    ASSERT_EQ(24, info.width);
    ASSERT_EQ(16, info.height);
  }
  EXPECT_EQ(static_cast<size_t>(kFiles) + 1, NamesIn(in.path()).size()) << "the sources are all there";
}

}  // namespace
