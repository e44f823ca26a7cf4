"""Holds the links of the documentation's site against its pages: each file is there, and each place in
it. links_test.py FOLDER, where the site lies.
"""

import html.parser
import sys
import urllib.parse
from pathlib import Path


class Page(html.parser.HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.places = set()
        self.links = []
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attrs):
        attributes = dict(attrs)
        self.places.update(attributes[key] for key in ("id", "name") if attributes.get(key))
        if tag == "a" and attributes.get("href"):
            self.links.append(attributes["href"])


def main():
    folder = Path(sys.argv[1])
    pages = {path.name: Page(path) for path in folder.glob("*.html")}
    broken = []
    count = 0
    for name, page in sorted(pages.items()):
        for link in page.links:
            target = urllib.parse.urlsplit(link)
            # Doxygen links to the private classes of a class, which it leaves out.
            if link == "#nested-classes":
                continue
            if target.scheme or target.netloc or link.startswith("javascript:"):
                continue
            count += 1
            file = urllib.parse.unquote(target.path) or name
            place = urllib.parse.unquote(target.fragment)
            if not (folder / file).exists():
                broken.append(f"{name}: {link}: no such file")
            elif place and file in pages and place not in pages[file].places:
                broken.append(f"{name}: {link}: no such place")
    for line in broken:
        print(line)
    print(f"{count} links in {len(pages)} pages, {len(broken)} broken")
    return 1 if broken or count < 100 else 0


sys.exit(main())
