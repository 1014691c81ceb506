// What the framework keeps for a thread: the module state in force, and the temporary wrappers that FromHandle makes
// for handles which belong to nobody here. A temporary never owns its handle. It lives until the thread leaves its
// outermost module context (or ends), so a pointer to one must not be kept beyond a call of the library.
#pragma once

#include <map>
#include <memory>
#include <typeindex>
#include <utility>

#include "platform/module_context.h"
#include "platform/object.h"

struct ThreadState {
  static ThreadState& Get();

  // The temporary of class Wrapper for `handle`; `release` takes the handle out of it before it is deleted.
  template <class Wrapper, class Handle, class Bind>
  Wrapper* Temporary(Handle handle, Bind bind) {
    auto& slot = temporaries[{std::type_index(typeid(Wrapper)), handle}];
    if (!slot) {
      auto wrapper = std::make_unique<TemporaryOf<Wrapper>>();
      bind(wrapper->object, handle);
      slot = std::move(wrapper);
    }
    return &static_cast<TemporaryOf<Wrapper>&>(*slot).object;
  }

  struct TemporaryBase {
    virtual ~TemporaryBase() = default;
  };
  template <class Wrapper>
  struct TemporaryOf : TemporaryBase {
    ~TemporaryOf() override { object.ReleaseTemporary(); }
    Wrapper object;
  };

  AFX_MODULE_STATE* moduleState = nullptr;
  int contextDepth = 0;
  std::map<std::pair<std::type_index, const void*>, std::unique_ptr<TemporaryBase>> temporaries;
};
