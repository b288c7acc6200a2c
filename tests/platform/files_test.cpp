#include "platform/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/platform/scratch_folder.h"

namespace {

// What there is of files without a name.
enum class Unnamed { kAll, kStayUnnamed, kNone };
Unnamed unnamed_files = Unnamed::kAll;

}  // namespace

extern "C" int open(const char* path, int flags, ...) {
  std::va_list rest;
  va_start(rest, flags);
  const unsigned mode = va_arg(rest, unsigned);
  va_end(rest);
  if (unnamed_files == Unnamed::kNone && (flags & O_TMPFILE) == O_TMPFILE) {
    errno = EOPNOTSUPP;
    return -1;
  }
  return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

extern "C" int linkat(int from, const char* path, int to, const char* name, int flags) noexcept {
  if (unnamed_files == Unnamed::kStayUnnamed) {
    errno = EPERM;
    return -1;
  }
  return static_cast<int>(syscall(SYS_linkat, from, path, to, name, flags));
}

namespace pokermath {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

bool Replace(const std::string& path, const std::string& content) {
  AtomicFile file(path);
  file.Write(content.data(), content.size());
  return file.Commit();
}

class AtomicFileOf : public testing::TestWithParam<Unnamed> {
 protected:
  AtomicFileOf() { unnamed_files = GetParam(); }
  ~AtomicFileOf() override { unnamed_files = Unnamed::kAll; }
};
INSTANTIATE_TEST_SUITE_P(FileSystems, AtomicFileOf,
                         testing::Values(Unnamed::kAll, Unnamed::kStayUnnamed, Unnamed::kNone));

TEST_P(AtomicFileOf, AppearsWholeOrNotAtAll) {
  const ScratchFolder folder;
  const std::string path = folder / "table";
  std::string large(200'000, 'x');  // beyond what is gathered, in small and in large pieces
  {
    AtomicFile file(path);
    EXPECT_TRUE(file.ok());
    for (std::size_t i = 0; i < 100'000; i += 1000) file.Write(large.data() + i, 1000);
    file.Flush();
    file.Write(large.data() + 100'000, 100'000);
    EXPECT_FALSE(fs::exists(path)) << "visible before Commit";
    EXPECT_TRUE(file.Commit());
  }
  EXPECT_EQ(ContentOf(path), large);
  {
    AtomicFile abandoned(path);
    abandoned.Write("new", 3);
  }
  EXPECT_EQ(ContentOf(path), large);
  {
    const FullDisk full(1000);
    EXPECT_FALSE(Replace(path, large + "y"));
  }
  EXPECT_EQ(ContentOf(path), large);
  EXPECT_TRUE(Replace(path, "short"));
  EXPECT_EQ(ContentOf(path), "short");
  EXPECT_EQ(folder.Names(), Names{"table"}) << "a temporary file is left";
}

TEST_P(AtomicFileOf, KeepsLinksAndPermissions) {
  const ScratchFolder folder;
  fs::create_directory(folder / "far");
  SetContent(folder / "far/table", "old");
  const fs::perms perms = fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read;
  fs::permissions(folder / "far/table", perms);
  fs::create_symlink("far/table", folder / "link");
  ASSERT_TRUE(Replace(folder / "link", "new"));
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(ContentOf(folder / "far/table"), "new");
  EXPECT_EQ(fs::status(folder / "far/table").permissions(), perms);
  fs::create_symlink("far/not yet", folder / "early link");
  ASSERT_TRUE(Replace(folder / "early link", "new"));
  EXPECT_TRUE(fs::is_symlink(folder / "early link"));
  EXPECT_EQ(ContentOf(folder / "far/not yet"), "new");

  ASSERT_TRUE(Replace(folder / "plain", "new"));
  SetContent(folder / "by other means", "");
  EXPECT_EQ(fs::status(folder / "plain").permissions(),
            fs::status(folder / "by other means").permissions());
}

TEST_P(AtomicFileOf, RefusesWhatCannotBeWritten) {
  const ScratchFolder folder;
  fs::create_directory(folder / "taken");
  for (const char* name : {"taken", "no such folder/table"}) {
    EXPECT_FALSE(AtomicFile(folder / name).ok()) << name;
    EXPECT_FALSE(Replace(folder / name, "text")) << name;
  }
  EXPECT_EQ(folder.Names(), Names{"taken"});
  // What the program itself has open under another name.
  SetContent(folder / "open", "kept");
  const int fd = open((folder / "open").c_str(), O_WRONLY | O_CLOEXEC);
  for (const char* links : {"/proc/self/fd/", "/dev/fd/"}) {
    EXPECT_FALSE(Replace(links + std::to_string(fd), "text")) << links;
  }
  close(fd);
  EXPECT_EQ(ContentOf(folder / "open"), "kept");
  EXPECT_FALSE(Replace("/dev/full", "text"));
  EXPECT_TRUE(Replace("/dev/null", "text"));
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

// Names that a process leaves which is killed while it writes `name`, or, if it may, right after.
Names LeftByAKilledWriter(const ScratchFolder& folder, const char* name, bool commits) {
  int ready[2];
  if (pipe(ready) != 0) return {"no pipe"};
  const pid_t child = fork();
  if (child == 0) {
    AtomicFile file(folder / name);
    const std::string half(100'000, 'x');
    file.Write(half.data(), half.size());
    file.Flush();
    if (commits) file.Commit();
    (void)!write(ready[1], "x", 1);
    for (;;) pause();
  }
  char byte;
  EXPECT_EQ(read(ready[0], &byte, 1), 1);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  close(ready[0]);
  close(ready[1]);
  return folder.Names();
}

TEST_P(AtomicFileOf, AKilledWriterLeavesNothingForGood) {
  const ScratchFolder folder;
  // One that is at work in the same folder is left alone.
  AtomicFile other(folder / "other");
  const std::size_t named = GetParam() == Unnamed::kNone ? 1 : 0;
  EXPECT_EQ(LeftByAKilledWriter(folder, "table", false).size(), 2 * named);
  ASSERT_TRUE(Replace(folder / "table", "old"));
  EXPECT_EQ(folder.Names().size(), 1 + named);
  EXPECT_EQ(LeftByAKilledWriter(folder, "table", false).size(), 1 + 2 * named);
  EXPECT_EQ(ContentOf(folder / "table"), "old");
  EXPECT_EQ(LeftByAKilledWriter(folder, "table", true).size(), 1 + named);
  EXPECT_EQ(ContentOf(folder / "table").size(), 100'000u);
  EXPECT_TRUE(other.Commit());
  // What another process left between two names, and what only looks like it.
  SetContent(folder / ".pokermath-4194304-7", "left");
  SetContent(folder / ".pokermath-4194304-8", "at work");
  const int at_work = open((folder / ".pokermath-4194304-8").c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(flock(at_work, LOCK_EX), 0);
  SetContent(folder / ".pokermath-notes", "mine");
  ASSERT_EQ(mkfifo((folder / ".pokermath-4194304-9").c_str(), 0600), 0);
  ASSERT_TRUE(Replace(folder / "another", "new"));
  Names names = folder.Names();
  std::ranges::sort(names);
  EXPECT_EQ(names, (Names{".pokermath-4194304-8", ".pokermath-4194304-9", ".pokermath-notes",
                          "another", "other", "table"}));
  close(at_work);
}

TEST(NewFile, GrowsInSightAndTouchesNothing) {
  const ScratchFolder folder;
  {
    NewFile report(folder / "report");
    report.Write("line 1", 6);
    report.Flush();
    EXPECT_EQ(ContentOf(folder / "report"), "line 1");
    EXPECT_FALSE(NewFile(folder / "report").ok());
    report.Write(", line 2", 8);
  }
  EXPECT_EQ(ContentOf(folder / "report"), "line 1, line 2");
}

TEST(Files, ReadingNeedsARegularFileOfTheLength) {
  const ScratchFolder folder;
  SetContent(folder / "four", "abcd");
  char bytes[5] = {};
  EXPECT_EQ(FileLength(folder / "four"), 4u);
  EXPECT_TRUE(ReadFile(folder / "four", bytes, 4));
  EXPECT_STREQ(bytes, "abcd");
  EXPECT_FALSE(ReadFile(folder / "four", bytes, 5));
  EXPECT_FALSE(FileLength(folder / "none"));
  EXPECT_FALSE(ReadFile(folder / "none", bytes, 1));
  EXPECT_FALSE(FileLength(folder / "."));
  EXPECT_FALSE(ReadFile(folder / ".", bytes, 1));
  // Nobody waits for the other end of a FIFO.
  ASSERT_EQ(mkfifo((folder / "fifo").c_str(), 0600), 0);
  EXPECT_FALSE(FileLength(folder / "fifo"));
  EXPECT_FALSE(ReadFile(folder / "fifo", bytes, 1));
  EXPECT_FALSE(ReadWholeFile(folder / "fifo"));
  EXPECT_EQ(InputFile(folder / "fifo").error(), EINVAL);
  EXPECT_EQ(InputFile(folder / ".").error(), EISDIR);
  EXPECT_EQ(InputFile(folder / "none").error(), ENOENT);
  EXPECT_EQ(ReadWholeFile(folder / "four"), "abcd");
  EXPECT_GT(ReadWholeFile("/proc/self/status").value_or("").size(), 100u) << "has no length";
}

}  // namespace
}  // namespace pokermath
