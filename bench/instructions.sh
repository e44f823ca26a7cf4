#!/usr/bin/env bash
# Counts the instructions of each phase of a build. They depend on program and input alone, so that
# other work on the machine does not show.
set -euo pipefail

usage() {
  cat <<'END'
usage: bench/instructions.sh PHASES MATCHING DIR OUT

Runs the program PHASES (bench/phases) on the design in DIR under callgrind, some fifty times slower
than without. Passes on its lines "count" and "size", and prints a line for each phase, columns
separated by tabs:
  instructions  phase  number
END
}

if [ $# -ne 4 ]; then
  usage >&2
  exit 2
fi
profile=$(mktemp)
trap 'rm -f "$profile" "$profile".*' EXIT
# The C library picks its string functions by processor; every processor has the plain ones.
export GLIBC_TUNABLES=glibc.cpu.hwcaps=-AVX_Fast_Unaligned_Load,-AVX2,-AVX,-BMI1,-BMI2,-ERMS,-FSRM,-SSSE3,-SSE4_1,-SSE4_2
valgrind --tool=callgrind --quiet --callgrind-out-file="$profile" \
  "$1" --matching "$2" "$3" "$4" | grep -E '^(count|size)'
callgrind_annotate --inclusive=yes --threshold=100 --auto=no --show-percs=no "$profile" |
  awk '
    function counted(name, text) {
      if (index($0, text) == 0) return
      gsub(/,/, "", $1)
      printf "instructions\t%s\t%s\n", name, $1
    }
    {
      counted("rtl", ":XRF_RTL2LL::Design::parse_rtl(")
      counted("synth", ":XRF_RTL2LL::Design::parse_synth(")
      counted("ll", ":XRF_RTL2LL::Design::parse_ll(")
      counted("log", ":XRF_RTL2LL::Design::parse_log(")
      counted("export", ":XRF_RTL2LL::Design::exportDesign(")
      counted("load", ":XRF_RTL2LL::Design::parse_xrf(")
      counted("find", ":phases::findAll(")
    }'
