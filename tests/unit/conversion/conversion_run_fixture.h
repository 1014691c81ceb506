// What the tests of the conversion run share: a host that stands in for the dialog, folders with pictures, and one call that
// converts an entry and gives the log.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "conversion/conversion_run.h"
#include "conversion/run_rules.h"
#include "naming/naming_template_processor.h"
#include "naming/unique_name.h"
#include "services/zvdlgbase/zvdlgbase.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/file_bytes.h"
#include "tests/support/pictures.h"

namespace zvtest {

inline constexpr UINT kExtensionText = 60001;  // a text of the tests' own

class Host final : public CZVConversionHost {
 public:
  CString GetSourcePath(int row) override { return sources.at(row); }
  bool GetSourceOptions(int row, CONVERSIONFILEOPTIONS& result) override {
    result = options[row];
    return true;
  }
  const CONVERSIONFORMATITEM* GetFormatItem(int row) override {
    return row >= 0 && row < static_cast<int>(formats.size()) ? &formats[static_cast<size_t>(row)] : nullptr;
  }
  CString GetDestinationFolder() override { return folder; }
  CString ExpandName(const CString& name) override {
    if (onNaming) onNaming();
    return processor.ProcessTemplate(nameTemplate, name);
  }
  CString FindFreeName(const CString& destination) override {
    return renameFinds ? MakeUniqueName(destination, collision, &CZVConversionRun::FileExists) : CString();
  }
  int32_t AskOverwrite(const CString& destination) override {
    questions.push_back(destination.str());
    return answer;
  }
  void ReportDeletionFailure(const CString& source) override { undeleted.push_back(source.str()); }
  void MarkSourceDeleted(int row) override {
    deletedRows.push_back(row);
    if (onDeleted) onDeleted(row);
  }

  std::vector<CString> sources;
  std::map<int, CONVERSIONFILEOPTIONS> options;
  std::vector<CONVERSIONFORMATITEM> formats;
  CString folder;
  CString nameTemplate = L"<SRC>";
  CZVNamingTemplateProcessor processor;
  NAMINGTEMPLATESETTINGS collisionSettings;
  RENAMETEMPLATEDATA collision{0, 0, L"<SRC><NUM>", L"FileName", &collisionSettings};
  bool renameFinds = true;
  int32_t answer = ANSWER_ABORT;
  std::vector<std::wstring> questions;
  std::vector<std::wstring> undeleted;
  std::vector<int> deletedRows;
  std::function<void()> onNaming;          // the first that happens for a file
  std::function<void(int row)> onDeleted;  // the last
};

inline size_t FileCount(const std::wstring& folder) {
  size_t count = 0;
  WIN32_FIND_DATAW entry;
  const HANDLE search = ::FindFirstFileW((folder + L"\\*").c_str(), &entry);
  if (search != INVALID_HANDLE_VALUE) {
    do {
      count += (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) ? 0 : 1;
    } while (::FindNextFileW(search, &entry));
    ::FindClose(search);
  }
  return count;
}

class ConversionRun : public ::testing::Test {
 protected:
  void SetUp() override {
    ::SetDialogStringText(kExtensionText, L"bmp");
    host.folder = out.path().c_str();
    host.formats.resize(1);
    host.formats[0].extensionStringId = kExtensionText;
    host.formats[0].fileFormat = FMT_BMP;
    host.formats[0].bitsPerPixel = 24;
    ::GetDefaultSaveFileOption(&host.formats[0].saveOption, sizeof(SAVEFILEOPTION));
    ::GetDefaultJ2KOptions(&host.formats[0].j2kOption, sizeof(J2KSAVEOPTION));
  }

  std::wstring AddPicture(const std::wstring& name, int width = 40, int height = 20, int format = FMT_BMP,
                          int pages = 1) {
    const std::wstring path = in.File(name);
    EXPECT_TRUE(WritePicture(path, {width, height, format, pages}));
    host.sources.push_back(path.c_str());
    return path;
  }

  CArray<LOGREPORTITEM>& Convert(int row = 0, int formatRow = 0) {
    CZVConversionRun run(host, settings);
    run.SetStatus(status ? &ReportStatus : nullptr, this);
    EXPECT_EQ(1, run.ConvertQueueItem(row, formatRow, log));
    return log;
  }
  int LastStatus() { return log[log.GetUpperBound()].status; }

  static FILEINFO Info(const std::wstring& path) {
    FILEINFO info = {};
    info.uStructSize = sizeof info;
    EXPECT_EQ(SUCCESS, GetFileInfo(path.c_str(), &info, sizeof info, 1, nullptr));
    return info;
  }
  static bool Exists(const std::wstring& path) { return CZVConversionRun::FileExists(path.c_str()); }
  std::wstring Out(const std::wstring& name) const { return out.File(name); }

  static int32_t ZV_CALL ReportStatus(int32_t percent, void* test) {
    return static_cast<ConversionRun*>(test)->status(percent);
  }

  TemporaryFolder in;
  TemporaryFolder out;
  Host host;
  ConversionSettings settings;
  CArray<LOGREPORTITEM> log;
  std::function<int32_t(int32_t)> status;
};

}  // namespace zvtest
