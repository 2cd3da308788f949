"""What `zupolicy check --json` reports, one line for each finding."""

from __future__ import annotations

from typing import Any, Dict, Iterator, List

from ansible_collections.zupolicy.policy.plugins.module_utils.tool import describe


def _place(file: str, finding: Dict[str, Any]) -> str:
    return ":".join(str(part) for part in (file, finding.get("line"), finding.get("column")) if part is not None)


def _findings(file: Dict[str, Any]) -> Iterator[str]:
    name = file["file"]
    if "message" in file:
        yield f"{_place(name, file)}: {file['message']}"
    elif "error" in file:
        yield describe(file["error"])
    for problem in file.get("problems") or []:
        severity = "warning: " if problem.get("severity") == "warning" else ""
        yield f"{_place(name, problem)}: {severity}{problem['path']}: {problem['message']}"
    for warning in file.get("warnings") or []:
        yield f"{_place(name, warning)}: warning: {warning['message']}"


def findings_of(files: List[Dict[str, Any]]) -> List[str]:
    return [line for file in files for line in _findings(file)]
