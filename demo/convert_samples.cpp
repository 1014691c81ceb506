// Converts image files through the real conversion dialog without anybody at the keyboard, and takes a picture of the dialog
// on the way: what ./run.sh shows on a machine without a display.
//
//   zvconvert_samples DESTINATION FILE...
//
// Every file is converted to PNG and to JPEG. The exit code is 0 when each run wrote as many files as it was given.
#include <windows.h>
#include <shellapi.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "include/zvfiledlg.h"
#include "tests/support/conversion_driver.h"

namespace {

constexpr unsigned kPatience = 600'000;  // milliseconds for one run

size_t CountFiles(const std::filesystem::path& folder) {
  size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) count += entry.is_regular_file();
  return count;
}

std::wstring FileList(wchar_t** paths, int count) {
  std::wstring list;
  for (int i = 0; i < count; ++i) list += std::filesystem::absolute(paths[i]).wstring() + L'\0';
  return list + L'\0';
}

bool ConvertTo(const std::wstring& format, const std::filesystem::path& destination, const std::wstring& files) {
  std::filesystem::create_directories(destination);
  FILECONVERSIONDLGPARAMS params{};
  params.uStructSize = sizeof params;
  params.fileList = files.c_str();
  params.overwriteMode = OVERWRITE_RENAME;
  params.uiFlags = 0x0003FFFE;
  lstrcpynW(params.destinationFolder, destination.c_str(), ZVDLG_PATH_LENGTH);

  size_t rows = 0;
  double milliseconds = 0;
  zvtest::ParentWindow parent;
  const int32_t result = zvtest::DriveDialog([&] { return Z_DlgFileConversion(parent.hwnd(), &params); },
                                             [&] {
                                               const HWND dialog = zvtest::WaitForConversionDialog();
                                               rows = size_t(zvtest::ListViewCount(dialog, 5308));
                                               zvtest::SaveScreenshot(dialog, L"conversion_" + format);
                                               if (zvtest::ChooseOutput(dialog, {format, 0, L""})) {
                                                 zvtest::SetDestination(dialog, destination);
                                                 milliseconds = zvtest::Convert(dialog, kPatience);
                                               }
                                               zvtest::CloseConversionDialog(dialog);
                                             });
  const size_t written = CountFiles(destination);
  std::printf("%ls: %zu files of the list, %zu written to %ls in %.1f s\n", format.c_str(), rows, written,
              destination.c_str(), milliseconds / 1000);
  return result == SUCCESS_DLG_CLOSE && rows > 0 && written >= rows;
}

}  // namespace

int main() {
  int count = 0;
  wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  if (!arguments || count < 3) {
    std::fprintf(stderr, "usage: zvconvert_samples DESTINATION FILE...\n");
    return 2;
  }
  const std::filesystem::path destination = std::filesystem::absolute(arguments[1]);
  const std::wstring files = FileList(arguments + 2, count - 2);
  LocalFree(arguments);

  bool good = true;
  for (const wchar_t* format : {L"PNG", L"JPEG"}) good = ConvertTo(format, destination / format, files) && good;
  return good ? 0 : 1;
}
