#!/usr/bin/env bash
# How output looks on a terminal, in a pipe, and to a reader who leaves early.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
cp "$data_dir/small.xrf" .
escape=$'\033'

# on_terminal COLUMNS COMMAND: runs a shell command on a terminal of its own; what it showed is then in
# out, without carriage returns.
on_terminal() {
  last_run="on a terminal of $1 columns: $2"
  checks=$((checks + 1))
  TERM=xterm script -qec "stty cols $1 rows 40; $2" /dev/null </dev/null >typescript ||
    fail "$last_run: status $?"
  tr -d '\r' <typescript >out
}

# Colors on a terminal, unless the environment or the option says otherwise.
find="$XRF find small.xrf --quiet"
on_terminal 200 "$find 'q[0]'"
has out "$escape["
for unwanted in "NO_COLOR=1 $find" "TERM=dumb $find" "$find --color never"; do
  on_terminal 200 "$unwanted 'q[0]'"
  hasnt out "$escape["
  has out /top/q
done
on_terminal 200 "NO_COLOR= $find 'q[0]'"
has out "$escape["
on_terminal 200 "NO_COLOR=1 $find --color always 'q[0]'"
has out "$escape["
run 0 find small.xrf --quiet 'q[0]'
hasnt out "$escape["
run 0 find small.xrf --quiet --color always 'q[0]'
has out "$escape["

# Nothing that a file holds drives the terminal, in the library's own messages neither.
for file in rtl synth; do
  # The first two bytes of a control character in UTF-8 are one, too.
  sed "s/\"Tarvona\"/\"T$escape]0;owned$(printf '\007\302\233')\"/" \
    "$SOURCE_DIR/examples/blinker/blinker_$file.edf" >$file.edf
done
run 1 build --rtl rtl.edf --synth synth.edf -o out.xrf
hasnt err "$escape"
hasnt err "$(printf '\302\233')"
has err "Unknown program 'T?]0;owned???'"

# A long name loses its beginning where the terminal is too narrow, and nowhere else.
long=u1/$(printf 'module_%.0s' $(seq 20))end
sed "s|cnt_3_|$(basename "$long")|" small.xrf >long.xrf
find="$XRF find long.xrf --quiet --color never --view rtl"
for columns in 80 90 100; do
  on_terminal $columns "$find 'gen_2__u/*'"
  checks=$((checks + 1))
  [ "$(awk '{ print length }' out | sort -n | tail -1)" = "$columns" ] ||
    fail "$last_run: the longest line is $(awk '{ print length }' out | sort -n | tail -1) wide"
  has out ...
  has out _end
  # What is not too wide is whole.
  has out ' /top/gen_2__u/cnt[1] '
done
on_terminal 300 "$find 'gen_2__u/*'"
hasnt out ...
has out "$(basename "$long")"
run 0 find long.xrf --quiet --view rtl 'gen_2__u/*'
hasnt out ...
# Rather wide than without meaning.
on_terminal 20 "$find 'gen_2__u/*'"
has out _end

# A pager may be left at any time, and gets no progress.
for subcommand in dump 'find small.xrf --hidden' tree; do
  last_run="xrf $subcommand | head"
  case $subcommand in find*) arguments='--hidden *' ;; *) arguments= ;; esac
  checks=$((checks + 1))
  # shellcheck disable=SC2086
  set -f
  # shellcheck disable=SC2086
  "$XRF" "${subcommand%% *}" small.xrf --quiet $arguments 2>err | head -n 1 >out
  set +f
  lines err 0
  lines out 1
done
on_terminal 80 "$XRF dump small.xrf 2>err | cat"
hasnt out "$escape["
hasnt err "$escape["

# Errors come behind what was printed before them, also where both go to one file.
"$XRF" find small.xrf --quiet clk nosuch >both 2>&1
last_run='find, both streams'
tail -n 1 both >out
has out "nothing is named 'nosuch'"
finish
