#!/usr/bin/env bash
# Golden runs of every subcommand on the example design.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
cp "$SOURCE_DIR"/examples/blinker/blinker* .
inputs=(--rtl blinker_rtl.edf --synth blinker_synth.edf --ll blinker.ll --log blinker.log)

run 0 build "${inputs[@]}" -o blinker.xrf
golden blinker/build.txt
golden blinker/build.messages err
run 0 build "${inputs[@]}" -o blinker.xrf --json && golden blinker/build.json
golden blinker/blinker.xrf blinker.xrf
run 0 build --rtl blinker_rtl.edf --synth blinker_synth.edf -o bare.xrf && golden blinker/build_bare.txt
run 0 build --xrf bare.xrf --ll blinker.ll --log blinker.log -o later.xrf
golden blinker/build_later.txt
run 0 build --xrf bare.xrf --quiet -o later.xrf
lines out 0
lines err 0
run 0 build "${inputs[@]}" -o visible.xrf --hide-hidden && golden blinker/build_visible.txt
hasnt err 'warning: --hide-hidden'
golden blinker/visible.xrf visible.xrf
run 0 build --rtl blinker_rtl.edf --synth blinker_synth.edf -o visible.xrf --hide-hidden
has err 'xrf: warning: --hide-hidden leaves out register cells'

run 0 info blinker.xrf && golden blinker/info.txt
run 0 info blinker.xrf --json && golden blinker/info.json
run 0 tree blinker.xrf && golden blinker/tree.txt
run 0 tree blinker.xrf --view synth --depth 1 && golden blinker/tree_synth.txt
run 0 tree blinker.xrf --json && golden blinker/tree.json
run 0 dump blinker.xrf && golden blinker/dump.txt
run 0 dump blinker.xrf --json && golden blinker/dump.json

# Registers, read by a stranger: buses, words of the memory, generated lamps, a constant, one that
# nothing reads. The truth is the table in the example's README.
names=(u_ticker/count u_ticker/limit u_ticker/tick u_player/playing 'u_player/u_fifo/mem<?>'
  'u_player/u_fifo/?d_ptr' u_player/u_fifo/rdata u_player/u_fifo/overflow 'bank[0].u_lamp/on'
  'bank_?__u_lamp/polarity')
run 0 find blinker.xrf --view rtl "${names[@]}" && golden blinker/find.txt
run 0 find blinker.xrf --view rtl "${names[@]}" --json && golden blinker/find.json
run 0 find blinker.xrf 'u_player/u_fifo/mem[3][1]' u_ticker && golden blinker/find_bit.txt
run 3 find blinker.xrf u_ticker/count 'u_ticker/count[4]' --json && golden blinker/find_missing.json

# The same truth, taken from the README: signal, index, frame and offset, or constant, or unread.
sed -n '/^| signal | index/,/^$/p' "$SOURCE_DIR/examples/blinker/README.md" | tail -n +3 |
  awk -F'|' 'NF > 1 {
    gsub(/[ `]/, "", $2); gsub(/ /, "", $3); gsub(/ /, "", $4); gsub(/ /, "", $5)
    gsub(/^ +| +$/, "", $6)
    if ($2 != "") { name = $2; seen[name] = 0 }
    rows[++n] = name "|" $3 "|" ($6 != "" ? $6 : "located " $4 " " $5)
    count[name]++
  }
  END {
    for (i = 1; i <= n; ++i) {
      split(rows[i], f, "|")
      print f[1] (count[f[1]] > 1 ? "[" f[2] "]" : ""), f[3]
    }
  }' | sort >truth
mapfile -t registers < <(cut -d" " -f1 truth)
run 0 find blinker.xrf --view rtl --quiet "${registers[@]}"
tail -n +2 out | awk '{print $2, $4 ($5 != "" ? " " $5 : "") ($6 != "" ? " " $6 : "")}' | sort >actual
checks=$((checks + 1))
[ "$(wc -l <truth)" = 31 ] || fail "the README tells of $(wc -l <truth) bits instead of 31"
same truth actual 'the table in the README'
finish
