// CZVOpenDlgEdit: a name box that empties itself at the first key after a folder's path has been put into it.
#pragma once

#include "platform/edit.h"
#include "platform/message_map.h"

class CZVOpenDlgEdit : public CEdit {
 protected:
  afx_msg void OnKeyUp(UINT key, UINT repeat, UINT flags);
  DECLARE_MESSAGE_MAP()
};
