#include "services/zvcolor/zvcolor.h"

#include <algorithm>
#include <memory>

#include "services/zvcolor/image_profile.h"

namespace {

using zvcolor::Bytes;
using zvcolor::ByteView;
using zvcolor::ImageContainer;

// The barrier of an export.
template <class Work>
int32_t Guarded(Work work) noexcept {
  try {
    return work();
  } catch (...) {
    return ERROR_OUT_OF_MEMORY;
  }
}

bool IsEmpty(const ICCPROFILEDATA& profile) { return profile.dataSize == 0 || !profile.data; }

int32_t OpenSource(const wchar_t* path, int32_t codeOfEmpty, std::unique_ptr<zvfile::FileSource>& source) {
  const int32_t status = zvfile::FileSource::Open(path, source);
  return status == SUCCESS ? SUCCESS : status == ERROR_FILE_EMPTY ? codeOfEmpty : ERROR_FILE_OPEN;
}

struct CoreDeleter {
  void operator()(void* block) const { CoreFree(block, __LINE__, __FILE__); }
};

// Copies checked bytes into the record.
int32_t Take(ByteView bytes, ICCPROFILEDATA& profile) {
  const int32_t status = zvcolor::CheckProfile(bytes);
  if (status != SUCCESS) {
    return status;
  }
  const zvcolor::ProfileHeader header = zvcolor::ReadHeader(bytes);
  std::unique_ptr<void, CoreDeleter> data(CoreAlloc(bytes.size(), 1, __LINE__, __FILE__));
  std::unique_ptr<void, CoreDeleter> tags(CoreAlloc(header.tagCount + 1, sizeof(ICCPROFILETAG), __LINE__, __FILE__));
  if (!data || !tags) {
    return ERROR_OUT_OF_MEMORY;
  }
  std::copy(bytes.begin(), bytes.end(), static_cast<uint8_t*>(data.get()));
  auto* tag = static_cast<ICCPROFILETAG*>(tags.get());
  for (uint32_t i = 0; i < header.tagCount; ++i) {
    const size_t at = 132 + i * sizeof(ICCPROFILETAG);
    tag[i] = {zvcolor::NumberAt(bytes, at), zvcolor::NumberAt(bytes, at + 4), zvcolor::NumberAt(bytes, at + 8)};
  }
  profile = {};
  profile.uStructSize = sizeof(profile);
  profile.version = header.version;
  profile.deviceClass = header.deviceClass;
  profile.colorSpace = header.colorSpace;
  profile.connectionSpace = header.connectionSpace;
  profile.renderingIntent = header.renderingIntent;
  profile.dataSize = static_cast<uint32_t>(bytes.size());
  profile.tagCount = header.tagCount;
  profile.data = data.release();
  profile.tags = static_cast<ICCPROFILETAG*>(tags.release());
  return SUCCESS;
}

// The bytes of a record, checked; a caller may have filled it by hand.
int32_t Checked(const ICCPROFILEDATA* profile, ByteView& bytes) {
  if (!profile) {
    return ERROR_BAD_ARGUMENT;
  }
  if (IsEmpty(*profile)) {
    return ERROR_PROFILE_EMPTY;
  }
  bytes = {static_cast<const uint8_t*>(profile->data), profile->dataSize};
  return zvcolor::CheckProfile(bytes);
}

// A file to be written beside the destination, in whose place it comes at the end. An empty path would be noticed only then.
int32_t CreateReplacement(const wchar_t* path, std::unique_ptr<zvfile::AtomicFile>& file) {
  return *path && zvfile::AtomicFile::Create(path, file) == SUCCESS ? SUCCESS : ERROR_FILE_OPEN;
}

int32_t ReadImage(const wchar_t* path, int32_t page, Bytes& bytes) {
  std::unique_ptr<zvfile::FileSource> source;
  const int32_t status = OpenSource(path, ERROR_FILE_FORMAT, source);
  if (status != SUCCESS) {
    return status;
  }
  const ImageContainer* container = zvcolor::FindContainer(*source);
  return container ? container->read(*source, page, bytes) : zvcolor::ReadOtherProfile(path, page, bytes);
}

int32_t WriteImage(const wchar_t* path, int32_t page, ByteView bytes) {
  std::unique_ptr<zvfile::FileSource> source;
  int32_t status = OpenSource(path, ERROR_FILE_FORMAT, source);
  if (status != SUCCESS) {
    return status;
  }
  const ImageContainer* container = zvcolor::FindContainer(*source);
  if (!container) {
    return zvcolor::ExplainOtherFormat(path);
  }
  std::unique_ptr<zvfile::AtomicFile> file;
  status = CreateReplacement(path, file);
  if (status == SUCCESS) {
    status = container->write(*source, *file, page, bytes);
  }
  if (status == SUCCESS && source->Failed()) {
    status = ERROR_FILE_READ;
  }
  source.reset();  // an open file cannot be replaced everywhere
  return status == SUCCESS ? file->Commit() : status;
}

}  // namespace

int32_t ZV_CALL Z_InitICCProfile(ICCPROFILEDATA* profile, uint32_t recordSize) {
  if (!profile) {
    return ERROR_BAD_ARGUMENT;
  }
  if (recordSize != sizeof(ICCPROFILEDATA)) {
    return ERROR_BAD_RECORD_SIZE;
  }
  *profile = {};
  profile->uStructSize = sizeof(ICCPROFILEDATA);
  return SUCCESS;
}

int32_t ZV_CALL Z_FillICCProfileFromICCFile(const wchar_t* path, ICCPROFILEDATA* profile) {
  return Guarded([=] {
    if (!path || !profile) {
      return ERROR_BAD_ARGUMENT;
    }
    std::unique_ptr<zvfile::FileSource> source;
    const int32_t status = OpenSource(path, ERROR_FILE_FORMAT, source);
    if (status != SUCCESS) {
      return status;
    }
    uint8_t head[64];
    if (!zvcolor::HasSignature({head, source->ReadAt(0, head, sizeof(head))})) {
      return ERROR_FILE_FORMAT;
    }
    Bytes bytes;
    const int32_t read = zvcolor::ReadBytes(*source, 0, source->Size(), bytes);
    return read == SUCCESS ? Take(bytes, *profile) : read == ERROR_FILE_DAMAGED ? ERROR_FILE_READ : read;
  });
}

int32_t ZV_CALL Z_FreeICCProfile(ICCPROFILEDATA* profile) {
  if (profile) {
    CoreFree(profile->data, __LINE__, __FILE__);
    CoreFree(profile->tags, __LINE__, __FILE__);
    Z_InitICCProfile(profile, sizeof(*profile));
  }
  return SUCCESS;
}

int32_t ZV_CALL Z_GenerateICCFile(const ICCPROFILEDATA* profile, const wchar_t* path) {
  return Guarded([=] {
    if (!path) {
      return ERROR_BAD_ARGUMENT;
    }
    ByteView bytes;
    std::unique_ptr<zvfile::AtomicFile> file;
    int32_t status = Checked(profile, bytes);
    if (status == SUCCESS) {
      status = CreateReplacement(path, file);
    }
    if (status != SUCCESS) {
      return status;
    }
    file->Write(bytes.data(), bytes.size());
    return file->Failed() ? ERROR_FILE_WRITE : file->Commit();
  });
}

int32_t ZV_CALL Z_LoadICCProfile(const wchar_t* path, ICCPROFILEDATA* profile, const LOADFILEOPTION* option) {
  return Guarded([=] {
    if (!path || !profile) {
      return ERROR_BAD_ARGUMENT;
    }
    Bytes bytes;
    const int32_t status = ReadImage(path, option ? option->pageNumber : 1, bytes);
    return status == SUCCESS ? Take(bytes, *profile) : status;
  });
}

int32_t ZV_CALL Z_SaveICCProfile(const wchar_t* path, const ICCPROFILEDATA* profile, const SAVEFILEOPTION* option) {
  return Guarded([=] {
    if (!path) {
      return ERROR_BAD_ARGUMENT;
    }
    ByteView bytes;
    const int32_t status = Checked(profile, bytes);
    return status == SUCCESS ? WriteImage(path, option ? option->pageNumber : 1, bytes) : status;
  });
}
