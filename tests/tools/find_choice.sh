#!/usr/bin/env bash
# Ways to choose what find shows: regular expressions, filters, names from standard input, formats,
# and what it says of names that are not there.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
cp "$data_dir/small.xrf" .

# finds ARGUMENT..., with view, name and kind of the rows expected on standard input.
finds() {
  run 0 find small.xrf --quiet "$@"
  sed -n '/^VIEW  *BIT/,$p' out | tail -n +2 | awk '{print $1, $2, $4}' >actual
  cat >expected
  same expected actual
}

finds --regex 'mem<[23]>$' <<'END'
rtl /top/u1/mem<2>[5] located
rtl /top/u1/mem<2>[4] located
rtl /top/u1/mem<3>[5] located
rtl /top/u1/mem<3>[4] located
END
# The index belongs to the name; so does the path, from its beginning.
finds --regex 'q\[(0|3)\]$' <<'END'
rtl /top/q[3] constant
rtl /top/q[0] located
END
finds --regex '^/top/[^/]*$' --view synth <<'END'
synth /top/clk unknown
END
finds --regex 'clk$' 'q\[0\]' --view rtl <<'END'
rtl /top/clk unknown
rtl /top/u1/clk unknown
rtl /top/q[0] located
END
run 3 find small.xrf --regex '^q'
has err "no name matches '^q'"
run 0 find small.xrf --quiet --regex 'reg/Q$' --hidden
has out /top/u1/cnt_reg/Q
run 3 find small.xrf --quiet --regex 'reg/Q$'
for wrong in '(' '[' 'a{2' '*a\'; do
  run 2 find small.xrf --regex "$wrong"
  one_error
  run 2 find small.xrf --regex --json "$wrong"
  json_error
done

finds --located q 'u1/cnt' --view rtl <<'END'
rtl /top/q[1] located
rtl /top/q[0] located
END
finds --unlocated q --view rtl <<'END'
rtl /top/q[3] constant
rtl /top/q[2] constant
END
# Without names all are meant; the two parts make the whole.
run 0 find small.xrf --quiet --located && tail -n +2 out >located
run 0 find small.xrf --quiet --unlocated && tail -n +2 out >unlocated
run 0 find small.xrf --quiet '*'
sed -n '/^VIEW  *BIT/,$p' out | tail -n +2 | sort -b -k 1,2 >all
checks=$((checks + 3))
[ "$(wc -l <all)" = "$(cat located unlocated | wc -l)" ] || fail 'filters: some bits are in neither part'
grep -v located <located && fail 'filters: a bit without a place is located'
grep -w located unlocated && fail 'filters: a bit with a place is unlocated'
run 0 find small.xrf --quiet --located --json 'q'
has out '"bits":[{"index":1,'
hasnt out '"index":3'
run 2 find small.xrf --located --unlocated q
one_error
run 2 find small.xrf
has err 'NAME is required (see xrf find --help)'
# A name that is there is found, if nothing of it passes.
run 0 find small.xrf --quiet --unlocated 'q[0]'
lines out 0

# input TEXT ARGUMENT...: as run, with a text on standard input.
input() {
  local text=$1 status=0
  shift
  last_run="xrf $* <<<$text"
  checks=$((checks + 1))
  printf "$text" | "$XRF" "$@" >out 2>err || status=$?
  printf '%s\n' "$status" >status
}
input 'clk\n\nq[0]\r\nu1/valid' find small.xrf --quiet --view synth --format csv -
has status 3
lines out 3
has out 'synth,/top/clk,0,IN,UNKNOWN,,,,z'
has out 'synth,/top/u1/valid,0,WIRE,UNKNOWN,,,,z'
has err "nothing is named 'q[0]'"
input '' find small.xrf --quiet -
has status 0
lines out 0
# What no regular expression needs, and the C library has no stack or memory for.
nested=$(printf '(%.0s' $(seq 20000))
for large in "$nested" 'a{1,20000}' '((a{1,100}){1,100}){1,100}' "$(printf 'a%.0s' $(seq 3000))"; do
  run 2 find small.xrf --quiet --regex "$large"
  has err 'the regular expression is too large'
done
run 2 find small.xrf --quiet --regex '(a)\1'
run 0 find small.xrf --quiet --regex 'cl{0,3}k$'
lines err 0
last_run='xrf find - </'
checks=$((checks + 1))
"$XRF" find small.xrf --quiet - </ >out 2>err && fail 'status 0'
has err 'standard input: cannot read names'
input 'q[0]' find /dev/stdin --quiet -
has status 2
has err 'standard input cannot give both the names and the file'
input 'q[1]\n' find small.xrf --quiet --view rtl 'q[0]' - 'q[2]'
lines out 4

run 0 find small.xrf --quiet --format csv --view rtl q u1/valid && golden find/choice.csv
run 0 find small.xrf --quiet --format json q && mv out by_format
run 0 find small.xrf --quiet --json q && same by_format out
run 0 find small.xrf --quiet --format text q && mv out by_format
run 0 find small.xrf --quiet q && same by_format out
sed 's/cnt_3_/a,"b/' small.xrf >comma.xrf
run 0 find comma.xrf --quiet --format csv 'gen_2__u/a*'
has out 'rtl,"/top/gen_2__u/a,""b",0,WIRE,UNREAD,,,,z'
run 0 whatis "$golden_dir/blinker_extended/blinker.xrf" --quiet --format csv 0x0040061f 2595 && golden whatis/place.csv
run 0 tree small.xrf --quiet --format csv && golden small/tree.csv
run 0 info small.xrf --quiet --format csv && golden small/info.csv
run 0 emu "$SOURCE_DIR/examples/vadd/vadd.xml" --bd bd --format csv && golden emu/vadd.csv
for subcommand in dump 'build -o out.xrf --xrf'; do
  # shellcheck disable=SC2086
  run 2 $subcommand small.xrf --format csv
  one_error
done
run 2 find small.xrf q --json --format csv
json_error

# means NAME, with the suggestions expected on standard input.
means() {
  run 3 find small.xrf --quiet --json "$@"
  python3 -c 'import json, sys
for names in json.load(sys.stdin)["suggestions"].values(): print(*names, sep="\n")' <out >actual
  cat >expected
  same expected actual
}
means u1/vaild <<'END'
/top/u1/valid
END
means /top/U1/CNT <<'END'
/top/u1/cnt
/top/gen_2__u/cnt
END
means cnt2 <<'END'
/top/gen_2__u/cnt2
END
means 'u1/cnt[11]' <<'END'
/top/u1/cnt
/top/gen_2__u/cnt
END
means --view synth u1/mem '/tpo/clk' <<'END'
/top/clk
END
means 'zzzzzzzzzz' </dev/null
means 'n*such' </dev/null
means "$(printf 'x%.0s' $(seq 5000))" </dev/null
run 3 find small.xrf --quiet u1/vaild
has err "nothing is named 'u1/vaild'; did you mean '/top/u1/valid'?"
run 3 whatis small.xrf --quiet u1/vlid
has err "did you mean '/top/u1/valid'?"
# A name without its module is looked for in all of them; with one, only there.
run 3 find small.xrf --quiet vaild
has err "nothing is named 'vaild'; did you mean '/top/u1/valid'?"
run 3 find small.xrf --quiet nowhere/vaild
hasnt err 'did you mean'

run 0 --version
head -n 1 out >first
grep -qxE 'xrf [0-9]+[.][0-9]+[.][0-9]+' first || fail '--version: the first line is not the version'
for fact in 'built ' 'source ' 'format 1' CLI11; do has out "$fact"; done
finish
