#include "preview/preview_geometry.h"

#include <algorithm>
#include <cstdint>

CRect FitPreview(CSize picture, const CRect& target) {
  const int64_t width = target.Width(), height = target.Height();
  int64_t fittedWidth = picture.cx, fittedHeight = picture.cy;
  if (fittedWidth * height > fittedHeight * width) {
    if (width < fittedWidth) {
      fittedHeight = fittedHeight * width / fittedWidth;
      fittedWidth = width;
    }
  } else if (height < fittedHeight) {
    fittedWidth = fittedWidth * height / fittedHeight;
    fittedHeight = height;
  }
  const int left = target.left + static_cast<int>((width - fittedWidth) / 2);
  const int top = target.top + static_cast<int>((height - fittedHeight) / 2);
  return {left + kPreviewFrame, top + kPreviewFrame, left + static_cast<int>(fittedWidth) - kPreviewFrame,
          top + static_cast<int>(fittedHeight) - kPreviewFrame};
}

int LimitPaneLeft(int left, int clientRight) {
  const int atMost = std::min(left, clientRight - kPaneRightMargin);
  return std::max(atMost, kPaneMinimumLeft);
}

int LimitDragPoint(int x, int clientRight) { return LimitPaneLeft(x, clientRight); }

CRect SplitterRectOf(const CRect& pane) {
  return {pane.left - kSplitterReach, pane.top, pane.left + kSplitterReach, pane.bottom};
}
