#include "services/zvdlgutil/general.h"

#include <algorithm>

#include "platform/win_app.h"

namespace {

constexpr double kCentimetersPerInch = 2.54;
constexpr ULONGLONG kLongestWait = 100;  // milliseconds

}  // namespace

double CZVGeneral::CentimeterToInch(double centimeters) { return centimeters / kCentimetersPerInch; }

double CZVGeneral::InchToCentimeter(double inches) { return inches * kCentimetersPerInch; }

std::vector<int32_t> CZVGeneral::ConvertToFlagsArray(uint32_t mask, int count) {
  std::vector<int32_t> flags;
  for (int bit = 0; bit < std::min(count, 32); ++bit) {
    const uint32_t flag = 1u << bit;
    if (mask & flag) {
      flags.push_back(static_cast<int32_t>(flag));
    }
  }
  return flags;
}

void CZVGeneral::WaitForAppIdle() {
  const ULONGLONG start = ::GetTickCount64();
  MSG message;
  while (::PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE) && message.message != WM_QUIT) {
    AfxPumpMessage();
    if (::GetTickCount64() - start > kLongestWait) {
      return;
    }
  }
}
