"""The examples in the documents run and print what the documents say."""

from __future__ import annotations

import ast
import pathlib
import re
import textwrap
from typing import List, NamedTuple

import pytest

import zupolicy
from conftest import ROOT, RunScript

_BLOCK = re.compile(r"^```python\n(.*?)^```\n(?:\n```text\n(.*?)^```\n)?", re.MULTILINE | re.DOTALL)


class Example(NamedTuple):
    name: str
    code: str
    output: str


def _examples(document: str) -> List[Example]:
    text = (ROOT / document).read_text(encoding="utf-8")
    return [
        Example(f"{document}:{text.count(chr(10), 0, found.start()) + 1}", found.group(1), found.group(2) or "")
        for found in _BLOCK.finditer(text)
    ]


GUIDE = _examples("docs/clients/python.md")


def test_no_block_of_the_guide_is_overlooked() -> None:
    text = (ROOT / "docs" / "clients" / "python.md").read_text(encoding="utf-8")
    assert len(GUIDE) == text.count("```python") == 6
    assert all(example.output for example in GUIDE)


@pytest.mark.parametrize("example", GUIDE, ids=lambda example: example.name)
def test_an_example_prints_what_the_guide_says(
    example: Example, policy_path: pathlib.Path, run_script: RunScript, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.chdir(policy_path.parent)
    assert run_script(example.code) == example.output


def test_the_first_example_is_the_same_everywhere() -> None:
    assert zupolicy.__doc__ is not None
    in_docstring = re.search(r"^    with .*?(?=^\S)", zupolicy.__doc__, re.MULTILINE | re.DOTALL)
    assert in_docstring is not None
    for readme in ("README.md", "python/README.md"):
        (in_readme,) = _examples(readme)
        assert in_readme.code == GUIDE[0].code
    assert textwrap.dedent(in_docstring.group()).strip() == GUIDE[0].code.partition("\n\n")[2].strip()


def test_the_example_for_windows_is_python() -> None:
    (example,) = _examples("docs/windows.md")
    assert "ZuPolicyManager.PolicyFile.1" in example.code
    ast.parse(example.code)


def test_every_exception_is_in_the_guide() -> None:
    text = (ROOT / "docs" / "clients" / "python.md").read_text(encoding="utf-8")
    for name in zupolicy.__all__:
        thing = getattr(zupolicy, name)
        if isinstance(thing, type) and issubclass(thing, zupolicy.Error) and thing is not zupolicy.Error:
            assert f"| `{name}` |" in text, name
