// Precompiled header of targets with windows: target_precompile_headers(name PRIVATE
// ${CMAKE_SOURCE_DIR}/platform/pch.h)
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/win32.h"
