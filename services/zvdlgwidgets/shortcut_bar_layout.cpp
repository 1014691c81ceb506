#include "services/zvdlgwidgets/shortcut_bar_layout.h"

#include <algorithm>

namespace {

int AreaHeight(const ShortcutBarMetrics& metrics, int groupCount) {
  return std::max<int>(0, metrics.client.cy - groupCount * metrics.headerHeight);
}

}  // namespace

ShortcutBarLayout LayOutShortcutBar(const ShortcutBarMetrics& metrics, int groupCount, int expandedGroup, int itemCount,
                                    int scroll) {
  ShortcutBarLayout layout;
  const int width = metrics.client.cx;
  int top = 0;
  for (int group = 0; group < groupCount; ++group) {
    if (group == expandedGroup + 1) {
      top += AreaHeight(metrics, groupCount);
    }
    layout.headers.emplace_back(0, top, width, top + metrics.headerHeight);
    top += metrics.headerHeight;
  }
  if (expandedGroup < 0 || expandedGroup >= groupCount) {
    return layout;
  }
  const int areaTop = layout.headers[static_cast<size_t>(expandedGroup)].bottom;
  layout.itemArea = CRect(0, areaTop, width, areaTop + AreaHeight(metrics, groupCount));
  for (int item = 0; item < itemCount; ++item) {
    const int itemTop = areaTop - scroll + item * metrics.itemHeight;
    layout.items.emplace_back(0, itemTop, width, itemTop + metrics.itemHeight);
  }
  return layout;
}

int ScrollToShortcutItem(const ShortcutBarMetrics& metrics, int groupCount, int item, int itemCount, int scroll) {
  const int area = AreaHeight(metrics, groupCount);
  const int top = item * metrics.itemHeight;
  const int most = std::max(0, itemCount * metrics.itemHeight - area);
  const int lowest = std::min(top, most);
  const int highest = std::max(0, top + metrics.itemHeight - area);
  return std::clamp(scroll, std::min(highest, lowest), lowest);
}
