// What the two halves of the PNG codec share: which PNG keyword is which comment.
#ifndef ZV_FILE_CODECS_PNG_H
#define ZV_FILE_CODECS_PNG_H

#include "services/zvfile/codec.h"

namespace zvfile {

struct PngKeyword {
  int32_t comment;
  const char* keyword;
};

// The keywords that the standard names (ISO/IEC 15948, 11.3.4.2).
inline constexpr PngKeyword kPngKeywords[] = {
    {COMMENT_TITLE, "Title"},           {COMMENT_AUTHOR, "Author"},      {COMMENT_DESCRIPTION, "Description"},
    {COMMENT_COPYRIGHT, "Copyright"},   {COMMENT_DATE, "Creation Time"}, {COMMENT_SOFTWARE, "Software"},
    {COMMENT_DISCLAIMER, "Disclaimer"}, {COMMENT_WARNING, "Warning"},    {COMMENT_SOURCE, "Source"},
    {COMMENT_COMMENT, "Comment"}};
inline constexpr char kPngXmpKeyword[] = "XML:com.adobe.xmp";

int32_t PngSave(ByteSink& sink, const SaveRequest& request, RowSource& rows);

}  // namespace zvfile

#endif
