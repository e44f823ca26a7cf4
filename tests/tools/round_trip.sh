#!/usr/bin/env bash
# What build writes reads back as it was, and the same input gives the same bytes.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
: "${GENERATE:?the design generator}"

# round_trip RTL SYNTH LL LOG
round_trip() {
  local rtl=$1 synth=$2 ll=$3 log=$4
  run 0 build --rtl "$rtl" --synth "$synth" --ll "$ll" --log "$log" -o first.xrf
  mv out first.report
  run 0 build --rtl "$rtl" --synth "$synth" --ll "$ll" --log "$log" -o second.xrf
  sed -i 's/second.xrf/first.xrf/' out
  same first.report out
  same first.xrf second.xrf
  run 0 build --xrf first.xrf --quiet -o again.xrf
  same first.xrf again.xrf
  run 0 build --xrf again.xrf --quiet -o again.xrf
  same first.xrf again.xrf
  # What a file says does not depend on how often it was written.
  run 0 info first.xrf --json
  mv out first.info
  run 0 build --rtl "$rtl" --synth "$synth" --ll "$ll" --log "$log" -o info.xrf --json
  grep -o '"views":.*"synth":{[^}]*}}' out >built
  grep -o '"views":.*"synth":{[^}]*}}' first.info >loaded
  same built loaded
}

example=$SOURCE_DIR/examples/blinker
round_trip "$example/blinker_rtl.edf" "$example/blinker_synth.edf" "$example/blinker.ll" \
  "$example/blinker.log"
for shape in tree deep; do
  "$GENERATE" --registers 2000 --shape $shape --out $shape >/dev/null || fail "generate"
  round_trip $shape/rtl.edf $shape/synth.edf $shape/design.ll $shape/synth.log
done
finish
