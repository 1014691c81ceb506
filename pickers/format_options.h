// The load settings that go with an opened file: one record a class of formats, filled from the settings that are in force
// for the whole process. Nothing is changed here.
#pragma once

#include <cstdint>

// A file's class is the first whose predicate in the dialog kernel answers true, in this order.
enum class FormatClass { kVectorView, kPdf, kVectorBackground, kVectorPen, kDpiPair, kLoadSize, kXps, kXls, kNone };

FormatClass ClassOfFormat(int32_t format);

// Gives a new block of GlobalAlloc in `options`, or null for a class without a record. False when memory runs out.
bool MakeFormatOptions(int32_t format, void** options);
