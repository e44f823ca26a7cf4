#!/usr/bin/env bash
# Holds the sizes of the model's objects, the bytes that a model allocates and the instructions that
# each phase takes to tests/performance/budget.txt: figures that other work on the machine does not
# change. With BLESS=1 the budget becomes what is measured.
set -euo pipefail
: "${PHASES:?the program bench/phases}" "${GENERATE:?the design generator}"
: "${SOURCE_DIR:?the root of the source tree}"
skipped=77 # as tests/CMakeLists.txt has it
if ! command -v valgrind >/dev/null; then
  echo "skipped: there is no valgrind here (scripts/setup installs it)"
  exit $skipped
fi
budget=$SOURCE_DIR/tests/performance/budget.txt
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# measure MATCHING GENERATE_OPTION...: lines of a kind, a name and a number.
measure() {
  local matching=$1
  shift
  "$GENERATE" "$@" --seed 1 --out "$work/design"
  "$SOURCE_DIR/bench/instructions.sh" "$PHASES" "$matching" "$work/design" "$work/out.xrf" |
    awk -v matching="$matching" '
      $1 == "size" { print $1, $2, $3 }
      $1 == "instructions" { print $1, matching "/" $2, $3 }
      $1 == "count" && $2 ~ /allocated-bytes$/ { print $1, matching "/" $2, $3 }'
}

{
  measure strict --registers 2000 --shape tree
  measure extended --registers 500 --shape field
} | sort -u >"$work/measured"

if [ "${BLESS-}" = 1 ]; then
  {
    echo "# What was measured when it was last accepted (BLESS=1 ctest --preset release -L performance)."
    echo "# Sizes must not grow; counts and instructions may grow by 5 %."
    cat "$work/measured"
  } >"$budget"
fi

awk '
  FNR == NR {
    if ($1 !~ /^#/) allowed[$1 " " $2] = $3
    next
  }
  {
    key = $1 " " $2
    if (!(key in allowed)) {
      print "FAILED: " key " is not in the budget"
      failed = 1
      next
    }
    limit = $1 == "size" ? allowed[key] : allowed[key] * 1.05
    verdict = $3 > limit ? "FAILED" : "ok"
    if ($3 > limit) failed = 1
    change = allowed[key] > 0 ? sprintf("%+.1f %%", 100 * ($3 / allowed[key] - 1)) : ""
    printf "%-6s %-42s %14d accepted %14d %9s\n", verdict, key, $3, allowed[key], change
    delete allowed[key]
  }
  END {
    for (key in allowed) {
      print "FAILED: " key " was not measured"
      failed = 1
    }
    if (failed) print "Where it must be so: BLESS=1 ctest --preset release -L performance"
    exit failed
  }' "$budget" "$work/measured"
