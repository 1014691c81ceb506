#include "common/entry_frame.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "platform/afx.h"
#include "services/zvdlgbase/zvdlgbase.h"
#include "services/zvdlgcommon/base_dialog.h"
#include "services/zvdlgwidgets/window_classes.h"

int32_t CheckCall(const RecordFamily& family, HWND parent, const void* record) {
  if (DialogKernelReady() != SUCCESS) {
    return ERROR_KERNEL_NOT_READY;
  }
  if (!AfxIsValidAddress(record, family.addressSize, TRUE)) {
    return ERROR_BAD_ARGUMENT;
  }
  uint32_t sizeTag = 0;
  std::memcpy(&sizeTag, record, sizeof(sizeTag));
  if (sizeTag == 0 || std::ranges::find(family.acceptedSizes, sizeTag) == family.acceptedSizes.end()) {
    return ERROR_BAD_RECORD_SIZE;
  }
  if (family.needsParent && !::IsWindow(parent)) {
    return ERROR_DIALOG_FAILED;
  }
  return SUCCESS;
}

DialogScope::DialogScope() { RegisterWidgetClasses(AfxGetInstanceHandle()); }

DialogScope::~DialogScope() { CZVBaseDialog::SetPositionPoint(nullptr); }

int32_t CodeOfCurrentException() noexcept {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    return ERROR_OUT_OF_MEMORY;
  } catch (CMemoryException* exception) {
    exception->Delete();
    return ERROR_OUT_OF_MEMORY;
  } catch (CException* exception) {
    exception->Delete();
    return ERROR_DIALOG_FAILED;
  } catch (...) {
    return ERROR_DIALOG_FAILED;
  }
}
