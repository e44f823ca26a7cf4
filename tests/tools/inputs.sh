#!/usr/bin/env bash
# Files as they come: other line ends, none at the end, a byte order mark, compressed, through pipes.
# What is built of them is what is built of the plain ones.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
example=$SOURCE_DIR/examples/beacon
kinds=(rtl synth ll log)
declare -A plain=([rtl]=$example/beacon_rtl.edf [synth]=$example/beacon_synth.edf
  [ll]=$example/beacon.ll [log]=$example/beacon.log)
run 0 build --quiet --rtl "${plain[rtl]}" --synth "${plain[synth]}" --ll "${plain[ll]}" \
  --log "${plain[log]}" -o expected.xrf
cp "$SOURCE_DIR/examples/vadd/vadd.xml" plain.xml
run 0 meta format plain.xml -o expected.xml

# What a file may look like; each reads the plain one from standard input.
crlf() { sed 's/$/\r/'; }
no_last_feed() { awk 'NR > 1 { printf "\n" } { printf "%s", $0 }'; }
bom() { printf '\357\273\277' && cat; }
blank_lines() { cat && printf '\n\r\n\n'; }

# builds WHAT RTL SYNTH LL LOG: the same cross-reference as of the plain files.
builds() {
  local what=$1
  run 0 build --quiet --rtl "$2" --synth "$3" --ll "$4" --log "$5" -o out.xrf
  same expected.xrf out.xrf "$what"
}

for form in crlf no_last_feed blank_lines bom; do
  for kind in "${kinds[@]}"; do
    declare -A file=()
    for each in "${kinds[@]}"; do file[$each]=${plain[$each]}; done
    $form <"${plain[$kind]}" >"changed.$kind"
    file[$kind]=changed.$kind
    builds "$form of $kind" "${file[rtl]}" "${file[synth]}" "${file[ll]}" "${file[log]}"
  done
  $form <expected.xrf >changed.xrf
  run 0 build --quiet --xrf changed.xrf -o out.xrf
  same expected.xrf out.xrf "$form of xrf"
  [ $form = blank_lines ] || {
    $form <plain.xml >changed.xml
    run 0 meta format changed.xml -o out.xml
    same expected.xml out.xml "$form of metadata"
  }
done

# Compressed files through pipes, all four at once, and each from standard input.
for kind in "${kinds[@]}"; do gzip -c "${plain[$kind]}" >"$kind.gz"; done
builds "all through pipes" <(zcat rtl.gz) <(zcat synth.gz) <(zcat ll.gz) <(zcat log.gz)
checks=$((checks + 1))
for kind in "${kinds[@]}"; do
  declare -A file=()
  for each in "${kinds[@]}"; do file[$each]=${plain[$each]}; done
  file[$kind]=/dev/stdin
  for source in pipe file; do
    last_run="$kind from standard input, a $source"
    arguments=(build --quiet --rtl "${file[rtl]}" --synth "${file[synth]}" --ll "${file[ll]}"
      --log "${file[log]}" -o out.xrf)
    if [ $source = pipe ]; then
      zcat "$kind.gz" | "$XRF" "${arguments[@]}" >out 2>err || fail "$last_run: $(cat err)"
    else
      "$XRF" "${arguments[@]}" >out 2>err <"${plain[$kind]}" || fail "$last_run: $(cat err)"
    fi
    same expected.xrf out.xrf
  done
done
gzip -c expected.xrf >xrf.gz
gzip -c plain.xml >xml.gz
run 0 build --quiet --xrf <(zcat xrf.gz) -o out.xrf
same expected.xrf out.xrf
for subcommand in info tree dump; do
  run 0 $subcommand expected.xrf --json
  sed 's/"file":"[^"]*"/"file":""/' out >of_file
  run 0 $subcommand <(zcat xrf.gz) --json
  sed 's/"file":"[^"]*"/"file":""/' out >of_pipe
  same of_file of_pipe
done
run 0 meta format <(zcat xml.gz) -o out.xml
same expected.xml out.xml
run 0 meta check <(zcat xml.gz)
for file in expected.xrf expected.xml; do
  case $file in
    *.xrf) asked=('info' 'tree' 'dump' 'find FILE *strobe*' 'whatis FILE 0x0040061f 2563') ;;
    *) asked=('meta check' 'meta format' 'emu FILE --bd bd') ;;
  esac
  mkfifo "$file.fifo"
  for command in "${asked[@]}"; do
    case $command in *FILE*) ;; *) command+=' FILE' ;; esac
    set -f
    # shellcheck disable=SC2206
    words=($command)
    set +f
    "$XRF" "${words[@]/#FILE/$file}" >of_file 2>/dev/null || true
    last_run="xrf ${words[*]}, by other ways"
    checks=$((checks + 1))
    [ "$command" = 'meta check FILE' ] || [ -s of_file ] || [[ $command = whatis* ]] ||
      fail 'nothing was told'
    "$XRF" "${words[@]/#FILE//dev/stdin}" >of_pipe 2>/dev/null < <(cat $file) || true
    sed "s|/dev/stdin|$file|" of_pipe >out
    same of_file out
    cat $file >$file.fifo &
    timeout 60 "$XRF" "${words[@]/#FILE/$file.fifo}" >of_pipe 2>/dev/null || true
    wait
    sed "s|$file.fifo|$file|" of_pipe >out
    same of_file out
  done
done
run 0 emu <(zcat xml.gz) --bd bd && mv out of_pipe
run 0 emu expected.xml --bd bd
same out of_pipe

# A pipe that ends too early is a file that ends too early, and says so.
run 1 build --quiet --rtl <(zcat rtl.gz | head -c 4000) --synth "${plain[synth]}" -o none.xrf
one_error
run 1 build --quiet --rtl <(:) --synth "${plain[synth]}" -o none.xrf
one_error
checks=$((checks + 1))
[ ! -e none.xrf ] || fail "a build that failed left a file"

# Names in any encoding survive, byte for byte, from the netlists to the answer.
# places FILE NAME: where the register of that name is.
places() {
  run 0 find "$1" "*$2*" --quiet
  LC_ALL=C sed "s/$2/NAME/g; s/   */  /g" out
}
places expected.xrf strobe >expected.places
for name in 'caf\303\251' 'caf\351' '\346\225\260'; do
  bytes=$(printf '%b' "${name//\\/\\0}")
  for kind in rtl synth ll log; do
    LC_ALL=C sed "s/strobe/$bytes/g" "${plain[$kind]}" >"named.$kind"
  done
  run 0 build --quiet --rtl named.rtl --synth named.synth --ll named.ll --log named.log -o named.xrf
  places named.xrf "$bytes" >named.places
  same expected.places named.places "a name in another encoding"
done

# NUL bytes: a model or one error, never silence.
for kind in "${kinds[@]}"; do
  declare -A file=()
  for each in "${kinds[@]}"; do file[$each]=${plain[$each]}; done
  { head -c 700 "${plain[$kind]}" && printf '\0\0' && tail -c +701 "${plain[$kind]}"; } >nul
  file[$kind]=nul
  status=0
  rm -f none.xrf
  "$XRF" build --quiet --rtl "${file[rtl]}" --synth "${file[synth]}" --ll "${file[ll]}" \
    --log "${file[log]}" -o none.xrf >out 2>err </dev/null || status=$?
  last_run="NUL bytes in $kind"
  checks=$((checks + 1))
  case $status in
    0) [ -s none.xrf ] || fail "$last_run: nothing written" ;;
    1) one_error ;;
    *) fail "$last_run: status $status: $(cat err)" ;;
  esac
done
finish
