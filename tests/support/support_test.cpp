// Hand-history files as they grow, logs that are cut and described in, and texts from the system.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cwchar>
#include <filesystem>
#include <fstream>
#include <limits>
#include <new>
#include <string>
#include <system_error>
#include <vector>

#include "platform/text.h"
#include "pokermath/diagnostics.h"
#include "pokermath/hand_history.h"
#include "pokermath/messages.h"
#include "pokermath/utilities.h"
#include "support/system_facts.h"
#include "tests/platform/scratch_folder.h"
#include "tests/support/failing_memory.h"

// While it is not negative, this many more reads of the thread succeed and one fails.
static thread_local long reads_left = -1;

extern "C" ssize_t pread(int fd, void* out, size_t bytes, off_t start) {
  if (reads_left >= 0 && reads_left-- == 0) {
    errno = EIO;
    return -1;
  }
  return syscall(SYS_pread64, fd, out, bytes, start);
}

namespace pokermath {
namespace {

using Lines = CStringArray;

class Support : public testing::Test {
 protected:
  void Put(const std::string& content, std::ios::openmode mode = std::ios::trunc) {
    std::ofstream(path_, std::ios::binary | mode) << content;
  }
  void Append(const std::string& content) { Put(content, std::ios::app); }
  std::string Content() const {
    std::ifstream in(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  CString Name() const { return {path_.begin(), path_.end()}; }

  // What one of the two functions gives from a position.
  using Function = int (*)(CString, __int64&, CStringArray&);
  Lines Read(Function function, int expected = 0) {
    Lines lines = {L"is cleared"};
    EXPECT_EQ(function(Name(), position_, lines), expected);
    return lines;
  }

  ScratchFolder folder_;
  std::string path_ = folder_ / "hands.txt";
  __int64 position_ = 0;
};

TEST_F(Support, ReadHistoryFileDecodesAndTrims) {
  Put("\xEF\xBB\xBF  first \xE2\x82\xAC"
      "5\t\r\n\r\n\n \t \r\nb\xFF"
      "c\rd\nlast");
  EXPECT_EQ(Read(ReadHistoryFile), (Lines{L"first €5", L"",
                                          L"b\uFFFD"
                                          L"c\rd",
                                          L"last"}));
  EXPECT_EQ(position_, static_cast<__int64>(std::filesystem::file_size(path_)));
  EXPECT_EQ(Read(ReadHistoryFile), Lines());
  // A character in two pieces, a line end in two pieces, and a mark that is not at the start.
  Append("x\xE2\x82");
  EXPECT_EQ(Read(ReadHistoryFile), (Lines{L"x\uFFFD"}));
  Append("y\r");
  EXPECT_EQ(Read(ReadHistoryFile), (Lines{L"y"}));
  Append("\n\xEF\xBB\xBFz\n");
  EXPECT_EQ(Read(ReadHistoryFile), (Lines{L"\uFEFFz"}));
  // It has become shorter: nothing, and the position stays.
  const __int64 before = position_;
  Put("short\n");
  EXPECT_EQ(Read(ReadHistoryFile), Lines());
  EXPECT_EQ(position_, before);
}

TEST_F(Support, ReadHistoryFileFailures) {
  position_ = 7;
  EXPECT_EQ(Read(ReadHistoryFile, -1), Lines());
  Put("a line\nanother\n");
  position_ = 2;
  reads_left = 0;
  EXPECT_EQ(Read(ReadHistoryFile, -2), Lines());
  EXPECT_EQ(position_, 2) << "nothing is lost";
  std::filesystem::remove(path_);
  position_ = 7;
  std::filesystem::create_directory(path_);
  EXPECT_EQ(Read(ReadHistoryFile, -2), Lines());
  std::vector<CString> messages;
  SetMessageHandler([&messages](const CString& text) { messages.push_back(text); });
  EXPECT_EQ(Read(ReadHistoryFileUTF8, EISDIR), Lines());
  EXPECT_TRUE(messages.empty());
  std::filesystem::remove(path_);
  EXPECT_EQ(Read(ReadHistoryFileUTF8, -1), Lines());
  SetMessageHandler({});
  EXPECT_EQ(messages, (Lines{L"File <" + Name() + L"> could not be opened!"}));
  EXPECT_EQ(position_, 7);
}

TEST_F(Support, OneRoomWritesWindows1252) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder_ / "");
  std::ofstream("888poker.txt", std::ios::binary) << "\x80"
                                                     "5 \xA3"
                                                     "6\r\n";
  Lines lines;
  EXPECT_EQ(ReadHistoryFile(L"888poker.txt", position_, lines), 0);
  EXPECT_EQ(lines, (Lines{L"€5 £6"}));
  // Three letters there, not a mark.
  std::ofstream("888poker.txt", std::ios::binary) << "\xEF\xBB\xBFhi\n";
  position_ = 0;
  EXPECT_EQ(ReadHistoryFile(L"888poker.txt", position_, lines), 0);
  EXPECT_TRUE(HistoryReader("888poker.txt").Read(lines));
  std::filesystem::current_path(before);
  EXPECT_EQ(lines, (Lines{L"\u00EF\u00BB\u00BFhi", L"\u00EF\u00BB\u00BFhi"}));
}

TEST_F(Support, ReadHistoryFileUTF8KeepsItsBytes) {
  Put("\xEF\xBB\xBF $\x80\xA3 \xE2\x82\xAC\xC2\xA3 \r\n\r\na\xBB"
      "b\xC3\xA9\rc\nd\r\ne\xE2\x82\r");
  const Lines expected = {L" $€£ €£ ", L"", L"ab\u00C3\u00A9\rc\nd"};
  EXPECT_EQ(Read(ReadHistoryFileUTF8), expected);
  EXPECT_EQ(position_, static_cast<__int64>(Content().size())) << "the last line is lost";
  Append("\nnext\r\n");
  EXPECT_EQ(Read(ReadHistoryFileUTF8), (Lines{L"\nnext"}));
  Put("a\r\n");
  EXPECT_EQ(Read(ReadHistoryFileUTF8), Lines());
  EXPECT_EQ(position_, 3);
  // Only 32 bits of a position are used, and a file without CR gives nothing.
  position_ = 0;
  Put("only\nlf\n");
  EXPECT_EQ(Read(ReadHistoryFileUTF8), Lines());
  EXPECT_EQ(position_, 8);
}

// Lines of `text` at their ends `end`, and what is left.
std::pair<std::vector<std::string>, std::string> Split(std::string text, const std::string& end) {
  std::vector<std::string> lines;
  for (std::size_t at = text.find(end); at != text.npos; at = text.find(end)) {
    lines.push_back(text.substr(0, at));
    text.erase(0, at + end.size());
  }
  return {lines, text};
}

TEST_F(Support, LongFilesAreReadInPieces) {
  // A piece ends in each place of what stands behind the first line; then a line longer than a
  // piece.
  constexpr std::size_t kPiece = 262144;
  for (const char* behind :
       {"\r\n", "\r\r\n", "\xE2\x82\xAC\r\n", "\xE2\x82", "\xEF\xBB\xBF\r\n"}) {
    for (std::size_t before = 0; before < 6; ++before) {
      const std::string text = std::string(kPiece - before, 'a') + behind + "b\n\r\n" +
                               std::string(kPiece + 9, 'c') + "\xC2\xA3\r\nlast";
      Put(text);
      Lines expected;
      auto [lines, rest] = Split(text, "\n");
      lines.push_back(rest);
      for (std::string& line : lines) {
        while (line.ends_with('\r')) line.pop_back();
        if (!line.empty()) expected.push_back(FromUtf8(line));
      }
      position_ = 0;
      EXPECT_TRUE(Read(ReadHistoryFile) == expected) << before << behind;
      EXPECT_EQ(position_, static_cast<__int64>(text.size()));
      expected.clear();
      for (const std::string& line : Split(text, "\r\n").first) {
        CString decoded;
        for (const char c : line) decoded += FromWindows1252(c);
        const std::pair<const wchar_t*, const wchar_t*> signs[] = {
            {L"\u00E2\u201A\u00AC", L"\u20AC"},
            {L"\u00C2\u00A3", L"\u00A3"},
            {L"\u00EF\u00BB\u00BF", L""}};
        for (const auto& [bytes, sign] : signs) {
          const std::size_t at = decoded.find(bytes);
          if (at != decoded.npos) decoded.replace(at, std::wcslen(bytes), sign);
        }
        expected.push_back(decoded);
      }
      position_ = 0;
      EXPECT_TRUE(Read(ReadHistoryFileUTF8) == expected) << before << behind;
      EXPECT_EQ(position_, static_cast<__int64>(text.size()));
    }
  }
  // The second piece cannot be read.
  Put("one\r\n" + std::string(kPiece, 'a') + "\r\ntwo\r\n");
  position_ = 0;
  reads_left = 1;
  EXPECT_EQ(Read(ReadHistoryFile, -2), Lines());
  EXPECT_EQ(position_, 0);
  reads_left = 1;
  EXPECT_EQ(Read(ReadHistoryFileUTF8), (Lines{L"one"}));
  EXPECT_EQ(position_, static_cast<__int64>(Content().size()));
}

TEST_F(Support, PositionsOutsideTheFile) {
  Put("one\r\n");
  for (const __int64 position : {std::numeric_limits<__int64>::min(), __int64{-1}, __int64{6},
                                 __int64{7}, std::numeric_limits<__int64>::max()}) {
    position_ = position;
    EXPECT_EQ(Read(ReadHistoryFile), Lines()) << position;
    EXPECT_EQ(position_, position);
    // The low 32 bits of the smallest position are 0.
    const bool all = position == std::numeric_limits<__int64>::min();
    EXPECT_EQ(Read(ReadHistoryFileUTF8), (all ? Lines{L"one"} : Lines())) << position;
    EXPECT_EQ(position_, 5);
  }
}

TEST_F(Support, WithoutMemoryNothingIsRead) {
  Put("a line that needs memory\r\nand another one, longer\r\n");
  const auto fails = [](const auto& read) {
    try {
      read();
    } catch (const std::bad_alloc&) {
      return true;
    }
    allocations_left = -1;
    return false;
  };
  for (const Function function : {ReadHistoryFile, ReadHistoryFileUTF8}) {
    Lines lines;
    position_ = 0;
    for (long count = 0;; ++count) {
      CString name = Name();
      allocations_left = count;
      if (!fails([&] { function(std::move(name), position_, lines); })) break;
      ASSERT_EQ(lines, Lines()) << count;
      ASSERT_EQ(position_, 0) << count;
    }
    EXPECT_EQ(lines.size(), 2u);
  }
  HistoryReader reader(path_);
  for (long count = 0;; ++count) {
    Lines lines = {L"before"};
    allocations_left = count;
    if (!fails([&] { reader.Read(lines); })) break;
    ASSERT_EQ(lines, (Lines{L"before"})) << count;
    ASSERT_EQ(reader.position(), 0) << count;
  }
  EXPECT_GT(reader.position(), 0);
}

TEST_F(Support, AMarkAloneIsNoLine) {
  Put("\xEF\xBB\xBF");
  HistoryReader reader(path_);
  Lines lines;
  EXPECT_TRUE(reader.Read(lines));
  std::filesystem::rename(path_, path_ + "2");
  Put("new\n");
  EXPECT_TRUE(reader.Read(lines));
  EXPECT_TRUE(reader.more());
  EXPECT_TRUE(reader.Read(lines));
  EXPECT_FALSE(reader.more());
  EXPECT_EQ(lines, (Lines{L"new"}));
}

TEST_F(Support, HistoryReaderLosesNothing) {
  HistoryReader reader(path_);
  Lines lines;
  EXPECT_FALSE(reader.Read(lines));
  EXPECT_EQ(errno, ENOENT);
  // Every cut of a text into two looks gives the same lines.
  const std::string text = "\xEF\xBB\xBFone \xE2\x82\xAC\r\n\r\ntwo\nthree";
  for (std::size_t cut = 0; cut <= text.size(); ++cut) {
    std::filesystem::remove(path_);
    Put(text.substr(0, cut));
    HistoryReader piecewise(path_);
    lines.clear();
    EXPECT_TRUE(piecewise.Read(lines));
    Append(text.substr(cut));
    // Another reader goes on where this one was.
    HistoryReader other(path_, piecewise.position());
    EXPECT_TRUE(other.Read(lines));
    EXPECT_EQ(lines, (Lines{L"one €", L"", L"two"})) << cut;
    EXPECT_FALSE(other.more());
    EXPECT_EQ(other.position(), static_cast<std::int64_t>(text.size()) - 5);
    lines.clear();
    EXPECT_TRUE(other.ReadUnfinished(lines));
    EXPECT_EQ(lines, (Lines{L"three"}));
    Append("!\n");
    lines.clear();
    EXPECT_TRUE(other.Read(lines));
    EXPECT_EQ(lines, (Lines{L"three!"}));
    // Shorter, then longer with other bytes, then replaced by a longer one.
    Put("new\n");
    lines.clear();
    EXPECT_TRUE(other.Read(lines));
    Put("other\n");
    EXPECT_TRUE(other.Read(lines));
    // What came to the old one since the last look is not lost.
    Append("late\nlast\r");
    std::ofstream(path_ + "2") << "another file\nlonger\n";
    std::filesystem::rename(path_ + "2", path_);
    EXPECT_TRUE(other.Read(lines));
    EXPECT_TRUE(other.more());
    EXPECT_TRUE(other.Read(lines));
    EXPECT_FALSE(other.more());
    EXPECT_EQ(lines, (Lines{L"new", L"other", L"late", L"last", L"another file", L"longer"}));
  }
  // More than is read at a time, and a line longer than that.
  std::string big(std::size_t{20} << 20, 'a');
  Put(big + "\n" + big + "\nend\n");
  HistoryReader large(path_);
  lines.clear();
  do {
    ASSERT_TRUE(large.Read(lines));
  } while (large.more());
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[1].size(), big.size());
}

TEST_F(Support, OnlyALastLineIsUnfinished) {
  Lines lines;
  const auto unfinished = [&](HistoryReader& reader) {
    lines.clear();
    EXPECT_TRUE(reader.ReadUnfinished(lines));
    return lines;
  };
  Put("one\ntw");
  HistoryReader reader(path_);
  EXPECT_EQ(unfinished(reader), Lines()) << "a complete line comes first";
  EXPECT_TRUE(reader.Read(lines));
  EXPECT_EQ(unfinished(reader), (Lines{L"tw"}));
  Append("o\r");
  EXPECT_EQ(unfinished(reader), (Lines{L"two"}));
  Append("\n\r");
  EXPECT_EQ(unfinished(reader), Lines());
  EXPECT_TRUE(reader.Read(lines));
  EXPECT_EQ(lines, (Lines{L"two"}));
  EXPECT_EQ(unfinished(reader), Lines());
  Put("x\ny\n");
  EXPECT_EQ(unfinished(reader), Lines()) << "it has become shorter";
  EXPECT_TRUE(reader.Read(lines));
  EXPECT_EQ(lines, (Lines{L"x", L"y"}));
  // Where the file cannot be read, nothing is given or forgotten.
  Append("z\n");
  reads_left = 0;
  EXPECT_FALSE(reader.Read(lines));
  EXPECT_EQ(errno, EIO);
  EXPECT_TRUE(reader.Read(lines));
  EXPECT_EQ(lines, (Lines{L"x", L"y", L"z"}));
}

TEST_F(Support, ALogThatCannotBeCutIsAsItWas) {
  Put("0123456789");
  for (reads_left = 0; reads_left < 2; ++reads_left) {
    const long which = reads_left;
    TrimLogFile(Name(), 6, 1);
    EXPECT_EQ(Content(), "0123456789") << which;
    reads_left = which;
  }
  reads_left = -1;
  // No byte can be written behind the third.
  const auto before = std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit;
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit three = {3, limit.rlim_max};
  setrlimit(RLIMIT_FSIZE, &three);
  TrimLogFile(Name(), 6, 1);
  setrlimit(RLIMIT_FSIZE, &limit);
  std::signal(SIGXFSZ, before);
  EXPECT_EQ(Content(), "0123456789");
  TrimLogFile(Name(), 6, 1);
  EXPECT_EQ(Content(), "456789");
}

TEST_F(Support, LogsAreCutInPlace) {
  Put("0123456789");
  TrimLogFile(Name(), 4, 11);
  EXPECT_EQ(Content(), "0123456789") << "it is below the limit";
  std::FILE* log = std::fopen(path_.c_str(), "a");
  TrimLogFile(Name(), 4, 10);
  EXPECT_EQ(Content(), "6789");
  std::fputs("more", log);
  std::fclose(log);
  EXPECT_EQ(Content(), "6789more") << "who writes goes on writing to it";
  EXPECT_THROW(TrimLogFile(Name(), 9, 1), std::system_error);
  EXPECT_EQ(Content(), "6789more");
  TrimLogFile(Name(), 8, 1);
  EXPECT_EQ(Content(), "6789more");
  TrimLogFile(Name(), 0, 1);
  EXPECT_EQ(Content(), "");
  TrimLogFile(L"", 0, 0);
  path_ += "none";
  TrimLogFile(Name(), 0, 0);
}

// A system as we describe it, then with nothing in the files and with no files at all.
TEST_F(Support, FactsComeFromFilesThatMayBeMissing) {
  const auto put = [this](const std::string& name, const std::string& content) {
    std::filesystem::create_directories(std::filesystem::path(folder_ / name).parent_path());
    SetContent(folder_ / name, content);
  };
  const auto fact = [](const std::vector<Fact>& facts, const std::string& name) {
    for (const Fact& one : facts) {
      if (one.name == name) return one.value;
    }
    return std::string("none");
  };
  const std::string root = folder_ / "";
  put("etc/os-release", "PRETTY_NAME=x\nNAME=\"My \\\"own\\\" \xFF\x1B\"\nVERSION='7'\n");
  put("proc/meminfo", "MemTotal:   4194304 kB\nSwapTotal: nonsense\n");
  put("sys/fs/cgroup/memory.max", "1610612736\n");
  put("sys/fs/cgroup/memory/memory.limit_in_bytes", "1610612736\n");
  put("proc/cpuinfo", "processor : 0\nmodel name\t: Fast: one\nmodel name\t: other\n");
  put("sys/devices/system/cpu/cpu0/topology/thread_siblings_list", "0\n");
  put("sys/devices/system/cpu/cpu0/topology/core_siblings_list", "0-1\n");
  put("sys/devices/system/cpu/cpu0/cache/index0/level", "1\n");
  put("sys/devices/system/cpu/cpu0/cache/index0/type", "Data\n");
  put("sys/devices/system/cpu/cpu0/cache/index0/size", "48K\n");
  std::vector<Fact> os = OsFacts(root), cpu = CpuFacts(root);
  EXPECT_EQ(fact(os, "name"), ToUtf8(L"My \"own\" \uFFFD?"));
  EXPECT_EQ(fact(os, "version"), "7");
  EXPECT_EQ(fact(os, "memory"), "4.0 GiB");
  EXPECT_EQ(fact(os, "memory limit"), "1.5 GiB");
  EXPECT_EQ(FactLines(os).find("memory limit"), FactLines(os).rfind("memory limit"));
  EXPECT_EQ(fact(os, "swap"), "none");
  EXPECT_EQ(fact(cpu, "model"), "Fast: one");
  EXPECT_EQ(fact(cpu, "cores"), "1 in 1 socket");
  EXPECT_EQ(fact(cpu, "l1d cache"), "48K");
  for (const char* name : {"etc/os-release", "proc/meminfo", "proc/cpuinfo"}) put(name, "");
  EXPECT_EQ(fact(OsFacts(root), "name") + fact(CpuFacts(root), "model"), "nonenone");
  os = OsFacts(root + "none");
  cpu = CpuFacts(root + "none");
  EXPECT_EQ(fact(os, "memory") + fact(cpu, "cores") + fact(cpu, "l1d cache"), "nonenonenone");
  EXPECT_NE(fact(os, "kernel"), "none");
  EXPECT_NE(fact(cpu, "kernels"), "none");
}

TEST_F(Support, LogsDescribeTheMachine) {
  Put("before");  // without an end of the line
  EXPECT_EQ(OSInfoLog(Name()), 1);
  EXPECT_EQ(CPUInfoLog(Name()), 1);
  const std::string content = Content();
  EXPECT_TRUE(content.starts_with("before\nOperating system, 20"));
  EXPECT_NE(content.find("\n\nProcessor, 20"), content.npos);
  EXPECT_TRUE(content.ends_with(ToUtf8(DescribeCpu()) + "\n"));
  EXPECT_NE(DescribeOs().find(L"  kernel            Linux "), CString::npos);
  std::vector<CString> messages;
  SetMessageHandler([&messages](const CString& text) { messages.push_back(text); });
  EXPECT_EQ(OSInfoLog(Name() + L"/x"), 0);
  {
    const FullDisk full(content.size() + 10);
    EXPECT_EQ(CPUInfoLog(Name()), 0);
  }
  // Nobody waits for a reader.
  std::filesystem::remove(path_);
  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  EXPECT_EQ(OSInfoLog(Name()), 0);
  SetMessageHandler({});
  EXPECT_EQ(messages, (Lines{L"File <" + Name() + L"/x> could not be opened!",
                             L"File <" + Name() + L"> could not be written!",
                             L"File <" + Name() + L"> could not be opened!"}));
}

TEST_F(Support, TextsOfTheSystem) {
  wchar_t buffer[260];
  const CString program = GetExecDir(buffer);
  EXPECT_EQ(program, buffer);
  const std::string expected = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  EXPECT_EQ(program, CString(expected.begin(), expected.end()));
  CString text;
  ErrorShow(EACCES, text);
  EXPECT_EQ(text, L"Permission denied\n");
  for (const unsigned long code : {123456ul, ~0ul}) {
    ErrorShow(code, text);
    EXPECT_EQ(text, L"No text found for this error number");
  }
}

}  // namespace
}  // namespace pokermath
