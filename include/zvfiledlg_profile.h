/* The record of Z_DlgICCProfile. */
#ifndef ZVFILEDLG_PROFILE_H
#define ZVFILEDLG_PROFILE_H

#include "include/zvfiledlg_base.h"
#include "services/zvcolor/icc_profile_data.h"

#pragma pack(push, 1)

#define DLG_ICC_CONTEXTHELP 1u
#define DLG_ICC_SHOW_SAVE 2u /* at least one of the two groups must be shown */
#define DLG_ICC_SHOW_LOAD 4u

typedef struct tagICCPROFILEDLGPARAMS {
  uint32_t uStructSize;                /*    0: 1144 */
  ICCPROFILEDATA iccProfile;           /*    4: in and out */
  wchar_t loadPath[ZVDLG_PATH_LENGTH]; /*   60: initial path of the load group */
  wchar_t savePath[ZVDLG_PATH_LENGTH]; /*  588: initial path of the save group */
  uint32_t flags;                      /* 1116: DLG_ICC_... */
  const POINT* position;               /* 1120: null leaves the placing to the dialog */
  DLGHELPCALLBACK helpCallback;        /* 1128 */
  void* helpUserData;                  /* 1136 */
} ICCPROFILEDLGPARAMS;
static_assert(sizeof(ICCPROFILEDLGPARAMS) == 1144, "wire format");
ZV_WIRE_FIELD(ICCPROFILEDLGPARAMS, iccProfile, 4);
ZV_WIRE_FIELD(ICCPROFILEDLGPARAMS, loadPath, 60);
ZV_WIRE_FIELD(ICCPROFILEDLGPARAMS, savePath, 588);
ZV_WIRE_FIELD(ICCPROFILEDLGPARAMS, flags, 1116);
ZV_WIRE_FIELD(ICCPROFILEDLGPARAMS, position, 1120);
ZV_WIRE_FIELD(ICCPROFILEDLGPARAMS, helpCallback, 1128);
ZV_WIRE_FIELD(ICCPROFILEDLGPARAMS, helpUserData, 1136);

#pragma pack(pop)

#endif
