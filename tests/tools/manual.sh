#!/usr/bin/env bash
# The manual pages: free of faults, and in each all that the help of its subcommand names.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
python3 -B "$SOURCE_DIR/docs/man/pages.py" "$XRF" 1.2.3 . || fail 'pages.py'
for page in *.[15]; do
  last_run=$page
  checks=$((checks + 1))
  # What groff has to say about a page is a fault of it.
  groff -man -ww -Tascii -rLL=90n "$page" >text 2>err || fail "groff: $page"
  lines err 0
  has text 'xrf 1.2.3'
done
groff -man -Tascii -P-cbou xrf.1 | tr -s ' \n' ' ' >text
last_run=xrf.1
has text 'DESCRIPTION xrf reads what the build'
hasnt text 'Exit status:'
for subcommand in build info find whatis tree dump emu meta 'meta check' 'meta format'; do
  page=xrf-${subcommand// /-}.1
  # Without the blanks and line ends that fill the lines of a page.
  groff -man -Tascii -P-cbou "$page" | tr -s ' \n' ' ' | sed 's/- //g' >text
  # shellcheck disable=SC2086
  run 0 $subcommand --help
  grep -oE '^ +(-[a-z],)?--[a-z-]+( [A-Z]+)?' out | sed 's/^ *//; s/ REQUIRED//' >options
  checks=$((checks + 1))
  [ -s options ] || fail "$last_run: no options"
  while read -r option; do has text "$option"; done <options
done

# The example of the format's page is a file of the format.
sed -n '/^(VERSION/,/^```/p' "$SOURCE_DIR/docs/xrf-format.md" | grep -v '^```' >example.xrf
run 0 find example.xrf --quiet --format csv u0/cnt clk
cat >expected <<'END'
view,name,index,direction,kind,frame,offset,slr,value
rtl,/top/u0/cnt,3,WIRE,UNREAD,,,,z
rtl,/top/u0/cnt,2,WIRE,CNST,,,,1
rtl,/top/u0/cnt,1,WIRE,STATE,4194561,34,1,z
rtl,/top/u0/cnt,0,WIRE,STATE,4194560,33,0,z
rtl,/top/clk,0,IN,UNKNOWN,,,,z
END
same expected out
finish
