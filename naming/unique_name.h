// The search for a free file name when a destination is taken.
#pragma once

#include <functional>

#include "naming/naming_settings.h"

// Expands the collision template for the name of `path`, with counters that start afresh, until `exists` says no to the
// path made with it. Folder and extension stay those of `path`, and the name is always made from `path`, never from an
// earlier candidate. Empty when `path` is empty or not taken. There is no limit to the attempts: a template that gives the
// same name each time goes on for as long as that name is taken.
CString MakeUniqueName(const CString& path, const RENAMETEMPLATEDATA& collision,
                       const std::function<bool(const CString& candidate)>& exists);
