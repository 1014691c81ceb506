/* zvfiledlg: dialogs for image files.
 *
 * An application fills one size-tagged record, calls one of the fifteen exports on its user-interface thread, and gets a
 * result code back when the dialog has ended, with the outcome written into the record. There is nothing to initialise, no
 * handle to keep and nothing to shut down. While a dialog is open the caller's thread runs the dialog's message loop.
 * Dialogs save, set and restore settings that are one set per process (load resolution, option records, status callback):
 * run one dialog at a time.
 *
 * Usable from C and C++, with the root of the source tree on the include path; link with libzvfiledlg.dll.a.
 *
 * Results of all exports: one of the SUCCESS_DLG_ codes below, or
 *   ERROR_KERNEL_NOT_READY  the dialog kernel (zvdlgbase.dll) cannot serve its texts and catalogue; nothing was looked at
 *   ERROR_BAD_ARGUMENT      the record is null or not writable in its full size, or a field has a bad value
 *   ERROR_BAD_RECORD_SIZE   uStructSize is none of the record's sizes
 *   ERROR_DIALOG_FAILED     the parent window is none, where one is required, or the dialog could not be run
 * and what a service below could not do, passed on unchanged (services/zvcore/result_codes.h). On an error before the dialog
 * has shown, nothing is written to the record. No export raises an exception.
 *
 *   wchar_t folder[MAX_PATH] = L"C:\\Pictures";
 *   DIRECTORYDLGPARAMS params = {0};
 *   params.uStructSize = sizeof(params);
 *   params.directoryBuffer = folder;
 *   params.bufferLength = MAX_PATH;
 *   if (Z_DlgGetDirectory(window, &params) == SUCCESS_DLG_OK) {
 *     use(folder);
 *   }
 */
#ifndef ZVFILEDLG_H
#define ZVFILEDLG_H

#include "services/zvcore/zvcore.h"

#include <commdlg.h>

#include "include/zvfiledlg_ansi.h"
#include "include/zvfiledlg_association.h"
#include "include/zvfiledlg_conversion.h"
#include "include/zvfiledlg_directory.h"
#include "include/zvfiledlg_open.h"
#include "include/zvfiledlg_print.h"
#include "include/zvfiledlg_profile.h"
#include "include/zvfiledlg_save.h"

#ifdef __cplusplus
extern "C" {
#endif

#define SUCCESS_DLG_OK 100          /* directory, open, save, association: the user confirmed */
#define SUCCESS_DLG_CANCEL 101      /* directory, open, save, association: the user cancelled */
#define SUCCESS_DLG_CLOSE 102       /* conversion, ICC profile: the dialog ended, by OK or by Cancel */
#define SUCCESS_DLG_FRAME_CLOSE 103 /* stitched print, print preview: the frame was closed */

/* Lets the user choose a folder. parent may be null.
 * In: the folder to start in, what files to list (none without a filter), title, position, help.
 * Out: directoryBuffer and filterIndex. After Cancel too the buffer holds the folder that was shown last.
 * ERROR_BUFFER_TOO_SMALL when bufferLength is not above the length of that folder, after Cancel too; the buffer is then
 * left alone. ERROR_BAD_ARGUMENT for a null buffer, a bufferLength below 1 or a negative filterIndex. */
int32_t ZV_CALL Z_DlgGetDirectory(HWND parent, DIRECTORYDLGPARAMS* params);

/* Lets the user choose image files. parent may be null; it owns the dialog, whatever hwndOwner of openFileName says.
 * In: of openFileName lpstrFilter, lpstrCustomFilter, nFilterIndex, lpstrFile, nMaxFile, lpstrFileTitle, lpstrInitialDir,
 * lpstrTitle, Flags, lpstrDefExt; a null or empty lpstrFilter is replaced by the table of readable formats, and
 * lpTemplateName, Flags and an nMaxFile below 260 are changed. OFN_ALLOWMULTISELECT lets the user choose several.
 * Out: params->files and fileCount, showPreview, showLoadOptions; openFileName->nFilterIndex. lpstrFile gets no result.
 * The caller frees the array and what its entries point to, see OPENDLGFILEDATA:
 *
 *   for (i = 0; i < params.fileCount; ++i) {
 *     if (params.files[i].bitmap) FreeBitmap(params.files[i].bitmap);
 *     if (params.files[i].thumbnail) FreeBitmap(params.files[i].thumbnail);
 *     GlobalFree(params.files[i].bitmap);
 *     GlobalFree(params.files[i].thumbnail);
 *     GlobalFree(params.files[i].fileInfo);
 *     GlobalFree(params.files[i].formatOptions);
 *   }
 *   GlobalFree(params.files);
 *
 * A file that cannot be read ends the call with the code of GetFileInfo and no files, unless
 * DLG_OPEN_TOLERATE_FAILED_FILES is set. ERROR_USER_ABORT when the status callback stopped a load. ERROR_OUT_OF_MEMORY.
 * In this version the load options switch is remembered, but opens no dialog of its own. */
int32_t ZV_CALL Z_DlgOpen(HWND parent, OPENFILENAMEW* openFileName, OPENFILEDLGPARAMS* params);

/* Lets the user choose a name, format, depth and options for a bitmap, and writes it with DLG_SAVE_WRITE_FILE. parent may be
 * null. The record is checked; the dialog itself comes in a later version, until then ERROR_DIALOG_FAILED.
 * ERROR_NO_IMAGE when a file is to be written and bitmap holds no pixels. */
int32_t ZV_CALL Z_DlgSave(HWND parent, OPENFILENAMEW* openFileName, SAVEFILEDLGPARAMS* params);

/* Lets the user load an ICC profile from an ICC file or an image and save it to one. When the user ends the dialog with its
 * Close button, iccProfile is what was loaded last, or empty after a load that failed; Esc and the window's close box leave it
 * as it was. A profile that the caller passed in stays the caller's and is never freed here: keep a copy of its record, and
 * free it when the record came back with another one. A profile that was loaded is the caller's from then on. Both are freed
 * with Z_FreeICCProfile of zvcolor (services/zvcolor/zvcolor.h). The twin for 8-bit text gives nothing back.
 * SUCCESS_DLG_CLOSE either way; ERROR_COLOR_LIBRARY_MISSING without a zvcolor.dll that has all its functions. */
int32_t ZV_CALL Z_DlgICCProfile(HWND parent, ICCPROFILEDLGPARAMS* params);

/* Lets the user collect files and convert each of them to one or more formats, any number of times.
 * In: what is offered (uiFlags, formats), files to start with, folders and switches. Out, when the user ends the dialog with
 * its Close button: destinationFolder, sourceFolder, overwriteMode, deleteSource, fullPath, logReport, useOriginalFolder.
 * Esc and the window's close box write nothing back. SUCCESS_DLG_CLOSE either way.
 * ERROR_DIALOG_FAILED also when fileList is given but empty, or an entry of formats is not in the catalogue. */
int32_t ZV_CALL Z_DlgFileConversion(HWND parent, FILECONVERSIONDLGPARAMS* params);

/* Lets the user choose which file extensions the program pszProgID owns. OK writes the changed ones to the registry and tells
 * the shell; a refusal or failure is shown to the user, and the other extensions are written. The record is only read.
 * SUCCESS_DLG_OK or SUCCESS_DLG_CANCEL; ERROR_BAD_ARGUMENT also for a text of the record that cannot be read. */
int32_t ZV_CALL Z_DlgFilesAssociation(HWND parent, FILEASSOCIATIONDLGPARAMS* params);

/* Show the frame in which images are placed on pages and printed. The records are checked; the frame comes in a later
 * version, until then ERROR_DIALOG_FAILED. ERROR_BAD_ARGUMENT for an unreadable or empty image list, an unreadable bitmap
 * handle, or a field of rcMinMargin above that of rcMargin; Z_DlgPrintPreview also gives ERROR_NO_IMAGE for a bitmap without
 * pixels and ERROR_BITMAP_REFUSED for one that is kept compressed. */
int32_t ZV_CALL Z_DlgPrintStitchedImages(HWND parent, STITCHEDPRINTDLGPARAMS* params);
int32_t ZV_CALL Z_DlgPrintPreview(HWND parent, PRINTPREVIEWDLGPARAMS* params);

/* The same with 8-bit text, see zvfiledlg_ansi.h. A null record gives ERROR_BAD_ARGUMENT, whatever the state of the
 * kernel. */
int32_t ZV_CALL Z_DlgGetDirectoryA(HWND parent, DIRECTORYDLGPARAMSA* params);
int32_t ZV_CALL Z_DlgOpenA(HWND parent, OPENFILENAMEA* openFileName, OPENFILEDLGPARAMSA* params);
int32_t ZV_CALL Z_DlgSaveA(HWND parent, OPENFILENAMEA* openFileName, SAVEFILEDLGPARAMSA* params);
int32_t ZV_CALL Z_DlgICCProfileA(HWND parent, ICCPROFILEDLGPARAMSA* params);
int32_t ZV_CALL Z_DlgFileConversionA(HWND parent, FILECONVERSIONDLGPARAMSA* params);
int32_t ZV_CALL Z_DlgFilesAssociationA(HWND parent, FILEASSOCIATIONDLGPARAMSA* params);
int32_t ZV_CALL Z_DlgPrintStitchedImagesA(HWND parent, STITCHEDPRINTDLGPARAMSA* params);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif
