// The collection classes in one include: CArray and the plain arrays, CList, CMap.
#pragma once

#include "platform/array.h"
#include "platform/list.h"
#include "platform/map.h"
