#include "cli/range_omaha.h"

#include <nlohmann/json.hpp>
#include <vector>

#include "cli/command.h"
#include "cli/output.h"
#include "pages/card_words.h"
#include "pages/errors.h"
#include "pages/omaha_range_page.h"

namespace pokermath::cli {
namespace {

void PrintRank(const OmahaRangeQuestion& question) {
  if (!question.text.empty() || question.dead || question.list) {
    throw UsageError("--rank stands alone: it asks about one hand, not a range");
  }
  const OmahaRankAnswer answer = FindOmahaRank(question.game, *question.rank);
  Print(question.json ? JsonLine(OmahaRankJson(answer))
                      : OmahaRankPage(answer, ColoursForStandardOutput()));
}

}  // namespace

int RunRangeOmaha(const OmahaRangeQuestion& question) {
  if (question.list && question.json && !question.rank) {
    throw UsageError("--list prints hands as text, not as JSON");
  }
  if (question.rank) {
    PrintRank(question);
    return kExitDone;
  }
  const std::vector<int> dead = ReadCards(question.dead.value_or(""));
  if (question.list) {
    Print(OmahaRangeList(question.game, question.text, dead));
    return kExitDone;
  }
  const OmahaRangeAnswer answer = DescribeOmahaRange(question.game, question.text, dead);
  Print(question.json ? JsonLine(OmahaRangeJson(answer))
                      : OmahaRangePage(answer, ColoursForStandardOutput()));
  return kExitDone;
}

}  // namespace pokermath::cli
