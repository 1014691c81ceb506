// Converts image files through the batch conversion dialog as a script tells, so that independent programs can judge what the
// real export writes. Reads commands from a file, one a line, fields between tabs, text in UTF-8; answers each with one line:
// the result code of the export, then the number of lines that the run's log report shows as done.
//
//   convert FOLDER FORMAT DEPTH SUBTYPE ANGLE WIDTH HEIGHT FILE...
//
// FORMAT and SUBTYPE are beginnings of the names in the dialog's lists; "-" keeps the dialog's choice. ANGLE is what a user
// types into the rotate dialog (with bicubic interpolation and a canvas that grows), "0" to leave it; WIDTH and HEIGHT are
// percent, 100 to leave them.
#include <windows.h>

#include <objbase.h>
#include <shellapi.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "include/zvfiledlg.h"
#include "resources/conversion_ids.h"
#include "resources/conversion_tools_ids.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgutil/dialog_string.h"
#include "tests/support/conversion_driver.h"

namespace {

using Fields = std::vector<std::wstring>;

constexpr uint32_t kOfferEverything = 0x0003FFFE;
constexpr int kPercent = 1;
constexpr int kBestMethod = 2;

Fields FieldsOf(const std::string& line) {
  Fields fields;
  std::istringstream parts(line);
  for (std::string field; std::getline(parts, field, '\t');)
    fields.push_back(std::filesystem::path(std::u8string(field.begin(), field.end())).wstring());
  return fields;
}

void SetRotation(HWND dialog, const std::wstring& angle) {
  zvtest::Click(dialog, IDB_CONV_ROTATE);
  const HWND box = zvtest::WaitForDialogWith(IDE_ROTATE_ANGLE);
  zvtest::SetText(box, IDE_ROTATE_ANGLE, angle);
  zvtest::SelectCombo(box, IDC_ROTATE_INTERPOLATION, kBestMethod);
  zvtest::Check(box, IDX_ROTATE_RESIZE, true);
  zvtest::Click(box, IDOK);
  zvtest::WaitUntilClosed(box);
}

void SetSize(HWND dialog, const std::wstring& width, const std::wstring& height) {
  zvtest::Click(dialog, IDB_CONV_RESIZE);
  const HWND box = zvtest::WaitForDialogWith(IDX_RESIZE_ENABLE);
  zvtest::Check(box, IDX_RESIZE_ENABLE, true);
  zvtest::SelectCombo(box, IDC_RESIZE_UNIT, kPercent);
  zvtest::SetText(box, IDC_RESIZE_WIDTH, width);
  zvtest::SetText(box, IDC_RESIZE_HEIGHT, height);
  zvtest::SelectCombo(box, IDC_RESIZE_METHOD, kBestMethod);
  zvtest::Click(box, IDOK);
  zvtest::WaitUntilClosed(box);
}

// Converts and reads the log report that opens then.
int ConvertAndCount(HWND dialog) {
  zvtest::Click(dialog, IDB_CONV_CONVERT);
  constexpr DWORD kRunPatience = 300'000;
  const bool shown =
      zvtest::HoldsWithin(kRunPatience, [] { return zvtest::FindDialogTitled(L"Conversion Log-Report ") != nullptr; });
  if (!shown) throw zvtest::DriverTimeout("no log report");
  const HWND log = zvtest::WaitForDialogWith(IDL_LOG);
  const std::wstring done = LoadDialogString(IDS_LOG_SUCCEEDED).str();
  int count = 0;
  for (int row = 0; row < zvtest::ListViewCount(log, IDL_LOG); ++row)
    count += zvtest::ListViewText(log, IDL_LOG, row, 0) == done;
  zvtest::Click(log, IDOK);
  zvtest::WaitUntilClosed(log);
  return count;
}

int32_t Convert(const Fields& fields, std::ostream& answer) {
  std::wstring files;
  for (size_t i = 8; i < fields.size(); ++i) files += fields[i] + L'\0';
  files += L'\0';
  std::filesystem::create_directories(fields.at(1));
  FILECONVERSIONDLGPARAMS params{};
  params.uStructSize = sizeof params;
  params.fileList = files.c_str();
  params.overwriteMode = OVERWRITE_REPLACE;
  params.logReport = 1;
  params.uiFlags = kOfferEverything;
  lstrcpynW(params.destinationFolder, fields[1].c_str(), ZVDLG_PATH_LENGTH);
  const std::wstring subtype = fields[4] == L"-" ? std::wstring() : fields[4];
  int done = -1;
  zvtest::ParentWindow parent;
  const int32_t result =
      zvtest::DriveDialog([&] { return Z_DlgFileConversion(parent.hwnd(), &params); },
                          [&] {
                            const HWND dialog = zvtest::WaitForConversionDialog();
                            if (!zvtest::ChooseOutput(dialog, {fields[2], std::stoi(fields[3]), subtype}))
                              throw std::runtime_error("the dialog does not offer that format, depth and sub type");
                            if (fields[5] != L"0") SetRotation(dialog, fields[5]);
                            if (fields[6] != L"100" || fields[7] != L"100") SetSize(dialog, fields[6], fields[7]);
                            done = ConvertAndCount(dialog);
                            zvtest::CloseConversionDialog(dialog);
                          });
  answer << done;
  return result;
}

int RunScript(const wchar_t* path) {
  std::ifstream commands(std::filesystem::path(path), std::ios::binary);
  if (!commands) {
    std::cerr << "cannot read the commands\n";
    return 2;
  }
  for (std::string line; std::getline(commands, line);) {
    const Fields fields = FieldsOf(line);
    std::ostringstream answer;
    const bool good = fields.size() > 8 && fields[0] == L"convert";
    const int32_t result = good ? Convert(fields, answer) : ERROR_BAD_ARGUMENT;
    std::cout << result << '\t' << answer.str() << std::endl;
  }
  return 0;
}

}  // namespace

int main() {
  int count = 0;
  wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
  if (!words || count != 2) {
    std::cerr << "usage: zv_convert_tool COMMANDS\n";
    return 2;
  }
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const int result = RunScript(words[1]);
  LocalFree(words);
  CoUninitialize();
  return result;
}
