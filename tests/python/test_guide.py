"""The programs of the guide run."""

import pathlib
import re

GUIDE = pathlib.Path(__file__).parents[2] / "docs" / "python.md"


def test_programs_of_the_guide_run(capsys):
    programs = re.findall(r"```python\n(.*?)```", GUIDE.read_text(encoding="utf-8"), flags=re.DOTALL)
    for program in programs:
        exec(compile(program, str(GUIDE), "exec"), {})
    out = capsys.readouterr().out
    assert out.startswith("[1. 1. 1.]") and "[2.  0.8 0.5]" in out
