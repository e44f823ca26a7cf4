#!/usr/bin/env bash
# Completion: what the command offers, and what the three shells make of it.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
cp "$data_dir/small.xrf" .
touch top.edf top.ll other.txt
mkdir folder
scripts=$SOURCE_DIR/tools/completions
mkdir bin
ln -s "$XRF" bin/xrf
PATH=$work/bin:$PATH

# offers WORD... with the expected words on standard input: what may stand for the last word.
offers() {
  run 0 __complete "$@"
  cut -f1 out >actual
  cat >expected
  same expected actual
  lines err 0
}

offers '' <<'END'
build
info
find
whatis
tree
dump
emu
meta
END
offers me <<'END'
meta
END
offers meta '' <<'END'
check
format
END
# A file as it was typed: in a folder that the shell knows by a name.
mkdir -p "$work/home"
cp small.xrf home/
for file in '~/small.xrf' '$HOME/small.xrf' '${HOME}/small.xrf'; do
  HOME=$work/home offers find "$file" /top/gen_2__u/cnt2 <<'END'
/top/gen_2__u/cnt2
END
done
rm -r home
offers find '$XRF_NO_SUCH_VARIABLE/small.xrf' /top/gen_2__u/cnt2 </dev/null
offers find small.xrf --view '' <<'END'
rtl
synth
END
offers find small.xrf --view s <<'END'
synth
END
offers build --matching '' <<'END'
extended
strict
END
for value in 'build --rtl:edf edif edn' 'build --synth:edf edif edn' 'build --ll:ll' 'build --log:log' \
  'build --xrf:xrf' 'build -o:xrf' 'meta format -o:xml' 'meta check:xml' 'emu:xml' 'info:xrf' \
  'find:xrf' 'find --view rtl:xrf' 'whatis:xrf' 'tree:xrf' 'dump:xrf'; do
  # shellcheck disable=SC2086
  offers ${value%%:*} '' <<<":files ${value#*:}"
done
# Names, level by level, below the top or from it.
offers find small.xrf u <<'END'
u1/
END
offers find small.xrf /t <<'END'
/top/
END
offers find small.xrf clk u1/me <<'END'
u1/mem<2>
u1/mem<3>
END
offers find small.xrf --view synth u1/ <<'END'
u1/valid
END
offers find small.xrf --view rtl u1/v <<'END'
u1/valid
u1/valid/
END
offers find small.xrf nosuch/ </dev/null
offers find nosuch.xrf '' </dev/null
offers find top.edf '' </dev/null
offers whatis "$golden_dir/blinker_extended/blinker.xrf" u_ticker/tick_r <<'END'
u_ticker/tick_reg
END
offers whatis small.xrf 0x12 '' </dev/null
offers nosuch '' </dev/null

# Every option of every subcommand is offered, and each that wants a value offers some, except for
# numbers and names of which the command knows nothing.
for subcommand in build info find whatis tree dump emu 'meta check' 'meta format'; do
  # shellcheck disable=SC2086
  run 0 $subcommand --help
  grep -E '^ +(-[a-z],)?--' out | sed -E 's/^ +(-[a-z],)?//' >described
  cut -d' ' -f1 described | sort >expected
  # shellcheck disable=SC2086
  run 0 __complete $subcommand --
  cut -f1 out | sort >actual
  same expected actual
  grep -E '^--[a-z-]+ [A-Z]' described | grep -vE '^--[a-z-]+ (N|NAME) ' >valued
  while read -r option _; do
    # shellcheck disable=SC2086
    run 0 __complete $subcommand "$option" ''
    checks=$((checks + 1))
    [ -s out ] || fail "$last_run: nothing is offered"
  done <valued
done

# A file that does not come offers nothing, soon.
mkfifo slow.xrf
began=$SECONDS
run 0 __complete find slow.xrf u
lines out 0
checks=$((checks + 1))
[ $((SECONDS - began)) -le 5 ] || fail "$last_run took $((SECONDS - began)) s"

# shell NAME: the words that a shell offers are in the file actual, sorted; expected on standard input.
offered() {
  last_run=$1
  sort -o actual actual
  cat >expected
  same expected actual
}

in_bash() {
  # compopt works only while a completion is under way.
  bash --norc -c '
    compopt() { :; }
    . "$1"
    shift
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
    _xrf
    [ ${#COMPREPLY[@]} = 0 ] || printf "%s\n" "${COMPREPLY[@]}"
  ' bash "$scripts/xrf.bash" "$@" >actual 2>err
  lines err 0
}
in_bash xrf tr
offered 'bash: xrf tr' <<<tree
in_bash xrf build --rtl ''
offered 'bash: xrf build --rtl' <<'END'
bin
folder
top.edf
END
in_bash xrf find small.xrf 'u1/mem\<'
offered 'bash: a name with signs' <<'END'
u1/mem\<2\>
u1/mem\<3\>
END
in_bash xrf find small.xrf "'u1/mem<"
offered 'bash: a quoted name' <<'END'
u1/mem<2>
u1/mem<3>
END

if command -v fish >/dev/null; then
  in_fish() {
    HOME=$work fish --no-config -c "source $scripts/xrf.fish; complete -C '$1'" 2>err | cut -f1 >actual
    lines err 0
  }
  in_fish 'xrf tr'
  offered 'fish: xrf tr' <<<tree
  in_fish 'xrf find small.xrf u1/mem'
  offered 'fish: names' <<'END'
u1/mem<2>
u1/mem<3>
END
  in_fish 'xrf build --ll '
  last_run='fish: files'
  has actual top.ll
else
  echo 'no fish here'
fi

if command -v zsh >/dev/null; then
  # compadd and _files exist only in a completion widget; these say what they were given.
  in_zsh() {
    zsh -f -c '
      compadd() {
        local -a given
        local -a options
        zparseopts -D -E -a options l S: d: a
        given=("${(@P)1}")
        (( ${#given} )) && print -rl -- "${given[@]}"
      }
      _files() { print -r -- "files $2" }
      script=$1
      shift
      words=("$@") CURRENT=$#
      source $script
      true
    ' zsh "$scripts/_xrf" "$@" >actual 2>err
    lines err 0
  }
  in_zsh xrf tr
  offered 'zsh: xrf tr' <<<tree
  in_zsh xrf find small.xrf 'u1/mem\<'
  offered 'zsh: names' <<'END'
u1/mem<2>
u1/mem<3>
END
  in_zsh xrf build --rtl ''
  offered 'zsh: files' <<<'files *.(edf|edif|edn)(-.)'
else
  echo 'no zsh here'
fi
finish
