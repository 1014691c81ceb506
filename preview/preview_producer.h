// PreviewProducer makes the picture for the preview pane from the chosen file: its stamp when it has one, else the full image,
// at a size that suits the pane where the format keeps several. It owns the two bitmaps and shows them through its sink; it
// has no window and shows no message.
#pragma once

#include <string>

#include "include/zvfiledlg_open.h"
#include "services/zvfile/zvfile.h"

class PreviewSink {
 public:
  // Null takes the picture away. The bitmap stays the producer's.
  virtual void ShowPreviewBitmap(const BITMAPHANDLE* bitmap) = 0;
  // The file cannot be read: there are no pages to choose from.
  virtual void OnPreviewFailed() = 0;

 protected:
  ~PreviewSink() = default;
};

struct PreviewRules {
  bool useStamp = false;
  bool useFullImage = false;
  bool vectorOnly = false;  // other formats leave the picture as it is
  OPENDLGPREVIEWCALLBACK callback = nullptr;
  void* callbackUserData = nullptr;
};

class PreviewProducer {
 public:
  explicit PreviewProducer(PreviewSink& sink);
  PreviewProducer(const PreviewProducer&) = delete;
  PreviewProducer& operator=(const PreviewProducer&) = delete;
  ~PreviewProducer();

  PreviewRules rules;

  // Produces the picture of a page (from 1) for a pane of that size in pixels. A path that is missing gets the extension
  // added, when that names a file. SUCCESS; the code of a file that cannot be read; 0 for a format that is not accepted.
  int32_t Produce(std::wstring& path, const std::wstring& defaultExtension, int32_t page, SIZE pane);
  // Forgets the stamp and its picture.
  void DropStamp();
  void ShowStamp() { sink_.ShowPreviewBitmap(&stamp_); }

  // What the last file said of itself.
  const FILEINFO& Info() const { return info_; }
  bool IsStamp() const { return isStamp_; }
  void ExpectStamp() { isStamp_ = true; }
  // The file of the last full image; empty after a failure. A stamp leaves it.
  const std::wstring& LastPath() const { return lastPath_; }

 private:
  int32_t ReadInfo(std::wstring& path, const std::wstring& defaultExtension, const LOADFILEOPTION& option);
  void AskCaller(const std::wstring& path, int32_t page);
  void Fail();
  bool LoadStamp(const std::wstring& path, LOADFILEOPTION& option);
  void LoadFullImage(const std::wstring& path, LOADFILEOPTION& option, SIZE pane);

  PreviewSink& sink_;
  FILEINFO info_ = {};
  BITMAPHANDLE stamp_ = {};
  BITMAPHANDLE full_ = {};
  bool isStamp_ = false;
  std::wstring lastPath_;
};
