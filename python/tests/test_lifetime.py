"""Objects, threads and processes: what is released, when, and by whom."""

from __future__ import annotations

import gc
import os
import pathlib
import sys
import threading
import weakref

import pytest

import zupolicy
from conftest import RunScript
from zupolicy import _calls


def _resident() -> int:
    with open("/proc/self/statm", encoding="ascii") as statm:
        return int(statm.read().split()[1]) * os.sysconf("SC_PAGESIZE")


def test_loading_again_and_again_keeps_no_memory(policy_path: pathlib.Path) -> None:
    long_text = "text " * 1000

    def use() -> None:
        with zupolicy.open(policy_path) as file:
            for policy in file.policies.values():
                policy.to_dict()
                policy["General"] = {"a": long_text}
                assert policy["General"]["a"] == long_text
            for task in file.tasks:
                task.to_dict()
                task.display_name = long_text
            file.to_xml()
            with pytest.raises(KeyError):
                file.policies["NONE"]

    for _ in range(200):
        use()
    gc.collect()
    before = _resident()
    for _ in range(1000):
        use()
    gc.collect()
    # The long text has 10 KB: one that is lost each time would be 10 MB.
    assert _resident() - before < 3_000_000


def test_every_reference_is_released(policy_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch) -> None:
    references: "weakref.WeakSet[_calls.Reference]" = weakref.WeakSet()
    made = []
    start = _calls.Reference.__init__

    def count(self: _calls.Reference, pointer: int, interface: object) -> None:
        start(self, pointer, interface)  # type: ignore[arg-type]
        references.add(self)
        made.append(pointer)

    monkeypatch.setattr(_calls.Reference, "__init__", count)
    with zupolicy.open(policy_path) as file:
        for policy in file.policies.values():
            policy["General"] = {"a": "b"}
        list(file.tasks)
        del policy
    del file
    gc.collect()
    assert len(made) > 10
    assert len(references) == 0


def test_a_cycle_of_policy_and_file_is_collected(policy_path: pathlib.Path) -> None:
    file = zupolicy.open(policy_path, lock=True)
    file.policies["PRODUCTA1000"]["General"]["ScanInterval"] = "15"
    gone = weakref.ref(file)
    del file
    gc.collect()
    assert gone() is None
    with zupolicy.open(policy_path, lock=True, timeout=0):
        pass


def test_the_interpreter_ends_quietly_with_everything_open(policy_path: pathlib.Path, run_script: RunScript) -> None:
    script = """
file = zupolicy.open(arguments[0], lock=True)
policy = file.policies["PRODUCTA1000"]
policy["General"]["ScanInterval"] = "15"
file.cycle = [file, policy]
sys.modules["zupolicy.held"] = file
import threading
threading.Thread(target=threading.Event().wait, daemon=True).start()
print("end")
"""
    assert run_script(script, policy_path) == "end\n"


def test_threads_share_a_file(policy_path: pathlib.Path) -> None:
    rounds, failures = 200, []

    def work(number: int) -> None:
        try:
            for turn in range(rounds):
                file.policies["PRODUCTA1000"]["General"][f"Setting{number}"] = str(turn)
                if turn % 10 == 0:
                    file.commit()
                assert file.policies["PRODUCTA1000"]["General"][f"Setting{number}"] == str(turn)
                assert len(list(file.tasks)) == 3
        except BaseException as error:
            failures.append(error)

    with zupolicy.open(policy_path) as file:
        threads = [threading.Thread(target=work, args=(number,)) for number in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        assert failures == []
        text = file.to_xml()
        for number in range(4):
            assert f'<Setting name="Setting{number}">{rounds - 1}</Setting>' in text


def test_closing_while_another_thread_reads_is_safe(policy_path: pathlib.Path) -> None:
    for _ in range(50):
        file = zupolicy.open(policy_path)
        started = threading.Event()
        outcome = []

        def read(file: zupolicy.File = file, started: threading.Event = started) -> None:
            try:
                while True:
                    file.policies["PRODUCTA1000"].to_dict()
                    file.to_xml()
                    started.set()
            except BaseException as error:
                outcome.append(repr(error))
            finally:
                started.set()

        thread = threading.Thread(target=read)
        thread.start()
        started.wait()
        file.close()
        thread.join()
        assert len(outcome) == 1 and "ValueError" in outcome[0] and "closed" in outcome[0]


def test_other_threads_run_while_one_waits_for_a_lock(policy_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path, lock=True):
        turns = 0
        waiting = threading.Thread(
            target=lambda: pytest.raises(zupolicy.Locked, zupolicy.open, policy_path, lock=True, timeout=0.5)
        )
        waiting.start()
        while waiting.is_alive():
            turns += 1
        assert turns > 1000


def test_a_child_process_cannot_use_the_file_and_leaves_the_lock_alone(policy_path: pathlib.Path) -> None:
    file = zupolicy.open(policy_path, lock=True)
    policy = file.policies["PRODUCTA1000"]
    child = os.fork()
    if child == 0:
        code = 1
        try:
            for use in (lambda: file.policies, lambda: policy["General"], policy.commit, file.save):
                with pytest.raises(RuntimeError, match="child"):
                    use()
            released = []
            for methods in _calls._methods.values():
                methods.release = released.append  # type: ignore[assignment]
            file.close()
            repr(policy)
            del file, policy, use
            gc.collect()
            assert released == []
            _calls._methods.clear()
            with zupolicy.open(policy_path) as own:
                assert own.policies["PRODUCTA1000"]["General"]["ScanInterval"] == "60"
            with pytest.raises(zupolicy.Locked):
                zupolicy.open(policy_path, lock=True, timeout=0)
            code = 0
        except BaseException as error:
            print(f"in the child: {error!r}", file=sys.stderr)
        finally:
            os._exit(code)
    assert os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]) == 0
    with pytest.raises(zupolicy.Locked):
        zupolicy.open(policy_path, lock=True, timeout=0)
    policy["General"]["ScanInterval"] = "15"
    file.close()
