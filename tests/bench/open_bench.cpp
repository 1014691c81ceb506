// Measures the open dialog through its export, and the stamps that its preview lives on; one line of figures a measurement.
//
//   zvopen_bench preview FOLDER           choose each file of the folder in turn: until the pane has painted its picture
//   zvopen_bench thumbnails FOLDER NAME...   open the named files with thumbnails: from OK to the end of the call
//   zvopen_bench stamp PICTURE FILE KIND  save the picture with a stamp as KIND (JPEG, TIFF, CMP), then read stamp and image
#include <windows.h>
#include <objbase.h>
#include <shellapi.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "include/zvfiledlg.h"
#include "services/zvfile/zvfile.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/open_driver.h"

namespace {

using namespace zvtest;
using Arguments = std::vector<std::wstring>;
using Clock = std::chrono::steady_clock;

double Since(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

// The pane's paints, watched from inside its own window procedure.
WNDPROC panesOwn = nullptr;
std::atomic<int> paints = 0;
std::atomic<double> lastPaintSeconds = 0;
Clock::time_point lastPaintEnd;

LRESULT CALLBACK WatchPaints(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_PAINT) return CallWindowProcW(panesOwn, window, message, wParam, lParam);
  const Clock::time_point start = Clock::now();
  const LRESULT result = CallWindowProcW(panesOwn, window, message, wParam, lParam);
  GdiFlush();
  lastPaintEnd = Clock::now();
  lastPaintSeconds = std::chrono::duration<double>(lastPaintEnd - start).count();
  ++paints;
  return result;
}

// The no-preview text leaves most of the pane in the colour of buttons, a photograph does not.
bool ShowsPicture(HWND pane) {
  RECT client;
  GetClientRect(pane, &client);
  const HDC device = GetDC(pane);
  int other = 0;
  for (int x = client.right / 4; x < client.right * 3 / 4; x += 4) {
    other += GetPixel(device, x, client.bottom / 2) != GetSysColor(COLOR_BTNFACE);
  }
  ReleaseDC(pane, device);
  return other > client.right / 16;
}

// Until the pane has not been painted for a while: what is left of the file before must not count for the next one.
void WaitUntilSettled() {
  constexpr DWORD kWhile = 100;  // milliseconds
  int seen = 0;
  do {
    seen = paints;
  } while (HoldsWithin(kWhile, [=] { return paints != seen; }));
}

// False when the pane did not get the picture.
bool MeasureChoice(HWND dialog, HWND pane, const std::wstring& name) {
  WaitUntilSettled();
  const int before = paints;
  const Clock::time_point start = Clock::now();
  SelectFile(dialog, name);
  WaitUntil([=] { return paints > before; }, "the pane is painted");
  const double seconds = std::chrono::duration<double>(lastPaintEnd - start).count();
  std::printf("seconds=%.4f paint=%.4f\n", seconds, lastPaintSeconds.load());
  return ShowsPicture(pane);
}

int RunPreview(const Arguments& arguments) {
  OpenCall call(arguments[0]);
  call.params.flags = DLG_OPEN_SHOW_PREVIEW;
  call.params.showPreview = 1;
  bool shown = true;
  call.Drive([&](HWND dialog) {
    const std::vector<std::wstring> names = ListedFiles(dialog);
    const HWND pane = Control(dialog, kOpenPane);
    panesOwn =
        reinterpret_cast<WNDPROC>(SetWindowLongPtrW(pane, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(WatchPaints)));
    for (const std::wstring& name : names) shown = MeasureChoice(dialog, pane, name) && shown;
    SetWindowLongPtrW(pane, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(panesOwn));
    Click(dialog, IDCANCEL);
  });
  if (!shown) std::fprintf(stderr, "a picture was not shown\n");
  return shown ? 0 : 1;
}

int RunThumbnails(const Arguments& arguments) {
  OpenCall call(arguments[0]);
  call.openFileName.Flags = OFN_ALLOWMULTISELECT;
  call.params.flags = DLG_OPEN_MAKE_THUMBNAIL;
  std::wstring names;
  for (size_t i = 1; i < arguments.size(); ++i) names += L"\"" + arguments[i] + L"\" ";
  Clock::time_point start;
  const int32_t result = call.Drive([&](HWND dialog) {
    TypeName(dialog, names);
    start = Clock::now();
    Click(dialog, IDOK);
  });
  const double seconds = Since(start);
  int made = 0;
  for (int32_t i = 0; i < call.params.fileCount; ++i) {
    const BITMAPHANDLE* const thumbnail = call.params.files[i].thumbnail;
    made += thumbnail && (thumbnail->flags & BITMAP_FLAG_ALLOCATED) != 0;
  }
  std::printf("seconds=%.3f files=%d\n", seconds, made);
  return result == SUCCESS_DLG_OK ? 0 : 1;
}

BITMAPHANDLE EmptyBitmap() {
  BITMAPHANDLE bitmap{};
  bitmap.uStructSize = sizeof bitmap;
  return bitmap;
}

// The median of some runs; negative when one failed.
double Median(int runs, const std::function<int32_t(BITMAPHANDLE&)>& operation) {
  std::vector<double> seconds;
  for (int run = 0; run < runs; ++run) {
    BITMAPHANDLE bitmap = EmptyBitmap();
    const Clock::time_point start = Clock::now();
    const int32_t result = operation(bitmap);
    seconds.push_back(Since(start));
    FreeBitmap(&bitmap);
    if (result != SUCCESS) return -1;
  }
  std::nth_element(seconds.begin(), seconds.begin() + runs / 2, seconds.end());
  return seconds[size_t(runs) / 2];
}

bool SaveWithStamp(const std::wstring& picture, const std::wstring& path, const std::wstring& kind) {
  const int32_t format = kind == L"TIFF" ? FMT_TIFF : kind == L"CMP" ? FMT_CMP : FMT_EXIF_JPEG_422;
  SAVEFILEOPTION option{};
  GetDefaultSaveFileOption(&option, sizeof option);
  option.flags |= SAVEFILE_STAMP | (format == FMT_EXIF_JPEG_422 ? SAVEFILE_EXIF_CARRIER : 0);
  BITMAPHANDLE bitmap = EmptyBitmap();
  int32_t result = LoadBitmapFile(picture.c_str(), &bitmap, sizeof bitmap, 0, ORDER_BGR_OR_GRAY, nullptr, nullptr);
  if (result == SUCCESS) result = SaveBitmapToFile(path.c_str(), &bitmap, format, 24, 28, &option);
  FreeBitmap(&bitmap);
  return result == SUCCESS;
}

int RunStamp(const Arguments& arguments) {
  if (!SaveWithStamp(arguments[0], arguments[1], arguments[2])) return 1;
  const wchar_t* const path = arguments[1].c_str();
  const double load = Median(5, [=](BITMAPHANDLE& bitmap) {
    return LoadBitmapFile(path, &bitmap, sizeof bitmap, 0, ORDER_BGR_OR_GRAY, nullptr, nullptr);
  });
  const double stamp =
      Median(25, [=](BITMAPHANDLE& bitmap) { return ReadFileStamp(path, &bitmap, sizeof bitmap, nullptr); });
  std::printf("stamp=%.6f load=%.6f\n", stamp, load);
  return stamp > 0 && load > 0 ? 0 : 1;
}

}  // namespace

int main() {
  int count = 0;
  wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
  const Arguments arguments(words + std::min(count, 2), words + count);
  const std::wstring mode = count > 1 ? words[1] : L"";
  LocalFree(words);
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  if (mode == L"preview" && arguments.size() == 1) return RunPreview(arguments);
  if (mode == L"thumbnails" && arguments.size() > 1) return RunThumbnails(arguments);
  if (mode == L"stamp" && arguments.size() == 3) return RunStamp(arguments);
  std::fprintf(stderr, "usage: zvopen_bench preview|thumbnails|stamp ARGUMENTS, see the head of its source\n");
  return 2;
}
