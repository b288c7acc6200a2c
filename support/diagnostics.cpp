// Descriptions of the machine, appended to a log.

#include "pokermath/diagnostics.h"

#include <fcntl.h>

#include <array>
#include <ctime>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/messages.h"
#include "platform/text.h"
#include "support/system_facts.h"

namespace pokermath {
namespace {

std::string Now() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  std::array<char, 64> text;
  localtime_r(&now, &local);
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S %z", &local)};
}

bool EndsInsideLine(const CString& path) {
  const InputFile log(ToUtf8(path));
  char last;
  return log.size() > 0 && log.ReadAll(log.size() - 1, &last, 1) && last != '\n';
}

// In one piece, so that two programs may write to the same log.
int AppendFacts(const CString& path, const char* title, const std::vector<Fact>& facts) {
  const std::string text = std::string(EndsInsideLine(path) ? "\n" : "") + title + ", " + Now() +
                           "\n" + FactLines(facts) + "\n";
  // A FIFO that nobody reads is no reason to wait.
  constexpr int kFlags = O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK;
  FileWriter file(open(ToUtf8(path).c_str(), kFlags, 0666));
  if (!file.ok()) {
    ShowMessage(L"File <" + path + L"> could not be opened!");
    return 0;
  }
  file.Write(text.data(), text.size());
  file.Flush();
  if (!file.ok()) ShowMessage(L"File <" + path + L"> could not be written!");
  return file.ok() ? 1 : 0;
}

}  // namespace

CString DescribeOs() { return FromUtf8(FactLines(OsFacts())); }

CString DescribeCpu() { return FromUtf8(FactLines(CpuFacts())); }

}  // namespace pokermath

int OSInfoLog(const CString& path) {
  return pokermath::AppendFacts(path, "Operating system", pokermath::OsFacts());
}

int CPUInfoLog(const CString& path) {
  return pokermath::AppendFacts(path, "Processor", pokermath::CpuFacts());
}
