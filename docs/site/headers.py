"""C headers explain their routines in plain comments: a heading comment opens a section, any other comment belongs to
all declarations below it up to the next blank line."""
import re

import prose

COMMENT = re.compile(r"(/\*.*?\*/)\n?(.*)", re.S)
HEADING = re.compile(r"==== (.*?) =+")
DECLARED = re.compile(r"(\w+)\(")


def lines_of(comment):
    """The text of a comment without its stars."""
    inside = comment.removeprefix("/*").removesuffix("*/")
    lines = [re.sub(r"^ \* ?", "", line).strip("\n").rstrip() for line in inside.split("\n")]
    return [lines[0].lstrip(), *lines[1:]]


def name_of(declaration):
    if "typedef" in declaration:
        return next(filter(None, re.search(r"(\w+)\)\(|(\w+);", declaration).groups()))
    return DECLARED.search(declaration)[1]


def entry(declaration, lines, names):
    """One declaration under its comment. Twins of another routine have that one's summary, too."""
    name = name_of(declaration)
    about = prose.documentation(lines, names)
    if lines and lines[0].startswith("Upper-case alias"):
        about = f'@brief The routine @ref {name.lower()} "{name.lower()}" under its upper-case name.'
    twin = re.sub(r"^cblas_|_sub$", "", name)
    if twin != name and twin in prose.routines():
        details = re.sub(r"\A@brief ", "", about)
        about = f'@copybrief {twin}\n\nAs @ref {twin} "{twin}", by the conventions of nxl_cblas.h. {details}'
    return f"/** {about} */\n{declaration.strip()}"


def header(text, _):
    text = re.sub(r"^#define NXL_\w*(NOEXCEPT|LENGTH|ENUM).*\n", "", text, flags=re.M)  # as the Doxyfile expands them
    out, sections = [], 0
    for paragraph in re.split(r"\n{2,}", text):
        match = COMMENT.fullmatch(paragraph)
        comment, code = match.groups() if match else (None, paragraph)
        lines = lines_of(comment) if comment else []
        heading = lines and HEADING.fullmatch(lines[0])
        if heading:
            slug = re.sub(r"\W+", "-", heading[1].lower())
            out.append("/** @} */" if sections else "")
            out.append(f"/** @defgroup {slug} {heading[1]}\n{prose.documentation(lines[1:])}\n@{{ */")
            sections += 1
        elif code.startswith("#define") and comment:
            out.append(f"/** {prose.documentation(lines)} */\n{code}")
        elif comment and code.startswith("#"):
            out += [f"/** @file\n{prose.documentation(lines)} */" if not out else comment, code]
        elif comment or "cblas_" in code:
            declarations = re.findall(r"[^;]*;[^\n]*\n?", code)
            names = [name_of(one) for one in declarations]
            out += [entry(one, lines, names) for one in declarations]
        else:
            out.append(paragraph)
    return "\n\n".join(out).replace("#ifdef __cplusplus\n}\n#endif", "/** @} */\n#ifdef __cplusplus\n}\n#endif")
