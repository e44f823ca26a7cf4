#!/usr/bin/env bash
# Kernels, compute units, break conditions and argument signals of a container.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
cp "$SOURCE_DIR/examples/vadd/vadd.xml" .

run 0 emu vadd.xml --bd bd && golden emu/vadd.txt
run 0 emu vadd.xml --bd bd --json && golden emu/vadd.json
run 0 emu vadd.xml
has out ' == //OCL_Region_0/'
has err 'xrf: warning: the paths lack the name of the block design; give it with --bd'

core() {
  printf '<project><platform><host/><device><core name="c">%s</core></device></platform></project>\n' \
    "$1"
}
# A document on which the map's own search would never end is refused in time.
core '<kernel name="k"/><connection dstInst="x" dstPort="y"/>' >endless.xml
run 1 emu endless.xml
has err "endless.xml: the core's first connection does not control its kernels"
run 1 emu endless.xml --json
has out '"file":"endless.xml"'
core '' >empty.xml
run 1 emu empty.xml
has err 'empty.xml: the first core of the first device lists no kernel'
core '<kernel name="k"><arg name="begin"/></kernel>' >bare.xml
run 0 emu bare.xml --json
has out '{"name":"begin","signal":"begin_r","emulation":"begin_r"}'
echo '<Project/>' >root.xml
run 1 emu root.xml
has err '(code 16)'
core '<kernel name="k"><arg addressQualifier="x"/></kernel>' >integer.xml
run 1 emu integer.xml
has err 'integer.xml:1:'
has err '(code 35)'
run 1 emu missing.xml
has err 'missing.xml'
run 2 emu
finish
