/// @file
/// Everything that pokermath exports.

#ifndef POKERMATH_POKERMATH_H_
#define POKERMATH_POKERMATH_H_

#include "pokermath/calculator.h"
#include "pokermath/card_set.h"
#include "pokermath/cards.h"
#include "pokermath/combination_set.h"
#include "pokermath/diagnostics.h"
#include "pokermath/equity.h"
#include "pokermath/evaluators.h"
#include "pokermath/five_card_map.h"
#include "pokermath/game.h"
#include "pokermath/hand_history.h"
#include "pokermath/hand_range.h"
#include "pokermath/hand_sum.h"
#include "pokermath/instructions.h"
#include "pokermath/large_table.h"
#include "pokermath/markup.h"
#include "pokermath/messages.h"
#include "pokermath/odbc.h"
#include "pokermath/omaha.h"
#include "pokermath/omaha_evaluators.h"
#include "pokermath/omaha_ranges.h"
#include "pokermath/poker_logic.h"
#include "pokermath/ranges.h"
#include "pokermath/result.h"
#include "pokermath/showdown.h"
#include "pokermath/text.h"
#include "pokermath/utilities.h"
#include "pokermath/version.h"

#endif  // POKERMATH_POKERMATH_H_
