# shellcheck shell=bash
# Shared by the tests of the command. A test sources this, calls `run` and the checks below, and ends
# with `finish`. XRF, GENERATE and SOURCE_DIR come from the environment; with BLESS=1 golden files
# are rewritten instead of compared.
set -u
: "${XRF:?the xrf command to test}" "${SOURCE_DIR:?the root of the source tree}"
export LC_ALL=C
unset NO_COLOR

golden_dir=$SOURCE_DIR/tests/tools/golden
data_dir=$SOURCE_DIR/tests/tools/data
work=$(mktemp -d)
# Not when a job is stopped before it becomes the program that it runs.
trap '[ "$BASHPID" != "$$" ] || rm -rf "$work"' EXIT
cd "$work" || exit 1
failures=0
checks=0

fail() {
  failures=$((failures + 1))
  printf 'FAILED: %s\n' "$*" >&2
}

# run STATUS ARGUMENT... runs xrf; its output is then in the files out and err.
run() {
  local expected=$1 status=0
  shift
  last_run="xrf $*"
  checks=$((checks + 1))
  "$XRF" "$@" >out 2>err </dev/null || status=$?
  if [ "$status" != "$expected" ]; then
    fail "$last_run: status $status instead of $expected"
    sed 's/^/  /' err >&2
  fi
}

# same EXPECTED ACTUAL [WHAT]: two files must be equal, byte for byte.
same() {
  checks=$((checks + 1))
  diff -u "$1" "$2" >&2 || fail "${3-$last_run}: $2 differs from $1"
}

# golden NAME [FILE]: FILE (default: out) must equal the golden file.
golden() {
  local file=$golden_dir/$1 actual=${2-out}
  if [ "${BLESS-}" = 1 ]; then
    mkdir -p "$(dirname "$file")"
    cp "$actual" "$file"
  elif [ ! -e "$file" ]; then
    fail "$last_run: there is no golden file $file (make it with BLESS=1)"
  else
    same "$file" "$actual"
  fi
}

# has FILE TEXT, hasnt FILE TEXT: whether a line of the file holds the text.
has() {
  checks=$((checks + 1))
  grep -qF -e "$2" "$1" && return
  fail "$last_run: no '$2' in $1:"
  sed 's/^/  /' "$1" >&2
}

hasnt() {
  checks=$((checks + 1))
  ! grep -qF -e "$2" "$1" || fail "$last_run: unwanted '$2' in $1"
}

# lines FILE N: the file has N lines.
lines() {
  checks=$((checks + 1))
  local count
  count=$(wc -l <"$1")
  [ "$count" = "$2" ] && return
  fail "$last_run: $1 has $count lines instead of $2:"
  sed 's/^/  /' "$1" >&2
}

# one_error: the last run printed nothing but one error on standard error.
one_error() {
  lines out 0
  checks=$((checks + 1))
  local count
  count=$(grep -c '^xrf: error: ' err)
  [ "$count" = 1 ] || fail "$last_run: $count error lines instead of 1: $(cat err)"
}

# json_error: the last run printed one JSON document with an error on standard output.
json_error() {
  lines out 1
  checks=$((checks + 1))
  grep -q '^{"error":"..*}$' out || fail "$last_run: no error document: $(cat out)"
}

# no_leftovers FOLDER: no temporary file stayed behind.
no_leftovers() {
  checks=$((checks + 1))
  local left
  left=$(find "$1" -name '.xrf-*')
  [ -z "$left" ] || fail "$last_run: left behind $left"
}

finish() {
  [ "$checks" -gt 0 ] || fail "nothing was checked"
  echo "$checks checks, $failures failed"
  [ "$failures" = 0 ]
  exit
}
