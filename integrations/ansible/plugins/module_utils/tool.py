"""Runs `zupolicy` and reads the JSON that it prints."""

from __future__ import annotations

import json
import shutil
import subprocess
from typing import Any, Dict, List, NamedTuple, Optional, Sequence

SCHEMA = 1


class ToolError(Exception):
    """The tool is missing, has refused the whole run or ended it early, or prints what this collection cannot read."""

    def __init__(
        self, message: str, error: Optional[Dict[str, Any]] = None, documents: Sequence[Dict[str, Any]] = ()
    ) -> None:
        super().__init__(message)
        self.error = error
        #: What the run has reported before it failed.
        self.documents = list(documents)


class Run(NamedTuple):
    """A finished run: its exit code and its JSON documents."""

    code: int
    documents: List[Dict[str, Any]]


def describe(error: Dict[str, Any]) -> str:
    """A failure in one line: file:line:column: message [name, code]; hint."""
    place = ":".join(str(error[key]) for key in ("file", "line", "column") if error.get(key) is not None)
    name = f" [{error['name']}, 0x{error['code']}]" if error.get("name") and error.get("code") else ""
    hint = f"; {error['hint']}" if error.get("hint") else ""
    return f"{place}{': ' if place else ''}{error.get('message')}{name}{hint}"


def _documents(text: str) -> List[Dict[str, Any]]:
    """The documents that follow each other in a text. When one was cut off, only the last line counts."""
    decoder = json.JSONDecoder()
    documents = []
    position = 0
    text = text.strip()
    while position < len(text):
        try:
            document, position = decoder.raw_decode(text, position)
        except ValueError:
            # A run that fails in the middle of its report ends with the failure on a line of its own.
            rest = text[text.rfind("\n") + 1 :]
            return [] if rest == text else _documents(rest)
        documents.append(document)
        while position < len(text) and text[position].isspace():
            position += 1
    return documents


def read(code: int, output: str, errors: str) -> Run:
    """The documents of a run. Throws ToolError when there is none, or when the run as a whole has failed."""
    documents = _documents(output)
    if not all(isinstance(document, dict) and document.get("schema") == SCHEMA for document in documents):
        raise ToolError(f"zupolicy prints JSON of another schema than {SCHEMA}; this collection is too old for it")
    # A run without a difference prints nothing.
    if not documents and (code != 0 or output.strip()):
        raise ToolError(errors.strip() or f"zupolicy has ended with {code} and without a whole report")
    if documents and "error" in documents[-1]:
        error = documents[-1]["error"]
        raise ToolError(describe(error), error, documents[:-1])
    return Run(code, documents)


class Tool:
    """The program on this machine."""

    def __init__(self, executable: str) -> None:
        found = shutil.which(executable)
        if found is None:
            raise ToolError(f"{executable} is no program on this machine; install zupolicy, or name it with executable")
        self._path = found

    def run(self, *arguments: str, text: str = "") -> Run:
        """Runs it with this text as its standard input."""
        finished = subprocess.run(
            [self._path, *arguments],
            input=text,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            encoding="utf-8",
            errors="replace",
            check=False,
        )
        return read(finished.returncode, finished.stdout, finished.stderr)

    def differences(self, before: str, after: str) -> List[Dict[str, Any]]:
        return self.run("diff", "--ignore-versions", "--json", "--", before, after).documents


def pattern_options(patterns: Sequence[str]) -> List[str]:
    """The options that make the tool itself hide values."""
    return [f"--redact={pattern}" for pattern in patterns]
