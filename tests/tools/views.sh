#!/usr/bin/env bash
# info, tree and dump on a small file written by hand.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
cp "$data_dir/small.xrf" .

run 0 info small.xrf --quiet && golden small/info.txt
run 0 info small.xrf --quiet --json && golden small/info.json
run 0 tree small.xrf --quiet && golden small/tree.txt
run 0 tree small.xrf --quiet --json && golden small/tree.json
run 0 tree small.xrf --quiet --hidden && golden small/tree_hidden.txt
run 0 tree small.xrf --quiet --hidden --json && golden small/tree_hidden.json
run 0 tree small.xrf --quiet --view synth && golden small/tree_synth.txt
run 0 tree small.xrf --depth 0
lines out 1
run 0 tree small.xrf --depth 1
lines out 3
run 0 dump small.xrf --quiet && golden small/dump.txt
run 0 dump small.xrf --quiet --json && golden small/dump.json

# Chatter of the library goes to standard error, and --quiet leaves it out.
run 0 info small.xrf
has err 'Parsing xrf file'
hasnt out 'Parsing xrf file'
run 0 info small.xrf --quiet
lines err 0

# Color only when asked for, or on a terminal.
escape=$(printf '\033')
run 0 find small.xrf /top/q
hasnt out "$escape"
run 0 find small.xrf --color always /top/q
has out "${escape}[32mlocated"
run 0 find small.xrf --color never /top/q
hasnt out "$escape"

# A view that is not there.
sed '/VIEW SYNTH/,$d' small.xrf >rtl_only.xrf
run 1 tree rtl_only.xrf --view synth --quiet
one_error
has err 'rtl_only.xrf: holds no synth view'
run 0 info rtl_only.xrf

# What cannot be written is an error.
if [ -w /dev/full ]; then
  status=0
  "$XRF" dump small.xrf --quiet >/dev/full 2>err || status=$?
  [ "$status" = 1 ] || fail "xrf dump >/dev/full: status $status instead of 1"
  has err 'standard output'
fi
finish
