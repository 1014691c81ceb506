#include "conversion/format_list.h"

#include <algorithm>

#include "conversion/control_state.h"
#include "conversion/format_rules.h"
#include "platform/dc.h"
#include "services/zvdlgutil/dialog_string.h"
#include "services/zvdlgutil/general.h"

namespace {

constexpr int kSubtypeBits = 32;

template <class Record>
Record EmptyRecord() {
  Record record = {};
  record.uStructSize = sizeof record;
  return record;
}

int FindItemData(const CComboBox& box, DWORD_PTR data) {
  for (int i = 0; i < box.GetCount(); ++i) {
    if (box.GetItemData(i) == data) {
      return i;
    }
  }
  return CB_ERR;
}

void AddItem(CComboBox& box, const CString& text, int32_t data) {
  box.SetItemData(box.AddString(text), static_cast<DWORD_PTR>(data));
}

void SelectItemOrFirst(CComboBox& box, int32_t data) {
  box.SetCurSel(std::max(FindItemData(box, static_cast<DWORD_PTR>(data)), 0));
}

int32_t SelectedData(const CComboBox& box) { return static_cast<int32_t>(box.GetItemData(box.GetCurSel())); }

// 0 for a file format without a quality.
int32_t DefaultQuality(int32_t fileFormat) {
  int32_t quality = 0;
  ::GetFormatDefaultQFactor(fileFormat, &quality);
  return quality;
}

const FILECONVERSIONBPP* FindDepth(const FILECONVERSIONFORMAT* restriction, int32_t bitsPerPixel) {
  for (int32_t i = 0; restriction && i < restriction->bppCount; ++i) {
    if (restriction->bpps[i].bitsPerPixel == bitsPerPixel) {
      return &restriction->bpps[i];
    }
  }
  return nullptr;
}

}  // namespace

void CZVFormatList::Attach(const Controls& controls, uint32_t uiFlags, const FILECONVERSIONFORMAT* formats,
                           int32_t formatCount) {
  controls_ = controls;
  uiFlags_ = uiFlags;
  formats_ = formats;
  formatCount_ = formatCount;
}

bool CZVFormatList::Fill() {
  if (formats_) {
    for (int32_t i = 0; i < formatCount_; ++i) {
      const FILECONVERSIONFORMAT& given = formats_[i];
      FORMATINFO info = EmptyRecord<FORMATINFO>();
      if (::GetFormatInfo(given.format, &info) != SUCCESS ||
          !AddRow(info, given.bpps && given.bppCount > 0 ? &given : nullptr)) {
        return false;
      }
    }
  } else {
    int32_t position = ::GetFirstFormatPosition();
    while (position >= 0) {
      FORMATINFO info = EmptyRecord<FORMATINFO>();
      if (::GetNextFormat(&info, &position) != SUCCESS || !AddRow(info, nullptr)) {
        break;
      }
    }
  }
  SetHorizontalExtent();
  if (!rows_.empty()) {
    controls_.formats->SetSel(0, TRUE);
  }
  OnRowsChanged();
  return true;
}

// False when the format has no name to show.
bool CZVFormatList::AddRow(const FORMATINFO& info, const FILECONVERSIONFORMAT* restriction) {
  if (::IsFormatExcludedFromList(info.fileFormat)) {
    return true;
  }
  const CString name = LoadDialogString(static_cast<UINT>(info.nameStringId));
  if (name.IsEmpty()) {
    return false;
  }
  auto row = std::make_unique<Row>(Row{{}, info, restriction});
  row->item.format = info.format;
  ::GetDefaultSaveFileOption(&row->item.saveOption, sizeof row->item.saveOption);
  ::GetDefaultJ2KOptions(&row->item.j2kOption, sizeof row->item.j2kOption);
  row->item.qFactor = DefaultQuality(info.fileFormat);
  row->item.subtype = 1;
  ApplyDepth(*row, info.defaultBitsPerPixel);
  const int index = controls_.formats->AddString(name);
  controls_.formats->SetItemData(index, reinterpret_cast<DWORD_PTR>(&row->item));
  rows_.push_back(std::move(row));
  return true;
}

void CZVFormatList::SetHorizontalExtent() {
  CClientDC device(controls_.formats);
  const dc_selection font(device, reinterpret_cast<HFONT>(controls_.formats->SendMessage(WM_GETFONT)));
  int widest = 0;
  for (int row = 0; row < GetRowCount(); ++row) {
    CString text;
    controls_.formats->GetText(row, text);
    widest = std::max<int>(widest, device.GetTextExtent(text).cx);
  }
  controls_.formats->SetHorizontalExtent(widest + ::GetSystemMetrics(SM_CXVSCROLL));
}

void CZVFormatList::RemoveAll() {
  if (controls_.formats) {
    controls_.formats->ResetContent();
  }
  rows_.clear();
}

std::vector<int> CZVFormatList::GetSelectedRows() const {
  std::vector<int> rows(static_cast<size_t>(std::max(controls_.formats->GetSelCount(), 0)));
  controls_.formats->GetSelItems(static_cast<int>(rows.size()), rows.data());
  return rows;
}

CONVERSIONFORMATITEM* CZVFormatList::GetItem(int row) {
  return row < 0 || row >= GetRowCount() ? nullptr : &rows_[static_cast<size_t>(row)]->item;
}

CZVFormatList::Row* CZVFormatList::ChosenRow() {
  const std::vector<int> selected = GetSelectedRows();
  return selected.size() == 1 ? rows_[static_cast<size_t>(selected[0])].get() : nullptr;
}

void CZVFormatList::DisableChoice() {
  EnableKeepingFocus(*controls_.depths, false);
  EnableKeepingFocus(*controls_.subtypes, false);
  EnableKeepingFocus(*controls_.settings, false);
}

// A row whose depth the catalogue does not know still shows what depths were given for it.
void CZVFormatList::OnRowsChanged() {
  controls_.depths->ResetContent();
  controls_.subtypes->ResetContent();
  Row* const row = ChosenRow();
  if (!row || !FillDepths(*row)) {
    DisableChoice();
    return;
  }
  FillSubtypes(*row);
  UpdateSettingsButton(*row);
}

void CZVFormatList::OnDepthChanged() {
  Row* const row = ChosenRow();
  if (!row || !ApplyDepth(*row, SelectedData(*controls_.depths))) {
    return;
  }
  FillSubtypes(*row);
  UpdateSettingsButton(*row);
}

void CZVFormatList::OnSubtypeChanged() {
  Row* const row = ChosenRow();
  if (!row) {
    return;
  }
  row->item.subtype = SelectedData(*controls_.subtypes);
  ApplySubtype(row->item);
  UpdateSettingsButton(*row);
}

bool CZVFormatList::FillDepths(Row& row) {
  CComboBox& box = *controls_.depths;
  const auto add = [&box](int32_t depth) {
    CString text(L" ");
    if (depth != 0) {
      text.Format(L"%d", depth);
    }
    AddItem(box, text, depth);
  };
  if (row.restriction) {
    for (int32_t i = 0; i < row.restriction->bppCount; ++i) {
      add(row.restriction->bpps[i].bitsPerPixel);
    }
  } else {
    int32_t position = ::GetFirstFormatBppPosition(row.item.format);
    while (position >= 0) {
      FORMATBPPINFO info = EmptyRecord<FORMATBPPINFO>();
      if (::GetNextFormatBpp(row.item.format, &info, &position) != SUCCESS) {
        break;
      }
      add(info.bitsPerPixel);
    }
  }
  if (box.GetCount() == 0) {
    return false;
  }
  SelectItemOrFirst(box, row.info.defaultBitsPerPixel);
  EnableKeepingFocus(box, box.GetCount() != 1);
  return ApplyDepth(row, SelectedData(box));
}

// A depth without sub types saves in the format's own file format; one with them leaves that to the sub type. The quality
// belongs to the row and outlives a change of depth, unless one of the two depths has a fixed one.
bool CZVFormatList::ApplyDepth(Row& row, int32_t bitsPerPixel) {
  FORMATBPPINFO info = EmptyRecord<FORMATBPPINFO>();
  if (::GetFormatBppInfo(row.item.format, bitsPerPixel, &info) != SUCCESS) {
    return false;
  }
  CONVERSIONFORMATITEM& item = row.item;
  const uint32_t formerFlags = item.settingsFlags;
  item.bitsPerPixel = info.bitsPerPixel;
  item.settingsFlags = info.optionFlags;
  if (info.subtypeCount > 0) {
    if (item.subtype >= 1 && ApplySubtype(item)) {
      return true;
    }
    item.subtype = 1;
    return ApplySubtype(item);
  }
  item.subtype = -1;
  item.fileFormat = row.info.fileFormat;
  item.extensionStringId = info.extensionStringId;
  if ((formerFlags | item.settingsFlags) & SAVEOPT_QFACTOR_ZERO) {
    item.qFactor = StartQuality(item.settingsFlags, DefaultQuality(row.info.fileFormat));
  }
  return true;
}

void CZVFormatList::FillSubtypes(Row& row) {
  CComboBox& box = *controls_.subtypes;
  box.ResetContent();
  if (row.item.subtype > 0) {
    const FILECONVERSIONBPP* const depth = FindDepth(row.restriction, row.item.bitsPerPixel);
    if (depth && depth->subtypes != 0) {
      AddMaskedSubtypes(row, depth->subtypes);
    } else {
      AddAllSubtypes(row);
    }
  }
  EnableKeepingFocus(box, box.GetCount() > 1);
  if (box.GetCount() > 0) {
    SelectItemOrFirst(box, row.item.subtype);
    row.item.subtype = SelectedData(box);
    ApplySubtype(row.item);
  }
}

void CZVFormatList::AddSubtype(const FORMATSUBTYPEINFO& info) {
  if (!::IsFormatExcludedFromList(info.fileFormat)) {
    AddItem(*controls_.subtypes, LoadDialogString(static_cast<UINT>(info.nameStringId)), info.subtype);
  }
}

void CZVFormatList::AddAllSubtypes(const Row& row) {
  int32_t position = ::GetFirstFormatSubtypePosition(row.item.format, row.item.bitsPerPixel);
  while (position >= 0) {
    FORMATSUBTYPEINFO info = EmptyRecord<FORMATSUBTYPEINFO>();
    if (::GetNextFormatSubtype(row.item.format, row.item.bitsPerPixel, &info, &position) != SUCCESS) {
      break;
    }
    AddSubtype(info);
  }
}

void CZVFormatList::AddMaskedSubtypes(const Row& row, uint32_t mask) {
  for (const int32_t subtype : CZVGeneral::ConvertToFlagsArray(mask, kSubtypeBits)) {
    FORMATSUBTYPEINFO info = EmptyRecord<FORMATSUBTYPEINFO>();
    if (::GetFormatSubtypeInfo(row.item.format, row.item.bitsPerPixel, subtype, &info) == SUCCESS) {
      AddSubtype(info);
    }
  }
}

bool CZVFormatList::ApplySubtype(CONVERSIONFORMATITEM& item) {
  FORMATSUBTYPEINFO info = EmptyRecord<FORMATSUBTYPEINFO>();
  if (::GetFormatSubtypeInfo(item.format, item.bitsPerPixel, item.subtype, &info) != SUCCESS) {
    return false;
  }
  item.fileFormat = info.fileFormat;
  item.extensionStringId = info.extensionStringId;
  item.settingsFlags = info.optionFlags;
  ApplyVariantFlags(item);
  item.qFactor = StartQuality(item.settingsFlags, DefaultQuality(item.fileFormat));
  return true;
}

void CZVFormatList::UpdateSettingsButton(const Row& row) {
  EnableKeepingFocus(*controls_.settings, IsSettingsButtonEnabled(row.item.settingsFlags, uiFlags_));
}
