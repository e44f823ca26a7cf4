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
finish
