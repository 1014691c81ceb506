// CZVGeneral: small services that several dialogs share. No state.
#pragma once

#include <cstdint>
#include <vector>

class CZVGeneral {
 public:
  // 2.54 centimetres are one inch (international inch, 1959).
  static double CentimeterToInch(double centimeters);
  static double InchToCentimeter(double inches);
  // The single bits that are set among the lowest `count` bits of the mask, lowest first. They are sub type ids: the
  // catalogue numbers the sub types of a bit depth 1, 2, 4, 8 and so on, which is what GetFormatSubtypeInfo takes.
  static std::vector<int32_t> ConvertToFlagsArray(uint32_t mask, int count);
  // Handles the messages that wait for this thread, dialog keys included, and returns. A WM_QUIT is put back and ends
  // the call. A stream of messages without an end is left after a tenth of a second.
  static void WaitForAppIdle();
};
