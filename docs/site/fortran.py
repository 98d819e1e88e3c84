"""The Fortran module as a page: its comment, then for each section of the interface a table of calls."""
import re

import prose

PROCEDURE = re.compile(r"(subroutine|function) (\w+\(.*?\)) bind")


def row(kind, call, about):
    name, arguments = call.split("(", 1)
    target = next(one for one in (name, name.lower(), name.upper()) if one in prose.routines())
    shown = f'@ref {target} "{name}"({arguments}'
    return f"<tr><td>{'call ' * (kind == 'subroutine')}{shown}</td><td>{prose.markup(about, (name,))}</td></tr>"


def module(text, _):
    comment, body = re.sub(r"&\n\s*", "", text).split("\nmodule ", 1)
    paragraphs = re.sub(r"^! ?", "", comment, flags=re.M).split("\n\n")
    about = "every interface, with the routine that it leads to"
    out = ["# The Fortran module: all calls {#fortran-module}\n", f"@brief {prose.lead(about)}\n"]
    out += [prose.markup(one.replace("\n", " ")) + "\n" for one in paragraphs]
    about, is_open, is_new = "", False, True
    for line in (line.strip() for line in body.split("\n")):
        heading = re.fullmatch(r"! ---- (.*?)(?:[:;] (.*))? ----", line)
        procedure = PROCEDURE.match(line)
        if heading:
            out += ["</table>"] * is_open + [f"\n## {heading[1]}\n", prose.markup(heading[2] or "") + "\n"]
            is_open = False
        elif procedure:
            out += [] if is_open else ['<table class="calls">']
            out.append(row(procedure[1], procedure[2], about))
            is_open = is_new = True  # a comment serves all procedures up to the next one
        elif not line and not is_new:  # a comment on the whole section
            out.append(prose.markup(about) + "\n")
            is_new = True
        elif line.startswith("! "):
            about, is_new = (line[2:] if is_new else f"{about} {line[2:]}"), False
    return "\n".join(out + ["</table>"])
