// The handle of this DLL, to find its resources by.
#pragma once

#include <windows.h>

HINSTANCE KernelModule();
