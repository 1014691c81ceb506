/* Template and control ids of the dialogs that are built on the platform's file dialog. */
#ifndef ZV_PICKER_IDS_H
#define ZV_PICKER_IDS_H

#define IDT_SHELL_LIST_PLACE 1119 /* where the platform puts its own controls */

#define IDD_DIRECTORY 4200
#define IDE_DIRECTORY_FOLDER 4201
#define IDT_DIRECTORY_FOLDER 4202

#define IDD_OPEN 9400
#define IDD_OPEN_OLD_SHELL 9408 /* on shells without places of their own */

#endif
