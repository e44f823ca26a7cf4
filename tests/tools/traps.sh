#!/usr/bin/env bash
# Two ways of the strict readers that a user of the command must not fall into.
. "$SOURCE_DIR/tests/tools/lib/check.sh"

# A module without anything to list closes on its own line. Strict reading does not count that, so
# what follows ends up inside it; extended reading, which the command loads files with, does.
cat >empty.xrf <<'END'
(VERSION 1)
(FAMILY TORVAL7)
(BITS 2)
(NETS 2)
(BIT 0 ? z)
(BIT 1 ? z)

(VIEW RTL)

(MOD VISIBLE top top 0

   (MOD VISIBLE nothing a 1)
   (MOD VISIBLE leaf b 2

      (SIG VISIBLE IN x 3 0 0 0 0)
      (SIG HIDDEN IN y 4 1 0 0 1)))
(VIEW SYNTH)

END
run 0 build --quiet --xrf empty.xrf -o out.xrf
has err 'out.xrf: strict reading will not read the tree back as it is: modules without anything to list: 1, the first is /top/a'
lines err 1
run 0 tree out.xrf --view rtl
cp out of_file
run 0 tree empty.xrf --view rtl
same of_file out
run 0 find out.xrf /top/b/x
has out '/top/b/x'

# Nothing is wrong without that module, and no word is said.
grep -v nothing empty.xrf >full.xrf
run 0 build --quiet --xrf full.xrf -o out.xrf
lines err 0
run 0 build --quiet --matching strict --xrf out.xrf -o again.xrf
same out.xrf again.xrf

# A module may be left with nothing to list once hidden objects are left out.
sed 's/SIG VISIBLE/SIG HIDDEN/' full.xrf >hidden.xrf
run 0 build --quiet --xrf hidden.xrf -o out.xrf
lines err 0
run 0 build --quiet --hide-hidden --xrf hidden.xrf -o out.xrf
has err 'the first is /top/b'

# A file that names something by nothing reads back in no way. Extended reading refuses the netlist;
# strict reading takes it, and whoever writes one is told.
printf '(edif top (status (written (program "Tarvona")))\n(design top\n))\n' >nameless.edf
echo older >out.xrf
run 1 build --quiet --rtl nameless.edf --synth nameless.edf -o out.xrf
one_error
has err 'nameless.edf:3:1: The design top names no cell.'
has out.xrf older
run 0 build --quiet --matching strict --rtl nameless.edf --synth nameless.edf -o out.xrf
has err 'out.xrf: the file will not read back: names that are empty'
run 1 info out.xrf

# The emulation map's search for a controlling connection may never end; the command never starts it.
cat >endless.xml <<'END'
<project><platform><host/><device><core name="c"><kernel name="k"/>
<connection dstInst="x" dstPort="y"/></core></device></platform></project>
END
checks=$((checks + 1))
status=0
timeout -s KILL 60 "$XRF" emu endless.xml >out 2>err </dev/null || status=$?
last_run="emu endless.xml"
[ $status = 1 ] || fail "$last_run: status $status"
one_error
has err "endless.xml: the core's first connection does not control its kernels"
finish
