"""Writes the manual pages: those of the command from what its subcommands print as their help, so that
they cannot differ from it, that of the file format from its page in docs/.

pages.py COMMAND VERSION FOLDER
"""

import re
import subprocess
import sys
from pathlib import Path

SUBCOMMANDS = ["build", "info", "find", "whatis", "tree", "dump", "emu", "meta", "meta check", "meta format"]

# What the command is, for who reads its own page first; its help leaves this to the README.
ABOUT = """\
xrf reads what the build of an FPGA design left behind: the elaborated and the synthesized netlist, the
location file and the synthesis log. "xrf build" ties them together in one cross-reference file, which
then answers by name ("xrf find") and by place ("xrf whatis"). Of the metadata document of a compiled
kernel container it tells which simulator signals carry the arguments of kernels ("xrf emu").
"""

STATUS = [
    ("0", "Done."),
    ("1", "The input is bad, or the work failed."),
    ("2", "Wrong usage."),
    ("3", "Something that was named is not there."),
]

ENVIRONMENT = [
    ("NO_COLOR", "If set and not empty, nothing is colored unless --color always asks for it."),
    ("TERM", "On a terminal called dumb nothing is colored and no progress is shown."),
]


def escaped(text):
    text = text.replace("\\", "\\e").replace("-", "\\-").replace("'", "\\(aq")
    return re.sub(r"^\.", "\\&.", text, flags=re.MULTILINE)


class Help:
    """What `xrf SUBCOMMAND --help` prints, in its parts."""

    def __init__(self, command, subcommand):
        words = [command, *subcommand.split(), "--help"]
        lines = subprocess.run(words, check=True, capture_output=True, text=True).stdout.splitlines()
        self.title = lines[0]
        self.usage = ""
        self.lists = {}
        self.text = []
        self.examples = []
        self._read(lines[1:])

    def _read(self, lines):
        part = self.text
        for line in lines:
            heading = re.fullmatch(r"(Positionals|Options|Limits|Subcommands):", line)
            if line.startswith("Usage: "):
                self.usage = line.removeprefix("Usage: ")
            elif heading:
                part = self.lists.setdefault(heading[1], [])
            elif re.fullmatch(r"Examples?:", line):
                part = self.examples
            elif not line:
                part = self.text if part is not self.examples else part
            elif part is self.text or part is self.examples:
                part.append(line)
            else:
                self._append_item(part, line)

    @staticmethod
    def _append_item(items, line):
        item = re.fullmatch(r"  (\S.*?)(?: {2,}(.*))?", line)
        if item:
            items.append((item[1].replace(" REQUIRED", ""), item[2] or ""))
        else:  # the meaning of a long name, on a line of its own, or the rest of a long meaning
            name, meaning = items[-1]
            items[-1] = (name, (meaning + " " + line.strip()).strip())


def tagged(items):
    return "".join(f".TP\n.B {escaped(name)}\n{escaped(meaning)}.\n"
                   for name, meaning in ((n, m.rstrip(".")) for n, m in items))


def section(title, text):
    return f".SH {title}\n{text}" if text else ""


def page(command, version, subcommand):
    information = Help(command, subcommand)
    name = "-".join(["xrf", *subcommand.split()])
    summary = information.title[0].lower() + information.title[1:].rstrip(".")
    others = ["xrf(1)"] if subcommand else []
    others += [f"xrf-{s.replace(' ', '-')}(1)" for s in SUBCOMMANDS if s != subcommand] + ["xrf(5)"]
    subcommands = information.lists.get("Subcommands", [])
    return "".join([
        f'.TH {name.upper().replace("-", chr(92) + "-")} 1 "" "xrf {version}" "User Commands"\n',
        section("NAME", f"{escaped(name)} \\- {escaped(summary)}\n"),
        section("SYNOPSIS", f".B {escaped(information.usage)}\n"),
        section("DESCRIPTION", escaped("".join(line + "\n" for line in information.text)
                                       if subcommand else ABOUT)),
        section("SUBCOMMANDS", tagged(subcommands)),
        section("ARGUMENTS", tagged(information.lists.get("Positionals", []))),
        section("OPTIONS", tagged(information.lists["Options"])),
        section("LIMITS", tagged(information.lists.get("Limits", []))),
        section("EXIT STATUS", tagged(STATUS)),
        section("ENVIRONMENT", tagged(ENVIRONMENT)),
        section("EXAMPLES", ".nf\n" + "".join(escaped(line.strip()) + "\n"
                                               for line in information.examples) + ".fi\n"),
        section("SEE ALSO", ",\n".join(f".BR {escaped(o[:-3])} ({o[-2]})" for o in others)
                .replace(",\n.BR", " ,\n.BR") + "\n"),
    ])


def inline(text):
    """A line of Markdown: code in bold, stress in italics, links as their text."""
    text = escaped(re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", text))
    text = re.sub(r"`([^`]+)`", r"\\fB\1\\fR", text)
    return re.sub(r"\*([^*\n]+)\*", r"\\fI\1\\fR", text)


def roff(markdown):
    """The part of Markdown that the page of the format uses."""
    result = []
    code = False
    table = False
    for line in markdown.splitlines():
        if line.startswith("```"):
            code = not code
            result.append(".PP\n.nf" if code else ".fi")
        elif code:
            result.append(escaped(line) or ".sp")
        elif line.startswith("## "):
            result.append(".SH " + line[3:].upper())
        elif line.startswith("|"):
            cells = [cell.strip() for cell in line.strip("|").split("|")]
            if table and not line.startswith("|-"):
                result += [".TP", f".B {inline(cells[0])}", "; ".join(map(inline, cells[1:])) + "."]
            table = True
        elif line:
            result.append(inline(line))
        elif result and not result[-1].startswith(".SH"):
            result.append(".PP")
            table = False
    return "\n".join(result) + "\n"


def format_page(version):
    source = Path(__file__).parent.parent / "xrf-format.md"
    title, _, text = source.read_text(encoding="utf-8").partition("\n")
    name, _, summary = title.removeprefix("# ").partition(": ")
    return "".join([
        f'.TH XRF 5 "" "xrf {version}" "File Formats"\n',
        section("NAME", f"{name} \\- {escaped(summary)}\n"),
        section("DESCRIPTION", roff(text.strip())),
        section("SEE ALSO", ".BR xrf (1)\n"),
    ])


def main():
    command, version, folder = sys.argv[1:]
    Path(folder, "xrf.5").write_text(format_page(version), encoding="utf-8")
    for subcommand in ["", *SUBCOMMANDS]:
        name = "-".join(["xrf", *subcommand.split()])
        Path(folder, f"{name}.1").write_text(page(command, version, subcommand), encoding="utf-8")


main()
