"""Plain comments as Doxygen's markup: paragraphs, tables, a summary. The text itself stays as it is."""
import re
from functools import cache
from itertools import groupby
from pathlib import Path

CELL = re.compile(r"\S+(?: \S+)*")  # two blanks part the cells of a table
TERM = re.compile(r"[\w().+-]+|-?\d+(?:(?:, | to )-?\d+)+")
TOPIC = re.compile(r"(?:Methods?|Threads|Progress|Cost|Reports?|info above 0|Uses threads)\b")
SPECIAL = re.compile(r"[\\@#%*<>&$]|(?<!\w)_")
NAME_OR_GUIDE = re.compile(r'docs/([\w-]+)\.md|(?<!")\b[A-Za-z]\w+\b')


@cache
def routines():
    """The names that the reference knows."""
    declared = re.compile(r"^(?:\w+ )+(\w+)\(", re.M)
    files = ("include/nxl.h", "include/nxl_cblas.h")
    return frozenset(name for file in files for name in declared.findall(Path(file).read_text(encoding="utf-8")))


def markup(text, own=()):
    """One paragraph: characters that mean something to Doxygen are escaped, other routines and guides are links."""
    html = {"<": "&lt;", ">": "&gt;", "&": "&amp;"}

    def escaped(plain):
        return SPECIAL.sub(lambda match: html.get(match[0], "\\" + match[0]), plain)

    out, end = [], 0
    for match in NAME_OR_GUIDE.finditer(text):
        target = match[1] or (match[0] if match[0] in routines() and match[0] not in own else None)
        if target:
            out += [escaped(text[end:match.start()]), f'@ref {target} "{match[0]}"']
            end = match.end()
    return "".join(out) + escaped(text[end:])


def table(lines):
    """Rows [term, text], or [None, text] for lines of their own, of an indented block. Several rows may stand on one
    line; a line that begins where the text of a row above began goes on with it."""
    rows, row_at = [], {}  # row_at: the column where a text begins -> its row
    for line in lines:
        cells, row = list(CELL.finditer(line)), None
        for i, cell in enumerate(cells):
            text, column, is_last = cell[0], cell.start(), i + 1 == len(cells)
            if row and not row[1]:  # behind its term
                row[1], row_at[column] = text, row
            elif not is_last and (TERM.fullmatch(text) if row else column not in row_at):
                row = [text, ""]
                rows.append(row)
            elif row and row is not row_at.get(column):
                above = row_at.get(column)
                row = above or row
                row[1] += (" " if above else "; ") + text
            elif column in row_at and not (row_at[column][0] is None and row_at[column][1].endswith((".", ":"))):
                row = row_at[column]
                row[1] += " " + text
            else:
                row = row_at[column] = [None, text]
                rows.append(row)
    return rows


def by_number(rows):
    """Rows that all begin with a number stand in its order, negative ones last: tables of two columns are not written
    in the order in which they are read."""
    numbers = [re.match(r"(-?)(\d+)", term) for term, _ in rows]
    if not all(numbers):
        return rows
    order = [(number[1], int(number[2])) for number in numbers]
    return [row for _, row in sorted(zip(order, rows), key=lambda pair: pair[0])]


def blocks(lines):
    """Paragraphs (False, lines) and indented blocks (True, lines)."""
    out = []
    for line in lines:
        indented = line.startswith(" ")
        if not line:
            out.append((None, []))
        elif not out or out[-1][0] != indented or (not indented and TOPIC.match(line)):
            out.append((indented, [line]))
        else:
            out[-1][1].append(line)
    return [block for block in out if block[1]]


def html_tables(rows, own):
    out = []
    for is_note, group in groupby(rows, key=lambda row: row[0] is None):
        if is_note:
            out += [markup(text, own) for _, text in group]
            continue
        cells = ((markup(term, own), markup(text, own)) for term, text in by_number(list(group)))
        lines = (f"<tr><td>{term}</td><td>{text}</td></tr>" for term, text in cells)
        out.append("\n".join(['<table class="terms">', *lines, "</table>"]))
    return "\n\n".join(out)


def lead(text):
    """The summary of a page, which stands in the list of guides and above the page's text."""
    return f'<span class="lead">{text[0].upper()}{text[1:]}</span>'


def documentation(lines, own=()):
    """A comment's lines as summary and details; own names the routines that it is about."""
    out = []
    for indented, block in blocks(lines):
        if indented:
            out.append(html_tables(table(block), own))
        elif not out:
            summary, _, rest = re.sub(r"\. ", ".\0", " ".join(block), count=1).partition("\0")
            out += [f"@brief {markup(summary, own)}"] + ([markup(rest, own)] if rest else [])
        else:
            out.append(markup(" ".join(block), own))
    return "\n\n".join(out)
