// Where things stand in and around the preview pane: arithmetic without windows. All measures are pixels.
#pragma once

#include "platform/geometry.h"

// Room between the picture and the edge of the space that it was fitted to, so that the pane's frame stays visible.
inline constexpr int kPreviewFrame = 3;

// A picture of that size in the target: reduced to fit, never enlarged, centred, without the frame's room.
CRect FitPreview(CSize picture, const CRect& target);

// The pane's left edge comes no closer to the dialog's left than this, nor closer to its right than kPaneRightMargin.
inline constexpr int kPaneMinimumLeft = 170;
inline constexpr int kPaneRightMargin = 25;
// The splitter is caught this far to both sides of the pane's left edge, and a drag keeps the edge this far to the left of
// the pointer.
inline constexpr int kSplitterReach = 5;

int LimitPaneLeft(int left, int clientRight);
// Where the pointer counts in a drag.
int LimitDragPoint(int x, int clientRight);
CRect SplitterRectOf(const CRect& pane);
