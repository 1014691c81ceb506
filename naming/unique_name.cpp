#include "naming/unique_name.h"

#include "naming/naming_template_processor.h"
#include "services/zvdlgutil/file_name_utility.h"

CString MakeUniqueName(const CString& path, const RENAMETEMPLATEDATA& collision,
                       const std::function<bool(const CString& candidate)>& exists) {
  if (path.IsEmpty()) {
    return CString();
  }
  CZVNamingTemplateProcessor processor;
  processor.Configure(*collision.settings);
  const CString takenName = CZVFileNameUtility::ExtractFileName(path);
  CString candidate = path;
  CString freeName;
  while (exists(candidate)) {
    candidate =
        CZVFileNameUtility::UpdateFileName(path, processor.ProcessTemplate(collision.namingTemplate, takenName));
    freeName = candidate;
  }
  return freeName;
}
