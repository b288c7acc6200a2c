// Any calls of the WebAssembly module's boundary, in any order: a line each, whose first letter is
// the call and whose rest is the request or a number. What goes wrong is refused, the question that
// was open before stays, and sums that are taken and added again are the same answer.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "pages/errors.h"
#include "pages/json.h"

extern "C" {
char* pokermath_request(std::size_t bytes);
const char* pokermath_reply();
std::size_t pokermath_open();
void pokermath_do(double first, double last);
double pokermath_next_stop(double done);
bool pokermath_enough(double done);
double pokermath_part(double done);
double pokermath_cases();
std::size_t pokermath_take_sums();
void pokermath_add_sums();
std::size_t pokermath_answer(double elapsed_seconds, bool out_of_time);
std::size_t pokermath_text();
std::size_t pokermath_csv(std::uint32_t by);
std::size_t pokermath_svg(std::uint32_t by);
std::size_t pokermath_describe();
std::size_t pokermath_range_text();
}

namespace pokermath {
namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

class Host {
 public:
  void Call(char call, std::string_view rest) {
    const std::uint32_t number = rest.empty() ? 0 : static_cast<unsigned char>(rest[0]) - '0';
    switch (call) {
      case 'o':
        Ask(rest);
        steps_ = Json::parse(Reply(pokermath_open()))["steps"];
        done_ = 0;
        return;
      case 'd':
        return Step();
      case 'a':
        return Add(rest);
      case 't':
        return TakeAndAdd();
      case 'r':
        Require(Json::parse(Reply(pokermath_answer(0.001, rest == "1"))).is_object());
        Reply(pokermath_text());
        return;
      case 'c':
        Reply(pokermath_csv(number));
        return;
      case 'v':
        Reply(pokermath_svg(number));
        return;
      case 'e':
        Ask(rest);
        Require(Json::parse(Reply(pokermath_describe())).contains("hands"));
        return;
      case 'w':
        Ask(rest);
        Require(Json::parse(Reply(pokermath_range_text())).contains("text"));
        return;
      default:
        return;
    }
  }

 private:
  static void Ask(std::string_view text) { text.copy(pokermath_request(text.size()), text.size()); }
  static std::string Reply(std::size_t length) { return {pokermath_reply(), length}; }

  // One step at a time: long ones are for other tests.
  void Step() {
    if (done_ >= steps_) return;
    const double stop = pokermath_next_stop(done_);
    Require(stop > done_ && stop <= steps_);
    pokermath_do(done_, done_ + 1);
    ++done_;
    const double part = pokermath_part(done_);
    Require(part >= 0 && part <= 1);
    pokermath_enough(done_);
  }

  // Bytes of anybody: they are refused, or numbers that could be.
  void Add(std::string_view bytes) {
    Ask(bytes);
    pokermath_add_sums();
  }

  void TakeAndAdd() {
    const double before = pokermath_cases();
    const std::string sums = Reply(pokermath_take_sums());
    Add(sums);
    Require(pokermath_cases() == before);
  }

  double steps_ = 0;
  double done_ = 0;
};

}  // namespace
}  // namespace pokermath

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pokermath;
  std::string_view calls(reinterpret_cast<const char*>(data), size);
  Host host;
  while (!calls.empty()) {
    const std::string_view line = calls.substr(0, calls.find('\n'));
    calls.remove_prefix(std::min(calls.size(), line.size() + 1));
    if (line.empty()) continue;
    try {
      host.Call(line[0], line.substr(1));
    } catch (const UsageError& error) {
      const std::string_view text = error.what();
      Require(!text.empty() && text.find('\n') == text.npos);
    }
  }
  return 0;
}
