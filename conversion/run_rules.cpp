#include "conversion/run_rules.h"

#include <utility>

void BuildConversionQueue(const std::vector<int>& formatRows, const std::vector<int>& fileRows,
                          CArray<CONVERSIONLISTITEM>& queue) {
  queue.RemoveAll();
  for (const int formatRow : formatRows) {
    for (const int fileRow : fileRows) {
      queue.Add({fileRow, formatRow});
    }
  }
}

int32_t OverwriteModeOfAnswer(int32_t answer) {
  switch (answer) {
    case ANSWER_REPLACE: return OVERWRITE_REPLACE;
    case ANSWER_RENAME: return OVERWRITE_RENAME;
    default: return OVERWRITE_SKIP;
  }
}

OverwriteDecision DecideOverwrite(int32_t mode, const CString& source, const CString& destination,
                                  const CString& freeName) {
  switch (mode) {
    case OVERWRITE_RENAME: return {!freeName.IsEmpty(), true};
    case OVERWRITE_REPLACE: return {true, source != destination};
    default: return {false, false};
  }
}

CString JoinDestinationPath(const CString& folder, const CString& name, const CString& extension) {
  const bool closed = !folder.IsEmpty() && folder[folder.GetLength() - 1] == L'\\';
  return folder + (closed ? L"" : L"\\") + name + L"." + extension;
}

int Percent(int part, int total) { return ::MulDiv(part, 100, total); }

bool ExchangesSides(int32_t viewPerspective) {
  return viewPerspective >= VIEW_LEFT_TOP && viewPerspective <= VIEW_LEFT_BOTTOM;
}

PixelSize ResizedSize(const CONVERSIONRESIZEOPTIONS& options, const BITMAPHANDLE& bitmap) {
  if (options.unit != RESIZE_UNIT_PERCENT) {
    return {options.width, options.height};
  }
  PixelSize shown = {bitmap.width, bitmap.height};
  if (ExchangesSides(bitmap.viewPerspective)) {
    std::swap(shown.width, shown.height);
  }
  return {::MulDiv(shown.width, options.width, 100), ::MulDiv(shown.height, options.height, 100)};
}

int32_t SizeMethod(int32_t method) {
  switch (method) {
    case 2: return SIZE_BILINEAR;
    case 4: return SIZE_BICUBIC;
    default: return SIZE_NEAREST;
  }
}

// A free angle brings in the fill colour even when it does not interpolate.
bool BlendsPixels(const CONVERSIONROTATEOPTIONS& rotate, const CONVERSIONRESIZEOPTIONS& resize) {
  constexpr int32_t kQuarterTurn = 9000;
  const bool resamples = resize.enabled && SizeMethod(resize.method) != SIZE_NEAREST;
  return resamples || rotate.angle % kQuarterTurn != 0;
}
