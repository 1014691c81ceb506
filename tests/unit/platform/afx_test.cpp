#include "platform/afx.h"

#include <gtest/gtest.h>

#include <thread>

#include "platform/unique_handle.h"
#include "platform/win_app.h"

namespace {

constexpr SIZE_T kPage = 4096;

// Three pages of address space, each committed with its own protection.
class Pages {
 public:
  Pages() : first_(static_cast<BYTE*>(::VirtualAlloc(nullptr, 3 * kPage, MEM_RESERVE, PAGE_NOACCESS))) {}
  ~Pages() { ::VirtualFree(first_, 0, MEM_RELEASE); }
  Pages(const Pages&) = delete;
  Pages& operator=(const Pages&) = delete;

  void Commit(int page, DWORD protection) {
    ASSERT_NE(::VirtualAlloc(first_ + page * kPage, kPage, MEM_COMMIT, protection), nullptr);
  }
  BYTE* At(int page, int offset = 0) const { return first_ + page * static_cast<ptrdiff_t>(kPage) + offset; }

 private:
  BYTE* first_;
};

TEST(ValidAddress, RefusesNullAndUncommittedMemory) {
  const Pages pages;
  EXPECT_FALSE(AfxIsValidAddress(nullptr, 1));
  EXPECT_FALSE(AfxIsValidAddress(nullptr, 0));
  EXPECT_FALSE(AfxIsValidAddress(pages.At(0), 1, FALSE));
  EXPECT_FALSE(AfxIsValidAddress(reinterpret_cast<void*>(16), 8, FALSE));
}

TEST(ValidAddress, TellsReadingFromWriting) {
  Pages pages;
  pages.Commit(0, PAGE_READONLY);
  EXPECT_TRUE(AfxIsValidAddress(pages.At(0), kPage, FALSE));
  EXPECT_FALSE(AfxIsValidAddress(pages.At(0), kPage, TRUE));
  static const char constant[] = "read only";
  EXPECT_TRUE(AfxIsValidAddress(constant, sizeof(constant), FALSE));
  int local = 0;
  EXPECT_TRUE(AfxIsValidAddress(&local, sizeof(local), TRUE));
}

TEST(ValidAddress, LooksAtEveryRegionOfARange) {
  Pages pages;
  pages.Commit(0, PAGE_READWRITE);
  pages.Commit(1, PAGE_READONLY);
  EXPECT_TRUE(AfxIsValidAddress(pages.At(0), 2 * kPage, FALSE));
  EXPECT_FALSE(AfxIsValidAddress(pages.At(0), 2 * kPage, TRUE));
  EXPECT_FALSE(AfxIsValidAddress(pages.At(0), kPage + 1, TRUE));
  EXPECT_TRUE(AfxIsValidAddress(pages.At(0), kPage, TRUE));
  EXPECT_FALSE(AfxIsValidAddress(pages.At(1, kPage - 8), 9, FALSE));
  EXPECT_TRUE(AfxIsValidAddress(pages.At(1, kPage - 8), 8, FALSE));
}

TEST(ValidAddress, RefusesGuardPagesAndWrappingRanges) {
  Pages pages;
  pages.Commit(0, PAGE_READWRITE | PAGE_GUARD);
  EXPECT_FALSE(AfxIsValidAddress(pages.At(0), 1));
  int local = 0;
  EXPECT_FALSE(AfxIsValidAddress(&local, ~UINT_PTR{0}, FALSE));
}

TEST(ValidString, EndsAtTheTerminatorOrAtUnreadableMemory) {
  Pages pages;
  pages.Commit(0, PAGE_READWRITE);
  auto* const last = reinterpret_cast<wchar_t*>(pages.At(1)) - 2;
  last[0] = L'a';
  last[1] = L'\0';
  EXPECT_TRUE(AfxIsValidString(last));
  last[1] = L'b';
  EXPECT_FALSE(AfxIsValidString(last));
  EXPECT_TRUE(AfxIsValidString(last, 2));
  EXPECT_FALSE(AfxIsValidString(last, 3));
  EXPECT_FALSE(AfxIsValidString(nullptr));
}

TEST(FileRemove, ThrowsWhatTheSystemSaid) {
  try {
    CFile::Remove(L"no such folder\\no such file");
    FAIL() << "nothing was thrown";
  } catch (CFileException* e) {
    EXPECT_EQ(e->m_cause, CFileException::badPath);
    EXPECT_EQ(e->m_lOsError, ERROR_PATH_NOT_FOUND);
    CString text;
    EXPECT_TRUE(e->GetErrorMessage(text));
    EXPECT_FALSE(text.IsEmpty());
    e->Delete();
  }
}

TEST(FileRemove, RemovesAFileAndThenMissesIt) {
  wchar_t folder[MAX_PATH];
  wchar_t path[MAX_PATH];
  ASSERT_NE(::GetTempPathW(MAX_PATH, folder), 0u);
  ASSERT_NE(::GetTempFileNameW(folder, L"zvp", 0, path), 0u);
  CFile::Remove(path);
  EXPECT_EQ(::GetFileAttributesW(path), INVALID_FILE_ATTRIBUTES);
  int cause = CFileException::none;
  TRY { CFile::Remove(path); }
  CATCH(CFileException, e) { cause = e->m_cause; }
  END_CATCH
  EXPECT_EQ(cause, CFileException::fileNotFound);
}

TEST(FileRemove, NamesASharingViolation) {
  wchar_t folder[MAX_PATH];
  wchar_t path[MAX_PATH];
  ::GetTempPathW(MAX_PATH, folder);
  ::GetTempFileNameW(folder, L"zvp", 0, path);
  unique_hfile open(::CreateFileW(path, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(open);
  int cause = CFileException::none;
  TRY { CFile::Remove(path); }
  CATCH(CFileException, e) { cause = e->m_cause; }
  END_CATCH
  EXPECT_EQ(cause, CFileException::sharingViolation);
  open.reset();
  CFile::Remove(path);
}

TEST(ModuleContext, NestsAndPutsBackWhatItFound) {
  AFX_MODULE_STATE* const base = AfxGetStaticModuleState();
  AFX_MODULE_STATE other = *base;
  other.m_hCurrentResourceHandle = reinterpret_cast<HINSTANCE>(0x1234);
  EXPECT_EQ(AfxGetModuleState(), base);
  EXPECT_EQ(ModuleContext::Depth(), 0);
  {
    const ModuleContext outer(&other);
    EXPECT_EQ(AfxGetResourceHandle(), other.m_hCurrentResourceHandle);
    {
      AFX_MANAGE_STATE(base)
      EXPECT_EQ(AfxGetModuleState(), base);
      EXPECT_EQ(ModuleContext::Depth(), 2);
    }
    EXPECT_EQ(AfxGetModuleState(), &other);
  }
  EXPECT_EQ(AfxGetModuleState(), base);
  EXPECT_EQ(ModuleContext::Depth(), 0);
}

TEST(ModuleContext, IsLeftWhenAnExceptionPasses) {
  AFX_MODULE_STATE other = *AfxGetStaticModuleState();
  try {
    const ModuleContext context(&other);
    throw 1;
  } catch (int) {
  }
  EXPECT_EQ(AfxGetModuleState(), AfxGetStaticModuleState());
}

TEST(ModuleContext, BelongsToItsThread) {
  AFX_MODULE_STATE other = *AfxGetStaticModuleState();
  const ModuleContext context(&other);
  AFX_MODULE_STATE* seen = nullptr;
  std::thread([&] { seen = AfxGetModuleState(); }).join();
  EXPECT_EQ(seen, AfxGetStaticModuleState());
  EXPECT_EQ(AfxGetModuleState(), &other);
}

TEST(ModuleContext, KnowsItsModuleWithoutDllMain) { EXPECT_EQ(AfxGetInstanceHandle(), ::GetModuleHandleW(nullptr)); }

class ProfileTest : public testing::Test {
 protected:
  ProfileTest() : app_(L"zvplatform profile test") { app_.SetRegistryKey(L"Zorvane Test"); }
  ~ProfileTest() override {
    ::RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Zorvane Test");
    ::RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\Zorvane Test");
  }
  CWinApp app_;
};

TEST_F(ProfileTest, GivesTheDefaultForWhatWasNeverWritten) {
  EXPECT_EQ(app_.GetProfileInt(L"Section", L"Missing", 12), 12u);
  EXPECT_EQ(app_.GetProfileString(L"Section", L"Missing", L"x"), L"x");
}

TEST_F(ProfileTest, KeepsNumbersAndTexts) {
  EXPECT_TRUE(app_.WriteProfileInt(L"Section", L"Number", -5));
  EXPECT_EQ(static_cast<int>(app_.GetProfileInt(L"Section", L"Number", 0)), -5);
  EXPECT_TRUE(app_.WriteProfileString(L"Section", L"Text", L"some text"));
  EXPECT_EQ(app_.GetProfileString(L"Section", L"Text"), L"some text");
  EXPECT_TRUE(app_.WriteProfileString(L"Section", L"Text", nullptr));
  EXPECT_EQ(app_.GetProfileString(L"Section", L"Text", L"gone"), L"gone");
}

TEST_F(ProfileTest, IgnoresAnEntryOfAnotherType) {
  app_.WriteProfileString(L"Section", L"Text", L"7");
  EXPECT_EQ(app_.GetProfileInt(L"Section", L"Text", 3), 3u);
}

TEST(Profile, StoresNothingWithoutARegistryKey) {
  CWinApp app(L"keyless");
  EXPECT_FALSE(app.WriteProfileInt(L"Section", L"Number", 1));
  EXPECT_EQ(app.GetProfileInt(L"Section", L"Number", 9), 9u);
}

TEST(Application, IsKnownWhileItLives) {
  {
    CWinApp app;
    EXPECT_EQ(AfxGetApp(), &app);
    EXPECT_EQ(app.m_strAppName, L"platform_afx_test");
  }
  EXPECT_EQ(AfxGetApp(), nullptr);
}

int closed = 0;
void CloseCounted(HANDLE) { ++closed; }
using counted_handle = unique_handle<HANDLE, CloseCounted, -1>;
HANDLE Number(std::intptr_t value) { return reinterpret_cast<HANDLE>(value); }

TEST(UniqueHandle, ClosesOnceAndNeverTheInvalidValue) {
  closed = 0;
  {
    counted_handle a(Number(5));
    counted_handle b(std::move(a));
    EXPECT_FALSE(a);
    EXPECT_TRUE(b);
    b.reset(Number(6));
    EXPECT_EQ(closed, 1);
    counted_handle c;
    c = std::move(b);
    counted_handle invalid(INVALID_HANDLE_VALUE);
    EXPECT_FALSE(invalid);
  }
  EXPECT_EQ(closed, 2);
}

TEST(UniqueHandle, GivesItsHandleUp) {
  closed = 0;
  counted_handle a(Number(5));
  EXPECT_EQ(a.release(), Number(5));
  EXPECT_FALSE(a);
  EXPECT_EQ(closed, 0);
}

TEST(ScopeExit, RunsUnlessReleased) {
  int runs = 0;
  {
    const scope_exit run([&] { ++runs; });
    scope_exit released([&] { runs += 10; });
    released.release();
  }
  EXPECT_EQ(runs, 1);
}

}  // namespace
