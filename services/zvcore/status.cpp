#include <mutex>

#include "services/zvcore/zvcore.h"

namespace {

struct StatusChannel {
  STATUSCALLBACK function = nullptr;
  void* userData = nullptr;
};

std::mutex channelMutex;
StatusChannel channel;

}  // namespace

int32_t SetStatusCallback(STATUSCALLBACK function, void* userData, STATUSCALLBACK* oldFunction, void** oldUserData) {
  std::lock_guard lock(channelMutex);
  if (oldFunction) *oldFunction = channel.function;
  if (oldUserData) *oldUserData = channel.userData;
  channel = {function, userData};
  return SUCCESS;
}

int32_t ReportStatus(int32_t percent) {
  StatusChannel current;
  {
    std::lock_guard lock(channelMutex);
    current = channel;
  }
  // Called outside the lock: the function may pump messages and swap the channel itself.
  if (!current.function) return SUCCESS;
  return current.function(percent, current.userData) == SUCCESS ? SUCCESS : ERROR_USER_ABORT;
}
