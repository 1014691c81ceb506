// CZVFormatList: the File Type list of the conversion dialog together with the bit depth and sub type boxes that belong to
// its chosen row. It fills all three from the catalogue, as far as the caller's record lets it, and keeps the state of every
// row. The controls are borrowed from the dialog; the rows' states are owned and stand behind the rows as item data.
#pragma once

#include <memory>
#include <vector>

#include "conversion/records.h"
#include "platform/controls.h"
#include "services/zvdlgbase/zvdlgbase.h"

class CZVFormatList {
 public:
  struct Controls {
    CListBox* formats;
    CComboBox* depths;
    CComboBox* subtypes;
    CButton* settings;
  };

  CZVFormatList() = default;
  CZVFormatList(const CZVFormatList&) = delete;
  CZVFormatList& operator=(const CZVFormatList&) = delete;

  // uiFlags are the CONVDLG_... bits of the record; the array of formats (null: the whole catalogue) must outlive this object.
  void Attach(const Controls& controls, uint32_t uiFlags, const FILECONVERSIONFORMAT* formats, int32_t formatCount);
  // Makes the rows and chooses the first. False when one of the given formats is not in the catalogue.
  bool Fill();
  void RemoveAll();

  // The user chose other rows, another depth, another sub type.
  void OnRowsChanged();
  void OnDepthChanged();
  void OnSubtypeChanged();

  std::vector<int> GetSelectedRows() const;
  int GetRowCount() const { return static_cast<int>(rows_.size()); }
  // Null for a row that does not exist.
  CONVERSIONFORMATITEM* GetItem(int row);

 private:
  struct Row {
    CONVERSIONFORMATITEM item;
    FORMATINFO info;
    const FILECONVERSIONFORMAT* restriction;  // null: all depths of the format
  };

  bool AddRow(const FORMATINFO& info, const FILECONVERSIONFORMAT* restriction);
  void SetHorizontalExtent();
  Row* ChosenRow();
  void DisableChoice();

  bool FillDepths(Row& row);
  bool ApplyDepth(Row& row, int32_t bitsPerPixel);
  void FillSubtypes(Row& row);
  void AddSubtype(const FORMATSUBTYPEINFO& info);
  void AddAllSubtypes(const Row& row);
  void AddMaskedSubtypes(const Row& row, uint32_t mask);
  bool ApplySubtype(CONVERSIONFORMATITEM& item);
  void UpdateSettingsButton(const Row& row);

  Controls controls_ = {};
  uint32_t uiFlags_ = 0;
  const FILECONVERSIONFORMAT* formats_ = nullptr;
  int32_t formatCount_ = 0;
  std::vector<std::unique_ptr<Row>> rows_;
};
