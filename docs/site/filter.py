#!/usr/bin/env python3
"""filter.py FILE: a source as Doxygen is to see it, on standard output.

Headers explain their routines in plain comments: a heading comment opens a section, any other comment belongs to all
declarations below it up to the next blank line. A CBLAS entry without one is what nxl.h says of its routine. Guides link to sources; on the site such a link is its text alone.
"""
import re
import sys
from collections import Counter
from pathlib import Path

COMMENT = re.compile(r"(/\*.*?\*/)\n?(.*)", re.S)
HEADING = re.compile(r"==== (.*?) =+")
LINK = re.compile(r"\[([^\]]+)\]\(([^)]+)\)")


def lines_of(comment):
    """The text of a comment without its stars."""
    inside = comment.removeprefix("/*").removesuffix("*/")
    return [re.sub(r"^ \* ?", "", line).strip("\n").rstrip() for line in inside.split("\n")]


def preformatted(lines):
    """As it stands in the header: its formulas and tables live on their columns."""
    text = "\n".join(lines).strip()
    return f"@verbatim\n{text}\n@endverbatim" if text else ""


def cblas_entry(declaration):
    routine = re.search(r"cblas_(\w+?)(_sub)?\(", declaration)[1]
    return f"/** As {routine} in nxl.h, by the conventions of this header. */\n{declaration.strip()}"


def header(text, page):
    text = re.sub(r"^#define NXL_\w*(NOEXCEPT|LENGTH|ENUM).*\n", "", text, flags=re.M)  # as the Doxyfile expands them
    out, sections = [], 0
    for paragraph in re.split(r"\n{2,}", text):
        match = COMMENT.fullmatch(paragraph)
        if not match:
            entries = re.findall(r"[^;]*\bcblas_[^;]*;", paragraph)
            out += map(cblas_entry, entries) if entries else [paragraph]
            continue
        lines, code = lines_of(match[1]), match[2]
        heading = HEADING.fullmatch(lines[0].strip())
        if heading:
            if sections:
                out.append("/** @} */")
            sections += 1
            out.append(f"/** @defgroup {page}-{sections:02} {heading[1]}\n{preformatted(lines[1:])}\n@{{ */")
        elif code.startswith("#define"):
            out.append(f"/** {preformatted(lines)} */\n{code}")
        elif code.startswith("#"):
            out += [f"/** @file\n{preformatted(lines)} */" if not sections and not out else match[1], code]
        else:
            out += [f"/** {preformatted(lines)} */\n{one}" for one in re.findall(r".*?;", code, re.S)]
    return "\n\n".join(out).replace("#ifdef __cplusplus\n}\n#endif", "/** @} */\n#ifdef __cplusplus\n}\n#endif")


def anchor(page, title):
    """A heading's id: as code hosts form it, behind the page's name, for ids of all pages share one space."""
    return page + "-" + re.sub(r"[^\w -]", "", title.strip().lower()).replace(" ", "-")


def guide(text, page):
    def link(match):
        path, _, fragment = match[2].partition("#")
        if fragment and not path.startswith("http"):
            return f"[{match[1]}](@ref {anchor(Path(path).stem or page, fragment)})"
        local = path.endswith((".md", ".svg")) or "://" in path
        return match[0] if local else match[1]

    seen = Counter()

    def heading(match):
        slug = anchor(page, match[1])
        seen[slug] += 1
        number = f"-{seen[slug] - 1}" if seen[slug] > 1 else ""  # a second "C" is "c-1", as on code hosts
        return f"{match[0]} {{#{slug}{number}}}"

    prose = re.split(r"(^```.*?^```$)", text, flags=re.M | re.S)  # code blocks, at odd places, stay as they are
    prose[::2] = [re.sub(r"^##+ (.*)$", heading, LINK.sub(link, part), flags=re.M) for part in prose[::2]]
    return "".join(prose)


def main():
    path = Path(sys.argv[1])
    text = path.read_text(encoding="utf-8")
    sys.stdout.write(header(text, path.stem) if path.suffix == ".h" else guide(text, path.stem))


main()
