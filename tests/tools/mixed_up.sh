#!/usr/bin/env bash
# Files and words that were mixed up: each run says what is wrong, instead of a result that is none.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
for kind in rtl.edf synth.edf; do cp "$SOURCE_DIR/examples/blinker/blinker_$kind" "$kind"; done
for kind in ll log; do
  cp "$SOURCE_DIR/examples/blinker/blinker.$kind" "blinker.$kind"
  cp "$SOURCE_DIR/examples/beacon/beacon.$kind" "beacon.$kind"
done
cp "$SOURCE_DIR/examples/vadd/vadd.xml" .
run 0 build -q --rtl rtl.edf --synth synth.edf --ll blinker.ll --log blinker.log -o x.xrf
lines err 0
gzip -k rtl.edf

# refuses FILE KIND WANTED ARGUMENT...: the run names the file and both kinds, and writes nothing.
refuses() {
  local file=$1 kind=$2 wanted=$3
  shift 3
  run 1 "$@"
  has err "xrf: error: $file: this is $kind, where $wanted is expected"
  lines err 1
  checks=$((checks + 1))
  [ ! -e out.xrf ] || fail 'an output appeared'
}
locations='a location file' netlist='a netlist (EDIF)' reference='a cross-reference file'
document='an XML document' log='a synthesis log'
refuses blinker.ll "$locations" "$netlist" build --rtl blinker.ll --synth synth.edf -o out.xrf
refuses x.xrf "$reference" "$netlist" build --rtl rtl.edf --synth x.xrf -o out.xrf
refuses vadd.xml "$document" "$netlist" build --rtl vadd.xml --synth synth.edf -o out.xrf
refuses rtl.edf.gz 'a compressed file' "$netlist" build --rtl rtl.edf.gz --synth synth.edf -o out.xrf
has err '; unpack it on the way, as in <(zcat FILE)'
refuses rtl.edf "$netlist" "$locations" build --rtl rtl.edf --synth synth.edf --ll rtl.edf -o out.xrf
refuses x.xrf "$reference" "$log" build --rtl rtl.edf --synth synth.edf --log x.xrf -o out.xrf
refuses blinker.ll "$locations" "$log" build --rtl rtl.edf --synth synth.edf --log blinker.ll -o out.xrf
refuses rtl.edf "$netlist" "$reference" build --xrf rtl.edf -o out.xrf
for subcommand in info tree dump; do
  refuses synth.edf "$netlist" "$reference" $subcommand synth.edf
done
refuses vadd.xml "$document" "$reference" find vadd.xml name
refuses blinker.ll "$locations" "$reference" whatis blinker.ll 0x10 1
refuses x.xrf "$reference" "$document" emu x.xrf
refuses synth.edf "$netlist" "$document" meta check synth.edf
# Letters in either case, blanks before, a byte order mark: a netlist all the same.
printf '\xef\xbb\xbf\n (EDIF x\n)' >odd.edf
refuses odd.edf "$netlist" "$locations" build --rtl rtl.edf --synth synth.edf --ll odd.edf -o out.xrf
# What only holds such words further on, or as part of others, is left to its reader.
printf '(edifice x)' >words.log
printf 'INFO: (edif x)\nBitten 7\nBit by bit\nBit 3 of x\n' >>words.log
run 0 build -q --rtl rtl.edf --synth synth.edf --log words.log -o y.xrf
lines err 0
echo 'Revision 3 of the flow' >words.log
run 0 build -q --rtl rtl.edf --synth synth.edf --log words.log -o y.xrf
lines err 0
grep '^Bit' blinker.ll >bits.ll
refuses bits.ll "$locations" "$log" build --rtl rtl.edf --synth synth.edf --log bits.ll -o out.xrf

run 0 build -q --rtl rtl.edf --synth rtl.edf -o y.xrf
has err 'xrf: warning: --rtl and --synth name one file'
run 0 build -q --rtl synth.edf --synth rtl.edf -o y.xrf
has err 'xrf: warning: the synthesized netlist holds cells of elaboration, and the elaborated one none'
run 0 build -q --rtl rtl.edf --synth synth.edf --ll beacon.ll -o y.xrf
has err 'xrf: warning: beacon.ll: no line names a register of the synthesized netlist; is it of this'
run 0 build -q --rtl rtl.edf --synth synth.edf --ll blinker.ll --log beacon.log -o y.xrf
has err 'xrf: warning: beacon.log: no line names a register of the netlists; is it of this design?'
lines err 1
run 0 build -q --rtl rtl.edf --synth synth.edf --ll blinker.log -o y.xrf
has err 'xrf: warning: blinker.log: no line tells a location'

run 1 find - name
has err '-: cannot read: No such file or directory (standard input is /dev/stdin)'
run 3 find -q x.xrf /
has err "nothing is named '/'"
run 0 find -q x.xrf u_ticker/
has out '/blinker/u_ticker '
run 3 find -q x.xrf mem
has err "did you mean '/blinker/u_player/u_fifo/mem<0>'"
run 3 find -q x.xrf blinker.u_ticker.count
has err "did you mean '/blinker/u_ticker/count'"
run 3 find -q x.xrf u_ticker.count
has err "did you mean '/blinker/u_ticker/count'"
run 2 find -q x.xrf --regex 'mem<\d>'
has err '\d has no meaning there (a digit is [0-9]'
run 0 find -q x.xrf --regex --format csv 'limit\[0\]$'
lines out 2
run 2 whatis -q x.xrf 0x0040061f
has err 'the frame address 0x0040061f needs the offset of a bit'
run 0 whatis -q x.xrf 4195871 2595
has out '/blinker/u_ticker/count[2]'

run 0 find --help && mv out by_option
run 0 help find && same by_option out
run 0 meta check --help && mv out by_option
run 0 help meta check && same by_option out
run 0 --help && mv out by_option
run 0 help && same by_option out
finish
