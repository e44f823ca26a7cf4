#!/usr/bin/env bash
# Designs that an open synthesizer elaborated and mapped: xrf must show of every register bit what
# the synthesizer's own databases say of it, no matter how the hierarchy came out of it.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
skipped=77 # as tests/CMakeLists.txt has it
for tool in yosys python3; do
  command -v "$tool" >/dev/null && continue
  echo "skipped: there is no $tool here (scripts/setup installs it)"
  exit $skipped
done
export XRF PYTHONDONTWRITEBYTECODE=1
sources=$SOURCE_DIR/tests/synthesizer
cp "$sources"/*.ys "$sources"/cells.v .

# Flip-flops with set and reset; and with reset alone, where a register that is set holds its
# inverse. The dollar signs are the synthesizer's.
# shellcheck disable=SC2016
any_control='dfflegalize -cell $_SDFFE_?P?P_ 01 -cell $_DFFE_PP?P_ 01'
# shellcheck disable=SC2016
resets_only='dfflegalize -cell $_SDFFE_PP0P_ 01 -cell $_DFFE_PP0P_ 01'

# synthesize DESIGN.v FLATTENING FLIP_FLOPS: makes elaborated.json and synthesized.json.
synthesize() {
  yosys -q -p "read_verilog -nomem2reg $1; script elaborate.ys; write_json elaborated.json
    script machines.ys; $2; script optimise.ys; $3; script map.ys
    write_json synthesized.json" >yosys.log 2>&1 && return
  cat yosys.log >&2
  return 1
}

# holds MODEL LABEL: the model's answers are the truth; their counts are in the file counts.
holds() {
  checks=$((checks + 1))
  python3 "$sources/compare.py" "$1" truth.json "$2" >counts ||
    fail "$2: the answers are not the truth"
}

# try DESIGN VARIANT FLATTENING FLIP_FLOPS
try() {
  local label="$1, $2"
  cp "$sources/designs/$1.v" .
  if ! synthesize "$1.v" "$3" "$4" ||
    ! python3 "$sources/dialect.py" elaborated.json synthesized.json .; then
    fail "$label: not synthesized"
    return
  fi
  run 0 build --rtl rtl.edf --synth synth.edf --ll design.ll --log synth.log -o design.xrf
  holds design.xrf "$label"
  cat counts >>table
  run 0 build --rtl rtl.edf --synth synth.edf -o bare.xrf
  run 0 build --xrf bare.xrf --ll design.ll --log synth.log -o design.xrf
  holds design.xrf "$label, read later"
}

columns=(bits located constant merged nothing missing wrong)
for design in "$sources"/designs/*.v; do
  design=$(basename "$design" .v)
  try "$design" hierarchy '' "$any_control"
  try "$design" mixed 'setattr -mod -set keep_hierarchy 1 A:apart; flatten' "$any_control"
  try "$design" flat flatten "$any_control"
  try "$design" resets flatten "$resets_only"
done
printf '%-26s' 'design, variant'
printf '%9s' "${columns[@]}"
printf '\n'
cat table

# A table in which something never occurs shows nothing of it.
for column in 1 2 3 4 5; do
  checks=$((checks + 1))
  total=$(cut -c27- table | awk -v column=$column '{ total += $column } END { print total + 0 }')
  [ "$total" -gt 0 ] || fail "no register bit is counted as ${columns[column - 1]}"
done
finish
