#!/usr/bin/env bash
# The reverse question: from a place or a name of the implementation to the registers of the RTL.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
. "$SOURCE_DIR/tests/tools/lib/truth.sh"
cp "$SOURCE_DIR"/examples/blinker/blinker* .
run 0 build --rtl blinker_rtl.edf --synth blinker_synth.edf --ll blinker.ll --log blinker.log \
  --quiet -o blinker.xrf

run 0 whatis blinker.xrf 0x0040061f 2595 --quiet && golden whatis/place.txt
run 0 whatis blinker.xrf 0x0040061f 2595 --quiet --json && golden whatis/place.json
run 0 whatis blinker.xrf u_player/word --quiet && golden whatis/bus.txt
run 0 whatis blinker.xrf u_player/word --quiet --json && golden whatis/bus.json

# is EXPECTED ARGUMENT...: exactly one register is named.
is() {
  local expected=$1
  shift
  run 0 whatis blinker.xrf --quiet "$@"
  lines out 2
  has out "$expected "
}
# is_nothing REASON ARGUMENT...: none is, for a reason.
is_nothing() {
  local reason=$1
  shift
  run 3 whatis blinker.xrf --quiet "$@"
  lines err 1
  lines out 0
  has err "blinker.xrf: $reason"
  run 3 whatis blinker.xrf --quiet --json "$@"
  lines out 1
  has out '"registers":[]'
}
count='/blinker/u_ticker/count[2]'
is "$count" 0x40061f 2595
is "$count" 4195871 2595
is "$count" 0X0040061F 2595 0
for name in 'u_ticker/count_reg[2]' 'u_ticker/count_reg[2]/Q' u_ticker/count_2_ 'u_ticker/count[2]'; do
  is "$count" "$name"
  is "$count" "/blinker/$name"
done
is '/blinker/u_player/u_fifo/mem[3][1]' 'u_player/u_fifo/mem_reg[3][1]'
is_nothing 'no register of the RTL lives at frame 0x0040061f, offset 2595, region 1' 4195871 2595 1
is_nothing 'no register of the RTL lives at frame 0x0040061f, offset 2596' 4195871 2596
hasnt err 'in region'
is_nothing "nothing is named 'u_ticker/nosuch' in the synthesized netlist" u_ticker/nosuch
is_nothing "nothing is named '4195871' in the synthesized netlist" 4195871
is_nothing "'u_ticker/last' of the synthesized netlist is no register" u_ticker/last
is_nothing "'u_ticker' of the synthesized netlist is no register" u_ticker

# A file without cells cannot tell, and says why.
run 0 build --xrf blinker.xrf --hide-hidden --quiet -o visible.xrf
run 3 whatis visible.xrf 0x0040061f 2595 --quiet
has err 'the file lists no registers'

# tells_places HAZARDS: wherever a register of a design with such habits lives, its name in the
# source is told, and those of the registers merged with it.
tells_places() {
  local checked=0 frame offset region
  generated "$1" design.xrf
  while IFS=$'\t' read -r frame offset region; do
    run 0 whatis design.xrf "$frame" "$offset" "$region" --quiet
    tail -n +2 out | cut -d' ' -f1 | sort >actual
    awk -F'\t' -v f="$frame" -v o="$offset" -v r="$region" \
      '$2 == f && $3 == o && $4 == r { print $1 }' located | tr ' ()' '___' | sort >expected
    same expected actual "$last_run on $1"
    checked=$((checked + 1))
  done < <(cut -f2- located | sort -u | awk 'NR % 16 == 1')
  [ "$checked" -gt 30 ] || fail "only $checked places were asked for"
}
tells_places scopes,records,arrays,ranges,blanks,slr
tells_places scopes,merged,replicas,tool-nets
finish
