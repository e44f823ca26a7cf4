#!/usr/bin/env bash
# Inputs beyond 4 GiB, made as they are read: what comes after them is still found, and an error there
# names its line. Takes some minutes and 12 GiB of memory. Arguments: kinds of input, default all.
# Run by scripts/test-full.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
example=$SOURCE_DIR/examples/beacon
bytes=$((4 * 1024 * 1024 * 1024 + 65536))
if [ "$(awk '/^MemAvailable/ { print $2 }' /proc/meminfo)" -lt $((12 * 1024 * 1024)) ]; then
  echo "less than 12 GiB of memory is free: not run"
  exit 77
fi
run 0 build --quiet --rtl "$example/beacon_rtl.edf" --synth "$example/beacon_synth.edf" \
  --ll "$example/beacon.ll" --log "$example/beacon.log" -o expected.xrf

# filler LINE prints more than 4 GiB of a line; its length divides the size.
filler() {
  local line
  line=$(printf '%-63s' "$1")
  yes "$line" | head -c $bytes
}
lines_of_filler=$((bytes / 64))

huge_ll() {
  filler 'Bit 34086752 0x00200000 992 Block=RAMB36_X0Y23 Ram=B:BIT0'
  cat "$example/beacon.ll"
}
huge_log() {
  filler 'WARNING: [Synth 8-6014] unused sequential element was removed'
  cat "$example/beacon.log"
}
huge_edif() {
  head -n 1 "$example/beacon_rtl.edf"
  # Another word would give those that follow other numbers.
  filler '(comment "")'
  tail -n +2 "$example/beacon_rtl.edf"
}
huge_xrf() {
  head -n 1 expected.xrf
  filler ''
  tail -n +2 expected.xrf
}
huge_xml() {
  sed '/<project/q' "$SOURCE_DIR/examples/vadd/vadd.xml"
  filler '<!-- as long as it is, it says nothing -->'
  sed '1,/<project/d' "$SOURCE_DIR/examples/vadd/vadd.xml"
}

test_ll() {
  run 0 build --quiet --rtl "$example/beacon_rtl.edf" --synth "$example/beacon_synth.edf" \
    --ll <(huge_ll) --log "$example/beacon.log" -o out.xrf
  same expected.xrf out.xrf
}
test_log() {
  run 0 build --quiet --rtl "$example/beacon_rtl.edf" --synth "$example/beacon_synth.edf" \
    --ll "$example/beacon.ll" --log <(huge_log) -o out.xrf
  same expected.xrf out.xrf
}
test_edif() {
  run 0 build --quiet --rtl <(huge_edif) --synth "$example/beacon_synth.edf" \
    --ll "$example/beacon.ll" --log "$example/beacon.log" -o out.xrf
  same expected.xrf out.xrf
  run 1 build --quiet --rtl <(huge_edif | head -n -3) --synth "$example/beacon_synth.edf" -o out.xrf
  one_error
  has err ":$((lines_of_filler + $(wc -l <"$example/beacon_rtl.edf") - 2)):"
}
test_xrf() {
  run 0 build --quiet --xrf <(huge_xrf) -o out.xrf
  same expected.xrf out.xrf
  run 1 info <(huge_xrf && printf '\nwhat\n')
  one_error
  has err ":$((lines_of_filler + $(wc -l <expected.xrf) + 2)):"
}
test_xml() {
  run 0 meta format "$SOURCE_DIR/examples/vadd/vadd.xml" -o expected.xml
  run 0 meta format <(huge_xml) -o out.xml
  same expected.xml out.xml
  run 1 meta check <(huge_xml && echo '<more/>')
  has out ":$((lines_of_filler + $(wc -l <"$SOURCE_DIR/examples/vadd/vadd.xml") + 1)):"
}

kinds=("$@")
[ $# -gt 0 ] || kinds=(ll log edif xrf xml)
for kind in "${kinds[@]}"; do
  began=$SECONDS
  "test_$kind"
  echo "$kind: $((SECONDS - began)) s"
done
finish
