"""Holds docs/messages.md against the sources: every text with which the library or the command gives up
or warns has its row. messages_test.py ROOT
"""

import re
import sys
from pathlib import Path

STRING = r'"((?:[^"\\]|\\.)*)"'
# Calls that tell the user something, with what stands between their parentheses.
CALL = re.compile(r"\b(fatal|fatalHere|fatalSilently|message|Failure|UsageFailure|warn|record|fail|"
                  r"fault|lmx_exception|runtime_error)\s*[({]((?:[^;\"]|" + STRING + r")*?);")
CONVERSION = re.compile(r"%(?:ll|z)?[a-z]|\{[^}]*\}")

# Texts that are put together elsewhere, or are no message on their own.
PARTS = {"…", "… …", "… '…'…", "… (code …)", "… (see …)", " (see …", "…/…", ": ", "; "}


def normal(text):
    text = text.replace('\\"', '"').replace("\\n", " ").replace("%%", "%")
    return re.sub(r"\s+", " ", CONVERSION.sub("…", text)).strip()


def texts_of(source):
    for call in CALL.finditer(source):
        # Neighbouring literals are one text.
        for group in re.finditer(r"(?:" + STRING + r"\s*)+", call[2]):
            yield normal("".join(re.findall(STRING, group[0])))


def faults_of_documents(source):
    """What is put together of pieces: every literal of three words or more."""
    for literal in re.findall(STRING, source):
        if len(re.findall("[a-z]+", literal)) >= 3 and not literal.startswith("<"):
            yield normal(literal)


def main():
    root = Path(sys.argv[1])
    rows = re.findall(r"^\| `(.*?)` \|", (root / "docs/messages.md").read_text(encoding="utf-8"),
                      re.MULTILINE)
    known = [re.sub(r"\s+", " ", row) for row in rows]
    missing = []
    count = 0
    folders = ["crossreference", "support", "tools/xrf", "lmx60", "python"]
    for path in sorted(p for f in folders for p in (root / f).glob("*.cpp")):
        source = path.read_text(encoding="utf-8")
        texts = list(texts_of(source))
        if path.parent.name == "lmx60":
            texts += faults_of_documents(source)
        for text in texts:
            if len(text) < 8 or text in PARTS or not re.search("[a-z]{3}", text):
                continue
            count += 1
            stripped = text.strip(" …:")
            if not any(stripped in row for row in known):
                missing.append(f"{path.relative_to(root)}: {text}")
    for line in missing:
        print("no row in docs/messages.md:", line)
    print(f"{count} texts, {len(known)} rows, {len(missing)} missing")
    return 1 if missing or count < 60 else 0


sys.exit(main())
