// What becomes of the process when the long-tail library runs into an error that it takes for fatal: nothing.
#ifndef _WIN32
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include <magick/api.h>

#include "file_test_support.h"

namespace {

using namespace zvtest;

int allocationsLeft = -1;  // negative: without end

void* AllocateWhileThereIs(size_t bytes) {
  if (allocationsLeft == 0) return nullptr;
  if (allocationsLeft > 0) --allocationsLeft;
  return std::malloc(bytes);
}

enum Outcome { kWentOn = 0, kNotEnteredAgain = 3, kConfused = 4 };

// Loads with a library whose allocations fail after some, then once more with all the memory there is. In a process of its
// own, since the library is not entered again after a fatal error.
[[noreturn]] void LoadWithFailingMemory(const std::filesystem::path& path, int allocations) {
  Picture first, second, third;
  if (Load(path, first) != SUCCESS) _exit(kConfused);
  MagickAllocFunctions(std::free, AllocateWhileThereIs, std::realloc);
  allocationsLeft = allocations;
  const int32_t failing = Load(path, second);
  allocationsLeft = -1;
  const int32_t after = Load(path, third);
  if (after == SUCCESS) _exit(kWentOn);
  _exit(after == ERROR_OUT_OF_MEMORY && failing == ERROR_OUT_OF_MEMORY ? kNotEnteredAgain : kConfused);
}

TEST(LongTailMemory, RunningOutNeverEndsTheProcess) {
  using namespace std::string_view_literals;
  TestFolder folder;
  constexpr std::string_view kMap = "P6\n2 1\n255\n\1\2\3\4\5\6"sv;
  const auto path = folder.Path(u"a.ppm");
  WriteBytes(path, {kMap.begin(), kMap.end()});
  int fatal = 0;
  for (int allocations = 0; allocations < 40; ++allocations) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) LoadWithFailingMemory(path, allocations);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status) << " after " << allocations;
    const int outcome = WEXITSTATUS(status);
    EXPECT_TRUE(outcome == kWentOn || outcome == kNotEnteredAgain) << outcome << " after " << allocations;
    fatal += outcome == kNotEnteredAgain;
  }
  EXPECT_GT(fatal, 0) << "no error was fatal: nothing was tested";
}

}  // namespace
#endif
