#!/usr/bin/env bash
# How build writes: completely or not at all.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
cp "$data_dir/small.xrf" .
umask 022

mode() { stat -c %a "$1"; }
expect_mode() {
  checks=$((checks + 1))
  [ "$(mode "$1")" = "$2" ] || fail "$last_run: mode of $1 is $(mode "$1") instead of $2"
}

# A new file has the mode that any new file has; an older one keeps its own.
run 0 build --xrf small.xrf --quiet -o new.xrf
lines out 0
expect_mode new.xrf 644
same small.xrf new.xrf
chmod 600 new.xrf
run 0 build --xrf small.xrf --quiet -o new.xrf
expect_mode new.xrf 600
no_leftovers .

# In place, through a link, and in another folder.
cp small.xrf place.xrf
run 0 build --xrf place.xrf --quiet -o place.xrf
same small.xrf place.xrf
mkdir sub
echo older >sub/target.xrf
ln -s sub/target.xrf link.xrf
run 0 build --xrf small.xrf --quiet -o link.xrf
same small.xrf sub/target.xrf
checks=$((checks + 1))
[ -L link.xrf ] || fail "$last_run: the link was replaced"
no_leftovers .

# Where nothing can be written, nothing is read either.
run 1 build --xrf small.xrf -o sub
one_error
has err 'sub: cannot write: it is a directory'
hasnt err 'Parsing'
run 1 build --xrf small.xrf -o nosuch/out.xrf
one_error
has err 'nosuch'
hasnt err 'Parsing'
run 1 build --xrf small.xrf -o ''
one_error
run 1 build --xrf small.xrf --json -o nosuch/out.xrf
json_error
if [ "$(id -u)" != 0 ]; then
  chmod 555 sub
  run 1 build --xrf small.xrf -o sub/out.xrf
  one_error
  has err 'Permission denied'
  chmod 755 sub
fi

# Pipes and devices are written to directly; standard output carries the file alone.
mkfifo pipe
cat pipe >piped.xrf &
reader=$!
run 0 build --xrf small.xrf --quiet -o pipe
wait $reader
same small.xrf piped.xrf
"$XRF" build --xrf small.xrf -o /dev/stdout 2>err | cat >piped.xrf
same small.xrf piped.xrf
has err 'wrote'
status=0
"$XRF" build --xrf small.xrf --json -o /dev/stdout >out 2>err || status=$?
[ "$status" = 2 ] || fail "--json -o /dev/stdout: status $status instead of 2"
json_error

# A descriptor that somebody opened goes on where it stands, whatever it leads to.
expect_through() {
  checks=$((checks + 1))
  [ "$status" = 0 ] || fail "$last_run: status $status: $(cat err)"
  { echo before && cat "$1" && echo after; } >expected
  same expected through
  no_leftovers .
}
for target in /dev/stdout /dev/fd/1 /proc/self/fd/1 /proc/thread-self/fd/1; do
  last_run="build -o $target into a file"
  {
    echo before
    status=0
    "$XRF" build --xrf small.xrf --quiet -o $target 2>err || status=$?
    echo after
  } >through
  expect_through small.xrf
  last_run="build -o $target at the end of a file"
  echo before >through
  ln through kept
  status=0
  "$XRF" build --xrf small.xrf -o $target >>through 2>err || status=$?
  has err 'wrote'
  echo after >>through
  expect_through small.xrf
  same through kept  # the very file
  rm kept
done
ln -s /dev/fd/5 descriptor
for target in /dev/fd/5 descriptor; do
  last_run="build -o $target"
  status=0
  { echo before >&5 && "$XRF" build --xrf small.xrf --quiet -o $target 2>err && echo after >&5; } \
    5>through || status=$?
  expect_through small.xrf
done
"$XRF" meta format "$SOURCE_DIR/examples/vadd/vadd.xml" --drop-unknown -o document.xml
last_run='meta format -o /dev/stdout into a file'
{
  echo before
  status=0
  "$XRF" meta format document.xml -o /dev/stdout 2>err || status=$?
  echo after
} >through
expect_through document.xml
# What is not open, or open for reading only, is an error before anything is read.
for target in /dev/fd/5 /dev/fd/99 /dev/fd/5x; do
  cp small.xrf through
  run 1 build --xrf small.xrf -o $target 5<through
  one_error
  hasnt err 'Parsing'
  same small.xrf through
done
if [ -w /dev/full ]; then
  run 1 build --xrf small.xrf --quiet -o /dev/full
  one_error
fi

# A build that is stopped while it reads leaves the older file and nothing else.
mkfifo endless
for signal in TERM INT HUP PIPE XCPU; do
  cp small.xrf kept.xrf
  last_run="xrf build, stopped by SIG$signal"
  # A script's background jobs ignore SIGINT unless told otherwise.
  env --default-signal=INT,PIPE "$XRF" build --rtl endless --synth endless \
    -o kept.xrf >out 2>err </dev/null &
  job=$!
  for _ in $(seq 100); do
    [ -n "$(find . -name '.xrf-*')" ] && break
    sleep 0.1
  done
  checks=$((checks + 1))
  [ -n "$(find . -name '.xrf-*')" ] || fail "$last_run: had no temporary file to lose"
  status=0
  kill -s $signal $job
  wait $job || status=$?
  checks=$((checks + 1))
  [ $status = $((128 + $(kill -l $signal))) ] || fail "$last_run: status $status"
  no_leftovers .
  same small.xrf kept.xrf
done
finish
