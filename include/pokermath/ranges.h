/// @file
/// Two-card ranges: sets of holdings, from classes of hands, from a percentage and from text; and
/// random integers for sampling.
///
/// A rank is that of a card code, 0 = deuce .. 12 = ace. A class of hands is a pair, or two ranks
/// suited or offsuit; 169 of them make a 13 x 13 matrix, row by row, row and column 12 - rank (0 =
/// ace): pairs on the diagonal, suited hands above it, offsuit ones below.
///
/// Percentages are 0..100. Nothing has to be loaded: orders and tables of percentages are part of
/// the library, opinions written down in its sources. Const members and free functions may be
/// called by any number of threads, but for those that draw from rand(), which is the process's
/// own. Weights and other games are HandRange's affair (hand_range.h).

#ifndef POKERMATH_RANGES_H_
#define POKERMATH_RANGES_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "pokermath/cards.h"
#include "pokermath/combination_set.h"
#include "pokermath/export.h"
#include "pokermath/text.h"

/// How strong each class is, in the matrix layout: 1 = strongest .. 169 = weakest.
POKERMATH_EXPORT extern const int HandClassRank[169];
/// The same values for classes of ranks six to ace, 0 for the others; not renumbered.
POKERMATH_EXPORT extern const int HandClassRank6Plus[113];

/// A two-card range: an ordered set of holdings, each a pair of card codes as stored.
///
/// The order of the two cards counts: the same holding stored both ways is there twice. AddPair
/// stores the lower code first; AddSuit, AddNonSuit and AddCard the higher rank first, AddCard with
/// two cards of one rank its second argument first. "6Plus" members look at holdings of six and
/// better only. Cards and ranks are not checked. About 10 KB when full; copying takes 1 µs.
class POKERMATH_EXPORT Spec {
 public:
  /// No holdings.
  Spec() = default;
  /// A copy has its own holdings.
  Spec(const Spec&) = default;
  /// What is moved from is empty.
  Spec(Spec&&) = default;
  /// A copy has its own holdings.
  Spec& operator=(const Spec&) = default;
  /// What is moved from is empty.
  Spec& operator=(Spec&&) = default;
  virtual ~Spec();

  /// The holdings, as stored.
  const pokermath::CombinationSet& combinations() const { return combinations_; }
  /// Adds one holding exactly as given.
  void Insert(int first, int second) { combinations_.insert({first, second}); }
  /// Adds all holdings of another range as they are stored there.
  void Unite(const Spec& other) { combinations_.merge(other.combinations_); }

  /// @name Holdings as hands
  /// These look at the cards of a holding in either order.
  /// @{

  /// Whether the ranges hold the same holdings, each as often, once or twice.
  bool operator==(const Spec& other) const;
  /// Whether a holding is there.
  bool Contains(int first, int second) const;
  /// Takes a holding away.
  void Erase(int first, int second);
  /// Keeps only the holdings that another range has.
  void Intersect(const Spec& other);
  /// Takes away the holdings that another range has.
  void Subtract(const Spec& other);

  /// @}

  /// Adds the 6 pairs of a rank.
  void AddPair(int rank);
  /// Adds the 4 suited holdings of two ranks.
  void AddSuit(int rank1, int rank2);
  /// Adds the 12 offsuit holdings of two ranks; of one rank, its pairs in both orders.
  void AddNonSuit(int rank1, int rank2);
  /// Adds one holding; nothing if the codes are equal.
  void AddCard(int code1, int code2);
  /// The same; nothing if a card is not valid, like one that was read from a wrong letter.
  void AddCard(const CCard& card1, const CCard& card2);
  /// Makes this the range of all 1,326 holdings.
  void MakeRandom();

  /// Adds to `out` what holds none of the dead card codes. `out` is not cleared first.
  void Exclude(const std::vector<int>& dead, Spec& out) const;

  /// Counts pairs; and among the others ace-high, suited and king-high holdings.
  void CalcStat(int& pairs, int& aces, int& suited, int& kings) const;
  /// Counts suited holdings of a suit 0..3, or of every suit for any other number.
  void CalcSuits(int& count, int suit) const;
  /// The same by the first letter of a text, one of "cdhs" in either case; any other text counts
  /// every suit.
  void CalcSuits(int& count, const CString& suit) const;

  /// Fills 169 cells: 1 where a holding of the class is present, else 0.
  void MakeMatrix(int* cells) const;
  /// The same of holdings of six and better.
  void MakeMatrix6Plus(int* cells) const;

  /// The whole class of the strongest hand present; empty for an empty range.
  Spec MakeBestHand() const;
  /// The same of holdings of six and better.
  Spec MakeBestHand6Plus() const;
  /// The strongest class that is not present at all; empty when every class is.
  Spec MakeNextForceHand() const;
  /// The same among classes of six and better.
  Spec MakeNextForceHand6Plus() const;

  /// The holdings of two ranks, and which suits they have.
  ///
  /// @param kind    0 = offsuit, 1 = suited, anything else = all if the ranks are equal
  /// @param matrix  out: 16 cells, suit of the higher card * 4 + suit of the lower, 1 where present
  Spec MakeSuitMatrix(int rank1, int rank2, int kind, int* matrix) const;

  /// Range text: pairs, suited and offsuit hands, "TT+,AQs+,AK". A class with any holding present
  /// counts as whole; offsuit hands carry no letter. pokermath::FormatRange writes what reads back
  /// as it was.
  CString MakeString() const;
  /// The same of holdings of six and better.
  CString MakeString6Plus() const;

 private:
  pokermath::CombinationSet combinations_;
};

/// The holdings of two ranks whose suits are marked in 16 cells (suit of rank1 * 4 + suit of
/// rank2), the larger card code first.
POKERMATH_EXPORT Spec SpecBySuitMatrix(int rank1, int rank2, int* matrix);

/// Appends one run of classes to a list in range text.
///
/// @param start,end   first and last index of the run
/// @param top         the index at which it would be open to the top ("+" instead of "-")
/// @param first,last  texts of the run's first and last class
/// @param out         in and out: the list
POKERMATH_EXPORT void MakeStr(int start, int end, int top, const CString& first,
                              const CString& last, CString& out);

/// Ranges by percentage of all holdings, from fixed tables. Empty until an Init function has run;
/// then const members may be called by any number of threads.
class POKERMATH_EXPORT CStatSpectr {
 public:
  /// Fills a coarse table of 15 steps up to 40 %, without texts. Nothing looks it up by percent.
  void Init();
  /// Fills the equilibrium table with 169 steps of Hold'em, 0.45 (aces) .. 100.
  void InitEquil();
  /// Fills it with 81 steps of short deck instead. One range is filed far below its width: look-ups
  /// from 34.9 to 35.87 give 406 holdings instead of 214, those from 64.45 to 66.34 give 402, and
  /// in between the text is that of the next wider range. ParseRange does not follow this.
  void InitEquil6Plus();
  /// Fills the Corvelle table, 16 steps, 0.3 .. 40.
  void InitCorvelle();

  /// The widest range of a table that is no wider than `percent`, and its text; the first range for
  /// less than that. An empty table leaves the outputs as they are.
  ///
  /// @param percent  0 .. 100
  /// @param table    1 = Corvelle, anything else = equilibrium
  void GetSpecByPercent(double percent, Spec& spec, CString& text, int table) const;

  /// 1 if two cards belong to the best `percent` of hands by Sklansky groups, else 0.
  int numSklanskyGroup(CCard card1, CCard card2, double percent) const;

  /// What Init has filled, ranges by percent.
  const std::map<double, Spec>& base() const { return base_; }
  /// What InitEquil or InitEquil6Plus has filled, likewise.
  const std::map<double, Spec>& equilibrium() const { return equilibrium_; }
  /// What InitCorvelle has filled, likewise.
  const std::map<double, Spec>& corvelle() const { return corvelle_; }

 private:
  std::map<double, Spec> base_;
  std::map<double, Spec> equilibrium_;
  std::map<double, CString> equilibrium_texts_;
  std::map<double, Spec> corvelle_;
  std::map<double, CString> corvelle_texts_;
};

/// A user's own ranges by percentage: points that he gives, completed between and above.
class POKERMATH_EXPORT CUserFolder {
 public:
  CString name;                     ///< what the user calls it
  std::map<double, Spec> specs;     ///< by percent
  std::map<double, CString> texts;  ///< paired with specs by place

  /// As CStatSpectr::GetSpecByPercent.
  void GetSpecByPercent(double percent, Spec& spec, CString& text) const;
  /// Adds a step for every class that comes between two points, the strongest first, and for every
  /// class above the last one. The points themselves stay.
  void MakeInterpolation();
  /// The same for the short deck.
  void MakeInterpolation6Plus();
};

/// Sklansky group of a holding: 1 (best) .. 8, 0 for none and for a card that is not valid.
POKERMATH_EXPORT int SklanskyGroup(CCard card1, CCard card2);

/// Two fixed ranges, a wide and a narrow one.
class POKERMATH_EXPORT StrategyRanges {
 public:
  Spec first;   ///< the wide one
  Spec second;  ///< the narrow one

  /// Fills both, which are empty before.
  void MakeSrategyRanges();
};

/// Uniform integers of a closed interval, drawn from the C library's rand().
///
/// The generator behind it is the process's own: srand() seeds it for everybody. In the library
/// these seed it, by SetTimerSeed: PokerLogic's getProbabilityOfWinOmaha and its HL twin,
/// EquityHandVsRandomCommon, EquityHandVsRandomHL, RiverEquityHandVsRandomOnFlopLight and
/// RiverEquityHandVsRangeOnFlopLight, and getProbabilityOfWinHoldem6PlusCommon.
class POKERMATH_EXPORT EasyRandom {
 public:
  /// Draws from low..high, as SetInterval.
  EasyRandom(int low, int high) { SetInterval(low, high); }

  /// Draws from low..high from now on; low > high gives 0..1.
  void SetInterval(int low, int high);
  /// Seeds rand() from the calendar time in whole seconds: what is drawn after two calls within a
  /// second is the same.
  void SetTimerSeed();
  /// rand() mod the length of the interval, plus its low end.
  int DrawRandomNumber();

 private:
  int low_;
  int high_;
  std::int64_t span_;
};

/// Points of an Omaha starting hand of four card codes by the Hutchison count: suited cards, pairs,
/// cards that make straights together, aces with wheel cards. Larger is better, 0 is the least.
POKERMATH_EXPORT int HutchisonPointsOmaha(const int* hand);
/// The Hi/Lo count: low cards, pairs and suits. 1000 or 0 for hands of ten and better only.
POKERMATH_EXPORT double HutchisonPointsOmahaHL(const int* hand);

namespace pokermath {

/// Where percentages in range text come from.
enum class PercentTable {
  kEquilibrium,  ///< CStatSpectr::InitEquil: 169 steps up to 100 %; of 36 cards a table of its own
  kCorvelle      ///< CStatSpectr::InitCorvelle: 16 steps up to 40 %
};

/// How ParseRange reads and FormatRange writes.
struct RangeOptions {
  /// Whether a bare "AK" means the offsuit hands only, as in MakeString's texts. Otherwise it means
  /// suited and offsuit, as players write it.
  bool bare_offsuit = false;
  /// Ranks below six are an error; percentages and "random" are those of 36 cards.
  bool short_deck = false;
  /// The Corvelle table ends at 40 % and is for 52 cards; in the short deck this is ignored.
  PercentTable percent_table = PercentTable::kEquilibrium;
};

/// What ParseRange read: a range or an error.
struct RangeResult {
  Spec range;  ///< empty if there is an error
  /// Empty when the text was read; otherwise one line with position, bad piece and expectation.
  std::string error;
  std::size_t position = 0;  ///< of the error, in bytes
};

/// Reads range text: a list, separated by commas, semicolons or blanks, of classes (AA, AKs, AKo,
/// AK), classes and all better ones (TT+, A9s+, KJo+), runs (JJ-88, A9s-A5s, in either order),
/// holdings (AhKd), percentages (15%: the last range of the table whose rounded percentage is not
/// above it; the first one below that) and the word random. Letters in either case. Every holding
/// is there once, whatever the text repeats. An empty text is an empty range.
POKERMATH_EXPORT RangeResult ParseRange(std::string_view text, const RangeOptions& options = {});

/// Text that ParseRange reads back to the same holdings under the same options: classes that are
/// whole, offsuit ones with an "o" unless a bare one is read as offsuit, then single holdings:
/// "TT+,AQs+,AKo,KhQd". A holding that is stored both ways is written once; in the short deck one
/// with a rank below six is left out. Empty for an empty range.
POKERMATH_EXPORT std::string FormatRange(const Spec& range, const RangeOptions& options = {});

}  // namespace pokermath

#endif  // POKERMATH_RANGES_H_
