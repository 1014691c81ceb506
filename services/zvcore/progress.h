/* Reports the progress of one operation to the status channel, once a percent at most. */
#ifndef ZV_ZVCORE_PROGRESS_H
#define ZV_ZVCORE_PROGRESS_H

#include <cstdint>

#include "services/zvcore/zvcore.h"

namespace zvcore {

class Progress {
 public:
  explicit Progress(int64_t totalSteps) : total(totalSteps < 1 ? 1 : totalSteps) {}

  // `done` steps are complete. SUCCESS, or ERROR_USER_ABORT: then the operation ends at once.
  int32_t Reached(int64_t done) {
    const auto percent = static_cast<int32_t>(done * 100 / total);
    if (percent == reported) return SUCCESS;
    reported = percent;
    return ReportStatus(percent);
  }

 private:
  int64_t total;
  int32_t reported = -1;
};

}  // namespace zvcore

#endif
