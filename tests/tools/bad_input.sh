#!/usr/bin/env bash
# Whatever stands in for an input, the outcome is one clear error and status 1.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
example=$SOURCE_DIR/examples/blinker
cp "$example"/blinker* .
run 0 build --quiet --rtl blinker_rtl.edf --synth blinker_synth.edf --ll blinker.ll \
  --log blinker.log -o good.xrf

mkdir folder
: >empty
head -c 5000 "$XRF" >garbage
head -c 9000 blinker_rtl.edf >truncated_rtl.edf
head -c 9000 blinker_synth.edf >truncated_synth.edf
head -c 1500 good.xrf >truncated.xrf
printf '(VERSION 1)\n(FAMILY TORVAL7)\n(BITS 1)\n(NETS 1)\n(BIT 7 ? z)\n' >far_bit.xrf
printf '(VERSION 1)\nwhat is this\n' >syntax.xrf
grep -v '^(FAMILY' good.xrf >no_family.xrf
sed 's/(program "Tarvona"/(program "Other"/' blinker_rtl.edf >no_family_rtl.edf
sed 's/(program "Tarvona"/(program "Other"/' blinker_synth.edf >no_family_synth.edf
printf 'Bit 1 0x00400100 1 Block=RAMB36_X0Y1 Latch=AQ Net=a\n' >block.ll
printf 'Bit 1 0x00400100 1 Block=SLI Latch=AQ Net=a\n' >short_block.ll

# refused FILE ARGUMENT...: the run fails, blames FILE, writes nothing and keeps an older output.
refused() {
  local file=$1
  shift
  echo older >out.xrf
  run 1 "$@" --quiet
  one_error
  has err "$file"
  checks=$((checks + 1))
  [ "$(cat out.xrf)" = older ] || fail "$last_run: the older output was touched"
  run 1 "$@" --quiet --json
  json_error
  no_leftovers .
}

for bad in nosuch folder empty garbage; do
  for subcommand in info tree dump; do refused "$bad" "$subcommand" "$bad"; done
  refused "$bad" find "$bad" name
  refused "$bad" whatis "$bad" name
  refused "$bad" build --xrf "$bad" -o out.xrf
  refused "$bad" build --rtl "$bad" --synth blinker_synth.edf -o out.xrf
  refused "$bad" build --rtl blinker_rtl.edf --synth "$bad" -o out.xrf
done
for bad in nosuch folder; do
  refused "$bad" build --xrf good.xrf --ll "$bad" -o out.xrf
  refused "$bad" build --xrf good.xrf --log "$bad" -o out.xrf
done
refused truncated_rtl.edf build --rtl truncated_rtl.edf --synth blinker_synth.edf -o out.xrf
refused truncated_synth.edf build --rtl blinker_rtl.edf --synth truncated_synth.edf -o out.xrf
refused truncated.xrf info truncated.xrf
refused far_bit.xrf info far_bit.xrf
refused blinker.ll build --rtl blinker.ll --synth blinker_synth.edf -o out.xrf
refused block.ll build --matching strict --xrf good.xrf --ll block.ll -o out.xrf
refused short_block.ll build --matching strict --xrf good.xrf --ll short_block.ll -o out.xrf
refused no_family.xrf build --xrf no_family.xrf -o out.xrf
refused no_family_rtl.edf build --rtl no_family_rtl.edf --synth no_family_synth.edf -o out.xrf
has out 'device family'

# What the standard library throws is in no words of its own.
run 1 build --matching strict --quiet --xrf good.xrf --ll short_block.ll -o out.xrf
has err 'short_block.ll: the file is malformed'
hasnt err basic_string

# The place is told where it is known, in text and in JSON.
refused syntax.xrf:2 info syntax.xrf
has out '"file":"syntax.xrf","line":2'
lines err 1  # the library says it, the command says it: the user reads it once
has err 'xrf: error: syntax.xrf:2'

# A file without any location, or any message, is noticed but no error.
run 0 build --xrf good.xrf --ll empty --quiet -o out.xrf
has err 'xrf: warning: empty: no line tells a location'
# Only strict matching gives up at a block that it does not know.
for ll in block.ll short_block.ll; do
  run 0 build --xrf good.xrf --ll $ll --quiet --json -o out.xrf
  has out '"locations":{"lines":1,"used":0,"skipped":1,"skippedBlocks":1,'
  same good.xrf out.xrf
done
# An input that the output would overwrite is refused before anything is read.
cp blinker_rtl.edf copy.edf
run 2 build --rtl copy.edf --synth blinker_synth.edf -o ./copy.edf
same blinker_rtl.edf copy.edf
finish
