#!/usr/bin/env bash
# Every limit can be set: what a file needs is enough, and one less ends in a message that names the
# file and its line.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
cp "$SOURCE_DIR"/examples/blinker/blinker* "$SOURCE_DIR/examples/vadd/vadd.xml" .
blinker=(build --quiet --rtl blinker_rtl.edf --synth blinker_synth.edf -o out.xrf)
"$XRF" "${blinker[@]}" || fail 'blinker'
cp out.xrf blinker.xrf

# needs MOST OPTION ARGUMENT...: the smallest value of the option with which the command succeeds.
needs() {
  local refused=-1 enough=$1 option=$2 middle
  shift 2
  while [ $((refused + 1)) -lt "$enough" ]; do
    middle=$(((refused + enough) / 2))
    if "$XRF" "$@" "$option" $middle >out 2>err </dev/null; then enough=$middle; else refused=$middle; fi
  done
  echo "$enough"
}

# bounded OPTION MOST MESSAGE ARGUMENT...: some value up to MOST is enough and one less is not.
bounded() {
  local option=$1 most=$2 message=$3 enough
  shift 3
  enough=$(needs "$most" "$option" "$@")
  checks=$((checks + 1))
  [ "$enough" -gt 0 ] || fail "$option changes nothing"
  run 0 "$@" "$option" "$enough"
  cp blinker.xrf kept.xrf
  run 1 "$@" "$option" $((enough - 1)) --json
  json_error
  has out '"line":'
  has err "$message"
  grep -qE '^xrf: error: [a-z_]+\.(edf|xrf|xml):[0-9]+(:[0-9]+)?: ' err || fail "$last_run: no place: $(cat err)"
}

bounded --max-word-length 1000 'A word is longer than' "${blinker[@]}"
bounded --max-list-nesting 1000 'Lists are nested more than' "${blinker[@]}"
bounded --max-elaboration-nesting 4096 'Lists and instances are nested more than' "${blinker[@]}"
for reading in "${blinker[*]}" 'info blinker.xrf --quiet' 'find blinker.xrf --quiet *' \
  'tree blinker.xrf --quiet' 'whatis blinker.xrf --quiet u_ticker/tick_reg'; do
  set -f
  # shellcheck disable=SC2206
  words=($reading)
  set +f
  bounded --max-module-nesting 100 'Modules are nested more than' "${words[@]}"
  bounded --max-instances 100000 'The view holds more than' "${words[@]}"
  bounded --max-objects 100000 'modules, signals and bits.' "${words[@]}"
  bounded --max-signal-index 100000 'is above the highest index' "${words[@]}"
  bounded --max-signal-width 100000 ' wi' "${words[@]}"  # wider than, or has a width of
done
run 1 dump blinker.xrf --max-instances 3
has err 'The view holds more than 3 modules.'
run 1 build --quiet --xrf blinker.xrf -o out.xrf --max-objects 10
has err 'blinker.xrf:3: The view holds more than 10 modules, signals and bits.'

# One port that is wider than what a file of that size may make.
netlist() {
  printf '(edif top (status (written (program "Tarvona")))\n(Library work %s (cell top (view v (interface\n%s) %s)))\n' \
    "$2" "$1" "$3"
  printf '(design top (cellref top (libraryref work))))\n'
}
netlist '(port (array d 1048575) (direction INPUT))' '' '' >wide.edf
bounded --max-objects-per-word 10 ' words of the netlist expand to more than 1048576 modules' \
  build --quiet --rtl wide.edf --synth blinker_synth.edf -o out.xrf

# Instances inside instances with names of a thousand bytes.
name=$(printf '%01000d' 0 | tr 0 n)
cells='(cell c0 (view v (interface (port a (direction INPUT)))))'
for level in $(seq 199); do
  cells+="(cell c$level (view v (contents (instance $name (cellref c$((level - 1)))))))"
done
netlist '(port a (direction INPUT))' "$cells" '(contents (instance u (cellref c199)))' >deep.edf
bounded --max-path-bytes 100000 'The paths of the modules take up more than' \
  build --quiet --rtl deep.edf --synth blinker_synth.edf -o out.xrf

# A cell that holds much and makes nothing, used often.
junk=$(printf '(a (b c)) %.0s' $(seq 2000))
uses=$(for use in $(seq 6000); do printf '(instance u%d (cellref j))\n' "$use"; done)
netlist '(port a (direction INPUT))' "(cell j (view v (contents $junk)))" "(contents $uses)" >work.edf
work_build=(build --quiet --rtl work.edf --synth blinker_synth.edf -o out.xrf --max-work)
run 0 "${work_build[@]}" 10000
run 1 "${work_build[@]}" 0
has err 'work.edf:'
has err 'The cells hold too much beside the'

# Metadata documents.
for reading in 'meta check vadd.xml' 'meta format vadd.xml --drop-unknown -o out.xml' \
  'emu vadd.xml --bd bd'; do
  # shellcheck disable=SC2206
  words=($reading)
  enough=$(needs 100 --max-xml-depth "${words[@]}")
  run 0 "${words[@]}" --max-xml-depth "$enough"
  run 1 "${words[@]}" --max-xml-depth $((enough - 1))
  cat out err >both
  has both "elements are nested more than $((enough - 1)) deep"
  grep -qE 'vadd.xml:[0-9]+:[0-9]+: ' both || fail "$last_run: no place: $(cat both)"
done
printf '<!DOCTYPE project [\n<!ENTITY a "x">\n<!ENTITY b "y">\n]>\n<project name="&a;&b;"/>\n' >entities.xml
run 0 meta check entities.xml --max-xml-entities 2
run 1 meta check entities.xml --max-xml-entities 1
has out 'entities.xml:3:'
has out 'the document declares more than 1 entities'
value=$(printf '%010000d' 0)
{
  printf '<!DOCTYPE project [<!ENTITY e "%s">]>\n<project><platform><host/>\n' "$value"
  for _ in $(seq 20); do echo '<x>&e;</x>'; done
  echo '</platform></project>'
} >expands.xml
enough=$(needs 100 --max-xml-expansion meta check expands.xml)
run 0 meta check expands.xml --max-xml-expansion "$enough"
run 1 meta check expands.xml --max-xml-expansion $((enough - 1))
has out "the document expands to more than $((enough - 1)) times its size"

# What cannot be is wrong usage, and each subcommand takes the limits of what it reads alone.
for wrong in 'build --max-elaboration-nesting 4097' 'build --max-signal-index 4294967295' \
  'info blinker.xrf --max-instances -1' 'info blinker.xrf --max-instances many' \
  'info blinker.xrf --max-word-length 5' 'emu vadd.xml --max-objects 5' 'build --max-xml-depth 5'; do
  # shellcheck disable=SC2086
  run 2 $wrong
  one_error
done

# The help tells what holds where nothing is said, and it does hold.
run 0 build --help
has out 'Limits:'
checks=$((checks + 1))
[ "$(grep -c -e '--max-' out)" = 11 ] || fail "$last_run: not all limits of netlists are told"
finish
