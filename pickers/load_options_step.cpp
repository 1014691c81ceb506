#include "pickers/load_options_step.h"

#include <new>

namespace {

struct FlagPair {
  uint32_t dialogFlag;
  uint32_t pageFlag;
};

constexpr FlagPair kFlagPairs[] = {
    {DLG_OPEN_LOADPAGE_PROGRESSIVE, LOADPAGE_PROGRESSIVE},
    {DLG_OPEN_SHOW_PAGE_CONTROLS, LOADPAGE_PAGENUMBER},
    {DLG_OPEN_LOADPAGE_ROTATED, LOADPAGE_ROTATED},
    {DLG_OPEN_LOADPAGE_COMPRESSED, LOADPAGE_COMPRESSED},
    {DLG_OPEN_LOADPAGE_RASTER, LOADPAGE_RASTER},
    {DLG_OPEN_LOADPAGE_PDF, LOADPAGE_PDF},
    {DLG_OPEN_LOADPAGE_VECTOR, LOADPAGE_VECTOR},
    {DLG_OPEN_LOADPAGE_XPS, LOADPAGE_XPS},
    {DLG_OPEN_LOADPAGE_XLS, LOADPAGE_XLS},
    {DLG_OPEN_LOADPAGE_RASTERIZEDOC, LOADPAGE_RASTERIZEDOC},
};

void Fill(FILELOADOPTIONSDLGDATA& data, const LoadOptionsRequest& request, const std::vector<OPENDLGFILEDATA>& list) {
  for (const OPENDLGFILEDATA& file : list) {
    data.files.Add(file);
  }
  data.defaultPage = request.page;
  data.defaultXDpi = request.xDpi;
  data.defaultYDpi = request.yDpi;
  data.pageHelp = request.dialogFlags & DLG_OPEN_CONTEXT_HELP;
  data.pageFlags = LoadPageFlags(request.dialogFlags);
}

void FreeBlocks(FILELOADOPTIONSDLGDATA& data) {
  for (const OPENDLGFILEDATA& file : data.files) {
    ::GlobalFree(file.fileInfo);
    ::GlobalFree(file.formatOptions);
  }
}

}  // namespace

uint32_t LoadPageFlags(uint32_t dialogFlags) {
  uint32_t pageFlags = 0;
  for (const FlagPair& pair : kFlagPairs) {
    if (dialogFlags & pair.dialogFlag) {
      pageFlags |= pair.pageFlag;
    }
  }
  return pageFlags;
}

LoadOptionsOutcome RunLoadOptions(const LoadOptionsFrameMaker& makeFrame, const LoadOptionsRequest& request,
                                  std::vector<OPENDLGFILEDATA>& list) {
  const std::unique_ptr<FILELOADOPTIONSDLGDATA> data(new (std::nothrow) FILELOADOPTIONSDLGDATA);
  const std::unique_ptr<LoadOptionsFrame> frame = makeFrame();
  if (!data || !frame) {
    return {AfterLoadOptions::kEnd, ERROR_OUT_OF_MEMORY};
  }
  Fill(*data, request, list);
  if (frame->SetOptions(data.get()) != SUCCESS) {
    return {AfterLoadOptions::kStayOpen, SUCCESS};
  }
  const INT_PTR answer = frame->DoModal();
  if (answer == IDOK && !data->files.IsEmpty()) {
    list.assign(data->files.begin(), data->files.end());
    return {AfterLoadOptions::kReadFiles, SUCCESS};
  }
  FreeBlocks(*data);
  if (answer == IDOK || answer == IDCANCEL) {
    return {AfterLoadOptions::kStayOpen, SUCCESS};
  }
  return {AfterLoadOptions::kEnd, ERROR_DIALOG_FAILED};
}
