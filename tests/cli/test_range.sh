#!/usr/bin/env bash
# pokermath range: counts, canonical text that reads back, the matrix, the picture, one hand's rank.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"

value_of() { sed -E "s/.*\"$1\":(\"[^\"]*\"|\[[^]]*\]|[^,}]*).*/\1/" <<<"$out"; }

run range AA,AKs KQo 'AhKd' --game shortdeck
expect_code 0
same "$asked" "$out" "AA,AKs,KQo,AhKd

  AA   AKs  .    .    .    .    .    .    .
  AKo* .    .    .    .    .    .    .    .
  .    KQo  .    .    .    .    .    .    .
  .    .    .    .    .    .    .    .    .
  .    .    .    .    .    .    .    .    .
  .    .    .    .    .    .    .    .    .
  .    .    .    .    .    .    .    .    .
  .    .    .    .    .    .    .    .    .
  .    .    .    .    .    .    .    .    .

23 of 630 holdings, 3.65 %"

# What is written reads back to the same range, under the same options.
for text in AK 'AK KQ-K9' 'AhKd,KdAh,7c7d' '22+ A5s-A2s 0.9%' random '37.3%'; do
  for options in '' --bare-offsuit; do
    # shellcheck disable=SC2086
    run range "$text" $options --json
    expect_code 0
    first=$out
    # shellcheck disable=SC2086
    run range "$(value_of text | tr -d '"')" $options --json
    same "$asked" "$out" "$first"
  done
done

run range AK --json
same "combos" "$(value_of combos)" 16
same "text" "$(value_of text)" '"AKs,AKo"'
same "cells" "$(value_of matrix | tr -cd '01' | wc -c)" 169
same "cells set" "$(value_of matrix | tr -cd 1)" 11
run range 3.8% --table corvelle --json
same "Corvelle" "$(value_of text)" '"TT+,AQs+,AKo"'

echo old >"$work/range.svg"
run range 15% --svg "$work/range.svg" --json
expect_code 0
same "boxes" "$(grep -c '<rect .*</text>' "$work/range.svg")" 169
has "title" "$(<"$work/range.svg")" "<title>77+,A7s+"

run range 15% --svg -
same "--svg -" "$out" "$(<"$work/range.svg")"
refuses 2 "--svg - and --json do not go together" range 15% --svg - --json

run range --rank 87s --json
same "$asked" "$out" '{"schema":1,"game":"holdem","hand":"87s","class_order":50,"table":"equilibrium",'\
'"enters_at_percent":34.9,"sklansky_group":5}'
run range --rank 87s --game shortdeck --json
has "$asked" "$out" '"class_order":59,"table":"equilibrium","enters_at_percent":64.45}'
run range --rank K8s --game shortdeck
has "$asked" "$out" "at 39.69 %"
run range --rank 7h2d --table corvelle
has "$asked" "$out" "in none of its ranges"

# Omaha.
run range --game omaha AAKK 'AAKx!AAKK!AAAx:r' --dead AhKc
expect_code 0
same "$asked" "$out" "AA[2-K]K,AAAK:ss,!Ahxxx!Kcxxx

407 of 270,725 hands, 0.1503 %

  single-suited                                  261   64.13 %
  rainbow                                         57   14.00 %
  double-suited                                   45   11.06 %
  three of a suit                                 44   10.81 %

  aces                                           288   70.76 %
  aces with broadway cards                       108   26.54 %
  double pair of aces and kings                    9    2.21 %
  trip aces                                        2    0.49 %

  for example  AsAdKsQs  AsAdKs4c  AsAdKd2s  AsAcKh3c  AsAcKd2c  AdAcKd2s"
run range --game omaha 'AAKK' --json
same "$asked" "$out" '{"schema":1,"game":"omaha","text":"AAKK","dead":[],"hands":36,"percent":0.013297626743004894,'\
'"suits":{"single-suited":24,"double-suited":6,"rainbow":6},'\
'"types":{"double pair of aces and kings":36},'\
'"examples":["AsAhKsKh","AsAdKsKc","AsAdKhKd","AhAdKsKh","AdAcKsKh","AhAcKhKc"]}'
run range --game omaha 'AsAhKs[23]' --list --dead 2s3h
same "$asked" "$out" $'AsAhKs3s\nAsAhKs2h\nAsAhKs3d\nAsAhKs2d\nAsAhKs3c\nAsAhKs2c'
for question in 'omaha AAxx!AAAx, KKxx:ss' 'omaha 5%-8%!AsKsxx' 'omaha5 2%:ds'; do
  game=${question%% *}
  run range --game "$game" "${question#* }" --json
  expect_code 0
  first=$out
  run range --game "$game" "$(value_of text | tr -d '"')" --json
  same "$asked" "$out" "$first"
done
run range --game omaha6 'AAAAxx!xxxxxx:ts, AAAKKK' --json
same "$asked" "$(value_of text) $(value_of hands)" '"AAAAxx,AAAKKK" 1144'
has "$asked" "$out" '"trip aces and trip kings":16'
run range --game omaha6 AsKsQsJsTs9s --dead As
has "$asked" "$out" "0 of 20,358,520 hands"
refuses 2 "'15%' at position 8: expected six cards (AsKsQhJh9c8d, AAxxxx, [T-A][T-A]xxxx) or random; omaha6 has no order of strength yet" \
  range --game omaha6 AAxxxx,15%
refuses 2 "--rank 'AsKsQsJsTs9s': omaha6 has no order of strength yet" range --game omaha6 --rank AsKsQsJsTs9s
run range --game omaha --rank JhAsKsQh --json
same "$asked" "$out" '{"schema":1,"game":"omaha","hand":["As","Ks","Qh","Jh"],'\
'"name":"broadway rundown, double-suited","percentile":6.116908301782251}'
# Brackets at both ends.
for text in '[T-A][T-A][T-A][T-A]' '[KQ]AA[23]' '[AK]Qxx,JT9[76]'; do
  run range --game omaha "$text" --json
  expect_code 0
  first=$(value_of hands)
  run range --game omaha " $text" --json
  same "$asked" "$(value_of hands)" "$first"
  run equity 2h3h4d5d "$text" --game omaha --board 2c9d9h --json
  has "$asked" "$out" "\"range\":\"$text\",\"hands\":"
done
refuses 2 "'[KQ]AA[2y]' at position 9: expected" range --game omaha '[KQ]AA[2y]'
refuses 1 "cannot write '$work/none/[x]'" range AA --svg="$work/none/[x]"
refuses 1 "cannot write '[x]/[y]': " range AA --svg='[x]/[y]'
# A long text is cut between its terms.
text=random
for ranks in 29K4 T3Q7 A826 5J9K 8T42 3A7Q 6K59 J42T Q638 97AJ; do
  for suits in scdh chsd ddcs hscc sdhs dshc cchd sshd; do
    text+='!'
    for i in 0 1 2 3; do text+=${ranks:i:1}${suits:i:1}; done
  done
done
run range --game omaha "$text"
expect_code 0
[[ ${out%%$'\n'*} =~ ^random(![^!,]{8,})+\.\.\.\ \(7[0-9]{2}\ characters ]] || fail "a long text: ${out%%$'\n'*}"
refuses 2 "'AKx' at position 9: expected four cards, with x" range --game omaha AAxx,AKx
refuses 2 "--svg is for two cards, not for five-card Omaha" range --game omaha5 10% --svg x
refuses 2 "--table is for two cards" range --game omaha 10% --table corvelle
refuses 2 "'AsKs' has 2 cards: a hand of Omaha has 4" range --game omaha --rank AsKs
refuses 2 "--rank stands alone" range --game omaha --rank AsKsQhJh 10%
refuses 2 "'Xh' is not a card" range --game omaha 10% --dead Xh
refuses 2 "--list prints hands as text" range --game omaha 10% --list --json

refuses 2 "'KX' at position 5: expected" range AA,KX
refuses 2 "'55' at position 1: expected ranks of the short deck" range 55 --game shortdeck
refuses 2 "'omaha-hilo' is not for this question: holdem, shortdeck, omaha, omaha5, omaha6" range AA --game omaha-hilo
refuses 2 "--dead goes with --game omaha" range AA --dead Ah
refuses 2 "'AK' names 2 classes" range --rank AK
for text in '' ' ,; '; do
  refuses 2 "a range is needed, like 'TT+,A9s+'" range "$text"
  refuses 2 "a range is needed, like AAxx:ds" range --game omaha "$text"
done
refuses 2 "a range is needed" range
refuses 2 "--svg needs a value" range AA --svg ""
refuses 2 "--rank needs a value" range --rank ""
refuses 1 "cannot write '$work/none/x.svg'" range AA --svg "$work/none/x.svg"

finish
