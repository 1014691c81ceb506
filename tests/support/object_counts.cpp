#include "tests/support/object_counts.h"

#include <windows.h>

#include <winternl.h>

#include <cstddef>
#include <cstdint>

namespace zvtest {

namespace {

// --- GDI under Wine: the table that the process environment block points to ---

constexpr size_t kGdiTablePlace = 0xf8;  // in the block of a 64-bit process
constexpr uint32_t kGdiTableEntries = 0x4000;

#pragma pack(push, 1)
struct GdiTableEntry {
  uint64_t object;
  uint32_t owner;
  uint16_t upperHalf;  // of the handle; the lower half is the entry's index
  uint16_t kind;
  uint64_t userData;
};
#pragma pack(pop)
static_assert(sizeof(GdiTableEntry) == 24);
static_assert(offsetof(GdiTableEntry, upperHalf) == 12);

const GdiTableEntry* GdiTable() {
  PROCESS_BASIC_INFORMATION process = {};
  if (::NtQueryInformationProcess(::GetCurrentProcess(), ProcessBasicInformation, &process, sizeof(process), nullptr)) {
    return nullptr;
  }
  const auto* block = reinterpret_cast<const uint8_t*>(process.PebBaseAddress);
  return *reinterpret_cast<const GdiTableEntry* const*>(block + kGdiTablePlace);
}

std::string GdiKindName(DWORD type) {
  switch (type) {
    case OBJ_PEN:
    case OBJ_EXTPEN: return "pen";
    case OBJ_BRUSH: return "brush";
    case OBJ_DC:
    case OBJ_MEMDC: return "device context";
    case OBJ_PAL: return "palette";
    case OBJ_FONT: return "font";
    case OBJ_BITMAP: return "bitmap";
    case OBJ_REGION: return "region";
    default: return "GDI object of type " + std::to_string(type);
  }
}

ObjectCounts CountGdiTable() {
  ObjectCounts counts;
  const GdiTableEntry* const table = GdiTable();
  if (!table) return counts;
  for (uint32_t index = 0; index < kGdiTableEntries; ++index) {
    const auto handle = static_cast<uintptr_t>(table[index].upperHalf) << 16 | index;
    const DWORD type = table[index].object ? ::GetObjectType(reinterpret_cast<HGDIOBJ>(handle)) : 0;
    if (type) ++counts[GdiKindName(type)];
  }
  return counts;
}

// --- USER under Wine: the lower half of a handle is enough to name its object ---

constexpr uintptr_t kFirstUserHandle = 0x20;
constexpr uintptr_t kLastUserHandle = 0xfffe;
constexpr uintptr_t kUserHandleStep = 2;
// Handles that were freed are given again before new ones, and to ask for each takes long: behind so many that name nothing, of
// this process or another, there are no more.
constexpr int kEnoughUnused = 4096;
constexpr const char* kElsewhere = "window of another process";

template <typename Handle>
Handle HandleOf(uintptr_t value) {
  return reinterpret_cast<Handle>(value);
}

// 0 when the handle is no window's.
DWORD ProcessOfWindow(uintptr_t value) {
  DWORD process = 0;
  ::GetWindowThreadProcessId(HandleOf<HWND>(value), &process);
  return process;
}

bool IsIconOrCursor(uintptr_t value) {
  ICONINFO info = {};
  if (!::GetIconInfo(HandleOf<HICON>(value), &info)) return false;
  ::DeleteObject(info.hbmColor);
  ::DeleteObject(info.hbmMask);
  return true;
}

// What the handle names; null for nothing.
const char* UserKind(uintptr_t value) {
  if (const DWORD process = ProcessOfWindow(value)) {
    return process == ::GetCurrentProcessId() ? "window" : kElsewhere;
  }
  if (::IsMenu(HandleOf<HMENU>(value))) return "menu";
  if (IsIconOrCursor(value)) return "icon or cursor";
  return ::CopyAcceleratorTableW(HandleOf<HACCEL>(value), nullptr, 0) > 0 ? "accelerator table" : nullptr;
}

ObjectCounts ProbeUserHandles() {
  ObjectCounts counts;
  int unused = 0;
  for (uintptr_t value = kFirstUserHandle; value <= kLastUserHandle && unused < kEnoughUnused;
       value += kUserHandleStep) {
    const char* const kind = UserKind(value);
    unused = kind ? 0 : unused + 1;
    if (kind && kind != kElsewhere) ++counts[kind];
  }
  return counts;
}

bool SystemCounts() {
  const HMODULE system = ::GetModuleHandleW(L"ntdll.dll");
  return !::GetProcAddress(system, "wine_get_version");
}

ObjectCounts AskSystem(DWORD kind, const char* name) {
  return {{name, static_cast<int>(::GetGuiResources(::GetCurrentProcess(), kind))}};
}

}  // namespace

ObjectCounts CountGdiObjects() { return SystemCounts() ? AskSystem(GR_GDIOBJECTS, "GDI object") : CountGdiTable(); }

ObjectCounts CountUserObjects() {
  return SystemCounts() ? AskSystem(GR_USEROBJECTS, "USER object") : ProbeUserHandles();
}

int Total(const ObjectCounts& counts) {
  int total = 0;
  for (const auto& [kind, count] : counts) total += count;
  return total;
}

std::string Growth(const ObjectCounts& before, const ObjectCounts& after) {
  std::string text;
  for (const auto& [kind, count] : after) {
    const auto old = before.find(kind);
    const int more = count - (old == before.end() ? 0 : old->second);
    if (more > 0) text += (text.empty() ? "" : ", ") + std::to_string(more) + " x " + kind;
  }
  return text;
}

}  // namespace zvtest
