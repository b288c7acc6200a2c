// What a host calls: numbers, and texts as bytes in UTF-8.
//
// A request is written to the room that pokermath_request gives, before the call that reads it. A
// reply has the length that the call returned and stands at pokermath_reply() until the next call.
// What goes wrong never comes back: the host's function pokermath.refuse is called with the error
// and the part of the question that caused it, and throws. The host then sets __stack_pointer back
// to what it was before the call, and may go on: the question that was open before still is. What
// the call had allocated is lost.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "pages/equity_object.h"
#include "pages/errors.h"
#include "pages/json.h"
#include "pokermath/version.h"
#include "web/module/open_question.h"
#include "web/module/range_objects.h"

#if defined(__wasm__)
#define POKERMATH_CALL(type, name) extern "C" [[clang::export_name(#name)]] type name

// The module's one thread never ends, so what it would destroy then stays.
extern "C" int __cxa_thread_atexit(void (*)(void*), void*, void*) { return 0; }
#else  // fuzzed
#define POKERMATH_CALL(type, name) extern "C" type name
#endif

namespace pokermath {
namespace {

std::string& Request() {
  static std::string request;
  return request;
}

std::string& Reply() {
  static std::string reply;
  return reply;
}

std::size_t ReplyWith(std::string text) {
  Reply() = std::move(text);
  return Reply().size();
}

std::optional<OpenQuestion>& Question() {
  static std::optional<OpenQuestion> question;
  return question;
}

OpenQuestion& Opened() {
  if (!Question()) Refuse("no question is open");
  return *Question();
}

By DetailOf(std::uint32_t number) {
  constexpr By kDetails[] = {By::kHand, By::kClass, By::kNext, By::kMade};
  if (number >= std::size(kDetails)) Refuse("there is no such detail", "detail");
  return kDetails[number];
}

std::int64_t Steps(double number) { return static_cast<std::int64_t>(number); }

}  // namespace

POKERMATH_CALL(char*, pokermath_request)(std::size_t bytes) {
  Request().assign(bytes, '\0');
  return Request().data();
}

POKERMATH_CALL(const char*, pokermath_reply)() { return Reply().data(); }

/// The request is a question, which takes the place of the one before; replies with its plan.
POKERMATH_CALL(std::size_t, pokermath_open)() {
  Question() = OpenQuestion(ParseQuestion(Request()));
  return ReplyWith(JsonLine(Question()->Summary()));
}

/// Adds the steps first .. last - 1 to the sums of this module.
POKERMATH_CALL(void, pokermath_do)(double first, double last) {
  Opened().Do(Steps(first), Steps(last));
}

// Of the steps 0 .. done - 1, whose sums are here: Calculation::NextStop, Enough, Part and Cases.
POKERMATH_CALL(double, pokermath_next_stop)(double done) {
  return static_cast<double>(Opened().plan().NextStop(Steps(done)));
}
POKERMATH_CALL(bool, pokermath_enough)(double done) {
  return Opened().plan().Enough(Steps(done), Opened().sums());
}
POKERMATH_CALL(double, pokermath_part)(double done) {
  return Opened().plan().Part(Steps(done), Opened().sums());
}
POKERMATH_CALL(double, pokermath_cases)() { return Opened().plan().Cases(Opened().sums()).Value(); }

/// Replies with the sums as bytes, and sets them to none.
POKERMATH_CALL(std::size_t, pokermath_take_sums)() { return ReplyWith(Opened().TakeSums()); }

/// The request is bytes of pokermath_take_sums.
POKERMATH_CALL(void, pokermath_add_sums)() { Opened().AddSums(Request()); }

/// Replies with the answer in JSON.
POKERMATH_CALL(std::size_t, pokermath_answer)(double elapsed_seconds, bool out_of_time) {
  return ReplyWith(Opened().Answer(Seconds(elapsed_seconds), out_of_time));
}

// After pokermath_answer: the same as a page, and its details as tables and pictures. `by` is 0 for
// hands, 1 for classes, 2 for what comes next, 3 for what is made.
POKERMATH_CALL(std::size_t, pokermath_text)() { return ReplyWith(Opened().Text()); }
POKERMATH_CALL(std::size_t, pokermath_csv)(std::uint32_t by) {
  return ReplyWith(Opened().Csv(DetailOf(by)));
}
POKERMATH_CALL(std::size_t, pokermath_svg)(std::uint32_t by) {
  return ReplyWith(Opened().Svg(DetailOf(by)));
}

/// The request and the reply are those of DescribedRange.
POKERMATH_CALL(std::size_t, pokermath_describe)() {
  return ReplyWith(JsonLine(DescribedRange(Request())));
}
/// The request and the reply are those of WrittenRange.
POKERMATH_CALL(std::size_t, pokermath_range_text)() {
  return ReplyWith(JsonLine(WrittenRange(Request())));
}

POKERMATH_CALL(std::size_t, pokermath_version)() {
  return ReplyWith(JsonLine(Json{{"version", Version()}, {"isa", "simd128"}}));
}

}  // namespace pokermath
