// A module in the place of the colour library that notes how it is called and answers as a test wants. Built a second time
// without one of the six functions. Load it by its full path before the dialog looks for its name.
#include <string>

#include "services/zvcolor/zvcolor.h"

namespace {

std::wstring calls;
int32_t answer = SUCCESS;
uint8_t content;

void Note(const std::wstring& call) { calls += (calls.empty() ? L"" : L" ") + call; }
const wchar_t* Holds(const ICCPROFILEDATA* profile) { return profile->data ? L"(full)" : L"(empty)"; }
int32_t Fill(ICCPROFILEDATA* profile) {
  if (answer == SUCCESS) {
    profile->dataSize = 1;
    profile->data = &content;
  }
  return answer;
}

}  // namespace

extern "C" {

__declspec(dllexport) const wchar_t* StandInCalls() { return calls.c_str(); }
// Forgets the calls; loads and saves answer `code` from now on.
__declspec(dllexport) void StandInReset(int32_t code) {
  calls.clear();
  answer = code;
}

int32_t ZV_CALL Z_InitICCProfile(ICCPROFILEDATA* profile, uint32_t recordSize) {
  Note(L"init" + std::to_wstring(recordSize));
  *profile = {};
  profile->uStructSize = sizeof(*profile);
  return SUCCESS;
}
int32_t ZV_CALL Z_FreeICCProfile(ICCPROFILEDATA* profile) {
  Note(std::wstring(L"free") + Holds(profile));
  profile->data = nullptr;
  return SUCCESS;
}
int32_t ZV_CALL Z_FillICCProfileFromICCFile(const wchar_t* path, ICCPROFILEDATA* profile) {
  Note(std::wstring(L"fill[") + path + L"]");
  return Fill(profile);
}
int32_t ZV_CALL Z_GenerateICCFile(const ICCPROFILEDATA* profile, const wchar_t* path) {
  Note(std::wstring(L"generate") + Holds(profile) + L"[" + path + L"]");
  return answer;
}
int32_t ZV_CALL Z_LoadICCProfile(const wchar_t* path, ICCPROFILEDATA* profile, const LOADFILEOPTION* option) {
  Note(std::wstring(L"load[") + path + L"]" + std::to_wstring(option->pageNumber));
  return option->uStructSize == sizeof(*option) ? Fill(profile) : ERROR_BAD_RECORD_SIZE;
}
#ifndef ZV_STAND_IN_IS_INCOMPLETE
int32_t ZV_CALL Z_SaveICCProfile(const wchar_t* path, const ICCPROFILEDATA* profile, const SAVEFILEOPTION* option) {
  Note(std::wstring(L"save") + Holds(profile) + L"[" + path + L"]" + std::to_wstring(option->pageNumber));
  return option->uStructSize == sizeof(*option) ? answer : ERROR_BAD_RECORD_SIZE;
}
#endif

}  // extern "C"
