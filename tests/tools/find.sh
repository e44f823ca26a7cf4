#!/usr/bin/env bash
# Names as users write them, on a small file written by hand.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
. "$SOURCE_DIR/tests/tools/lib/truth.sh"
cp "$data_dir/small.xrf" .

# rows NAME... prints view, name and kind of each row found, hidden cells left out.
rows() {
  sed -n '/^VIEW  BIT/,$p' out | tail -n +2 | awk '{print $1, $2, $4}'
}

# finds STATUS NAME, with the rows expected on standard input.
finds() {
  run "$1" find small.xrf --quiet --color never "$2"
  rows >actual
  cat >expected
  same expected actual
}

run 0 find small.xrf --quiet '*' && golden find/all.txt
run 0 find small.xrf --quiet --hidden --json '*' && golden find/all.json

finds 0 /top/gen_2__u/cnt <<'EOF'
rtl /top/gen_2__u/cnt[1] located
rtl /top/gen_2__u/cnt[0] located
EOF
# A bit, and not its neighbours: not the other index, not the bus that begins alike, not the other
# instance.
finds 0 '/top/gen_2__u/cnt[1]' <<'EOF'
rtl /top/gen_2__u/cnt[1] located
EOF
finds 0 'u1/cnt[10]' <<'EOF'
rtl /top/u1/cnt[10] unknown
EOF
finds 3 'u1/cnt[11]' </dev/null
finds 3 'gen_2__u/cnt[2]' </dev/null
finds 3 'u1/cnt[-1]' </dev/null
finds 3 'u1/cnt[4294967296]' </dev/null
finds 3 'u1/cnt[1x]' </dev/null
finds 3 'u1/cnt[]' </dev/null
# Scopes may be written as in RTL; so may a signal that the netlist holds bit by bit.
finds 0 'gen[2]_u/cnt[0]' <<'EOF'
rtl /top/gen_2__u/cnt[0] located
EOF
finds 0 'gen_2__u/cnt[3]' <<'EOF'
rtl /top/gen_2__u/cnt_3_ unread
EOF
# Words of an array.
finds 0 '/top/u1/mem[3][5]' <<'EOF'
rtl /top/u1/mem<3>[5] located
EOF
finds 0 '/top/u1/mem<3>[4]' <<'EOF'
rtl /top/u1/mem<3>[4] located
EOF
finds 0 'u1/mem[2]' <<'EOF'
rtl /top/u1/mem<2>[5] located
rtl /top/u1/mem<2>[4] located
EOF
finds 3 'u1/mem[3][3]' </dev/null
finds 3 'u1/mem[4][5]' </dev/null
finds 3 'u1/mem' </dev/null
finds 0 'u1/gen[0].tmp' <<'EOF'
rtl /top/u1/gen[0].tmp unknown
EOF
# Wildcards: "*" passes "/", "?" is one character, brackets are themselves.
finds 0 '*/cnt[1]' <<'EOF'
rtl /top/gen_2__u/cnt[1] located
rtl /top/u1/cnt[1] unknown
EOF
finds 0 'u1/mem[*][5]' <<'EOF'
rtl /top/u1/mem<2>[5] located
rtl /top/u1/mem<3>[5] located
EOF
finds 0 'u1/mem<?>[?]' <<'EOF'
rtl /top/u1/mem<2>[5] located
rtl /top/u1/mem<2>[4] located
rtl /top/u1/mem<3>[5] located
rtl /top/u1/mem<3>[4] located
EOF
finds 0 '/*2__u/cnt?' <<'EOF'
rtl /top/gen_2__u/cnt2[1] unknown
rtl /top/gen_2__u/cnt2[0] located
EOF
finds 0 'q[?]' <<'EOF'
rtl /top/q[3] constant
rtl /top/q[2] constant
rtl /top/q[1] located
rtl /top/q[0] located
EOF
finds 0 'u1/gen[0]*' <<'EOF'
rtl /top/u1/gen[0].tmp unknown
EOF
finds 3 '*/cn' </dev/null
finds 3 'u1/gen0*' </dev/null
finds 3 '/q' </dev/null
finds 3 '' </dev/null
# Cells are found by name, and by wildcards when asked to.
finds 0 u1/cnt_reg/Q <<'EOF'
rtl /top/u1/cnt_reg/Q unknown
EOF
finds 3 'u1/cnt_reg/?' </dev/null
run 0 find small.xrf --hidden 'u1/cnt_reg/?'
has out /top/u1/cnt_reg/Q

# Both views unless told otherwise; a module and a signal of one name are both found.
run 0 find small.xrf --quiet u1/valid && golden find/module_and_signal.txt
run 0 find small.xrf --quiet --json u1/valid && golden find/module_and_signal.json
run 0 find small.xrf --view synth u1/valid
hasnt out rtl
has out synth
run 3 find small.xrf --view synth q

# Every name counts: what is found is printed, what is not is named, the status tells.
run 3 find small.xrf --quiet clk nosuch 'none*'
has out /top/clk
has err "nothing is named 'nosuch'"
has err "nothing is named 'none*'"
run 3 find small.xrf --quiet --json --view rtl 'q[1]' nosuch && golden find/not_found.json
# Asked for twice, printed once.
run 0 find small.xrf --view rtl 'q[1]' 'q[1]' /top/q[1]
lines out 2

# Names as written in RTL: scopes, fields of records, words of arrays, names with blanks. Each is
# one bit, and the one that the list of the design tells of.
generated scopes,records,arrays,ranges,blanks design.xrf
for form in 'gen[[][0-9]*[]][.]u/' '/gen[[][0-9]*[]][.][^/]*$' '[[][0-9]*[]][[][0-9]*[]]$' \
  '[[][a-z]*[]]$' '[[][a-z]*[]][[][a-z]*[]]$' '[[][a-z]*[]][[][0-9]*[]]$' ' '; do
  checks=$((checks + 1))
  cut -f1 located | grep -q "$form" || fail "the generated design has no name like '$form'"
done
mapfile -t registers < <(cut -f1 located)
run 0 find design.xrf --view rtl --json --quiet "${registers[@]}"
grep -o '"frame":[0-9]*,"offset":[0-9]*,"slr":[0-9]*' out | tr -dc '0-9,\n' | tr , '\t' >actual
# JSON lists the bits of one signal together.
cut -f2- located | sort >expected
sort -o actual actual
same expected actual
run 0 find design.xrf --view rtl --quiet "${registers[@]}"
tail -n +2 out | awk '{ print $(NF - 2), $(NF - 1), $NF }' >actual
while IFS=$'\t' read -r _ frame offset region; do
  printf '0x%08x %s %s\n' "$frame" "$offset" "$region"
done <located >expected
same expected actual
name=$(cut -f1 located | grep -m 1 ' .*[[]0[]]$')
run 0 find design.xrf --view rtl --quiet "${name%?????}*[0]"
has out "$(tr ' ()' '___' <<<"$name") "
finish
