# shellcheck shell=bash
# The table in an example's README that tells where every register ends up.

# readme_table README [COLUMN] prints a line per bit, sorted: its name, and what the last columns say
# of it, as `find_rows` prints it. The name is that of the column signal, with the index where the
# signal has several bits, or else what the named column says.
readme_table() {
  awk -F'|' -v whole="${2-}" '
    function trimmed(text) { gsub(/^[ `]+|[ `]+$/, "", text); return text }
    /^\|.* signal +\|/ {
      for (i = 2; i < NF; ++i) column[trimmed($i)] = i
      reading = 1
      next
    }
    !/^\|/ { reading = 0 }
    !reading || /^\|-/ { next }
    {
      name_in = trimmed($column[whole == "" ? "signal" : whole])
      if (name_in != "") name = name_in
      region = "slr" in column ? trimmed($column["slr"]) : "0"
      place = "located " trimmed($column["frame"]) " " trimmed($column["offset"]) " " region
      instead = trimmed($column["or instead"])
      ++rows
      of[rows] = name
      index_of[rows] = trimmed($column["index"])
      told[rows] = instead != "" ? instead : place
      ++bits[name]
    }
    END {
      for (i = 1; i <= rows; ++i) {
        isVector = whole == "" && (bits[of[i]] > 1 || index_of[i] > 0)
        bracket = isVector ? "[" index_of[i] "]" : ""
        print of[i] bracket, told[i]
      }
    }' "$1" | sort
}

# find_rows prints the same of what the last run of `xrf find` found.
find_rows() {
  sed -n '/^VIEW  BIT/,$p' out | tail -n +2 | awk '{
    line = $2 " " $4
    for (i = 5; i <= NF; ++i) line = line " " $i
    print line
  }' | sort
}

# check_readme README BITS FILE: `xrf find` tells of the file what the table of BITS bits says.
check_readme() {
  readme_table "$1" >truth
  lines truth "$2"
  mapfile -t registers < <(cut -d" " -f1 truth)
  run 0 find "$3" --view rtl --quiet "${registers[@]}"
  find_rows >actual
  same truth actual "the table in $1"
}
