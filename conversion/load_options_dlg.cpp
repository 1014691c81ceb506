#include "conversion/load_options_dlg.h"

#include <utility>

#include "conversion/page_list.h"
#include "resources/conversion_tools_ids.h"
#include "services/zvdlgbase/string_ids.h"

namespace {
constexpr UINT kHelpNumber = 106;
constexpr wchar_t kFirstPage[] = L"1";
}  // namespace

BEGIN_MESSAGE_MAP(CZVFileConversionDlgLoadOptionsDlg, CZVBaseDialog)
  ON_BN_CLICKED(IDX_PAGES_ALL, OnAllPages)
  ON_BN_CLICKED(IDX_PAGES_LIST, OnPageList)
END_MESSAGE_MAP()

CZVFileConversionDlgLoadOptionsDlg::CZVFileConversionDlgLoadOptionsDlg(CWnd* parent)
    : CZVBaseDialog(IDD_PAGES, parent, kHelpNumber) {
  LOADFILEOPTION defaults{};
  GetDefaultLoadFileOption(&defaults, sizeof(defaults));
  options_.loadXResolution = defaults.xResolution;
  options_.loadYResolution = defaults.yResolution;
  options_.loadFlags = defaults.flags;
  options_.loadPasses = defaults.passes;
  options_.loadReserved = defaults.reserved24;
  options_.loadFilePosition = defaults.filePosition;
  options_.pageCount = 1;
}

CZVFileConversionDlgLoadOptionsDlg::~CZVFileConversionDlgLoadOptionsDlg() { FreePages(options_); }

int32_t CZVFileConversionDlgLoadOptionsDlg::SetOptions(const CONVERSIONFILEOPTIONS& options) {
  FreePages(options_);
  options_ = options;
  options_.pages = nullptr;
  usePageList_ = options.allPages != 0;
  SetHelpCallback(options.helpCallback);
  SetHelpCallBackUserData(options.helpUserData);
  return SUCCESS;
}

int32_t CZVFileConversionDlgLoadOptionsDlg::GetOptions(CONVERSIONFILEOPTIONS* options) {
  if (!options) return ERROR_BAD_ARGUMENT;
  const int32_t allPages = options->allPages;
  *options = options_;
  options->allPages = allPages;
  options_.pages = nullptr;
  return SUCCESS;
}

BOOL CZVFileConversionDlgLoadOptionsDlg::OnInitDialog() {
  CZVBaseDialog::OnInitDialog();
  if (contextHelp_) AddContextHelpStyle();
  pageEdit_.SetWindowText(kFirstPage);
  CheckRadioButton(IDX_PAGES_ALL, IDX_PAGES_LIST, usePageList_ ? IDX_PAGES_LIST : IDX_PAGES_ALL);
  ApplyChoice(usePageList_);
  return TRUE;
}

void CZVFileConversionDlgLoadOptionsDlg::SetDialogStrings() {
  CZVBaseDialog::SetDialogStrings();
  SetWindowText(GetDlgString(IDS_PAGES_TITLE));
  SetControlString(IDG_PAGES, IDS_PAGES_GROUP);
  SetControlString(IDX_PAGES_ALL, IDS_PAGES_ALL);
  SetControlString(IDX_PAGES_LIST, IDS_PAGES_LIST);
  SetControlString(IDT_PAGES_HINT, IDS_PAGES_HINT);
}

void CZVFileConversionDlgLoadOptionsDlg::DoDataExchange(CDataExchange* exchange) {
  CZVBaseDialog::DoDataExchange(exchange);
  DDX_Control(exchange, IDE_PAGES_LIST, pageEdit_);
}

void CZVFileConversionDlgLoadOptionsDlg::OnAllPages() { ApplyChoice(false); }

void CZVFileConversionDlgLoadOptionsDlg::OnPageList() { ApplyChoice(true); }

void CZVFileConversionDlgLoadOptionsDlg::ApplyChoice(bool usePageList) {
  usePageList_ = usePageList;
  pageEdit_.EnableWindow(usePageList);
}

void CZVFileConversionDlgLoadOptionsDlg::OnOK() {
  FreePages(options_);
  if (usePageList_) {
    CString text;
    pageEdit_.GetWindowText(text);
    std::vector<int32_t> pages;
    if (!ParsePageList(text, pages)) {
      MessageBox(GetDlgString(IDS_PAGES_BAD_LIST_TEXT), GetDlgString(IDS_PAGES_BAD_LIST_CAPTION),
                 MB_OK | MB_ICONEXCLAMATION);
      pageEdit_.SetFocus();
      pageEdit_.SetSel(0, -1);
      return;
    }
    AssignPages(options_, pages);
  }
  CZVBaseDialog::OnOK();
}
