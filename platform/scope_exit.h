// scope_exit runs a function when its scope ends, whichever way; release() calls it off. The function must not throw.
#pragma once

#include <utility>

template <class Function>
class scope_exit {
 public:
  explicit scope_exit(Function function) : function_(std::move(function)) {}
  scope_exit(const scope_exit&) = delete;
  scope_exit& operator=(const scope_exit&) = delete;
  ~scope_exit() {
    if (armed_) {
      function_();
    }
  }

  void release() { armed_ = false; }

 private:
  Function function_;
  bool armed_ = true;
};
