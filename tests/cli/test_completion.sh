#!/usr/bin/env bash
# `pokermath completion` and the man page: both are to say what the program takes.
. "$(dirname "$0")/expect.sh"
cd "$work" || exit 1

# --- bash ---

for shell in bash zsh fish; do
  run completion $shell
  expect_code 0
  cp "$work/out" "$work/complete.$shell"
done
refuses 2 "'csh' is no shell that is known: bash, zsh or fish" completion csh
mkdir here here/folder
cd here || exit 1
touch hands.txt

# completes LINE EXPECTED: as readline takes the line apart, the cursor behind its last character.
completes() {
  local got
  got=$(bash --norc -c '
    source ../complete.bash
    [[ $(complete -p pokermath) == "complete -F _pokermath pokermath" ]] || echo "not in place"
    line=${1//=/ = } COMP_WORDS=()
    read -ra COMP_WORDS <<<"$line"
    [[ $line != *" " ]] || COMP_WORDS+=("")
    # A word that is empty yet stands at the equals sign itself.
    if [[ $1 == *= ]]; then unset "COMP_WORDS[-1]"; fi
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    _pokermath
    echo "${COMPREPLY[*]}"' bash "$1" 2>&1)
  same "completion of '$1'" "$got" "$2"
}
completes 'pokermath eq' equity
completes 'pokermath ' 'eval equity nuts outs low points range pots history db bulk tables doctor completion'
completes 'pokermath man' ''
completes 'pokermath equity --st' --standard-error
completes 'pokermath equity --pl' '' # hidden: it is gone
completes 'pokermath equity --game omaha5' 'omaha5 omaha5-hilo'
completes 'pokermath equity --game=short' 'shortdeck shortdeck-straights'
completes 'pokermath equity --to=' 'flop turn river'
completes 'pokermath range --game omaha' 'omaha omaha5 omaha6'
completes 'pokermath low --game ' 'omaha-hilo omaha5-hilo omaha6-hilo'
completes 'pokermath equity AhKd 7s7c --by n' next
completes 'pokermath equity AhKd --svg ha' hands.txt
completes 'pokermath equity AhKd --board ' ''
completes 'pokermath history ' 'folder hands.txt'
completes 'pokermath db que' query
completes 'pokermath db query --c' '--connect --csv'
completes 'pokermath tables build --dir ' folder
completes 'pokermath tables --dir folder' ''
completes 'pokermath tables list omaha-' 'omaha-strength omaha-order'
completes 'pokermath bulk s' 'status submit'
completes 'pokermath bulk h' hands.txt
completes 'pokermath bulk --out submit --exa' --exact
completes 'pokermath bulk submit --sl' --slurm
completes 'pokermath bulk verify --' '--help --sample --seed --json'
completes 'pokermath completion ' 'bash zsh fish'
completes 'pokermath completion bash ' '-h --help'
completes 'pokermath bulk flop-report s' ''
completes 'pokermath history hands.txt h' ''

# --- the others, where they are installed ---

if command -v zsh >/dev/null; then
  zsh -n ../complete.zsh || fail "complete.zsh has an error"
  # Loaded, each function calls _arguments; what it is called with is what would be offered.
  offered=$(zsh -f -c 'compdef() { }; _arguments() { print -rl -- "$@"; line=(db); state=$given }
    source ../complete.zsh
    given=; _pokermath_equity
    given=words; _pokermath_db() { print "db it is" }; _pokermath' 2>&1)
  has "zsh" "$offered" '(--game)--game=[holdem, shortdeck'
  has "zsh" "$offered" ':GAME:(holdem shortdeck shortdeck-straights omaha'
  has "zsh" "$offered" 'share of the pot \[0.05%\]]:E: '
  has "zsh" "$offered" '*--folded=['
  has "zsh" "$offered" ':FILE:_files'
  has "zsh" "$offered" 'db it is'
  has "zsh" "$(<../complete.zsh)" ':JOB: _alternative '
  has "zsh" "$(<../complete.zsh)" "'*: :_files' ;;"
fi
if command -v fish >/dev/null; then
  fish -n ../complete.fish || fail "complete.fish has an error"
  fish_completes() {
    same "fish: $1" "$(fish --no-config -c "source ../complete.fish; complete -C '$1'" | cut -f 1 | paste -sd ' ')" "$2"
  }
  fish_completes 'pokermath eq' equity
  fish_completes 'pokermath equity --game omaha5' 'omaha5 omaha5-hilo'
  fish_completes 'pokermath bulk --out submit ver' verify
  fish_completes 'pokermath bulk submit --sl' --slurm
  fish_completes 'pokermath db query --' '--connect --csv --help --json'
  fish_completes 'pokermath history ha' hands.txt
  fish_completes 'pokermath bulk flop-report sta' ''
  fish_completes 'pokermath completion bash z' ''
fi

# --- the man page ---

run manual
expect_code 0
cp "$work/out" pokermath.1
if command -v man >/dev/null; then
  same "what man says of its page" \
    "$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -Z pokermath.1 2>&1 >/dev/null)" ""
fi
sed -e 's/\\f[BIR]//g' -e "s/\\\\(aq/'/g" -e 's/\\(dq/"/g' -e 's/\\//g' pokermath.1 >page
# compare_page WORD...: what that command's help says of options and commands is in its part of the page.
entries=0
compare_page() {
  local help part entry inner
  help=$("$POKERMATH" "$@" --help)
  part=$(awk -v head=".SS pokermath $*" '/^\.S[SH] / { inside = $0 == head } inside' page)
  (($# > 0)) || part=$(awk '/^\.SH / { inside = $2 == "OPTIONS" } inside' page)
  [[ -n $part ]] || fail "the page has no part '$*'"
  while read -r entry; do
    ((++entries))
    grep -qxF -e "$entry" <<<"$part" || fail "the page lacks '$entry' of '$*'"
  done < <(sed -n '/^Options:/,/^$/p' <<<"$help" |
    sed -n 's/^  \(-[^ ]*\( [^ ]\+\)\?\).*/\1/; T; s/,/, /; p')
  for inner in $(sed -n '/^Subcommands:/,/^$/s/^  \([^ ]\+\) .*/\1/p' <<<"$help"); do
    compare_page "$@" "$inner"
  done
}
compare_page
((entries > 90)) || fail "only $entries options were compared"

# The examples of the page are right ones.
sed -n '/^\.SH EXAMPLES/,/^\.SH SEE/s/^    \(pokermath .*\)/\1/p' page >examples
((5 < $(wc -l <examples))) || fail "the page has no examples"
pokermath() { "$POKERMATH" "$@"; }
while read -r example; do
  (eval "$example") </dev/null >out 2>&1 || fail "$example: $(<out)"
done < <(grep -v '^pokermath bulk' examples)

# --- words that are nearly right ---

refuses 2 "points, range, pots, history, db, bulk, tables, doctor, completion; did you mean 'equity'? (see" equty AhKd
refuses 2 "'EVAL' is not a subcommand" EVAL AhKhQhJhTh
has "capitals" "$err" "did you mean 'eval'?"
refuses 2 "'biuld' is not a subcommand: build, list, verify; did you mean 'build'? (see pokermath tables --help)" tables biuld
refuses 2 "'--bord=2c7dTh' is not an option; did you mean '--board'? (see pokermath equity --help)" equity AhKd 7s7c --bord=2c7dTh
refuses 2 "'-game' is not an option; did you mean '--game'?" equity AhKd 7s7c -game omaha
refuses 2 "'--Conect=x' is not an option; did you mean '--connect'?" db tables --Conect=x
refuses 2 "omaha6-hilo; did you mean 'shortdeck'?" equity AhKd 7s7c --game shortdekc
refuses 2 "flop, turn or river; did you mean 'river'?" equity AhKd 7s7c --to rivr
refuses 2 "; did you mean 'omaha-order'?" tables build omaha-ordr
refuses 2 "; did you mean 'omaha5-hilo'?" equity AhKd 7s7c --game omaha5hilo
refuses 2 "'staus' is neither a file nor a job" bulk staus answers
has "a command in a job's place" "$err" "; did you mean 'status'?"
for words in frobnicate 'equity AhKd 7s7c --frobnicate' 'equity AhKd 7s7c --game whist' 'x y' \
  'equity AhKd 7s' 'eval --game omaha-hilo AhKhQhJh' 'tables build omaha6-strength'; do
  # shellcheck disable=SC2086
  run $words
  expect_code 2
  [[ $err != *"did you mean"* ]] || fail "a hint where nothing is near: $err"
done
# What is far longer than any word is no work.
refuses 2 "is not a subcommand" "$(printf 'equity%.0s' {1..20000})"

finish
