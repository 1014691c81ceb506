/* The record of Z_DlgGetDirectory. */
#ifndef ZVFILEDLG_DIRECTORY_H
#define ZVFILEDLG_DIRECTORY_H

#include "include/zvfiledlg_base.h"

#pragma pack(push, 1)

typedef struct tagDIRECTORYDLGPARAMS {
  uint32_t uStructSize;         /*  0: 60 */
  wchar_t* directoryBuffer;     /*  4: in: the folder to start in; out: the chosen folder. Not null */
  int32_t bufferLength;         /* 12: room of directoryBuffer in characters, terminator included; above 0 */
  const wchar_t* filter;        /* 16: pairs of name and pattern, ended by an empty string; null shows no files */
  int32_t filterIndex;          /* 24: in and out: selected pair, from 1; not negative */
  const wchar_t* title;         /* 28: window title, or null for the usual one */
  POINT position;               /* 36: screen pixels at which the dialog is placed */
  DLGHELPCALLBACK helpCallback; /* 44: null hides the Help button */
  void* helpUserData;           /* 52 */
} DIRECTORYDLGPARAMS;
static_assert(sizeof(DIRECTORYDLGPARAMS) == 60, "wire format");
ZV_WIRE_FIELD(DIRECTORYDLGPARAMS, directoryBuffer, 4);
ZV_WIRE_FIELD(DIRECTORYDLGPARAMS, bufferLength, 12);
ZV_WIRE_FIELD(DIRECTORYDLGPARAMS, filter, 16);
ZV_WIRE_FIELD(DIRECTORYDLGPARAMS, filterIndex, 24);
ZV_WIRE_FIELD(DIRECTORYDLGPARAMS, title, 28);
ZV_WIRE_FIELD(DIRECTORYDLGPARAMS, position, 36);
ZV_WIRE_FIELD(DIRECTORYDLGPARAMS, helpCallback, 44);
ZV_WIRE_FIELD(DIRECTORYDLGPARAMS, helpUserData, 52);

#pragma pack(pop)

#endif
