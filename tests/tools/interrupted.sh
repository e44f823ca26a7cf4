#!/usr/bin/env bash
# Whatever stops a run, the file it was to write is whole: the old one or the new one.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
"$GENERATE" --registers 1500 --seed 7 --shape tree --out design >/dev/null || fail "no design"
# A document that takes a while: its last kernel many times.
awk '/<kernel name="fir"/ { kept = 1 }
  !kept { print }
  kept { kernel = kernel $0 "\n" }
  /<\/kernel>/ && kept { for (i = 0; i < 5000; ++i) printf "%s", kernel; kept = 0 }' \
  "$SOURCE_DIR/examples/vadd/vadd.xml" >document.xml

build=(build --rtl design/rtl.edf --synth design/synth.edf --ll design/design.ll
  --log design/synth.log --quiet -o out.xrf)
format=(meta format document.xml -o out.xml)

# milliseconds COMMAND... prints how long the command takes.
milliseconds() {
  local began
  began=$(date +%s%N)
  "$@" >/dev/null 2>&1 || fail "$*"
  echo $((($(date +%s%N) - began) / 1000000))
}

# whole FILE NEW WHAT: the file is the old one or the new one.
old=0 new=0
whole() {
  checks=$((checks + 1))
  if cmp -s "$1" older; then
    old=$((old + 1))
  elif cmp -s "$1" "$2"; then
    new=$((new + 1))
  else
    fail "$3: $1 is neither the old file nor the new one ($(wc -c <"$1") bytes)"
  fi
}

# stop_at_random FILE SIGNAL ARGUMENT...: the command is stopped at some moment of its run.
stop_at_random() {
  local file=$1 signal=$2 time job pause
  shift 2
  time=$(milliseconds "$XRF" "$@")
  cp "$file" complete
  for _ in 1 2 3 4 5 6 7 8; do
    cp older "$file"
    env --default-signal=INT "$XRF" "$@" >out 2>err </dev/null &
    job=$!
    pause=$((RANDOM * (time + time / 4 + 5) / 32768))
    sleep "$(printf '%d.%03d' $((pause / 1000)) $((pause % 1000)))"
    kill -s "$signal" $job 2>/dev/null
    wait $job 2>/dev/null
    whole "$file" complete "xrf $1, SIG$signal after $pause of $time ms"
    [ "$signal" = KILL ] || no_leftovers .
  done
  # The next run takes away what the killed ones left.
  cp older "$file"
  run 0 "$@"
  same complete "$file"
  no_leftovers .
}

echo older >older
for signal in INT KILL; do
  stop_at_random out.xrf $signal "${build[@]}"
  stop_at_random out.xml $signal "${format[@]}"
done
echo "stopped runs: $old left the old file, $new the new one"

# A file of a killed run is taken away, one that another run still writes is not, and neither is what
# merely looks like one.
mkfifo endless
echo keep >.xrf-notes
echo keep >.xrf-1-2.tmp.txt
echo left >.xrf-1-2.tmp
"$XRF" build --rtl endless --synth endless -o other.xrf >out2 2>err2 </dev/null &
job=$!
for _ in $(seq 100); do
  [ -n "$(find . -name ".xrf-$job-*.tmp")" ] && break
  sleep 0.1
done
run 0 "${build[@]}"
checks=$((checks + 4))
[ ! -e .xrf-1-2.tmp ] || fail "the file of a killed run is still there"
[ -e .xrf-notes ] && [ -e .xrf-1-2.tmp.txt ] || fail "a file of somebody else's was removed"
[ -n "$(find . -name ".xrf-$job-*.tmp")" ] || fail "the file of a running build was removed"
kill -KILL $job
wait $job 2>/dev/null
[ -n "$(find . -name ".xrf-$job-*.tmp")" ] || fail "the killed build left nothing to take away"
rm .xrf-notes .xrf-1-2.tmp.txt
run 0 "${build[@]}"
no_leftovers .

# A disk that is full: the system refuses the file at some size.
size=$(wc -c <out.xrf)
for limit in 1 2 $((size / 2048)) $((size / 1024)); do
  cp older out.xrf
  status=0
  (
    trap '' XFSZ
    ulimit -f "$limit"
    exec "$XRF" "${build[@]}"
  ) >out 2>err </dev/null || status=$?
  last_run="build with at most $limit KiB"
  checks=$((checks + 1))
  [ $status = 1 ] || fail "$last_run: status $status"
  has err 'File too large'
  same older out.xrf
  no_leftovers .
  # Where the signal is not ignored it ends the process.
  (ulimit -f "$limit" && exec "$XRF" "${build[@]}") >out 2>err </dev/null
  same older out.xrf
  no_leftovers .
done
cp older out.xml
status=0
(
  trap '' XFSZ
  ulimit -f 1
  exec "$XRF" "${format[@]}"
) >out 2>err </dev/null || status=$?
last_run="meta format with at most 1 KiB"
[ $status = 1 ] || fail "$last_run: status $status"
has err 'File too large'
same older out.xml

# The same on a real file system, where one may be mounted.
if unshare --mount --map-root-user true 2>/dev/null; then
  mkdir small
  # shellcheck disable=SC2016
  unshare --mount --map-root-user bash -c '
    mount -t tmpfs -o size=16k none small && cp older small/out.xrf &&
      ! "$XRF" "$@" -o small/out.xrf && cmp older small/out.xrf &&
      [ -z "$(find small -name ".xrf-*")" ]' _ "${build[@]:0:${#build[@]}-2}" >out 2>err
  checks=$((checks + 1))
  [ $? = 0 ] || fail "a full file system: $(cat err)"
  has err 'small/out.xrf: cannot write: No space left'
else
  echo "a full file system: not tried, mounting is not possible here"
fi

# A folder that may be read only. Root may write everywhere, so somebody else is needed.
as=()
[ "$(id -u)" != 0 ] || as=(setpriv --reuid=65534 --regid=65534 --clear-groups)
mkdir closed
cp older closed/out.xrf
cp "$data_dir/small.xrf" .
chmod 755 . closed
if "${as[@]}" test -r small.xrf -a -x "$XRF" 2>/dev/null; then
  [ "$(id -u)" = 0 ] || chmod 555 closed
  for target in closed/new.xrf closed/out.xrf; do
    status=0
    "${as[@]}" "$XRF" build --xrf small.xrf --quiet -o $target >out 2>err </dev/null || status=$?
    last_run="build into a folder that may be read only"
    checks=$((checks + 1))
    [ $status = 1 ] || fail "$last_run: status $status"
    one_error
    has err 'Permission denied'
  done
  same older closed/out.xrf
  chmod 755 closed
else
  echo "a folder that may be read only: not tried, somebody else cannot reach this folder"
fi
finish
