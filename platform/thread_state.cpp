#include "platform/thread_state.h"

ThreadState& ThreadState::Get() {
  static thread_local ThreadState state;
  return state;
}
