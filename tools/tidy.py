#!/usr/bin/env python3
"""Runs clang-tidy over the sources of a compilation database, each once, and fails with its findings.

tidy.py TREE [FILE...]   TREE: the build folder that holds compile_commands.json; FILE: these sources alone

A source that was clean is not read again until its text, that of its headers, the checks or clang-tidy change: a mark of
it is kept in $XDG_CACHE_HOME/nxl-tidy, or ~/.cache/nxl-tidy.
"""
import hashlib
import json
import os
import shlex
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

SOURCES = Path(__file__).resolve().parent.parent
TIDY = "clang-tidy-19"
MARKS = Path(os.environ.get("XDG_CACHE_HOME") or Path.home() / ".cache") / "nxl-tidy"


def commands(tree):
    """A command per source: the last one, which of a kernel is its widest target."""
    entries = json.loads((tree / "compile_commands.json").read_text())
    return {e["file"]: e for e in entries if e["file"].endswith((".c", ".cpp"))}


def preprocessed(entry):
    words = [w for w in shlex.split(entry["command"]) if not w.endswith("ccache")]
    output = words.index("-o")
    words[output:output + 2] = []
    text = subprocess.run(words + ["-E"], cwd=entry["directory"], capture_output=True, check=True).stdout
    return text.replace(str(SOURCES).encode(), b"")


def mark_of(entry, rules):
    return MARKS / hashlib.sha256(rules + preprocessed(entry)).hexdigest()


def check(entry, database, rules):
    """The findings, or None."""
    mark = mark_of(entry, rules)
    if mark.exists():
        return None
    run = subprocess.run([TIDY, "--quiet", "-p", database, entry["file"]], capture_output=True, text=True)
    if run.returncode != 0:
        return run.stdout + run.stderr
    mark.touch()
    return None


def main():
    tree = Path(sys.argv[1]).resolve()
    entries = commands(tree)
    if wanted := {str(Path(name).resolve()) for name in sys.argv[2:]}:
        if unknown := wanted - entries.keys():
            sys.exit(f"tidy.py: not in the compilation database: {' '.join(sorted(unknown))}")
        entries = {file: entries[file] for file in wanted}
    database = SOURCES / "build" / "lint"
    database.mkdir(parents=True, exist_ok=True)
    (database / "compile_commands.json").write_text(json.dumps(list(entries.values())))
    MARKS.mkdir(parents=True, exist_ok=True)
    configurations = [SOURCES / ".clang-tidy", *sorted(SOURCES.glob("*/.clang-tidy"))]
    rules = b"".join(file.read_bytes() for file in configurations) + subprocess.check_output([TIDY, "--version"])
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        findings = [f for f in pool.map(lambda e: check(e, database, rules), entries.values()) if f is not None]
    print("\n".join(findings) + f"clang-tidy: findings in {len(findings)} of {len(entries)} files")
    sys.exit(1 if findings else 0)


if __name__ == "__main__":
    main()
