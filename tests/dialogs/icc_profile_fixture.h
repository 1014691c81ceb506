// The ICC profile dialog over the real colour library: profiles and pictures for it, and what it leaves in the record.
#pragma once

#include "tests/dialogs/icc_fixture.h"
#include "tests/support/icc_profiles.h"
#include "tests/support/pictures.h"

namespace zvtest {

class IccProfile : public IccDialog {
 protected:
  ~IccProfile() override { Z_FreeICCProfile(&params.iccProfile); }

  FileBytes InRecord() const {
    const auto* data = static_cast<const uint8_t*>(params.iccProfile.data);
    return FileBytes(data, data + params.iccProfile.dataSize);
  }
  std::wstring AddProfile(const FileBytes& bytes) { return folder.AddFile(L"given.icc", bytes); }
  void PassIn(const FileBytes& bytes) {
    ASSERT_EQ(SUCCESS, Z_FillICCProfileFromICCFile(AddProfile(bytes).c_str(), &params.iccProfile));
  }
  std::wstring Picture(const std::wstring& name, const PictureKind& kind) {
    const std::wstring path = folder.File(name);
    EXPECT_TRUE(WritePicture(path, kind)) << "a picture for the test";
    return path;
  }
};

}  // namespace zvtest
