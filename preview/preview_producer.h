// PreviewProducer makes the picture for the preview pane from the chosen file: its stamp when it has one, else the full image,
// at a size that suits the pane where the format keeps several. It hands the picture over to its sink, has no window and shows
// no message.
#pragma once

#include <string>

#include "include/zvfiledlg_open.h"
#include "services/zvfile/zvfile.h"

class PreviewSink {
 public:
  // Takes the pixels over, whatever becomes of them. Null or a bitmap without pixels takes the picture away.
  virtual void ShowPreviewBitmap(BITMAPHANDLE* bitmap) = 0;
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
  explicit PreviewProducer(PreviewSink& sink) : sink_(sink) { KeepPixelMemory(1); }
  PreviewProducer(const PreviewProducer&) = delete;
  PreviewProducer& operator=(const PreviewProducer&) = delete;
  ~PreviewProducer() { KeepPixelMemory(0); }

  PreviewRules rules;

  // Produces the picture of a page (from 1) for a pane of that size in pixels. A path that is missing gets the extension
  // added, when that names a file. SUCCESS; the code of a file that cannot be read; 0 for a format that is not accepted.
  int32_t Produce(std::wstring& path, const std::wstring& defaultExtension, int32_t page, SIZE pane);
  // Takes the picture away: without stamps and full images there is none to show.
  void ShowNothing() { sink_.ShowPreviewBitmap(nullptr); }

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
  bool ShowStamp(const std::wstring& path, const LOADFILEOPTION& option);
  void ShowFullImage(const std::wstring& path, const LOADFILEOPTION& option, SIZE pane);

  PreviewSink& sink_;
  FILEINFO info_ = {};
  bool isStamp_ = false;
  std::wstring lastPath_;
};
