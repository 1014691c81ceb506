// CZVNamingTemplateProcessor makes a file name from a naming template, one source name at a time. It owns the counters of
// the numbering tags: every expansion of a non-empty template raises all three, also those that the template does not show.
// Pure text work: no file is touched, and what comes out is not checked for use as a name.
#pragma once

#include "naming/date_generator.h"
#include "naming/naming_settings.h"
#include "naming/numbering_generator.h"

class CZVTagParser;

class CZVNamingTemplateProcessor {
 public:
  // Also brings the depositories up to date with the kernel's string table.
  CZVNamingTemplateProcessor();
  virtual ~CZVNamingTemplateProcessor() = default;

  // Bit n lets tag n be recognised; a tag left out stays in the name as it is written. All six at first.
  void SetEnabledTags(uint32_t mask) { enabledTags_ = mask; }
  // Takes the parameters of all tags, and so restarts the counters; the enabled tags stay. 1.
  int32_t Configure(const NAMINGTEMPLATESETTINGS& settings);
  // sourceName is a name without folder and extension. An empty template gives an empty name and moves no counter.
  CString ProcessTemplate(const CString& namingTemplate, const CString& sourceName);

 private:
  CString Expand(int32_t tag, const CString& sourceName) const;

  CZVNumberingGenerator numeric_{NUMBERING_NUMERIC};
  CZVNumberingGenerator alpha_{NUMBERING_ALPHA};
  CZVNumberingGenerator alnum_{NUMBERING_ALPHANUM};
  CZVDateGenerator date_;
  CZVDateGenerator time_;
  int32_t caseMode_ = CASE_KEEP;
  uint32_t enabledTags_ = 63;
};

// Whether the mask has the bit of the tag; false for ids outside the six.
bool IsTagEnabled(uint32_t mask, int32_t tag);
// Lower case becomes upper, upper case lower; a character without case stays.
CString SwapCase(const CString& text);
