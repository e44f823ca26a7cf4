#!/usr/bin/env bash
# Faults of a metadata document, and its canonical form.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
cp "$SOURCE_DIR/examples/vadd/vadd.xml" .

run 0 meta check vadd.xml
has out 'vadd.xml: 0 errors, 0 warnings'
run 0 meta check vadd.xml --json
has out '"ok":true,"faults":[]'

cat >faulty.xml <<'END'
<project>
  <platform later="1" featureRomTime="-1">
    <version major="x" minor="4294967296"/>
    <extended-data><any/></extended-data>
    <host/>
    <board/>
  </platform>
</project>
END
run 1 meta check faulty.xml && golden meta/faulty.txt
run 1 meta check faulty.xml --json && golden meta/faulty.json
for code in 35 36 37; do has out "\"code\":$code"; done
printf '<project><platform>' >cut.xml
run 1 meta check cut.xml
lines out 2
has out 'cut.xml: 1 error, 0 warnings'
: >empty.xml
run 1 meta check empty.xml --json
has out '"faults":[{"code":2,'
hasnt out '"code":0'

# What is written reads back, and writing it again changes nothing.
run 0 meta format vadd.xml -o once.xml
run 0 meta check once.xml
run 0 meta format once.xml -o twice.xml
same once.xml twice.xml
run 0 meta format vadd.xml
same once.xml out
run 1 meta format faulty.xml -o never.xml
[ ! -e never.xml ] || fail 'a faulty document was written'

printf '<project><platform><host/><novelty/></platform></project>\n' >newer.xml
run 0 meta check newer.xml
has out 'warning'
run 1 meta format newer.xml -o kept.xml
has err '--drop-unknown'
run 0 meta format newer.xml --drop-unknown -o kept.xml
hasnt kept.xml novelty
run 2 meta
run 2 meta format vadd.xml --json
finish
