/* Template and control ids of the dialogs that are built on the platform's file dialog. */
#ifndef ZV_PICKER_IDS_H
#define ZV_PICKER_IDS_H

#define IDT_SHELL_LIST_PLACE 1119 /* where the platform puts its own controls */

#define IDD_DIRECTORY 4200
#define IDE_DIRECTORY_FOLDER 4201
#define IDT_DIRECTORY_FOLDER 4202

#define IDD_OPEN 9400
#define IDD_OPEN_OLD_SHELL 9408 /* on shells without places of their own */
#define IDX_OPEN_LOAD_OPTIONS 9401
#define IDE_OPEN_PAGE 9402
#define IDB_OPEN_DELETE_PAGE 9403
#define IDT_OPEN_PAGE 9404
#define IDC_OPEN_PLACES 9155
#define IDB_OPEN_ART_PLACES 9405
#define IDB_OPEN_ART_PREVIEW 9406 /* button pictures */
#define IDB_OPEN_ART_FILE_INFO 9407
#define IDC_OPEN_SPLITTER 30980
#define ID_OPEN_PREVIEW 41216 /* tool bar */
#define ID_OPEN_FILE_INFO 41217

#endif
