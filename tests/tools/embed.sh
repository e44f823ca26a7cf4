#!/usr/bin/env bash
# The embedding example: a process that outlives bad files, with several designs open.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
: "${EMBED:?the embedding example}"
cp "$SOURCE_DIR"/examples/{blinker/blinker,beacon/beacon}* "$SOURCE_DIR"/examples/vadd/vadd.xml .
for name in blinker beacon; do
  run 0 build --quiet --rtl ${name}_rtl.edf --synth ${name}_synth.edf --ll $name.ll \
    --log $name.log -o $name.xrf
done
head -c 1500 blinker.xrf >truncated.xrf
cp "$SOURCE_DIR"/examples/embed/{session.txt,readback.txt} .

# debug reads commands from standard input; what it prints is then in the files out and err.
debug() {
  last_run="embed"
  checks=$((checks + 1))
  "$EMBED" >out 2>err || fail "embed: status $?"
}

debug <session.txt
golden embed/session.txt
has err '... Reading cross-reference: 0 %'
has err 'xrf| Parsing xrf file: blinker.xrf complete.'

# After a bad file all is as before it, and the design that stays open knows nothing of the others.
debug <<'END'
open one blinker.xrf
open two truncated.xrf
print two u_ticker/count
open two beacon.xrf
print one u_store/hold
close one
print one u_ticker/count
kernels nosuch.xml bd
open three nosuch.xrf
print two u_store/hold
END
has out "open as 'one'"
has out 'truncated.xrf:79: Unexpected syntax encountered. (BIT 74 STATE z 419603'
lines out 11
has out "no design is open as 'two'"
has out "no signal is named 'u_store/hold'"
has out "no design is open as 'one'"
has out 'nosuch.xml: cannot open'
has out "Can't open file nosuch.xrf"
has out "/beacon/u_store/hold = 2'bxx"

finish
