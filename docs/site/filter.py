#!/usr/bin/env python3
"""filter.py FILE: a source as Doxygen is to see it, on standard output. Run from the root, by the Doxyfile."""
import re
import sys
from collections import Counter
from pathlib import Path

import fortran
import headers
import prose

README = Path("README.md")  # its list of guides has a line about each
LINK_OR_CODE = re.compile(r"\[([^\]]+)\]\(([^)]+)\)|(?<![`\w])`(\w+)`(?!`)")


def anchor(page, title):
    """A heading's id: as code hosts form it, behind the page's name, for ids of all pages share one space."""
    return page + "-" + re.sub(r"[^\w -]", "", title.strip().lower()).replace(" ", "-")


def reference(target, label):
    return f'<tt>@ref {target} "{label[1:-1]}"</tt>' if label.startswith("`") else f"[{label}](@ref {target})"


def guide(text, page):
    """Guides link to each other, to sources, which here are their text alone, and by a routine's name to what the
    reference says of it."""
    def link(match):
        label, target, code = match.groups()
        if code:
            return reference(code, f"`{code}`") if code in prose.routines() else match[0]
        path, _, fragment = target.partition("#")
        name = Path(path).name
        if "://" in path or path.endswith(".svg"):
            return match[0]
        if fragment:
            return reference(anchor(Path(path).stem or page, fragment), label)
        if path.endswith(".md"):
            return reference("index" if name == "README.md" else Path(path).stem, label)
        pages = {"nxl.h": "nxl.h", "nxl_cblas.h": "nxl_cblas.h", "nxl.f90": "fortran-module"}
        return reference(pages[name], label) if name in pages else label

    seen = Counter()

    def heading(match):
        slug = anchor(page, match[1])
        seen[slug] += 1
        number = f"-{seen[slug] - 1}" if seen[slug] > 1 else ""  # a second "C" is "c-1", as on code hosts
        if page == "README":  # sections of the main page would stand among the guides
            return f"@anchor {slug}{number}\n<h2>{match[1]}</h2>\n"
        return f"{match[0]} {{#{slug}{number}}}"

    def linked(part):
        lines = (line if line.startswith(("#", "    ")) else LINK_OR_CODE.sub(link, line) for line in part.split("\n"))
        return re.sub(r"^##+ (.*)$", heading, "\n".join(lines), flags=re.M)

    parts = re.split(r"(^```.*?^```$)", text, flags=re.M | re.S)  # code blocks, at odd places, stay as they are
    parts[::2] = [linked(part) for part in parts[::2]]
    if page == "README":
        return "".join(parts)
    item = rf"^- \[.*?\]\((?:docs/)?{page}\.md\): (.+\n(?:  .+\n)*)"
    about = re.search(item, README.read_text(encoding="utf-8"), re.M)
    brief = f"@brief {prose.lead(' '.join(about[1].split()))}\n" if about else ""
    return re.sub(r"\A(# .*)$", lambda match: f"{match[0]} {{#{page}}}\n\n{brief}", "".join(parts), flags=re.M)


def main():
    path = Path(sys.argv[1])
    text = path.read_text(encoding="utf-8")
    kinds = {".h": headers.header, ".f90": fortran.module, ".md": guide}
    sys.stdout.write(kinds[path.suffix](text, path.stem))


main()
