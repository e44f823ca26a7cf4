#!/usr/bin/env bash
# Golden runs of every subcommand on the example design, in both ways of reading.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
. "$SOURCE_DIR/tests/tools/lib/readme.sh"
cp "$SOURCE_DIR"/examples/blinker/blinker* .
netlists=(--rtl blinker_rtl.edf --synth blinker_synth.edf)
inputs=("${netlists[@]}" --ll blinker.ll --log blinker.log)

# golden_runs NAME [OPTION...]: all subcommands on what build makes with the options.
golden_runs() {
  local name=$1
  shift
  run 0 build "${inputs[@]}" "$@" -o blinker.xrf
  golden "$name/build.txt"
  golden "$name/build.messages" err
  run 0 build "${inputs[@]}" "$@" -o blinker.xrf --json && golden "$name/build.json"
  golden "$name/blinker.xrf" blinker.xrf
  run 0 build "${netlists[@]}" "$@" -o bare.xrf && golden "$name/build_bare.txt"
  run 0 build --xrf bare.xrf --ll blinker.ll --log blinker.log "$@" -o later.xrf
  golden "$name/build_later.txt"
  run 0 build --xrf bare.xrf --quiet "$@" -o later.xrf
  lines out 0
  lines err 0
  run 0 build "${inputs[@]}" "$@" -o visible.xrf --hide-hidden && golden "$name/build_visible.txt"
  hasnt err 'warning: --hide-hidden'
  golden "$name/visible.xrf" visible.xrf
  run 0 build "${netlists[@]}" "$@" -o visible.xrf --hide-hidden
  has err 'xrf: warning: --hide-hidden leaves out register cells'

  run 0 info blinker.xrf && golden "$name/info.txt"
  run 0 info blinker.xrf --json && golden "$name/info.json"
  run 0 tree blinker.xrf && golden "$name/tree.txt"
  run 0 tree blinker.xrf --view synth --depth 1 && golden "$name/tree_synth.txt"
  run 0 tree blinker.xrf --json && golden "$name/tree.json"
  run 0 dump blinker.xrf && golden "$name/dump.txt"
  run 0 dump blinker.xrf --json && golden "$name/dump.json"

  # Registers, read by a stranger: buses, words of the memory, generated lamps, a constant, one that
  # nothing reads. The truth is the table in the example's README.
  run 0 find blinker.xrf --view rtl "${names[@]}" && golden "$name/find.txt"
  run 0 find blinker.xrf --view rtl "${names[@]}" --json && golden "$name/find.json"
  run 0 find blinker.xrf 'u_player/u_fifo/mem[3][1]' u_ticker && golden "$name/find_bit.txt"
  run 3 find blinker.xrf u_ticker/count 'u_ticker/count[4]' --json
  golden "$name/find_missing.json"
  check_readme "$SOURCE_DIR/examples/blinker/README.md" 31 blinker.xrf
}

names=(u_ticker/count u_ticker/limit u_ticker/tick u_player/playing 'u_player/u_fifo/mem<?>'
  'u_player/u_fifo/?d_ptr' u_player/u_fifo/rdata u_player/u_fifo/overflow 'bank[0].u_lamp/on'
  'bank_?__u_lamp/polarity')
golden_runs blinker_strict --matching strict
golden_runs blinker_extended
cp blinker.xrf default.xrf
run 0 build "${inputs[@]}" --matching extended --quiet -o blinker.xrf
same default.xrf blinker.xrf

# Only extended reading finds all of it when the locations come later.
run 0 build "${netlists[@]}" --quiet -o bare.xrf
run 0 build --xrf bare.xrf --ll blinker.ll --log blinker.log --quiet -o later.xrf
check_readme "$SOURCE_DIR/examples/blinker/README.md" 31 later.xrf
finish
