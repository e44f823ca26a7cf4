#!/usr/bin/env bash
# The example with the names of today's tools, against the table in its README, both ways.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
. "$SOURCE_DIR/tests/tools/lib/readme.sh"
cp "$SOURCE_DIR"/examples/beacon/beacon* .
readme=$SOURCE_DIR/examples/beacon/README.md
netlists=(--rtl beacon_rtl.edf --synth beacon_synth.edf)

run 0 build "${netlists[@]}" --ll beacon.ll --log beacon.log -o beacon.xrf
golden beacon/build.txt
run 0 build "${netlists[@]}" --ll beacon.ll --log beacon.log -o beacon.xrf --json
golden beacon/build.json
golden beacon/beacon.xrf beacon.xrf
run 0 info beacon.xrf --quiet && golden beacon/info.txt
run 0 tree beacon.xrf --quiet && golden beacon/tree.txt
run 0 find beacon.xrf --quiet 'u_store/mem[3][5]' 'u_control/r[tag][valid]' 'gen[1].u_lamp/on'
golden beacon/find.txt
run 0 whatis beacon.xrf --quiet 0x0004650c 963 && golden beacon/whatis.txt
run 0 whatis beacon.xrf --quiet lamp --json && golden beacon/whatis.json

# check_answers FILE: every register is found under the signal's name and as written in the source,
# and is named for its place.
check_answers() {
  check_readme "$readme" 20 "$1"
  readme_table "$readme" 'as written' | tee rows >truth
  while read -r name kind frame offset region; do
    run 0 find "$1" --view rtl --quiet "$name"
    lines out 2
    find_rows | cut -d' ' -f2- >actual
    echo "$kind $frame $offset $region" | sed 's/ *$//' >expected
    same expected actual "$name as written"
    [ "$kind" = located ] || continue
    run 0 whatis "$1" --quiet "$frame" "$offset" "$region"
    tail -n +2 out | cut -d' ' -f1 | sort >actual
    grep -F " $frame $offset $region" truth | cut -d' ' -f1 >expected
    same expected actual
  done <rows
}
check_answers beacon.xrf
# Or with locations and log that come later.
run 0 build "${netlists[@]}" --quiet -o bare.xrf
run 0 build --xrf bare.xrf --ll beacon.ll --log beacon.log --quiet -o later.xrf
check_answers later.xrf

# Names of the synthesized netlist: the copy, and nets with names of their own.
while read -r name expected; do
  run 0 whatis beacon.xrf --quiet "$name"
  tail -n +2 out | cut -d' ' -f1 | paste -sd' ' >actual
  echo "$expected" >expected
  same expected actual
done <<'END'
u_control/r_reg[count][0]_rep /beacon/u_control/r[count][0]
addr[0] /beacon/u_control/r[count][0]
/beacon/u_store/mem_reg_n_0_[3][5] /beacon/u_store/mem[3][5]
q[5] /beacon/u_store/hold[5]
lamp[1] /beacon/gen[0].u_lamp/on
we /beacon/u_control/r[tag][valid] /beacon/u_control/strobe
END

# A log that the tool cut short is incomplete, and the report says so.
run 0 build "${netlists[@]}" --ll beacon.ll --log beacon.log --quiet --json -o out.xrf
has out '"suppressed":false'
{
  grep -v 'dim_reg\|merging' beacon.log
  echo "INFO: Message 'Synth 8-3333' appears more than 100 times and further instances of the messages will be disabled."
} >short.log
run 0 build "${netlists[@]}" --ll beacon.ll --log short.log -o out.xrf
has out "cut short by the tool's message limit"
has out ' 4 not in the implementation'
run 0 build "${netlists[@]}" --ll beacon.ll --log short.log --quiet --json -o out.xrf
has out '"suppressed":true'

# What no file explains is named.
sed 's/Net=q.5./Net=nosuch/' beacon.ll >wrong.ll
run 0 build "${netlists[@]}" --ll wrong.ll --log beacon.log -o out.xrf
has out 'unmatched: nosuch'
has out ' 1 unknown: no location and no log line tells of them'
# Who leaves the region out is told where to look.
run 3 whatis beacon.xrf 0x0004640c 837
has err 'offset 837, region 0; one lives there in region 1'
finish
