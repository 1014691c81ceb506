// The decisions and the arithmetic of a conversion run that need neither a window nor a file.
#pragma once

#include <vector>

#include "conversion/records.h"

// A destination path of this many characters or more is refused.
inline constexpr int kDestinationPathLimit = 260;

// Every file for every format: all files through the first format, then all through the next.
void BuildConversionQueue(const std::vector<int>& formatRows, const std::vector<int>& fileRows,
                          CArray<CONVERSIONLISTITEM>& queue);

// Answers of the overwrite question, in the numbers of its buttons.
enum OverwriteAnswer : int32_t { ANSWER_REPLACE = 0, ANSWER_RENAME = 1, ANSWER_SKIP = 2, ANSWER_ABORT = 3 };

// The overwrite mode that an answer stands for. Not for ANSWER_ABORT.
int32_t OverwriteModeOfAnswer(int32_t answer);

struct OverwriteDecision {
  bool goAhead;
  bool mayDeleteSource;
};

// What to do about a destination that exists. mode is the mode in effect, never OVERWRITE_ASK; freeName is the path that
// OVERWRITE_RENAME found, empty when there is none.
OverwriteDecision DecideOverwrite(int32_t mode, const CString& source, const CString& destination,
                                  const CString& freeName);

// folder + name + "." + extension; the folder gets its closing backslash.
CString JoinDestinationPath(const CString& folder, const CString& name, const CString& extension);

// Whole percent of total, rounded to the nearest; -1 when total is 0.
int Percent(int part, int total);
// The run reports only every second percent, which halves the price of pumping messages.
constexpr bool IsReportedPercent(int percent) { return percent % 2 == 0; }

struct PixelSize {
  int width;
  int height;
};
// Whether the picture as shown has width and height of the stored rows exchanged.
bool ExchangesSides(int32_t viewPerspective);
// The size that the resize options give a bitmap, in pixels as shown.
PixelSize ResizedSize(const CONVERSIONRESIZEOPTIONS& options, const BITMAPHANDLE& bitmap);
// Whether the transforms make colours that the image did not have.
bool BlendsPixels(const CONVERSIONROTATEOPTIONS& rotate, const CONVERSIONRESIZEOPTIONS& resize);
// The SizeBitmap method for a method value of the resize options.
int32_t SizeMethod(int32_t method);
