# Turns what scripts/bench measured into its tables, and holds it to the targets.
#
# Time is that of the processor, since other work on the machine delays it less. Growth is an
# exponent: of a figure's ratio to that of the smaller design, over the ratio of the work. The work
# of instructions is the file that is read or written; for the location file and the log, which end
# with a copy over the whole model, it is the netlists.

BEGIN {
  FS = "\t"
  builds = split("rtl synth ll log export", build, " ")
  phases = split("rtl synth ll log export load", counted, " ")
  split("rtl.edf synth.edf netlists netlists out.xrf out.xrf", counted_file, " ")
  # Reading ends with putting names in order, and the final copy begins with it.
  sorts["rtl"] = sorts["synth"] = sorts["load"] = sorts["ll"] = sorts["log"] = 1
}

function least(key, value) {
  if (!(key in best) || value < best[key]) best[key] = value
}

$1 == "bandwidth" { bandwidth = $2 }
$1 == "latency" { latency = $2 }
$1 == "touch" { first_touch = $2; later_touch = $3 }
$1 == "design" {
  finish()
  shape = $2
  registers = $3
  netlists = $4
}
$1 == "scan" { least("scan", $2 + 0) }
$1 == "lex" {
  least("lex", $3 + 0)
  least("lex scan", $4 + 0)
}
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
$1 == "size" { object[$2] = $3 }
$1 == "counted" {
  finish()
  count_growth()
  counted_shape = $2
  counted_registers = $3
}
$1 == "instructions" { spent[$2] = $3 }
$1 == "held" { held[$2] = $3 }
$1 == "bytes" { file_bytes[$2] = $3 }

END {
  finish()
  count_growth()
  print_objects()
  print_targets()
  exit missed > 0
}

function grouped(number, text) {
  text = sprintf("%d", number)
  while (match(text, /[0-9][0-9][0-9][0-9]($|,)/))
    text = substr(text, 1, RSTART) "," substr(text, RSTART + 1)
  return text
}

# The exponent since the design of another size before, or "-"; remembers the figure for the next.
function growth(key, figure, work, text) {
  text = "-"
  if (key in figure_before && work_before[key] != work && figure_before[key] > 0 && figure > 0)
    text = sprintf("%.3f", log(figure / figure_before[key]) / log(work / work_before[key]))
  figure_before[key] = figure
  work_before[key] = work
  return text
}

function row(name, wall, cpu, work, peak) {
  printf "  %-12s %9.3f %9.3f %8.1f %8.2f %9.1f %9s\n", name, wall, cpu, work / 1e6 / cpu,
    cpu / best["scan"], peak / 1e6, growth(shape " " name " time", cpu, netlists)
}

function phase(name) {
  row(name, best[name " wall"], best[name " cpu"], bytes[name], best[name " peak"])
}

function speed(name) { return bytes[name] / 1e6 / best[name " cpu"] }

# A row of the last table: kept until the end, where the one of the largest design stays.
function target(what, figure, unit, relation, limit) {
  if (!(what in wanted)) order[++targets] = what
  wanted[what] = sprintf("%s %s", relation == "<" ? "at most" : "at least", limit)
  got[what] = sprintf("%.4g %s", figure, unit)
  met[what] = relation == "<" ? figure <= limit : figure >= limit
}

function finish(i, wall, cpu, peak) {
  if (shape == "") return
  printf "%s, %s registers: netlists %.1f MB, scanned in %.4f s (%.0f MB/s)\n", shape,
    grouped(registers), netlists / 1e6, best["scan"], netlists / 1e6 / best["scan"]
  printf "  %-12s %9s %9s %8s %8s %9s %9s\n", "", "wall s", "cpu s", "MB/s", "scans", "peak MB",
    "growth"
  if ("lex" in best) {
    printf "  %-12s %9s %9.3f %8.1f %8.2f\n", "lexer", "", best["lex"], netlists / 1e6 / best["lex"],
      best["lex"] / best["lex scan"]
  }
  for (i = 1; i <= builds; ++i) {
    phase(build[i])
    wall += best[build[i] " wall"]
    cpu += best[build[i] " cpu"]
    if (best[build[i] " peak"] > peak) peak = best[build[i] " peak"]
  }
  row("whole build", wall, cpu, netlists, peak)
  phase("load")
  if ("netlist cpu" in best) phase("netlist")
  printf "  %-12s %s names in %.6f s at first, at best %s a second\n", "find",
    grouped(count["names"]), best["find cpu"], grouped(count["find-rate"])
  printf "  %-12s %s signals (%s of one bit), %s signal bits, %s bits, %s nets\n", "model",
    grouped(count["signals"]), grouped(count["one-bit-signals"]), grouped(count["signal-bits"]),
    grouped(count["bits"]), grouped(count["nets"])
  size("built", "model-bytes")
  size("loaded", "loaded-model-bytes")
  if (shape == "tree") tree_targets(cpu, peak)
  if (shape == "field" && !("reading one netlist" in wanted)) field_targets()
  memory_growth(peak)
  print ""
  shape = ""
  split("", best)
  split("", bytes)
  split("", count)
}

function tree_targets(cpu, peak) {
  measured_registers = registers
  target("build", cpu / best["scan"], "scans of the netlists", "<", 30)
  target("build, peak memory", peak / netlists, "bytes a byte of netlist", "<", 4)
  if ("lex" in best) {
    target("lexer alone", netlists / 1e6 / best["lex"], "MB/s", ">", 500)
    target("lexer beside a scan", best["lex scan"] / best["lex"], "of its speed", ">", 0.2)
  }
  target("model", count["model-bytes"] / count["one-bit-signals"], "bytes a one-bit signal", "<",
    200)
  target(".xrf reading", speed("load"), "MB/s", ">", 250)
  target(".xrf writing", speed("export"), "MB/s", ">", 400)
  target("location file", count["lines"] / best["ll cpu"] / 1e6, "million lines a second", ">", 3)
  target("find", count["find-rate"] / 1e6, "million look-ups a second", ">", 1)
}

# A generic reader takes 18 bytes of memory for each byte of such a netlist; a third is asked for.
function field_targets() {
  field_registers = registers
  target("reading one netlist", speed("netlist"), "MB/s", ">", 200)
  target("reading one netlist, memory", count["netlist-peak-bytes"] / bytes["netlist"],
    "bytes a byte of netlist", "<", 6)
}

function memory_growth(peak, text) {
  text = growth(shape " memory", peak, netlists)
  if (text != "-") target("growth of memory, " shape, text, "(exponent)", "<", 1.02)
}

# All of a model's memory shared out among its signals, and among their bits.
function size(name, key) {
  printf "  %-12s %.1f MB: %.0f bytes for each one-bit signal, %.0f for each signal bit", name,
    count[key] / 1e6, count[key] / count["one-bit-signals"], count[key] / count["signal-bits"]
  printf ", growth %s\n", growth(shape " " name, count[key], netlists)
}

function count_growth(i, name, work, text) {
  if (counted_shape == "" || !("rtl" in spent)) return
  file_bytes["netlists"] = file_bytes["rtl.edf"] + file_bytes["synth.edf"]
  if (!count_titled++)
    printf "instructions    %10s %-8s %16s %12s %9s\n", "registers", "phase", "instructions",
      "a byte", "growth"
  for (i = 1; i <= phases; ++i) {
    name = counted[i]
    work = file_bytes[counted_file[i]]
    text = growth(counted_shape " " name, spent[name], work)
    printf "  %-13s %10s %-8s %16s %12.1f %9s\n", counted_shape, grouped(counted_registers), name,
      grouped(spent[name]), spent[name] / work, text
    if (text != "-") instruction_target(name, text)
  }
  printf "  %-13s %10s %-8s %16s %12.1f a look-up\n", counted_shape, grouped(counted_registers),
    "find", grouped(spent["find"]), spent["find"] / held["look-ups"]
  counted_shape = ""
  split("", spent)
}

# The steepest of all variants.
function instruction_target(name, exponent, what) {
  what = "growth of instructions, " name
  if (what in steepest && steepest[what] >= exponent + 0) return
  steepest[what] = exponent + 0
  target(what, exponent, "(exponent), " counted_shape, "<", name in sorts ? 1.10 : 1.02)
}

function print_objects(name) {
  print "\nbytes of an object, without what it points to"
  for (i = split("Bit BitRef Signal Net Module", names, " "); i > 0; --i)
    printf "  %-10s %4d\n", names[i], object[names[i]]
}

function print_targets(i, what) {
  printf "\nmemory copied at %s MB/s, reached in %s ns; a gigabyte first touched in %s s, " \
    "in %s s once it was in use a moment ago\n",
    grouped(bandwidth), latency, first_touch, later_touch
  printf "\n%-34s %-40s %-16s %s\n",
    measured_registers ? "target (" grouped(measured_registers) " registers)" : "target",
    "measured", "wanted", ""
  for (i = 1; i <= targets; ++i) {
    what = order[i]
    if (!met[what]) ++missed
    printf "%-34s %-40s %-16s %s\n", what, got[what], wanted[what], met[what] ? "met" : "NOT met"
  }
  printf "%d of %d targets met\n", targets - missed, targets
}
