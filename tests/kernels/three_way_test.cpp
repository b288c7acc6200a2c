#include "kernels/three_way.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <vector>

#include "kernels/several_hands.h"
#include "kernels/three_way_table.h"
#include "pokermath/cards.h"

namespace pokermath {
namespace {

// Three hands in the order of their rank classes.
struct Matchup {
  std::array<CardSet, 3> hands;
  RankTriple triple{};
};

Matchup MatchupOf(std::array<CardSet, 3> hands) {
  const auto class_of = [](CardSet hand) {
    return RankClassOf(*hand.begin() % 13, *++hand.begin() % 13);
  };
  std::ranges::sort(hands, {}, class_of);
  Matchup matchup{.hands = hands};
  std::ranges::transform(hands, matchup.triple.begin(), class_of);
  return matchup;
}

// Of all cards, or of so few ranks that most are the same.
Matchup RandomMatchup(std::mt19937& random) {
  std::array<int, 13> ranks;
  for (std::size_t i = 0; i < 13; ++i) ranks[i] = static_cast<int>(i);
  std::shuffle(ranks.begin(), ranks.end(), random);
  const std::size_t of = std::array<std::size_t, 4>{2, 3, 5, 13}[random() % 4];
  std::vector<int> cards;
  for (const int rank : std::span(ranks).first(of)) {
    for (int suit = 0; suit < 4; ++suit) cards.push_back(13 * suit + rank);
  }
  std::shuffle(cards.begin(), cards.end(), random);
  return MatchupOf({CardSet{cards[0], cards[1]}, {cards[2], cards[3]}, {cards[4], cards[5]}});
}

// What hands share, put together from what was taken apart.
std::vector<std::int64_t> Together(const Matchup& matchup, const ThreeWayCounts& counts) {
  std::vector<std::int64_t> times(counts.by_ranks.begin(), counts.by_ranks.end());
  for (int suit = 0; suit < 4; ++suit) {
    unsigned set = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      const CardSet hand = matchup.hands[i];
      const int view = ViewNumber(*hand.begin(), *++hand.begin(), suit);
      set |= static_cast<unsigned>(view % 4) << 2 * i;
    }
    const std::uint8_t* place = std::ranges::find(counts.sets, set);
    EXPECT_NE(place, counts.sets.end()) << set;
    if (place == counts.sets.end()) continue;
    const ThreeWayTimes& changes =
        counts.changes[static_cast<std::size_t>(place - counts.sets.begin())];
    for (std::size_t i = 0; i < times.size(); ++i) times[i] += changes[i];
  }
  return times;
}

void ExpectBoards(const Matchup& matchup, const ThreeWayCounts& counts) {
  std::vector<std::int64_t> times(8);
  CountSeveralHands(BestIsa(), Deck::kFull, matchup.hands, {}, Street::kRiver, times);
  std::string trace;
  for (const CardSet hand : matchup.hands) {
    for (const int card : hand) trace += CardName(card);
  }
  EXPECT_EQ(Together(matchup, counts), times) << trace;
}

// Bytes that a test makes of a payload.
LargeTable<std::uint8_t> Table(const std::string& payload) {
  ThreeWayTrailer trailer;
  trailer.Add(payload);
  const std::string bytes = ThreeWayHeader() + payload + trailer.Bytes();
  LargeTable<std::uint8_t> table(bytes.size());
  std::memcpy(table.data(), bytes.data(), bytes.size());
  return table;
}
std::string_view Text(const LargeTable<std::uint8_t>& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// A payload of few triples that are counted; of the others no suit changes anything.
std::string PayloadWith(std::vector<std::int64_t> numbers) {
  // By ranks 0 boards of each column but the last; least change 0, width 0.
  std::string nothing(34, '\0');
  for (std::size_t column = 0; column < 6; ++column) {
    const std::size_t bit = 6 * 21 + 24 * column + 18;  // of the 2^18 that stands for 0
    nothing[bit / 8] = static_cast<char>(nothing[bit / 8] | 1 << bit % 8);
  }
  std::ranges::sort(numbers);
  std::string payload;
  for (std::int64_t i = 0; i < kThreeWayUnits; ++i) {
    if (std::ranges::binary_search(numbers, i)) {
      AppendThreeWay(i, i + 1, payload);
    } else if (SuitSets::Of(RankTripleOf(i)).size() > 0) {
      payload += nothing;
    }
  }
  return payload;
}

void ExpectMatchups(std::uint32_t seed, int count) {
  std::mt19937 random(seed);
  for (int i = 0; i < count; ++i) {
    const Matchup matchup = RandomMatchup(random);
    ExpectBoards(matchup, CountThreeWay(BestIsa(), matchup.triple));
  }
}

TEST(ThreeWay, PutsEveryMatchupTogether) { ExpectMatchups(1, 300); }
TEST(ThreeWaySlow, PutsEveryMatchupTogether) { ExpectMatchups(2, 10'000); }

TEST(ThreeWay, IsTheSameForAllInstructions) {
  std::mt19937 random(3);
  for (int i = 0; i < 10; ++i) {
    const RankTriple triple = RandomMatchup(random).triple;
    const ThreeWayCounts counts = CountThreeWay(BestIsa(), triple);
    for (const Isa isa : IsasOfMachine()) {
      const ThreeWayCounts others = CountThreeWay(isa, triple);
      EXPECT_EQ(others.by_ranks, counts.by_ranks) << IsaName(isa);
      EXPECT_EQ(others.changes, counts.changes) << IsaName(isa);
    }
  }
}

TEST(ThreeWay, NumbersEveryTripleOnce) {
  std::int64_t number = 0;
  for (int c = 0; c < kRankClasses; ++c) {
    for (int b = 0; b <= c; ++b) {
      for (int a = 0; a <= b; ++a, ++number) {
        ASSERT_EQ(NumberOf({a, b, c}), number);
        if (a < b && number % 1000 > 0) continue;
        ASSERT_EQ(RankTripleOf(number), (RankTriple{a, b, c}));
      }
    }
  }
  EXPECT_EQ(number, kRankTriples);
}

TEST(ThreeWayTable, HoldsWhatWasCounted) {
  std::mt19937 random(4);
  std::vector<Matchup> matchups;
  std::vector<std::int64_t> numbers = {0, 1, kThreeWayUnits - 2, kThreeWayUnits - 1};
  for (int i = 0; i < 60; ++i) {
    matchups.push_back(RandomMatchup(random));
    numbers.push_back(NumberOf(matchups.back().triple));
  }
  LargeTable<std::uint8_t> bytes = Table(PayloadWith(numbers));
  EXPECT_EQ(ThreeWayFault(Text(bytes)), "");
  const ThreeWayTable table(std::move(bytes));
  ASSERT_TRUE(table.ok());
  for (const Matchup& matchup : matchups) ExpectBoards(matchup, table.Of(matchup.triple));
  EXPECT_EQ(table.Of({90, 90, 90}).sets.size(), 0u);  // six aces
}

TEST(ThreeWayTable, RefusesWhatIsDamaged) {
  std::mt19937 random(5);
  const std::string payload = PayloadWith({5, 1000, 100'000});
  const LargeTable<std::uint8_t> good = Table(payload);
  const auto expect_fault = [](const LargeTable<std::uint8_t>& bytes, const char* text) {
    EXPECT_EQ(ThreeWayFault(Text(bytes)), text);
    EXPECT_FALSE(ThreeWayTable(bytes).ok());
  };
  for (const std::size_t size : {std::size_t{0}, std::size_t{47}}) {
    expect_fault({good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size)},
                 "it is too short");
  }
  constexpr const char* kChecksum = "its length or checksum is not right";
  expect_fault({good.begin(), good.end() - 1}, kChecksum);
  LargeTable<std::uint8_t> longer = good;
  longer.push_back(0);
  expect_fault(longer, kChecksum);
  for (int i = 0; i < 20; ++i) {
    LargeTable<std::uint8_t> other = good;
    const std::size_t place = i < 5 ? static_cast<std::size_t>(7 * i) : random() % good.size();
    other[place] ^= static_cast<std::uint8_t>(1 << random() % 8);
    expect_fault(other, place < 32 ? "its header is not right" : kChecksum);
  }
  // With the right checksum: triples that end too soon or too late, or have too wide columns.
  constexpr const char* kPlaces = "its triples do not fill it";
  expect_fault(Table(payload.substr(0, payload.size() - 1)), kPlaces);
  expect_fault(Table(payload + '\0'), kPlaces);
  expect_fault(Table(""), kPlaces);
  expect_fault(Table(std::string(payload.size(), '\xFF')), kPlaces);
  // More boards than there are are read, but said.
  std::string many = payload;
  many[many.size() - 34] = many[many.size() - 33] = many[many.size() - 32] = '\xFF';
  EXPECT_NE(ThreeWayFault(Text(Table(many))), "");
  EXPECT_TRUE(ThreeWayTable(Table(many)).ok());
}

TEST(ThreeWayTable, IsTheSameInAnyPieces) {
  std::mt19937 random(6);
  std::string whole;
  AppendThreeWay(1000, 1030, whole);
  std::string pieces;
  for (std::int64_t first = 1000; first < 1030;) {
    const std::int64_t last =
        std::min<std::int64_t>(first + 1 + static_cast<int>(random() % 9), 1030);
    AppendThreeWay(first, last, pieces);
    first = last;
  }
  EXPECT_EQ(pieces, whole);
  ThreeWayTrailer at_once, in_pieces;
  at_once.Add(whole);
  for (std::string_view rest = whole; !rest.empty();) {
    const std::string_view piece = rest.substr(0, random() % 100);
    in_pieces.Add(piece);
    rest.remove_prefix(piece.size());
  }
  EXPECT_EQ(in_pieces.Bytes(), at_once.Bytes());
  at_once.Add(std::string_view("\0", 1));
  EXPECT_NE(in_pieces.Bytes().substr(8), at_once.Bytes().substr(8));
}

}  // namespace
}  // namespace pokermath
