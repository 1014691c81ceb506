// Measures one batch conversion, through the real dialog and without it, and prints one line of figures.
//
//   zvconversion_bench dialog LIST DESTINATION FORMAT DEPTH SUBTYPE PERCENT   run through the dialog
//   zvconversion_bench bare   LIST DESTINATION FILEFORMAT DEPTH QUALITY PERCENT   the same work by plain calls
//   zvconversion_bench add    FOLDER   add a folder through the dialog
//   zvconversion_bench info   FOLDER   read the headers of a folder by plain calls
//
// LIST is a text file of paths, one a line, UTF-8; FORMAT and SUBTYPE are beginnings of the names in the dialog's lists ("-"
// keeps the dialog's choice); PERCENT 100 does not resize.
#include <windows.h>
#include <objbase.h>
#include <psapi.h>
#include <shellapi.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "include/zvfiledlg.h"
#include "resources/conversion_ids.h"
#include "services/zvfile/zvfile.h"
#include "tests/support/conversion_driver.h"

namespace {

constexpr unsigned kPatience = 3'600'000;
using Arguments = std::vector<std::wstring>;

// What some work cost: in seconds of the clock, of the processor in this process, and of the processor in the system for it.
struct Cost {
  double wall = -1, user = 0, system = 0;
};

class Stopwatch {
 public:
  Cost Read() const {
    const Cost now = Now();
    return {now.wall - start_.wall, now.user - start_.user, now.system - start_.system};
  }

 private:
  static Cost Now() {
    FILETIME start, end, kernel, user;
    GetProcessTimes(GetCurrentProcess(), &start, &end, &kernel, &user);
    const auto seconds = [](const FILETIME& time) {
      return double(uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime) / 1e7;
    };
    const auto wall = std::chrono::steady_clock::now().time_since_epoch();
    return {std::chrono::duration<double>(wall).count(), seconds(user), seconds(kernel)};
  }

  const Cost start_ = Now();
};

std::vector<std::wstring> ReadList(const std::wstring& path) {
  std::ifstream file{std::filesystem::path(path)};
  std::vector<std::wstring> paths;
  for (std::string line; std::getline(file, line);)
    if (!line.empty()) paths.push_back(std::filesystem::path(std::u8string(line.begin(), line.end())).wstring());
  return paths;
}

uint64_t BytesIn(const std::filesystem::path& folder) {
  uint64_t bytes = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    if (entry.is_regular_file()) bytes += entry.file_size();
  return bytes;
}

void Print(const Cost& cost, size_t files, uint64_t bytes) {
  PROCESS_MEMORY_COUNTERS memory{};
  memory.cb = sizeof memory;
  GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
  std::printf("seconds=%.3f user=%.3f system=%.3f files=%zu bytes=%llu peak_mb=%.1f\n", cost.wall, cost.user,
              cost.system, files, static_cast<unsigned long long>(bytes),
              double(memory.PeakWorkingSetSize) / (1 << 20));
}

int RunDialog(const Arguments& arguments) {
  std::wstring files;
  const std::vector<std::wstring> paths = ReadList(arguments[0]);
  for (const std::wstring& path : paths) files += path + L'\0';
  files += L'\0';
  std::filesystem::create_directories(arguments[1]);

  FILECONVERSIONDLGPARAMS params{};
  params.uStructSize = sizeof params;
  params.fileList = files.c_str();
  params.overwriteMode = OVERWRITE_REPLACE;
  params.uiFlags = 0x0003FFFE;
  lstrcpynW(params.destinationFolder, arguments[1].c_str(), ZVDLG_PATH_LENGTH);

  Cost cost;
  zvtest::ParentWindow parent;
  zvtest::DriveDialog([&] { return Z_DlgFileConversion(parent.hwnd(), &params); },
                      [&] {
                        const HWND dialog = zvtest::WaitForConversionDialog();
                        const std::wstring subtype = arguments[4] == L"-" ? L"" : arguments[4];
                        if (!zvtest::ChooseOutput(dialog, {arguments[2], std::stoi(arguments[3]), subtype}))
                          throw std::runtime_error("the dialog does not offer that format, depth and sub type");
                        zvtest::SetDestination(dialog, arguments[1]);
                        const int percent = std::stoi(arguments[5]);
                        if (percent != 100) zvtest::SetResizePercent(dialog, percent);
                        const Stopwatch watch;
                        const double milliseconds = zvtest::Convert(dialog, kPatience);
                        cost = watch.Read();
                        cost.wall = milliseconds / 1000;
                        zvtest::CloseConversionDialog(dialog);
                      });
  if (cost.wall < 0) return 1;
  Print(cost, paths.size(), BytesIn(arguments[1]));
  return 0;
}

// What the run's own row callbacks do with rows, less the reports: nothing on the way in, a copy on the way out.
int32_t ZV_CALL AcceptRows(FILEINFO*, BITMAPHANDLE*, uint8_t*, uint32_t, int32_t, int32_t, void*) { return SUCCESS; }

int32_t ZV_CALL CopyRows(BITMAPHANDLE* bitmap, uint8_t* buffer, int32_t first, int32_t count, void*) {
  for (int32_t row = first; row < first + count; ++row, buffer += bitmap->bytesPerLine)
    CopyBitmapRow(bitmap, buffer, row, bitmap->bytesPerLine);
  return SUCCESS;
}

bool ConvertBare(const std::wstring& path, const std::filesystem::path& target, int format, int depth, int quality,
                 int percent) {
  BITMAPHANDLE bitmap{};
  bitmap.uStructSize = sizeof bitmap;
  LOADFILEOPTION load{};
  GetDefaultLoadFileOption(&load, sizeof load);
  if (LoadImageFile(path.c_str(), &bitmap, sizeof bitmap, 0, ORDER_BGR_OR_GRAY, LOADFILE_ALLOCATE | LOADFILE_STORE,
                    &AcceptRows, nullptr, &load, nullptr) != SUCCESS)
    return false;
  int32_t result = SUCCESS;
  if (percent != 100)
    result = SizeBitmap(&bitmap, MulDiv(bitmap.width, percent, 100), MulDiv(bitmap.height, percent, 100), SIZE_BICUBIC);
  SAVEFILEOPTION option{};
  GetDefaultSaveFileOption(&option, sizeof option);
  if (result == SUCCESS)
    result = SaveFile(target.c_str(), &bitmap, format, depth, quality, SAVEFILE_ROWS_FROM_CALLBACK, &CopyRows, nullptr,
                      &option);
  FreeBitmap(&bitmap);
  return result == SUCCESS;
}

int RunBare(const Arguments& arguments) {
  const std::vector<std::wstring> paths = ReadList(arguments[0]);
  std::filesystem::create_directories(arguments[1]);
  const Stopwatch watch;
  for (const std::wstring& path : paths) {
    const auto target = std::filesystem::path(arguments[1]) / std::filesystem::path(path).stem();
    if (!ConvertBare(path, target, std::stoi(arguments[2]), std::stoi(arguments[3]), std::stoi(arguments[4]),
                     std::stoi(arguments[5])))
      return 1;
  }
  Print(watch.Read(), paths.size(), BytesIn(arguments[1]));
  return 0;
}

// Whether a label of the window shows the text.
bool ShowsText(HWND window, const std::wstring& text) {
  for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    wchar_t shown[MAX_PATH] = {};
    InternalGetWindowText(child, shown, MAX_PATH);
    if (text == shown) return true;
  }
  return false;
}

int RunAdd(const Arguments& arguments) {
  FILECONVERSIONDLGPARAMS params{};
  params.uStructSize = sizeof params;
  params.uiFlags = 0x0003FFFE;
  lstrcpynW(params.sourceFolder, arguments[0].c_str(), ZVDLG_PATH_LENGTH);

  Cost cost;
  size_t rows = 0;
  zvtest::ParentWindow parent;
  zvtest::DriveDialog(
      [&] { return Z_DlgFileConversion(parent.hwnd(), &params); },
      [&] {
        const HWND dialog = zvtest::WaitForConversionDialog();
        zvtest::Click(dialog, IDB_CONV_ADD_FOLDER);
        HWND browser = nullptr;
        zvtest::WaitUntil(
            [&] { return (browser = GetLastActivePopup(dialog)) != dialog && ShowsText(browser, arguments[0]); },
            "the folder browser");
        const Stopwatch watch;
        zvtest::Click(browser, IDOK);
        const HWND progress = zvtest::WaitForDialogWith(IDP_CONV_ADD);
        if (!zvtest::HoldsWithin(kPatience, [progress] { return !IsWindow(progress); }))
          throw zvtest::DriverTimeout("the folder was not added");
        cost = watch.Read();
        rows = size_t(zvtest::ListViewCount(dialog, IDL_CONV_FILES));
        zvtest::CloseConversionDialog(dialog);
      });
  if (cost.wall < 0) return 1;
  Print(cost, rows, BytesIn(arguments[0]));
  return 0;
}

int RunInfo(const Arguments& arguments) {
  size_t count = 0;
  const Stopwatch watch;
  for (const auto& entry : std::filesystem::directory_iterator(arguments[0])) {
    FILEINFO info{};
    info.uStructSize = sizeof info;
    count += GetFileInfo(entry.path().c_str(), &info, sizeof info, 1, nullptr) == SUCCESS;
  }
  Print(watch.Read(), count, BytesIn(arguments[0]));
  return 0;
}

}  // namespace

int main() {
  int count = 0;
  wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
  const Arguments arguments(words + std::min(count, 2), words + count);
  const std::wstring mode = count > 1 ? words[1] : L"";
  LocalFree(words);
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  if (mode == L"dialog" && arguments.size() == 6) return RunDialog(arguments);
  if (mode == L"bare" && arguments.size() == 6) return RunBare(arguments);
  if (mode == L"add" && arguments.size() == 1) return RunAdd(arguments);
  if (mode == L"info" && arguments.size() == 1) return RunInfo(arguments);
  std::fprintf(stderr, "usage: zvconversion_bench dialog|bare|add|info ARGUMENTS, see the head of its source\n");
  return 2;
}
