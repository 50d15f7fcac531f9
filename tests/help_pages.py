#!/usr/bin/env python3
"""Checks the built help against the program: tests/help_pages.py FOLDER, the one that holds klmzep.exe.

Every keyword that the sources ask for has its page in help/ and one entry in the keyword table of TELVAR.HLP, which
leads to the topic of the same title; no link between the pages leads nowhere, and none leaves them. The page about
careful mode says all that the program's table of it says.
"""
import re
import struct
import sys
from html.parser import HTMLParser
from pathlib import Path


class HelpFile:
    """A Windows Help file as a system of inner files, some of which are sorted trees."""

    def __init__(self, path):
        self.content = path.read_bytes()
        magic, directory = struct.unpack_from("<II", self.content)
        assert magic == 0x00035F3F, f"{path} is no help file"
        self.files = {name: offset for name, offset in self.tree(self.inner(directory), "zI")}

    def inner(self, offset):
        used = struct.unpack_from("<I", self.content, offset + 4)[0]
        return self.content[offset + 9 : offset + 9 + used]

    def file(self, name):
        return self.inner(self.files[name])

    @staticmethod
    def tree(data, fields):
        """The entries in the leaves; `fields` are z (text), H and I (numbers of 2 and 4 bytes)."""
        magic, _, page_bytes = struct.unpack_from("<HHH", data)
        assert magic == 0x293B, "not a tree"
        root, _, _, levels, total = struct.unpack_from("<HhHHI", data, 26)
        page = root
        for _ in range(levels - 1):
            page = struct.unpack_from("<H", data, 38 + page * page_bytes + 4)[0]
        entries = []
        while page != 0xFFFF:
            at = 38 + page * page_bytes
            _, count, _, page = struct.unpack_from("<HHHH", data, at)
            at += 8
            for _ in range(count):
                entry = []
                for field in fields:
                    if field == "z":
                        end = data.index(0, at)
                        entry.append(data[at:end].decode("cp1252"))
                        at = end + 1
                    else:
                        entry.append(struct.unpack_from("<" + field, data, at)[0])
                        at += struct.calcsize("<" + field)
                entries.append(tuple(entry))
        assert len(entries) == total, "a tree with missing leaves"
        return entries

    def titles_by_keyword(self):
        """For each keyword the titles of the topics that it leads to."""
        titles = self.tree(self.file("|TTLBTREE"), "Iz")
        places = self.file("|KWDATA")
        found = {}
        for keyword, count, offset in self.tree(self.file("|KWBTREE"), "zHI"):
            topics = struct.unpack_from(f"<{count}I", places, offset)
            found[keyword] = [[title for start, title in titles if start <= topic][-1] for topic in topics]
        return found


class Page(HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.links, self.anchors, self.headings, self.texts, self.inside = [], set(), [], [], None
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        self.anchors.update(values[key] for key in ("id", "name") if key in values and tag != "meta")
        self.links += [values[key] for key in ("href", "src") if key in values]
        self.inside = tag if tag == "h1" else self.inside
        assert tag != "script", "a script"

    def handle_endtag(self, tag):
        self.inside = None if tag == self.inside else self.inside

    def handle_data(self, data):
        self.texts.append(data)
        if self.inside == "h1":
            self.headings.append(data)


def keywords_in_sources(root):
    sources = list((root / "src/windows").rglob("*.cpp"))
    return sorted({word for path in sources for word in re.findall(r'"(KLM[A-Z][a-z]\w*)"', path.read_text())})


def cares_in_sources(root):
    """The sentences of careful mode's table: the last texts of its rows."""
    table = (root / "src/windows/services/careful.cpp").read_text().split("kCares[] = {")[1].split("\n};")[0]
    rows = re.split(r"Care::k\w+,", re.sub(r'"\s+"', "", table))[1:]
    return [re.findall(r'"([^"]*)"', row)[1] for row in rows]


def broken_links(folder, pages):
    for name, page in pages.items():
        for link in page.links:
            target, _, anchor = link.partition("#")
            target = target or name
            there = target in pages and (not anchor or anchor in pages[target].anchors)
            if not there and not (target.endswith(".css") and (folder / target).is_file()):
                yield f"{name}: {link} leads nowhere"


def check(program_folder):
    root = Path(__file__).resolve().parent.parent
    keywords = keywords_in_sources(root) + ["KLMCareful"]
    assert len(keywords) >= 9, f"only {keywords} found in the sources"
    folder = program_folder / "help"
    pages = {path.name: Page(path) for path in folder.glob("*.html")}
    titles = HelpFile(program_folder / "TELVAR.HLP").titles_by_keyword()
    faults = list(broken_links(folder, pages))
    for keyword in keywords:
        page = pages.get(keyword + ".html")
        heading = "".join(page.headings) if page else "(no page)"
        if titles.get(keyword) != [heading]:
            faults.append(f"{keyword}: the page {heading!r}, in TELVAR.HLP {titles.get(keyword)}")
    said = " ".join("".join(pages["KLMCareful.html"].texts).split()).replace("\u2019", "'")
    cares = cares_in_sources(root)
    assert len(cares) >= 17, f"only {cares} found in the table of careful mode"
    faults += [f"KLMCareful.html does not say: {care}" for care in cares if care not in said]
    return keywords, faults


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    found_keywords, found_faults = check(Path(sys.argv[1]))
    for fault in found_faults:
        print(fault)
    if found_faults:
        sys.exit(1)
    print(f"help: {len(found_keywords)} keywords lead to their pages")
