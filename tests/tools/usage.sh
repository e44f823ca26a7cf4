#!/usr/bin/env bash
# Help and wrong usage.
. "$SOURCE_DIR/tests/tools/lib/check.sh"

run 0 --help
has out 'Example'
run 0 --version
has out 'xrf '
for subcommand in build info find whatis tree dump; do
  run 0 $subcommand --help
  lines err 0
  has out 'Example'
  has out "  xrf $subcommand "
  for option in --json --quiet --color --help; do has out "$option"; done
done

run 0 meta --help
has out '  xrf meta check '
has out '  xrf meta format '
hasnt out 'xrf build'

# Each of these is wrong usage: one error, a hint, and with --json a document.
while read -r arguments; do
  # shellcheck disable=SC2086
  set -- $arguments
  run 2 "$@"
  one_error
  has err '--help'
  [ $# -gt 0 ] || continue
  run 2 "$1" --json "${@:2}"
  json_error
done <<'EOF'

nosuch
nosuch argument
--nosuch
info
info a.xrf b.xrf
info a.xrf --nosuch
info a.xrf --color sometimes
find
find a.xrf
find a.xrf name --view gate
whatis
whatis a.xrf
whatis a.xrf 0x12 3 4 5
whatis a.xrf 0x 3
whatis a.xrf 0x1z 3
whatis a.xrf name 3
whatis a.xrf 1 0x3
whatis a.xrf 1 3x
whatis a.xrf 1 3 SLR1
whatis a.xrf 4294967296 3
whatis a.xrf --view rtl name
tree
tree a.xrf b.xrf
tree a.xrf --depth
tree a.xrf --depth -1
tree a.xrf --depth two
tree a.xrf --view both
dump
build
build --rtl a.edf --synth b.edf
build -o out.xrf
build --rtl a.edf -o out.xrf
build --synth b.edf -o out.xrf
build --ll a.ll -o out.xrf
build --xrf a.xrf --rtl a.edf -o out.xrf
build --xrf a.xrf --rtl a.edf --synth b.edf -o out.xrf
build --xrf a.xrf -o
build --xrf a.xrf -o one.xrf -o two.xrf
build --xrf a.xrf -o out.xrf extra
build --xrf a.xrf -o out.xrf --matching
build --xrf a.xrf -o out.xrf --matching loose
EOF
run 2 nosuch
has err "no subcommand is named 'nosuch'"
run 2 info
has err 'xrf info --help'

# What may have been meant, and whose help tells.
run 2 fnid a.xrf name
has err "no subcommand is named 'fnid'; did you mean 'find'? (see xrf --help)"
run 2 meta chekc a.xml
has err "no subcommand is named 'chekc'; did you mean 'check'? (see xrf meta --help)"
run 2 meta check
has err 'FILE is required (see xrf meta check --help)'
run 2 find --vew rtl a.xrf name
has err "no option is named '--vew'; did you mean '--view'? (see xrf find --help)"
run 2 info --max-objcets=5 a.xrf
has err "no option is named '--max-objcets=5'; did you mean '--max-objects'? (see xrf info --help)"
run 2 info -z a.xrf
has err "no option is named '-z' (see xrf info --help)"
run 2 completely --else
has err "no subcommand is named 'completely' (see xrf --help)"
finish
