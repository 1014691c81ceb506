#include "tests/abi/layout_in_c.h"

#include "include/zvfiledlg.h"

#define SIZE(record, bytes) {#record, sizeof(record)},
#define FIELD(record, field, at) {#record "." #field, offsetof(record, field)},
const FieldPlace kPlacesInC[] = {
#include "tests/abi/places.inc"
    {NULL, 0}};

int CallEveryExportFromC(int results[15]) {
  int count = 0;
  results[count++] = Z_DlgGetDirectory(NULL, NULL);
  results[count++] = Z_DlgGetDirectoryA(NULL, NULL);
  results[count++] = Z_DlgOpen(NULL, NULL, NULL);
  results[count++] = Z_DlgOpenA(NULL, NULL, NULL);
  results[count++] = Z_DlgSave(NULL, NULL, NULL);
  results[count++] = Z_DlgSaveA(NULL, NULL, NULL);
  results[count++] = Z_DlgICCProfile(NULL, NULL);
  results[count++] = Z_DlgICCProfileA(NULL, NULL);
  results[count++] = Z_DlgFileConversion(NULL, NULL);
  results[count++] = Z_DlgFileConversionA(NULL, NULL);
  results[count++] = Z_DlgFilesAssociation(NULL, NULL);
  results[count++] = Z_DlgFilesAssociationA(NULL, NULL);
  results[count++] = Z_DlgPrintStitchedImages(NULL, NULL);
  results[count++] = Z_DlgPrintStitchedImagesA(NULL, NULL);
  results[count++] = Z_DlgPrintPreview(NULL, NULL);
  return count;
}
