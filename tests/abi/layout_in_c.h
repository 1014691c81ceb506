/* The layout of the public records as a C compiler sees it. */
#ifndef ZV_TEST_LAYOUT_IN_C_H
#define ZV_TEST_LAYOUT_IN_C_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct FieldPlace {
  const char* name; /* record.field; the record alone for its size */
  size_t place;
} FieldPlace;

/* Ends with a null name. */
extern const FieldPlace kPlacesInC[];

/* Calls an export from C: a null record, to which every export has an answer. */
int CallEveryExportFromC(int results[15]);

#ifdef __cplusplus
}
#endif

#endif
