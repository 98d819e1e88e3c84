#!/usr/bin/env python3
"""Makes include/nxl.f90, the Fortran interfaces, from the prototypes and comments of include/nxl.h.

fortran_module.py           writes the file
fortran_module.py --check   fails, and says where, when the file is not what would be written
"""
import difflib
import re
import sys
import textwrap
from pathlib import Path

INCLUDE = Path(__file__).resolve().parent.parent / "include"
WIDTH = 120

HEAD = """\
! nxl: explicit Fortran interfaces, the twin of nxl.h, which explains every routine. Made by tools/fortran_module.py.
! Compile this file with your program and say "use nxl". Names are bound as the library exports them; Fortran does not
! tell upper from lower case, so an upper-case alias has no interface of its own here where the lower-case name exists.
!
! Comments are the first sentences of those in nxl.h, where x(i) counts from 1 and x[i] from 0. Hidden lengths of
! characters are not looked at and left out.
module nxl
    use, intrinsic :: iso_c_binding, only: c_char, c_double, c_double_complex, c_float, &
        c_float_complex, c_funptr, c_int, c_int8_t, c_int32_t, c_ptr
    implicit none (type, external)
    public

    interface
"""
TAIL = """
    end interface

end module nxl
"""

TYPES = {
    "char": "character(kind=c_char)",
    "int": "integer(c_int)",
    "int32_t": "integer(c_int32_t)",
    "uint32_t": "integer(c_int32_t)",
    "uint8_t": "integer(c_int8_t)",
    "double": "real(c_double)",
    "float": "real(c_float)",
    "nxl_z": "complex(c_double_complex)",
    "nxl_c": "complex(c_float_complex)",
    "void": "type(*)",
    "void*": "type(c_ptr)",
    "nxl_function": "type(c_funptr)",
    "nxl_progress_callback": "type(c_funptr)",
}

# What C does not tell: behind which pointers one element stands, and what is written without being read. A number is an
# array, a letter an option and an integer one element unless it is named here; an array before its ld... is a matrix.
SCALARS = set("abstol alpha anorm beta cs1 fnu offset out p rcond res rt1 rt2 sn1 step tol value vl vu z".split())
ARRAYS = set("ia iblock iext ifail indx ipar ipiv isplit isuppz iwork iy ja jbilut jpvt ibilut ma mask my perm srname "
             "stage".split())
# The same and more for some: routines (a pattern): arguments: "1" for one element, else its shape; with "inout" where one
# element is read as well, or stays as it was in some cases; with "target" where the library keeps the address.
SPECIAL = {
    r"[dz]axpyi": {"a": "1"},
    r"PARDISO": {"iparam": "64"},
    r"[dz](st|pt|sy|he|sb|hb)e.*": {"z": "ldz,*"},
    r"[dz]hseqr": {"z": "ldz,*"},
    r"[dz]gebal": {"ilo": "1 inout", "ihi": "1 inout"},
    r"[dz]tr(evc|sna)": {"select": "*", "m": "1 inout", "vl": "ldvl,*"},
    r"[dz]geev": {"vl": "ldvl,*"},
    r"[dz]trsyl": {"scale": "1 inout"},
    r"ZLAEV2": {"a": "1", "b": "1", "c": "1"},
    r"z?drot|ZROT": {"c": "1", "s": "1"},
    r"[dz]rotg": {"a": "1 inout", "b": "1 inout", "c": "1", "s": "1"},
    r"drotm": {"param": "5"},
    r"drotmg": {"d1": "1 inout", "d2": "1 inout", "x1": "1 inout", "y1": "1", "param": "5"},
    r"D(CG|CGMRHS|FGMRES)|.*_solve": {"RCI_request": "1 inout", "RCI_Request": "1 inout"},
    r"DCGMRHS_GET": {"itercount": "*"},
    r"djacobi": {"eps": "1"},
    r"djacobi_solve": {"f2": "* in"},
    r"djacobi_init": {"handle": "1 inout", "x": "* target", "fjac": "* target", "eps": "1"},
    r"dtrnlsp(bc)?_init": {"handle": "1 inout", "x": "* target", "lw": "* target", "up": "* target", "eps": "6 target",
                           "rs": "1"},
    r"dtrnlsp(bc)?_get": {"iter": "1 inout", "st_cr": "1 inout", "r1": "1 inout", "r2": "1 inout"},
    r".*_(solve|get|delete)": {"handle": "1 in"},
    r"REMEZ": {"alpha": "*", "p": "*"},
    r"dgeqp3": {"jpvt": "* inout"},
    r"C[AB]IRY": {"ai": "1 inout", "bi": "1 inout"},
}

# What a Fortran program has to know beyond the sentence from nxl.h.
NOTES = {
    "set_NXL_Progress_Callback": "callback: c_funloc of a function like NXL_PROGRESS, or c_null_funptr.",
    "djacobi_init": "The addresses of x and fjac are kept: give them the target attribute.",
    "djacobi": "fcn: c_funloc of a bind(c) subroutine fcn(m, n, x, f).",
    "dtrnlsp_init": "The addresses of x and eps are kept: give them the target attribute.",
    "dtrnlspbc_init": "The addresses of x, lw, up and eps are kept: give them the target attribute.",
}

PROTOTYPE = re.compile(r"^([\w ]+?)\s*\b(\w+)\(([^;{}]*)\) NXL_NOEXCEPT;", re.M | re.S)
PARAMETER = re.compile(r"(const )?(\w+)\s*(\**)\s*(\w+)")
HEADING = re.compile(r"==== (.*?) =+")


def parameters(text):
    """[(is const, type, stars, name)], without hidden lengths."""
    text = re.sub(r",?\s*NXL_LENGTH\(\w+\)", "", text)
    if text.strip() in ("", "void"):
        return []
    return [PARAMETER.fullmatch(one.strip()).groups() for one in text.split(",")]


def special(routine, argument):
    for pattern, arguments in SPECIAL.items():
        if argument in arguments and re.fullmatch(pattern, routine):
            return arguments[argument].split()
    return []


def shape_of(kind, name, behind, given):
    """() for one element, else the array's bounds; `behind` is the argument behind this one."""
    if given:
        return "" if given[0] == "1" else f"({given[0]})"
    if kind in ("double", "nxl_z", "nxl_c", "void") and name not in SCALARS:
        return f"({behind}, *)" if behind == f"ld{name}" else "(*)"
    return "(*)" if name in ARRAYS else ""


def attributes_of(is_const, shape, given):
    words = [word for word in given[1:] if word.startswith("in")]
    intent = "in" if is_const else words[0] if words else "inout" if shape else "out"
    return f"intent({intent})" + ", target" * ("target" in given)


def arguments(routine, text):
    """[(type with attributes, name, name with shape)] of a prototype's arguments."""
    found = parameters(text)
    out = []
    for index, (const, kind, stars, name) in enumerate(found):
        if name == "result":  # has a meaning in Fortran
            name = "res"
        behind = found[index + 1][3] if index + 1 < len(found) else ""
        if kind == "void" and stars == "**":  # the address of a handle
            kind, stars = "void*", "*"
        if stars:
            given = special(routine, name)
            shape = shape_of(kind, name, behind, given)
            out.append((f"{TYPES[kind]}, {attributes_of(const, shape, given)}", name, name + shape))
        else:
            out.append((f"{TYPES[kind]}, value", name, name))
    return out


def folded(line, indent):
    """Cut at blanks behind commas where it is too long for a line."""
    lines = textwrap.wrap(line, WIDTH - len(indent) - 2, break_long_words=False, break_on_hyphens=False,
                          subsequent_indent="    ")
    return [indent + one for one in " &\n".join(lines).split("\n")]


def interface(kind, name, text):
    given = arguments(name, text)
    result = None if kind == "void" else TYPES[kind]
    unit = "function" if result else "subroutine"
    declared = {}  # what is of one type stands on one line
    for head, _, shown in given:
        declared.setdefault(head, []).append(shown)
    lines = [f"{head} :: {', '.join(shown)}" for head, shown in declared.items()]
    lines += [f"{result} :: {name}"] if result else []
    kinds = sorted(set(re.findall(r"\bc_\w+", " ".join(line.split(" :: ")[0] for line in lines))))
    lines = ([f"import :: {', '.join(kinds)}"] if kinds else []) + lines
    call = f'{unit} {name}({", ".join(argument for _, argument, _ in given)}) bind(c, name="{name}")'
    return [*folded(call, " " * 8), *(one for line in lines for one in folded(line, " " * 12)), f"        end {unit}", ""]


def first_sentence(lines):
    """The summary of a comment; the rest is for who reads nxl.h."""
    text = " ".join(" ".join(lines).split("  ")[0].split())
    return re.split(r"(?<=\.) ", text)[0].rstrip(":") if text else ""


def comment_lines(text):
    inside = text.removeprefix("/*").removesuffix("*/")
    renamed = inside.replace("*result", "res")
    return [line.strip() for line in re.sub(r"^ \*", "", renamed, flags=re.M).split("\n")]


def commented(text):
    return textwrap.wrap(text, WIDTH, initial_indent=" " * 8 + "! ", subsequent_indent=" " * 8 + "! ",
                         break_long_words=False, break_on_hyphens=False) if text else []


def module(header):
    out, heading, seen = [], None, set()
    for paragraph in re.split(r"\n{2,}", header):
        comment, code = re.fullmatch(r"(/\*.*?\*/)?\n?(.*)", paragraph, re.S).groups()
        lines = comment_lines(comment) if comment else []
        if lines and (match := HEADING.fullmatch(lines[0])):
            heading = match[1].replace(": ", ", ")  # a colon would end the title on the documentation's page
        prototypes = [one for one in PROTOTYPE.findall(code) if one[1].lower() not in seen]
        seen |= {name.lower() for _, name, _ in prototypes}
        if prototypes and heading:
            out += [f"        ! ---- {heading} ----", ""]
            heading = None
        if prototypes:
            notes = [NOTES[name] for _, name, _ in prototypes if name in NOTES]
            out += commented(" ".join([first_sentence(lines), *notes]))
        for prototype in prototypes:
            out += interface(*prototype)
    return HEAD + "\n".join(out) + TAIL


def main():
    made = module((INCLUDE / "nxl.h").read_text(encoding="utf-8"))
    target = INCLUDE / "nxl.f90"
    if sys.argv[1:] != ["--check"]:
        target.write_text(made, encoding="utf-8")
        return 0
    there = target.read_text(encoding="utf-8")
    difference = difflib.unified_diff(there.splitlines(), made.splitlines(), str(target), "made of nxl.h", lineterm="")
    shown = "\n".join(difference)
    print(shown and f"{shown}\nRun tools/fortran_module.py and commit what it writes.")
    return int(made != there)


sys.exit(main())
