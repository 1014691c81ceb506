#include "naming/naming_template_processor.h"

#include "naming/depositories.h"
#include "naming/tag_parser.h"

namespace {

CString ApplyCase(const CString& text, int32_t caseMode) {
  CString result = text;
  switch (caseMode) {
    case CASE_UPPER: return result.MakeUpper();
    case CASE_LOWER: return result.MakeLower();
    case CASE_SWAP: return SwapCase(text);
    default: return result;
  }
}

}  // namespace

CZVNamingTemplateProcessor::CZVNamingTemplateProcessor() {
  date_.SetFormatId(0);
  time_.SetFormatId(kFirstTimeFormat);
  RefillDepositories();
}

int32_t CZVNamingTemplateProcessor::Configure(const NAMINGTEMPLATESETTINGS& settings) {
  if (settings.dateType >= 0 && settings.dateType < kDateTypeCount) {
    date_.SetFormatId(settings.dateType);
  }
  if (settings.timeType >= 0 && settings.timeType < kTimeTypeCount) {
    time_.SetFormatId(kFirstTimeFormat + settings.timeType);
  }
  caseMode_ = settings.caseMode;

  alpha_.SetUpperCase(settings.alphaUpperCase);
  alnum_.SetUpperCase(settings.alnumUpperCase);

  numeric_.SetMask(settings.numericMask);
  alpha_.SetMask(settings.alphaMask);
  alnum_.SetMask(settings.alnumMask);

  numeric_.SetIncrement(settings.numericIncrement);
  numeric_.SetCounter(settings.numericStart);
  alpha_.SetIncrement(settings.alphaIncrement);
  alpha_.SetCounter(settings.alphaStart);
  alnum_.SetIncrement(settings.alnumIncrement);
  alnum_.SetCounter(settings.alnumStart);

  alpha_.SetAlphaFrom(settings.alphaFrom);
  alpha_.SetAlphaTo(settings.alphaTo);
  alnum_.SetAlphaFrom(settings.alnumAlphaFrom);
  alnum_.SetAlphaTo(settings.alnumAlphaTo);
  alnum_.SetNumericFrom(settings.alnumNumericFrom);
  alnum_.SetNumericTo(settings.alnumNumericTo);
  return 1;
}

CString CZVNamingTemplateProcessor::ProcessTemplate(const CString& namingTemplate, const CString& sourceName) {
  if (namingTemplate.IsEmpty()) {
    return CString();
  }
  const CString casedSource = ApplyCase(sourceName, caseMode_);
  CZVTagParser parser;
  for (int32_t tag = 0; tag < kNamingTagCount; ++tag) {
    if (IsTagEnabled(enabledTags_, tag)) {
      parser.AddTag(TagTexts().GetString(tag), tag);
    }
  }
  parser.SetTemplate(namingTemplate);

  CString name;
  CString token;
  int32_t tag = -1;
  for (NamingToken kind; (kind = parser.GetNextToken(token, tag)) != TOKEN_END;) {
    name += kind == TOKEN_TAG ? Expand(tag, casedSource) : token;
  }
  numeric_.Advance();
  alpha_.Advance();
  alnum_.Advance();
  return name;
}

CString CZVNamingTemplateProcessor::Expand(int32_t tag, const CString& sourceName) const {
  switch (tag) {
    case TAG_NUM: return numeric_.Generate();
    case TAG_ALPHA: return alpha_.Generate();
    case TAG_ALPHANUM: return alnum_.Generate();
    case TAG_DATE: return date_.Generate();
    case TAG_TIME: return time_.Generate();
    case TAG_SRC: return sourceName;
    default: return CString();
  }
}

bool IsTagEnabled(uint32_t mask, int32_t tag) { return tag >= 0 && tag < kNamingTagCount && (mask & (1u << tag)) != 0; }

CString SwapCase(const CString& text) {
  CString swapped;
  for (int i = 0; i < text.GetLength(); ++i) {
    const CString character(text[i]);
    const CString lower = CString(character).MakeLower();
    const CString upper = CString(character).MakeUpper();
    if (lower == character) {
      swapped += upper;
    } else {
      swapped += upper == character ? lower : character;
    }
  }
  return swapped;
}
