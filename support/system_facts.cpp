// The system tells about itself in files that may not be there: in a container, on another kernel.
// Each fact is looked for by itself.

#include "support/system_facts.h"

#include <gnu/libc-version.h>
#include <sched.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <set>
#include <string_view>

#include "platform/files.h"
#include "platform/isa.h"
#include "platform/text.h"

namespace pokermath {
namespace {

constexpr std::size_t kMostBytes = std::size_t{1} << 24;

// Empty if there is no such file.
std::string Content(const std::string& path) {
  return ReadWholeFile(path, kMostBytes).value_or("");
}

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t start = text.find_first_not_of(kBlanks);
  if (start == text.npos) return {};
  return text.substr(start, text.find_last_not_of(kBlanks) + 1 - start);
}

std::string FirstLine(const std::string& path) {
  const std::string content = Content(path);
  return std::string(Trimmed(std::string_view(content).substr(0, content.find('\n'))));
}

// The value of the first line "key <separator> value".
std::string ValueOf(std::string_view content, std::string_view key, char separator) {
  while (!content.empty()) {
    const std::string_view line = content.substr(0, content.find('\n'));
    content.remove_prefix(std::min(line.size() + 1, content.size()));
    const std::size_t at = line.find(separator);
    if (at != line.npos && Trimmed(line.substr(0, at)) == key) {
      return std::string(Trimmed(line.substr(at + 1)));
    }
  }
  return "";
}

// Values may be quoted as in a shell.
std::string Unquoted(std::string_view value) {
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] == '\\' && i + 1 < value.size()) {
      text += value[++i];
    } else if (value[i] != '"' && value[i] != '\'') {
      text += value[i];
    }
  }
  return text;
}

// The number at the start of a text.
std::optional<std::uint64_t> NumberIn(std::string_view text) {
  std::uint64_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  return result.ec == std::errc() ? std::optional(number) : std::nullopt;
}

std::string Gibibytes(std::uint64_t bytes) {
  std::array<char, 32> text;
  std::snprintf(text.data(), text.size(), "%.1f GiB", static_cast<double>(bytes) / (1 << 30));
  return text.data();
}

std::string Number(std::int64_t number) { return std::to_string(number); }

void Add(std::vector<Fact>& facts, const char* name, const std::string& value) {
  if (!value.empty()) facts.push_back({name, ToUtf8(OnOneLine(FromUtf8(value)))});
}

void AddRelease(std::vector<Fact>& facts, const std::string& root) {
  std::string release = Content(root + "/etc/os-release");
  if (release.empty()) release = Content(root + "/usr/lib/os-release");
  Add(facts, "name", Unquoted(ValueOf(release, "NAME", '=')));
  Add(facts, "version", Unquoted(ValueOf(release, "VERSION", '=')));
}

void AddMemory(std::vector<Fact>& facts, const std::string& root) {
  const std::string info = Content(root + "/proc/meminfo");
  const auto bytes = [&info](const char* key) -> std::optional<std::uint64_t> {
    const auto kibibytes = NumberIn(ValueOf(info, key, ':'));
    return kibibytes ? std::optional(*kibibytes << 10) : std::nullopt;
  };
  const auto total = bytes("MemTotal"), available = bytes("MemAvailable"),
             swap = bytes("SwapTotal");
  if (total) {
    Add(facts, "memory",
        Gibibytes(*total) + (available ? ", " + Gibibytes(*available) + " available" : ""));
  }
  if (swap) Add(facts, "swap", Gibibytes(*swap));
  // Of a container: the two versions of control groups.
  for (const char* file : {"/memory.max", "/memory/memory.limit_in_bytes"}) {
    const auto limit = NumberIn(FirstLine(root + "/sys/fs/cgroup" + file));
    if (!limit || (total && *limit >= *total)) continue;
    Add(facts, "memory limit", Gibibytes(*limit));
    break;
  }
  Add(facts, "large pages", FirstLine(root + "/sys/kernel/mm/transparent_hugepage/enabled"));
}

// The variable that decides which characters there are.
std::string LocaleText() {
  for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return std::string(value) + " (" + variable + ")";
  }
  return "C (none is set)";
}

std::int64_t UsableProcessors() {
  cpu_set_t set;
  if (sched_getaffinity(0, sizeof set, &set) == 0) return CPU_COUNT(&set);
  return sysconf(_SC_NPROCESSORS_ONLN);
}

// How many groups the processors form that share what the file lists.
std::size_t Groups(const std::string& root, const char* file) {
  std::set<std::string> groups;
  const long processors = sysconf(_SC_NPROCESSORS_CONF);
  for (long i = 0; i < processors; ++i) {
    const std::string line =
        FirstLine(root + "/sys/devices/system/cpu/cpu" + Number(i) + "/topology/" + file);
    if (!line.empty()) groups.insert(line);
  }
  return groups.size();
}

void AddProcessors(std::vector<Fact>& facts, const std::string& root) {
  Add(facts, "processors",
      Number(sysconf(_SC_NPROCESSORS_ONLN)) + " online, " + Number(UsableProcessors()) +
          " for this program");
  const std::size_t cores = Groups(root, "thread_siblings_list");
  const std::size_t sockets = Groups(root, "core_siblings_list");
  if (cores > 0 && sockets > 0) {
    Add(facts, "cores",
        std::to_string(cores) + " in " + std::to_string(sockets) +
            (sockets == 1 ? " socket" : " sockets"));
  }
}

// Of the first processor.
void AddCaches(std::vector<Fact>& facts, const std::string& root) {
  for (int i = 0;; ++i) {
    const std::string cache = root + "/sys/devices/system/cpu/cpu0/cache/index" + Number(i) + "/";
    const std::string level = FirstLine(cache + "level");
    if (level.empty()) return;
    const std::string type = FirstLine(cache + "type");
    const std::string kind = type == "Data" ? "d" : type == "Instruction" ? "i" : "";
    const std::string sharing = FirstLine(cache + "shared_cpu_list");
    const std::string size = FirstLine(cache + "size");
    if (size.empty()) continue;
    Add(facts, ("l" + level + kind + " cache").c_str(),
        size + (sharing.empty() ? "" : ", of processors " + sharing));
  }
}

}  // namespace

std::vector<Fact> OsFacts(const std::string& root) {
  std::vector<Fact> facts;
  AddRelease(facts, root);
  utsname names{};
  if (uname(&names) == 0) {
    Add(facts, "kernel", std::string(names.sysname) + " " + names.release);
    Add(facts, "kernel build", names.version);
    Add(facts, "machine", names.machine);
  }
  Add(facts, "c library", std::string("glibc ") + gnu_get_libc_version());
  AddMemory(facts, root);
  Add(facts, "page size", Number(sysconf(_SC_PAGESIZE)) + " bytes");
  Add(facts, "locale", LocaleText());
  return facts;
}

std::vector<Fact> CpuFacts(const std::string& root) {
  std::vector<Fact> facts;
  Add(facts, "model", ValueOf(Content(root + "/proc/cpuinfo"), "model name", ':'));
  AddProcessors(facts, root);
  AddCaches(facts, root);
  Add(facts, "instruction sets", UsableInstructionSets());
  Add(facts, "kernels", std::string("for ") + IsaName(BestIsa()));
  return facts;
}

std::string FactLines(const std::vector<Fact>& facts) {
  std::string text;
  for (const Fact& fact : facts) {
    std::string name = fact.name;
    name.resize(std::max<std::size_t>(name.size(), 17), ' ');
    text += "  " + name + " " + fact.value + "\n";
  }
  return text;
}

}  // namespace pokermath
