// Text of an Omaha range.
//
// A range is said as a base, with terms taken off it and others added; the base is nothing, every
// hand, a band of percentages or what all hands have in common. The terms are grown, each from a
// hand that is not said yet: its cards are widened one after the other to all that they may be
// while nothing is held that is not allowed. (Expanding, then dropping what is redundant, is how
// logic is minimised: Brayton, Hachtel, McMullen, Sangiovanni-Vincentelli, Logic Minimization
// Algorithms for VLSI Synthesis, 1984.) Bands are the best runs of the order of strength. Of
// several bases the shortest text is kept; when the budget is used up, hands are listed.

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ranges/omaha/order.h"
#include "ranges/omaha/term.h"

namespace pokermath {
namespace {

// Fewer hands are better said by patterns than by a percentage.
constexpr int kFewHands = 500;

// A class of hands in the order of strength.
struct Step {
  double percentile;
  Splits split;
  int in;   // hands, if they are wanted
  int out;  // hands, if they are not allowed
};

// Classes that count, the strongest first, each judged by one of its hands: who finds a band makes
// sure of the others.
template <int cards>
std::vector<Step> StepsOf(const OmahaSpec<cards>& wanted, const OmahaSpec<cards>& allowed) {
  const OmahaStrengths& strengths = StrengthsOf<cards>();
  std::vector<Step> steps;
  for (const std::uint32_t number : strengths.order) {
    OmahaClass hands = strengths.classes[number];
    const int count = HandsOf(hands);
    const Splits split = 1U << SplitOfClass<cards>(hands);
    // Not always the one of most spades.
    std::rotate(hands.suits.begin(), hands.suits.begin() + number % 4, hands.suits.end());
    const auto hand = HandOfSuits<cards>(hands.suits);
    const bool in = wanted.Contains(hand), out = !allowed.Contains(hand);
    if (!in && !out) continue;
    steps.push_back({100.0 * strengths.within[number] / OmahaSpec<cards>::kAllHands, split,
                     in ? count : 0, out ? count : 0});
  }
  return steps;
}

// Steps that follow each other, if only those of some splits count.
struct Run {
  std::size_t first = 0, last = 0;
  std::int64_t sum = 0;
  double before = 0, behind = 0;  // the percentiles next to it
};

// The run of the largest sum (Kadane's algorithm).
Run BestRun(const std::vector<Step>& steps, Splits splits, std::int64_t cost_of_out) {
  constexpr double kEnd = 1000;
  Run best, run;
  double before = 0;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    if ((steps[i].split & splits) == 0) continue;
    if (best.behind == kEnd) best.behind = steps[i].percentile;
    if (run.sum <= 0) run = {i, i, 0, before, kEnd};
    run.last = i;
    run.sum += steps[i].in - cost_of_out * steps[i].out;
    if (run.sum > best.sum) best = run;
    before = steps[i].percentile;
  }
  return best;
}

// A number within bounds in as few digits as can be.
double ShortestNumber(double at_least, double below) {
  double number = at_least;
  for (int digits = 0; digits <= 12; ++digits) {
    const double scale = std::pow(10.0, digits);
    number = std::ceil(at_least * scale) / scale;
    if (number >= at_least && number < below && number > 0) break;
  }
  return number;
}

// The band of a run.
//
// @param spare  so many of its hands may be missing at each end
template <int cards>
OmahaTerm<cards> TermOf(Run run, const std::vector<Step>& steps, Splits splits,
                        std::int64_t spare) {
  const auto skip = [&](std::size_t& place, std::size_t stop, int way) {
    std::int64_t left = spare;
    for (std::size_t next = place;; next += static_cast<std::size_t>(way)) {
      if ((steps[next].split & splits) != 0) {
        place = next;
        left -= steps[next].in;
      }
      if (left < 0 || next == stop) return;
    }
  };
  skip(run.last, run.first, -1);
  if (run.before > 0) skip(run.first, run.last, 1);
  OmahaTerm<cards> term;
  term.splits = splits;
  const double to = ShortestNumber(steps[run.last].percentile, run.behind);
  if (run.before > 0) {
    term.band = {ShortestNumber(run.before, steps[run.first].percentile), to};
  } else if (to < 100) {
    term.band = {0, to};
  }
  return term;
}

// The best of all bands, and its sum.
template <int cards>
std::pair<std::int64_t, OmahaTerm<cards>> BestBand(const std::vector<Step>& steps,
                                                   std::int64_t cost_of_out, bool round) {
  Run best;
  const NamedSplits* of = nullptr;
  for (const NamedSplits& named : AllNamedSplits<cards>()) {
    const Run run = BestRun(steps, named.splits, cost_of_out);
    if (run.sum < best.sum || run.sum == 0) continue;
    if (run.sum == best.sum && named.text.size() >= of->text.size()) continue;
    best = run;
    of = &named;
  }
  if (of == nullptr) return {};
  return {best.sum, TermOf<cards>(best, steps, of->splits, round ? best.sum / 200 : 0)};
}

// How bands are used: not at all, as they are, or with round numbers, for terms that come later may
// make them longer than they were written.
enum class Bands { kNone, kExact, kRound };

// Finds terms that hold all wanted hands and none that is not allowed, and lists the hands that no
// terms help to say.
template <int cards>
class TermFinder {
 public:
  using Term = OmahaTerm<cards>;

  TermFinder(const OmahaSpec<cards>& wanted, const OmahaSpec<cards>& allowed, Budget& budget)
      : wanted_(wanted), allowed_(allowed), rest_(wanted), budget_(budget) {}

  bool HasBands() const { return has_bands_; }

  // Their texts; nothing if they are longer than that together, each with a mark in front.
  //
  // @param list_all  whether hands are listed when the budget is used up
  std::optional<std::vector<std::string>> Find(Bands bands, std::size_t longest, bool list_all) {
    constexpr std::size_t kLengthOfHand = 2 * cards + 1;
    left_ = rest_.Count();
    if constexpr (HasOmahaOrder(cards)) {
      if (bands != Bands::kNone) FindBands(bands);
    }
    const auto& words = OmahaBits::Of(rest_);
    for (std::size_t word = words.size(); left_ > 0 && word-- > 0;) {
      while (words[word] != 0) {
        // Dropping spare ones may make it shorter.
        const std::size_t length = length_ / 2 + kLengthOfHand * singles_.size();
        if (length + cards >= longest || (!budget_.Left() && !list_all)) return std::nullopt;
        Say(static_cast<int>(64 * word) + 63 - std::countl_zero(words[word]));
      }
    }
    DropSpare();
    std::vector<std::string> texts;
    for (const Term& term : terms_) texts.push_back(term.Text());
    for (const int number : singles_) texts.push_back(Only(HandOfNumber<cards>(number)).Text());
    return texts;
  }

 private:
  using Hand = typename OmahaSpec<cards>::Hand;

  void FindBands(Bands bands) {
    constexpr int kMostBands = 4;
    constexpr std::int64_t kNoneOut = 1 << 30;
    const int all = left_;
    for (int i = 0; i < kMostBands && left_ > kFewHands; ++i) {
      const auto [sum, term] =
          BestBand<cards>(StepsOf(rest_, allowed_), kNoneOut, bands == Bands::kRound);
      if (50 * sum < all) break;
      const OmahaSpec<cards> hands = term.Hands();
      OmahaSpec<cards> forbidden = hands;
      forbidden.Subtract(allowed_);
      if (!forbidden.Empty()) break;
      rest_.Subtract(hands);
      left_ = rest_.Count();
      has_bands_ = true;
      Add(term);
    }
    std::ranges::stable_sort(terms_, {},
                             [](const Term& term) { return term.band ? term.band->to : 100; });
  }

  void Add(const Term& term) {
    terms_.push_back(term);
    length_ += term.Text().size() + 1;
  }

  static Term Only(const Hand& hand) {
    Term term;
    for (std::size_t i = 0; i < cards; ++i) {
      term.pattern[i] = {static_cast<RankSet>(1U << hand[i] % 13), hand[i] / 13};
    }
    return term;
  }

  // Finds a term for a hand, the one that holds most of the rest. Where the budget is used up, it
  // is a pattern of its ranks or the hand alone.
  void Say(int number) {
    Hand hand = HandOfNumber<cards>(number);
    const bool widen = budget_.Left();
    Term best = Only(hand);
    int most = 1;
    const Splits own = 1U << SplitOf<cards>(hand);
    const auto try_term = [&](const Term& term) {
      if (term == best) return;
      const int gain = Gain(term);
      if (gain <= most) return;
      most = gain;
      best = term;
    };
    const auto try_shape = [&](Splits shape) {
      Term term = Only(hand);
      term.splits = shape;
      if (!widen && DropSuits(term)) try_term(term);
      for (unsigned order = 0; order < 4 && most < left_ && budget_.Left(); ++order) {
        std::ranges::sort(hand, {}, [&](int card) { return (order & 1) ? -card % 13 : card % 13; });
        term = Only(hand);
        term.splits = shape;
        Widen(term, (order & 2) == 0);
        try_term(term);
      }
    };
    if (widen) try_shape(kAllSplits<cards>);
    for (const SuitShape& shape : kSuitShapes<cards>) {
      if ((shape.splits & own) != 0) try_shape(shape.splits);
    }
    if (!widen && most > 1) try_shape(kAllSplits<cards>);
    left_ -= most;
    if (most == 1) {
      singles_.push_back(number);
      return OmahaBits::RemoveRow(rest_, number, 1);
    }
    Shorten(best, [&](const Term& term) { return budget_.Left() && Gain(term) == most; });
    WalkPattern(best, budget_, [&](int at, std::uint64_t row) {
      OmahaBits::RemoveRow(rest_, at, row);
      return true;
    });
    Add(best);
  }

  bool DropSuits(Term& term) {
    for (PatternPlace& place : term.pattern) place.suit = kAnySuit;
    return IsAllowed(term);
  }

  void Widen(Term& term, bool suits_first) {
    for (std::size_t i = 0; suits_first && i < cards; ++i) WidenSuit(term, i);
    for (std::size_t i = 0; i < cards; ++i) {
      WidenRanks(term, i);
      if (!suits_first) WidenSuit(term, i);
    }
    for (const NamedSplits& named : AllNamedSplits<cards>()) {
      Term wider = term;
      wider.splits = named.splits;
      if ((term.splits & ~named.splits) != 0 || !Fits(wider)) continue;
      term = wider;
      return;
    }
  }

  void WidenSuit(Term& term, std::size_t place) {
    Term wider = term;
    wider.pattern[place].suit = kAnySuit;
    if (Fits(wider)) term = wider;
  }

  // A pattern is the union of what it is for each rank of a place, so they can be tried all at once
  // or one by one.
  void WidenRanks(Term& term, std::size_t place) {
    RankSet& ranks = term.pattern[place].ranks;
    const auto others = static_cast<RankSet>(kAllRanks & ~ranks);
    Term other = term;
    RankSet& tried = other.pattern[place].ranks;
    const auto fits = [&](RankSet these) {
      tried = these;
      return Fits(other);
    };
    if (fits(others)) {
      ranks = kAllRanks;
      return;
    }
    for (unsigned rest = others; rest != 0; rest &= rest - 1) {
      const auto rank = static_cast<RankSet>(rest & -rest);
      if (fits(rank)) ranks = static_cast<RankSet>(ranks | rank);
    }
  }

  bool Fits(const Term& term) { return budget_.Left() && IsAllowed(term); }

  bool IsAllowed(const Term& term) {
    return WalkPattern(term, budget_, [&](int number, std::uint64_t row) {
      return OmahaBits::Common(allowed_, number, row) == row;
    });
  }

  int Gain(const Term& term) {
    int gain = 0;
    WalkPattern(term, budget_, [&](int number, std::uint64_t row) {
      gain += std::popcount(OmahaBits::Common(rest_, number, row));
      return true;
    });
    return gain;
  }

  // Drops terms, shapes and ranks without which the others have all that is wanted: a term that
  // was found later may be wider. Of many terms that takes long.
  void DropSpare() {
    constexpr std::size_t kMostTerms = 12;
    if (terms_.size() > kMostTerms) return;
    std::vector<OmahaSpec<cards>> hands;
    for (const Term& term : terms_) hands.push_back(term.Hands());
    for (std::size_t i = 0; i < terms_.size();) {
      OmahaSpec<cards> needed = wanted_;
      for (const int number : singles_) OmahaBits::RemoveRow(needed, number, 1);
      for (std::size_t j = 0; j < terms_.size(); ++j) {
        if (j != i) needed.Subtract(hands[j]);
      }
      const auto place = static_cast<std::ptrdiff_t>(i);
      if (needed.Empty()) {
        terms_.erase(terms_.begin() + place);
        hands.erase(hands.begin() + place);
        continue;
      }
      Shorten(terms_[i], [&needed](const Term& shorter) {
        OmahaSpec<cards> missing = needed;
        missing.Subtract(shorter.Hands());
        return missing.Empty();
      });
      hands[i] = terms_[i].Hands();
      ++i;
    }
  }

  // Takes shapes and ranks out of a term where that makes its text shorter.
  template <typename StillHolds>
  static void Shorten(Term& term, const StillHolds& still_holds) {
    const auto shorten = [&](const Term& shorter) {
      if (shorter.Text().size() < term.Text().size() && still_holds(shorter)) term = shorter;
    };
    for (const NamedSplits& named : AllNamedSplits<cards>()) {
      Term shorter = term;
      shorter.splits = named.splits;
      if ((named.splits & ~term.splits) == 0) shorten(shorter);
    }
    for (std::size_t i = 0; i < cards; ++i) {
      if (term.pattern[i].Text().size() < 3) continue;
      Term shorter = term;
      for (int rank = 0; rank < 13; ++rank) {
        Term less = shorter;
        less.pattern[i].ranks &= static_cast<RankSet>(~(1U << rank));
        if (less.pattern[i].ranks != 0 && still_holds(less)) shorter = less;
      }
      shorten(shorter);
    }
  }

  const OmahaSpec<cards>& wanted_;
  const OmahaSpec<cards>& allowed_;
  OmahaSpec<cards> rest_;  // not said yet
  int left_ = 0;           // of these
  Budget& budget_;
  std::vector<Term> terms_;
  std::vector<int> singles_;  // by number
  std::size_t length_ = 0;    // of the terms
  bool has_bands_ = false;
};

template <int cards>
class OmahaWriter {
 public:
  explicit OmahaWriter(const OmahaSpec<cards>& range) : range_(range) {}

  std::string Write() {
    if (range_.Empty()) return "";
    every_.MakeRandom();
    if (range_ == every_) return "random";
    forbidden_ = every_;
    forbidden_.Subtract(range_);
    Look();
    std::vector<int> dead;
    std::string dead_text;
    FindDead(dead, dead_text);
    if (!dead.empty()) {
      OmahaSpec<cards> live, free = every_;
      every_.Exclude(dead, live);
      free.Subtract(live);
      TryBases(free, dead_text);
    }
    TryBases(OmahaSpec<cards>(), "");
    return *best_;
  }

 private:
  using Term = OmahaTerm<cards>;

  // Finds out what all hands have, and what any has.
  void Look() {
    constexpr std::uint64_t kAbove = 0x8888888888888;  // the bit above the count of each rank
    std::uint64_t common_cards = ~std::uint64_t{0};
    std::uint64_t common_ranks = 0x7777777777777;  // four bits for the count of each
    Splits splits = 0;
    ForEachOmahaHand<cards>([&](int number, const typename OmahaSpec<cards>::Hand& hand) {
      if (OmahaBits::Common(range_, number, 1) == 0) return;
      std::uint64_t held = 0, ranks = 0;
      for (const int card : hand) {
        held |= std::uint64_t{1} << card;
        ranks += std::uint64_t{1} << 4 * (card % 13);
      }
      held_ |= held;
      common_cards &= held;
      // The smaller count of each rank: all bits of those that have no less.
      const std::uint64_t no_less = (((ranks | kAbove) - common_ranks) & kAbove) / 8 * 7;
      common_ranks = (common_ranks & no_less) | (ranks & ~no_less);
      splits |= 1U << SplitOf<cards>(hand);
    });
    auto place = common_.pattern.begin();
    for (int card = 0; card < 52; ++card) {
      if ((common_cards >> card & 1) == 0) continue;
      common_ranks -= std::uint64_t{1} << 4 * (card % 13);
      *place++ = {static_cast<RankSet>(1U << card % 13), card / 13};
    }
    for (; common_ranks != 0;
         common_ranks -= std::uint64_t{1} << (std::countr_zero(common_ranks) & ~3)) {
      place++->ranks = static_cast<RankSet>(1U << std::countr_zero(common_ranks) / 4);
    }
    for (const NamedSplits& named : AllNamedSplits<cards>()) {
      const bool fewer = std::popcount(named.splits) < std::popcount(common_.splits);
      if ((splits & ~named.splits) == 0 && fewer) common_.splits = named.splits;
    }
  }

  // Cards that no hand holds while some hand holds another of their rank may be dead; then hands
  // with them are of no account while terms are sought, and are taken off at the end.
  void FindDead(std::vector<int>& dead, std::string& text) const {
    const std::uint64_t ranks = held_ | held_ >> 13 | held_ >> 26 | held_ >> 39;
    for (int suit = 3; suit >= 0; --suit) {
      const std::uint64_t missing = ranks & ~(held_ >> 13 * suit) & kAllRanks;
      if (missing == 0) continue;
      for (int rank = 0; rank < 13; ++rank) {
        if ((missing >> rank & 1) != 0) dead.push_back(13 * suit + rank);
      }
      Term term;
      term.pattern[0] = {static_cast<RankSet>(missing), suit};
      text += "!" + term.Text();
    }
  }

  // @param free  hands of no account
  // @param off   what takes them off
  void TryBases(const OmahaSpec<cards>& free, const std::string& off) {
    OmahaSpec<cards> allowed = range_;
    allowed.Unite(free);
    const bool has_bands = Try("", OmahaSpec<cards>(), allowed, off, Bands::kExact);
    if (has_bands) {
      Try("", OmahaSpec<cards>(), allowed, off, Bands::kRound);
      Try("", OmahaSpec<cards>(), allowed, off, Bands::kNone);
    }
    if (best_->size() < 2 * cards) return;
    std::vector<Term> bases = {common_, common_};
    bases[0].splits = kAllSplits<cards>;
    if constexpr (HasOmahaOrder(cards)) AddBands(allowed, bases);
    for (const Term& base : bases) {
      const OmahaSpec<cards> hands = base.Hands();
      if (hands.Count() > 2 * range_.Count()) continue;
      Try(base.Text(), hands, allowed, off, Bands::kNone);
    }
  }

  // The band that has many hands of the range and few others, and all up to its end.
  void AddBands(const OmahaSpec<cards>& allowed, std::vector<Term>& bases) const {
    auto [sum, term] = BestBand<cards>(StepsOf(range_, allowed), 1, false);
    if (sum <= std::max(range_.Count() / 2, kFewHands) || !term.band) return;
    bases.push_back(term);
    term.band->from = 0;
    if (term.band->to < 100) bases.push_back(term);
  }

  // Keeps the text if it is shorter than the best so far; returns whether it has bands.
  bool Try(std::string text, const OmahaSpec<cards>& base, const OmahaSpec<cards>& allowed,
           const std::string& off, Bands bands) {
    const auto longest = [&] {
      if (!best_) return std::string::npos;
      return best_->size() - std::min(text.size() + off.size(), best_->size());
    };
    if (longest() == 0) return false;
    OmahaSpec<cards> less = base, more = range_;
    less.Subtract(allowed);
    more.Subtract(base);
    Budget budget(kRowsOfTry);
    TermFinder<cards> off_base(less, forbidden_, budget), to_base(more, allowed, budget);
    const auto taken_off = off_base.Find(bands, longest(), !best_);
    if (!taken_off) return off_base.HasBands();
    for (const std::string& term : *taken_off) text += "!" + term;
    const auto added = to_base.Find(bands, longest(), !best_);
    const bool has_bands = off_base.HasBands() || to_base.HasBands();
    if (!added) return has_bands;
    for (const std::string& term : *added) text += (text.empty() ? "" : ",") + term;
    // Off a list they are taken by a piece of their own.
    if (!off.empty() && text.find(',') != text.npos) text += ',';
    text += off;
    if (!best_ || text.size() < best_->size()) best_ = std::move(text);
    return has_bands;
  }

  static constexpr std::int64_t kRowsOfTry = 2'000'000 + 3 * OmahaSpec<cards>::kAllHands;

  const OmahaSpec<cards>& range_;
  OmahaSpec<cards> every_, forbidden_;
  std::uint64_t held_ = 0;  // cards
  Term common_;             // what all hands have
  std::optional<std::string> best_;
};

}  // namespace

template <int cards>
CString OmahaSpec<cards>::MakeString() const {
  const std::string text = OmahaWriter<cards>(*this).Write();
  return CString(text.begin(), text.end());
}

#define POKERMATH_WRITE(cards) template CString OmahaSpec<cards>::MakeString() const;
POKERMATH_OMAHA_HAND_SIZES(POKERMATH_WRITE)

}  // namespace pokermath
