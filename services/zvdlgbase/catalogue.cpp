// The exported face of the catalogue. A position is the index of the entry that the next step gives, negative at the
// end.
#include "services/zvdlgbase/catalogue_table.h"
#include "services/zvdlgbase/zvdlgbase.h"

namespace {

template <class Record>
int32_t CheckRecord(const Record* record) {
  if (!record) {
    return ERROR_BAD_ARGUMENT;
  }
  return record->uStructSize == sizeof(Record) ? SUCCESS : ERROR_BAD_RECORD_SIZE;
}

void Fill(FORMATINFO& info, int32_t format, const FormatEntry& entry) {
  info.format = format;
  info.nameStringId = entry.nameId;
  info.defaultBitsPerPixel = entry.defaultBitsPerPixel;
  info.fileFormat = entry.fileFormat;
  info.bppCount = static_cast<int32_t>(entry.bpps.size());
}

void Fill(FORMATBPPINFO& info, const BppEntry& entry) {
  info.bitsPerPixel = entry.bitsPerPixel;
  info.reserved8 = 0;
  info.extensionStringId = entry.extensionId;
  info.subtypeCount = static_cast<int32_t>(entry.subtypes.size());
  info.optionFlags = entry.optionFlags;
}

void Fill(FORMATSUBTYPEINFO& info, int32_t subtype, const SubtypeEntry& entry) {
  info.subtype = subtype;
  info.nameStringId = entry.nameId;
  info.extensionStringId = entry.extensionId;
  info.fileFormat = entry.fileFormat;
  info.optionFlags = entry.optionFlags;
}

int32_t SubtypeId(int32_t position) { return static_cast<int32_t>(1u << position); }

// The position behind `position` in a list, or the end.
template <class List>
int32_t NextPosition(const List& list, int32_t position) {
  return static_cast<size_t>(position) + 1 < list.size() ? position + 1 : -1;
}

template <class List>
bool HoldsPosition(const List& list, const int32_t* position) {
  return position && *position >= 0 && static_cast<size_t>(*position) < list.size();
}

}  // namespace

int32_t GetFormatInfo(int32_t format, FORMATINFO* info) {
  const int32_t code = CheckRecord(info);
  if (code != SUCCESS) {
    return code;
  }
  const FormatEntry* entry = FindFormat(format);
  if (!entry) {
    return ERROR_BAD_ARGUMENT;
  }
  Fill(*info, format, *entry);
  return SUCCESS;
}

int32_t GetFirstFormatPosition(void) { return Catalogue().empty() ? -1 : 0; }

int32_t GetNextFormat(FORMATINFO* info, int32_t* position) {
  if (!HoldsPosition(Catalogue(), position)) {
    return ERROR_BAD_ARGUMENT;
  }
  const int32_t code = GetFormatInfo(*position, info);
  if (code == SUCCESS) {
    *position = NextPosition(Catalogue(), *position);
  }
  return code;
}

int32_t GetFormatBppInfo(int32_t format, int32_t bitsPerPixel, FORMATBPPINFO* info) {
  const int32_t code = CheckRecord(info);
  if (code != SUCCESS) {
    return code;
  }
  const BppEntry* entry = FindBpp(format, bitsPerPixel);
  if (!entry) {
    return ERROR_BAD_ARGUMENT;
  }
  Fill(*info, *entry);
  return SUCCESS;
}

int32_t GetFirstFormatBppPosition(int32_t format) {
  const FormatEntry* entry = FindFormat(format);
  return entry && !entry->bpps.empty() ? 0 : -1;
}

int32_t GetNextFormatBpp(int32_t format, FORMATBPPINFO* info, int32_t* position) {
  const FormatEntry* entry = FindFormat(format);
  if (!entry || !HoldsPosition(entry->bpps, position)) {
    return ERROR_BAD_ARGUMENT;
  }
  const int32_t code = CheckRecord(info);
  if (code == SUCCESS) {
    Fill(*info, entry->bpps[static_cast<size_t>(*position)]);
    *position = NextPosition(entry->bpps, *position);
  }
  return code;
}

int32_t GetFormatSubtypeInfo(int32_t format, int32_t bitsPerPixel, int32_t subtype, FORMATSUBTYPEINFO* info) {
  const int32_t code = CheckRecord(info);
  if (code != SUCCESS) {
    return code;
  }
  const SubtypeEntry* entry = FindSubtype(format, bitsPerPixel, subtype);
  if (!entry) {
    return ERROR_BAD_ARGUMENT;
  }
  Fill(*info, subtype, *entry);
  return SUCCESS;
}

int32_t GetFirstFormatSubtypePosition(int32_t format, int32_t bitsPerPixel) {
  const BppEntry* bpp = FindBpp(format, bitsPerPixel);
  return bpp && !bpp->subtypes.empty() ? 0 : -1;
}

int32_t GetNextFormatSubtype(int32_t format, int32_t bitsPerPixel, FORMATSUBTYPEINFO* info, int32_t* position) {
  const BppEntry* bpp = FindBpp(format, bitsPerPixel);
  if (!bpp || !HoldsPosition(bpp->subtypes, position)) {
    return ERROR_BAD_ARGUMENT;
  }
  const int32_t code = CheckRecord(info);
  if (code == SUCCESS) {
    Fill(*info, SubtypeId(*position), bpp->subtypes[static_cast<size_t>(*position)]);
    *position = NextPosition(bpp->subtypes, *position);
  }
  return code;
}
