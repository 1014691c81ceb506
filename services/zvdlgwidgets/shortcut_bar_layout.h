// Where the headers and items of a shortcut bar stand. No window in it; lengths are pixels of the bar's client area.
#pragma once

#include <vector>

#include "platform/geometry.h"

struct ShortcutBarMetrics {
  CSize client;
  int headerHeight = 0;
  int itemHeight = 0;
};

struct ShortcutBarLayout {
  std::vector<CRect> headers;  // one a group; those behind the expanded group stand at the bottom
  CRect itemArea;              // between the headers
  std::vector<CRect> items;    // of the expanded group, scrolled; they may lie outside the area
};

// Items of the expanded group start at the top of their area, `scroll` pixels further up.
ShortcutBarLayout LayOutShortcutBar(const ShortcutBarMetrics& metrics, int groupCount, int expandedGroup, int itemCount,
                                    int scroll);
// The scroll position nearest to `scroll` at which the item lies inside the area.
int ScrollToShortcutItem(const ShortcutBarMetrics& metrics, int groupCount, int item, int itemCount, int scroll);
