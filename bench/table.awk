# Turns what scripts/bench measured into its table, and judges it by the budget.
#
# Time is that of the processor, since other work on the machine delays it less. Growth is an
# exponent: of a figure's ratio to that of the design before, over the ratio of the netlists' sizes.

BEGIN {
  FS = "\t"
  builds = split("rtl synth ll log export", build, " ")
}

function least(key, value) {
  if (!(key in best) || value < best[key]) best[key] = value
}

$1 == "design" {
  finish()
  shape = $2
  registers = $3
  netlists = $4
}
$1 == "scan" { least("scan", $2 + 0) }
$1 == "phase" {
  least($2 " wall", $3 + 0)
  least($2 " cpu", $4 + 0)
  bytes[$2] = $5
  least($2 " peak", $7 + 0)
}
$1 == "count" && $2 == "find-rate" {
  if ($3 + 0 > count[$2] + 0) count[$2] = $3
  next
}
$1 == "count" { count[$2] = $3 }

END {
  finish()
  if (over) {
    print "OVER budget"
    exit 1
  }
  print "within budget"
}

function grouped(number, text) {
  text = sprintf("%d", number)
  while (match(text, /[0-9][0-9][0-9][0-9]($|,)/))
    text = substr(text, 1, RSTART) "," substr(text, RSTART + 1)
  return text
}

# The exponent since the design of another size before; remembers the figure for the next design.
function growth(key, figure, text) {
  text = "-"
  key = shape " " key
  if (key in figure_before && work_before[key] != netlists && figure_before[key] > 0 && figure > 0)
    text = sprintf("%.2f", log(figure / figure_before[key]) / log(netlists / work_before[key]))
  figure_before[key] = figure
  work_before[key] = netlists
  return text
}

function row(name, wall, cpu, work, peak) {
  printf "  %-12s %9.3f %9.3f %8.1f %8.2f %9.1f %9s %9s\n", name, wall, cpu, work / 1e6 / cpu,
    cpu / best["scan"], peak / 1e6, growth(name " time", cpu), growth(name " memory", peak)
}

function phase(name) {
  row(name, best[name " wall"], best[name " cpu"], bytes[name], best[name " peak"])
}

function judge(figure, limit, what, verdict) {
  verdict = "within budget"
  if (figure > limit) {
    verdict = "OVER budget"
    over = 1
  }
  printf "  %.2f %s, at most %d: %s\n", figure, what, limit, verdict
}

function finish(i, wall, cpu, peak) {
  if (shape == "") return
  printf "%s, %s registers: netlists %.1f MB, scanned in %.4f s (%.0f MB/s)\n", shape,
    grouped(registers), netlists / 1e6, best["scan"], netlists / 1e6 / best["scan"]
  printf "  %-12s %9s %9s %8s %8s %9s %19s\n", "", "wall s", "cpu s", "MB/s", "scans", "peak MB",
    "growth: time memory"
  for (i = 1; i <= builds; ++i) {
    phase(build[i])
    wall += best[build[i] " wall"]
    cpu += best[build[i] " cpu"]
    if (best[build[i] " peak"] > peak) peak = best[build[i] " peak"]
  }
  row("whole build", wall, cpu, netlists, peak)
  phase("load")
  printf "  %-12s %s names in %.6f s at first, at best %s a second\n", "find",
    grouped(count["names"]), best["find cpu"], grouped(count["find-rate"])
  printf "  %-12s %s signals (%s of one bit), %s signal bits, %s bits, %s nets\n", "model",
    grouped(count["signals"]), grouped(count["one-bit-signals"]), grouped(count["signal-bits"]),
    grouped(count["bits"]), grouped(count["nets"])
  size("built", "model-bytes")
  size("loaded", "loaded-model-bytes")
  judge(cpu / best["scan"], max_scans, "times the scan")
  judge(peak / netlists, max_bytes_per_byte, "bytes of memory for each byte of netlist")
  print ""
  split("", best)
  split("", bytes)
  split("", count)
}

# All of a model's memory shared out among its signals, and among their bits.
function size(name, key) {
  printf "  %-12s %.1f MB: %.0f bytes for each one-bit signal, %.0f for each signal bit", name,
    count[key] / 1e6, count[key] / count["one-bit-signals"], count[key] / count["signal-bits"]
  printf ", growth %s\n", growth(name, count[key])
}
