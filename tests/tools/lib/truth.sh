# shellcheck shell=bash
# Generated designs, with the lists of what became of their registers.
: "${GENERATE:?the design generator}"

# generated HAZARDS FILE: generates a design with these habits of real ones in the folder design and
# builds FILE from it. Then located holds name, frame, offset and region of each located register,
# separated by tabs.
generated() {
  "$GENERATE" --registers 800 --seed 5 --shape tree --hazards "$1" --out design >/dev/null ||
    fail "generate"
  run 0 build --rtl design/rtl.edf --synth design/synth.edf --ll design/design.ll \
    --log design/synth.log -o "$2" --quiet
  awk -F'\t' '$8 ~ /^(located|merged) / {
    split($8, at, " ")
    print $1 "\t" at[2] "\t" at[3] "\t" at[4]
  }' design/truth.txt >located
}
