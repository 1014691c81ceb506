// One function for each export of the library: what an application writes to call it. picture is what the viewer shows now;
// chosen gets the path of a file to show afterwards, if the dialog gave one. Each returns the export's result code.
#ifndef ZV_DEMO_DIALOG_CALLS_H
#define ZV_DEMO_DIALOG_CALLS_H

#include <windows.h>

#include <string>

#include "demo/picture.h"

int32_t CallOpen(HWND parent, Picture& picture, std::wstring& chosen);
int32_t CallSave(HWND parent, Picture& picture, std::wstring& chosen);
int32_t CallFileConversion(HWND parent, Picture& picture, std::wstring& chosen);
int32_t CallGetDirectory(HWND parent, Picture& picture, std::wstring& chosen);
int32_t CallPrintPreview(HWND parent, Picture& picture, std::wstring& chosen);
int32_t CallPrintStitchedImages(HWND parent, Picture& picture, std::wstring& chosen);
int32_t CallICCProfile(HWND parent, Picture& picture, std::wstring& chosen);
int32_t CallFilesAssociation(HWND parent, Picture& picture, std::wstring& chosen);

int32_t CallOpenA(HWND parent, Picture& picture, std::wstring& chosen);
int32_t CallSaveA(HWND parent, Picture& picture, std::wstring& chosen);
int32_t CallFileConversionA(HWND parent, Picture& picture, std::wstring& chosen);
int32_t CallGetDirectoryA(HWND parent, Picture& picture, std::wstring& chosen);
int32_t CallPrintStitchedImagesA(HWND parent, Picture& picture, std::wstring& chosen);
int32_t CallICCProfileA(HWND parent, Picture& picture, std::wstring& chosen);
int32_t CallFilesAssociationA(HWND parent, Picture& picture, std::wstring& chosen);

struct DialogCall {
  int command;           // menu command that runs it
  const wchar_t* entry;  // name of the export, for the status line
  int32_t (*run)(HWND parent, Picture& picture, std::wstring& chosen);
};

// The call behind a menu command, or null when the command is not one of them.
const DialogCall* FindDialogCall(int command);

#endif
