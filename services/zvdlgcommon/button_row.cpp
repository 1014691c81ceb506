#include "services/zvdlgcommon/button_row.h"

#include <algorithm>
#include <numeric>

namespace {
LONG Width(const RECT& rectangle) { return rectangle.right - rectangle.left; }
}  // namespace

void CentreButtonRow(std::span<RECT> buttons, int clientWidth) {
  if (buttons.empty()) {
    return;
  }
  std::vector<RECT*> row;
  for (RECT& button : buttons) {
    row.push_back(&button);
  }
  std::ranges::sort(row, {}, [](const RECT* button) { return button->left; });
  const LONG gap = row.size() > 1 ? row[1]->left - row[0]->right : 0;
  const LONG widths = std::accumulate(row.begin(), row.end(), LONG{0},
                                      [](LONG sum, const RECT* button) { return sum + Width(*button); });
  LONG left = (clientWidth - widths - gap * static_cast<LONG>(row.size() - 1)) / 2;
  for (RECT* button : row) {
    const LONG width = Width(*button);
    button->left = left;
    button->right = left + width;
    left += width + gap;
  }
}

bool IsSameRow(const RECT& first, const RECT& second) {
  const LONG shared = std::min(first.bottom, second.bottom) - std::max(first.top, second.top);
  const LONG lower = std::min(first.bottom - first.top, second.bottom - second.top);
  return shared * 2 > lower;
}
