"""Each module as it runs on a managed machine, with the built tool."""

from __future__ import annotations

import fcntl
import json
import pathlib
import runpy
import struct
import sys
from typing import Any, Dict, List

import pytest

from conftest import ROOT, TOOL, RunModule, tool

SECRET = "swordfish-4711"


def general(**values: Any) -> List[Dict[str, Any]]:
    return [{"software_id": "PRODUCTA1000", "sections": [{"name": "General", "values": values}]}]


def interval(path: pathlib.Path) -> str:
    return tool("get", path, "PRODUCTA1000", "General", "ScanInterval")


def test_a_change_is_made_once(run_module: RunModule, policy_path: pathlib.Path) -> None:
    first = run_module("policy_file", path=str(policy_path), policies=general(ScanInterval=15))
    assert (first.code, first.result["changed"]) == (0, True)
    assert first.result["files"] == [{"file": str(policy_path), "result": "changed", "edits": 1, "backup": None}]
    assert interval(policy_path) == "15"
    assert "diff" not in first.result
    written = policy_path.stat()
    second = run_module("policy_file", path=str(policy_path), policies=general(ScanInterval=15))
    assert second.result["changed"] is False and second.result["files"][0]["result"] == "unchanged"
    assert policy_path.stat() == written


STATE: Dict[str, Any] = {
    "policies": [
        {
            "software_id": "PRODUCTA1000",
            "sections": [
                {
                    "name": "General",
                    "values": {"ScanInterval": "15"},
                    "settings": [{"name": "GreetingJa", "state": "absent"}],
                },
                {"name": "Notify", "state": "absent"},
                {"name": "Empty"},
            ],
        },
        {"software_id": "PRODUCTB2000", "state": "absent"},
        {"software_id": "NEW", "sections": [{"name": "S", "values": {"a": "1"}}]},
    ],
    "tasks": [
        {
            "software_id": "PRODUCTA1000",
            "task_id": "{task-1}",
            "display_name": "Nightly",
            "type": "Full",
            "platforms": "LNX",
            "priority": 9,
            "creator": "OPS",
            "sections": [{"name": "Schedule", "values": {"Hour": 4}}],
        },
        {"software_id": "PRODUCTA1000", "task_id": "{task-2}", "state": "absent"},
        {"software_id": "NEW", "task_id": "{task-1}", "priority": -1},
    ],
}

# What this state makes of the sample file, in the order of the file.
DIFFERENCE = """\
~ policy PRODUCTA1000 General/ScanInterval: "60" -> "15"
- policy PRODUCTA1000 General/GreetingJa: "ようこそ"
- policy PRODUCTA1000 section Notify
+ policy PRODUCTA1000 section Empty
- policy PRODUCTB2000
+ policy NEW (1 section)
  + policy NEW S/a: "1"
~ task PRODUCTA1000 {task-1} displayName: "Nächtliche Prüfung" -> "Nightly"
~ task PRODUCTA1000 {task-1} type: "Scan" -> "Full"
~ task PRODUCTA1000 {task-1} platforms: "WIN|LNX" -> "LNX"
~ task PRODUCTA1000 {task-1} priority: "5" -> "9"
~ task PRODUCTA1000 {task-1} creator: "SITEADMIN" -> "OPS"
~ task PRODUCTA1000 {task-1} Schedule/Hour: "2" -> "4"
- task PRODUCTA1000 {task-2}
+ task NEW {task-1}
"""


def test_every_level_gets_its_state_and_a_check_predicts_the_run(
    run_module: RunModule, policy_path: pathlib.Path
) -> None:
    before = (policy_path.read_bytes(), policy_path.stat(), sorted(policy_path.parent.glob("policy*")))
    predicted = run_module("policy_file", check=True, diff=True, path=str(policy_path), **STATE)
    assert (policy_path.read_bytes(), policy_path.stat(), sorted(policy_path.parent.glob("policy*"))) == before
    made = run_module("policy_file", diff=True, path=str(policy_path), **STATE)
    assert made.result["changed"] is predicted.result["changed"] is True
    assert made.result["diff"] == predicted.result["diff"] == [{"prepared": f"{policy_path}:\n{DIFFERENCE}"}]
    assert made.result["files"] == predicted.result["files"]
    assert not [path for path in (policy_path.parent / "remote").rglob("*") if path.is_file()]
    again = run_module("policy_file", diff=True, path=str(policy_path), **STATE)
    assert again.result["changed"] is False and again.result["diff"] == []


def test_the_files_are_changed_together_and_fail_alone(
    run_module: RunModule, tmp_path: pathlib.Path, policy_path: pathlib.Path
) -> None:
    broken = tmp_path / "broken.xml"
    broken.write_text("<PolicyFile>\n</PolicyRoot>\n")
    missing = tmp_path / "missing.xml"
    paths = [str(broken), str(policy_path), str(missing), str(policy_path)]
    outcome = run_module("policy_file", diff=True, paths=paths, policies=general(ScanInterval=15))
    assert outcome.code == 1 and outcome.result["failed"] is True and outcome.result["changed"] is True
    assert f"{broken}:2:3: " in outcome.result["msg"] and "[SyntaxError, 0xFFFFFBAE]" in outcome.result["msg"]
    assert f"{missing}: " in outcome.result["msg"] and "[FileNotFound, 0x80070002]" in outcome.result["msg"]
    assert [file["result"] for file in outcome.result["files"]] == ["failed", "changed", "failed"]
    assert [difference["prepared"].splitlines()[0] for difference in outcome.result["diff"]] == [f"{policy_path}:"]
    assert interval(policy_path) == "15"


@pytest.mark.parametrize(
    "backup, name",
    [(True, "policy.xml.bak"), ("yes", "policy.xml.bak"), (".old", "policy.xml.old"), (False, None), ("no", None)],
)
def test_a_backup_has_the_old_bytes(run_module: RunModule, policy_path: pathlib.Path, backup: Any, name: Any) -> None:
    old = policy_path.read_bytes()
    outcome = run_module("policy_file", path=str(policy_path), policies=general(ScanInterval=15), backup=backup)
    copies = [path for path in policy_path.parent.iterdir() if path.name.startswith("policy.xml.")]
    assert [path.name for path in copies] == ([name] if name else [])
    assert [path.read_bytes() for path in copies] == [old] * len(copies)
    assert outcome.result["files"][0]["backup"] == (str(copies[0]) if name else None)


def test_a_mistyped_id_is_found_without_creation(run_module: RunModule, policy_path: pathlib.Path) -> None:
    state = [{"software_id": "PRODUCTA1001", "sections": [{"name": "General", "values": {"a": "1"}}]}]
    old = policy_path.read_bytes()
    outcome = run_module("policy_file", path=str(policy_path), policies=state, create=False)
    assert outcome.code == 1 and policy_path.read_bytes() == old
    assert "PRODUCTA1001" in outcome.result["msg"] and "[PolicyNotFound, " in outcome.result["msg"]
    assert outcome.result["files"][0]["error"]["name"] == "PolicyNotFound"
    assert run_module("policy_file", path=str(policy_path), policies=state).result["changed"] is True


@pytest.mark.parametrize("check", [False, True])
def test_a_locked_file_fails_when_the_time_is_over(
    run_module: RunModule, policy_path: pathlib.Path, check: bool
) -> None:
    with open(policy_path, "r+b") as file:
        fcntl.fcntl(file, fcntl.F_OFD_SETLK, struct.pack("hhqqixxxx", fcntl.F_WRLCK, 0, 0, 0, 0))
        outcome = run_module(
            "policy_file", check, path=str(policy_path), policies=general(ScanInterval=15), lock_timeout=0
        )
    assert outcome.code == 1 and outcome.result["changed"] is False
    assert outcome.result["files"][0]["error"]["exit"] == 6
    assert str(policy_path) in outcome.result["msg"] and "Another process" in outcome.result["msg"]
    assert interval(policy_path) == "60"


def secret_state() -> List[Dict[str, Any]]:
    settings = [{"name": "Token", "value": SECRET + "-token", "no_log": True}]
    return [
        {
            "software_id": "PRODUCTB2000",
            "sections": [{"name": "Proxy", "values": {"Password": SECRET, "Host": "h"}, "settings": settings}],
        }
    ]


@pytest.mark.parametrize("check", [False, True])
def test_a_secret_is_in_nothing_that_is_returned(run_module: RunModule, policy_path: pathlib.Path, check: bool) -> None:
    outcome = run_module(
        "policy_file", check, True, path=str(policy_path), policies=secret_state(), redact=["Proxy/Pass*"]
    )
    assert outcome.result["changed"] is True and SECRET not in outcome.output
    assert '+ policy PRODUCTB2000 Proxy/Password: "***"' in outcome.result["diff"][0]["prepared"]
    assert '+ policy PRODUCTB2000 Proxy/Token: "***"' in outcome.result["diff"][0]["prepared"]
    assert outcome.result["invocation"]["module_args"]["policies"][0]["sections"][0]["values"]["Password"] == "***"
    # What is no secret is still shown.
    assert '+ policy PRODUCTB2000 Proxy/Host: "h"' in outcome.result["diff"][0]["prepared"]


@pytest.mark.parametrize(
    "wrong",
    [
        {"unknown": SECRET},
        {"policies": SECRET},
        {"policies": [{"sections": [{"name": "Proxy", "values": {"Password": SECRET}}]}]},
        {"policies": [{"software_id": "P", "sections": [{"name": "Proxy", "values": SECRET}]}]},
        {
            "policies": [
                {
                    "software_id": "P",
                    "sections": [{"name": "Proxy", "settings": [{"name": "Password", "vaule": SECRET}]}],
                }
            ]
        },
        {"policies": [{"software_id": "P", "sections": [{"name": "Proxy", "values": {"Password": SECRET + "\x01"}}]}]},
        {"tasks": [{"software_id": "P", "task_id": "t", "priority": SECRET}], "redact": ["priority"]},
    ],
)
def test_arguments_that_are_refused_show_no_secret(
    run_module: RunModule, policy_path: pathlib.Path, wrong: Dict[str, Any]
) -> None:
    outcome = run_module("policy_file", **{"path": str(policy_path), "redact": ["*Password*"], **wrong})
    assert outcome.code == 1 and outcome.result["msg"]
    assert SECRET not in outcome.output


def failure(**members: Any) -> Dict[str, Any]:
    """A failure as the tool reports it."""
    nothing = dict.fromkeys(("code", "name", "file", "line", "column", "message", "hint"))
    return {"schema": 1, "error": {**nothing, "exit": 4, **members}}


def test_a_program_that_quotes_a_secret_does_not_get_it_out(
    run_module: RunModule, policy_path: pathlib.Path, tmp_path: pathlib.Path
) -> None:
    quoting = tmp_path / "quoting"
    for printed in (failure(message=f"not {SECRET}", hint=SECRET), None):
        output = f"echo '{json.dumps(printed)}'" if printed else f"echo '{SECRET}' >&2"
        quoting.write_text(f"#!/bin/sh\ncat > /dev/null\n{output}\nexit 4\n")
        quoting.chmod(0o755)
        outcome = run_module(
            "policy_file", path=str(policy_path), policies=secret_state(), redact=["Password"], executable=str(quoting)
        )
        assert outcome.code == 1 and "***" in outcome.result["msg"]
        assert SECRET not in outcome.output


def test_a_run_that_is_ended_reports_what_it_has_done(
    run_module: RunModule, policy_path: pathlib.Path, tmp_path: pathlib.Path
) -> None:
    ended = tmp_path / "ended"
    files = [
        {"file": "a", "result": "changed", "edits": 1, "backup": None},
        {"file": "b", "result": "not done", "edits": 0, "backup": None},
    ]
    report = json.dumps({"schema": 1, "dryRun": False, "files": files, "summary": {}}, indent=2)
    ended.write_text(
        f"#!/bin/sh\ncat > /dev/null\necho '{report}'\necho '{json.dumps(failure(message='interrupted'))}'\nexit 4\n"
    )
    ended.chmod(0o755)
    outcome = run_module("policy_file", paths=["a", "b"], policies=general(ScanInterval=15), executable=str(ended))
    assert outcome.code == 1 and outcome.result["msg"] == "interrupted"
    assert outcome.result["changed"] is True and outcome.result["files"] == files


@pytest.mark.parametrize("path", ["/dev/zero", "/", "/dev/null"])
def test_what_is_no_file_fails_at_once(run_module: RunModule, path: str) -> None:
    outcome = run_module("policy_file", diff=True, path=path, policies=general(ScanInterval=15))
    assert outcome.code == 1 and outcome.result["msg"].startswith(f"{path}: ")


RULES = {
    "properties": {
        "policies": {
            "properties": {
                "PRODUCTA1000": {
                    "properties": {
                        "General": {"properties": {"ScanInterval": {"x-maximum": 20}}},
                        "Notify": {"properties": {"Recipients": {"const": "nobody"}}},
                    }
                }
            }
        }
    }
}


def test_a_check_reports_broken_rules_without_secrets(
    run_module: RunModule, policy_path: pathlib.Path, tmp_path: pathlib.Path
) -> None:
    rules = tmp_path / "rules.json"
    rules.write_text(json.dumps(RULES))
    outcome = run_module("policy_check", path=str(policy_path), rules=str(rules), redact=["Recipients"])
    assert outcome.code == 1 and len(outcome.result["findings"]) == 2
    for finding in outcome.result["findings"]:
        assert finding.startswith(f"{policy_path}:") and "policy PRODUCTA1000 " in finding
    assert '"60"' in outcome.result["msg"] and "ops@example.org" not in outcome.output
    fixed = run_module(
        "policy_file",
        path=str(policy_path),
        policies=[
            {
                "software_id": "PRODUCTA1000",
                "sections": [
                    {"name": "General", "values": {"ScanInterval": 20}},
                    {"name": "Notify", "values": {"Recipients": "nobody"}},
                ],
            }
        ],
    )
    assert fixed.code == 0 and run_module("policy_check", path=str(policy_path), rules=str(rules)).code == 0


def test_rules_that_are_wrong_fail_with_their_place(
    run_module: RunModule, policy_path: pathlib.Path, tmp_path: pathlib.Path
) -> None:
    rules = tmp_path / "rules.json"
    rules.write_text('{"propertys": {}}')
    outcome = run_module("policy_check", path=str(policy_path), rules=str(rules))
    assert outcome.code == 1 and outcome.result["msg"].startswith(f"{rules}:1:")


def test_a_tool_without_rules_says_so(run_module: RunModule, policy_path: pathlib.Path, tmp_path: pathlib.Path) -> None:
    older = tmp_path / "older"
    printed = json.dumps(failure(message="no such option: --rules", exit=2))
    older.write_text(f"#!/bin/sh\necho '{printed}'\nexit 2\n")
    older.chmod(0o755)
    outcome = run_module("policy_check", path=str(policy_path), rules="/rules.json", executable=str(older))
    assert outcome.code == 1 and outcome.result["msg"] == "no such option: --rules"


def test_the_log_has_no_secret(
    policy_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch, capsys: pytest.CaptureFixture[str]
) -> None:
    basic = pytest.importorskip("ansible.module_utils.basic", reason="the engine is a package of scripts/bootstrap")
    arguments = {"path": str(policy_path), "policies": secret_state(), "redact": ["Password"], "executable": TOOL}
    monkeypatch.setattr(basic, "_ANSIBLE_ARGS", json.dumps({"ANSIBLE_MODULE_ARGS": arguments}).encode())
    logged: List[str] = []
    monkeypatch.setattr(basic, "has_journal", False)
    monkeypatch.setattr(basic.syslog, "syslog", lambda _, text: logged.append(text))
    monkeypatch.setattr(sys, "argv", ["policy_file"])
    with pytest.raises(SystemExit):
        runpy.run_module("ansible_collections.zupolicy.policy.plugins.modules.policy_file", run_name="__main__")
    assert json.loads(capsys.readouterr().out)["changed"] is True
    assert len(logged) == 1 and "Invoked with" in logged[0] and "'Host': 'h'" in logged[0]
    assert SECRET not in logged[0] and "'Password': '***'" in logged[0]


def test_the_values_are_in_no_command_line(
    run_module: RunModule, policy_path: pathlib.Path, tmp_path: pathlib.Path
) -> None:
    calls = tmp_path / "calls"
    recording = tmp_path / "recording"
    recording.write_text(f'#!/bin/sh\necho "$@" >> "{calls}"\nexec "{TOOL}" "$@"\n')
    recording.chmod(0o755)
    outcome = run_module(
        "policy_file", path=str(policy_path), policies=secret_state(), executable=str(recording), lock_timeout=3, jobs=2
    )
    assert outcome.code == 0 and SECRET not in calls.read_text()
    assert "--lock-timeout=3" in calls.read_text() and "--jobs=2" in calls.read_text()
    # One run of the tool, however many edits there are.
    assert len(calls.read_text().splitlines()) == 1 and calls.read_text().startswith("apply --edits - ")


def test_a_missing_program_is_a_plain_message(run_module: RunModule, policy_path: pathlib.Path) -> None:
    for module in ("policy_file", "policy_facts", "policy_check"):
        outcome = run_module(module, path=str(policy_path), executable="/no/zupolicy")
        assert outcome.code == 1 and outcome.result["msg"].startswith("/no/zupolicy is no program on this machine")


def test_facts_are_what_the_file_holds(run_module: RunModule, policy_path: pathlib.Path) -> None:
    outcome = run_module("policy_facts", path=str(policy_path), redact=["Greeting*", "Notify/*", "creator"])
    facts = outcome.result["ansible_facts"]["policy_files"][str(policy_path)]
    assert outcome.code == 0 and outcome.result["changed"] is False
    sections = facts["policies"]["PRODUCTA1000"]["sections"]
    assert sections["General"] == {"Enabled": "1", "ScanInterval": "60", "Greeting": "***", "GreetingJa": "***"}
    assert set(sections["Notify"].values()) == {"***"} and "ops@example.org" not in outcome.output
    assert facts["tasks"]["PRODUCTA1000"]["{task-1}"]["sections"]["Schedule"] == {"Hour": "2", "Minute": "30"}
    assert facts["tasks"]["PRODUCTA1000"]["{task-1}"]["priority"] == "5"
    assert facts["tasks"]["PRODUCTB2000"]["{task-1}"]["creator"] == "***" and "SITEADMIN" not in outcome.output
    assert facts["assignment_list"] == "all;site=süd"


def test_facts_of_a_broken_file_fail_with_its_place(run_module: RunModule, policy_path: pathlib.Path) -> None:
    policy_path.write_text("<PolicyFile>\n</PolicyRoot>\n")
    outcome = run_module("policy_facts", path=str(policy_path))
    assert outcome.code == 1 and outcome.result["msg"].startswith(f"{policy_path}:2:3: ")
    assert "[SyntaxError, 0xFFFFFBAE]" in outcome.result["msg"] and outcome.result["error"]["line"] == 2


ODD = """<PolicyFile><PolicyRoot version="1"><PolicyGroup Path="0"><Policy PolicyVersion="1">
<Product SoftwareID="P"/>
<Product SoftwareID="P"/>
</Policy></PolicyGroup></PolicyRoot></PolicyFile>
"""


def test_a_check_finds_what_is_odd(run_module: RunModule, tmp_path: pathlib.Path, policy_path: pathlib.Path) -> None:
    odd = tmp_path / "odd.xml"
    odd.write_text(ODD)
    assert run_module("policy_check", path=str(policy_path)).result["findings"] == []
    outcome = run_module("policy_check", paths=[str(policy_path), str(odd)])
    (finding,) = outcome.result["findings"]
    assert outcome.code == 1 and finding.startswith(f"{odd}:3:") and ": warning: " in finding
    assert outcome.result["msg"] == finding
    assert [file["ok"] for file in outcome.result["files"]] == [True, True]
    outcome = run_module("policy_check", paths=[str(policy_path), str(odd)], strict=False)
    assert outcome.code == 0 and outcome.result["findings"] == [finding]


def test_a_check_reports_every_broken_file(run_module: RunModule, tmp_path: pathlib.Path) -> None:
    broken = tmp_path / "broken.xml"
    broken.write_text("<PolicyFile>\n</PolicyRoot>\n")
    outcome = run_module("policy_check", paths=[str(broken), str(tmp_path / "missing.xml")], strict=False)
    assert outcome.code == 1 and len(outcome.result["findings"]) == 2
    assert outcome.result["msg"].startswith(f"{broken}:2:3: ")


def test_one_of_path_and_paths_is_needed(run_module: RunModule) -> None:
    for arguments in ({}, {"path": "/a", "paths": ["/b"]}):
        for module in ("policy_file", "policy_facts", "policy_check"):
            assert run_module(module, **arguments).code == 1


def test_a_name_that_begins_with_a_dash_is_a_file(
    run_module: RunModule, policy_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.chdir(policy_path.parent)
    for name in ("--force", "-"):
        (policy_path.parent / name).write_bytes(policy_path.read_bytes())
        assert run_module("policy_check", path=name).code == 0
        assert run_module("policy_facts", path=name).code == 0
        assert run_module("policy_file", diff=True, path=name, policies=general(ScanInterval=20)).result["changed"]


def test_the_documents_name_the_modules_options() -> None:
    readme = (ROOT / "integrations" / "ansible" / "README.md").read_text(encoding="utf-8")
    for name in ("policy_file", "policy_facts", "policy_check", "edits", "install"):
        assert f"`{name}`" in readme
