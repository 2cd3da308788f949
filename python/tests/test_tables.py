"""The tables of interfaces and result codes against the public C++ headers."""

from __future__ import annotations

import re
from typing import Dict, List, Tuple
from uuid import UUID

import pytest

from conftest import ROOT
from zupolicy import _interfaces as table
from zupolicy import _results

HEADERS = ROOT / "include" / "zuPolicyManager"
_IDENTIFIER = re.compile(r"inline constexpr (?:IID|CLSID|GUID) (\w+)\s*\{([^;]*)\};")
_INTERFACE = re.compile(r"^struct (\w+) : (\w+) \{\n(.*?)^\};", re.MULTILINE | re.DOTALL)
_METHOD = re.compile(r"^\s*virtual HRESULT (\w+)\(([^)]*)\) = 0;", re.MULTILINE)

_KINDS: Dict[str, str] = {
    "BSTR": table.TEXT,
    "LONG": table.NUMBER,
    "IUnknown*": table.OBJECT,
    "BSTR*": table.TEXT_OUT,
    "LONG*": table.NUMBER_OUT,
    "DWORD*": table.NUMBER_OUT,
    # An output in the memory of the caller; nobody here calls such a method.
    "GUID*": table.OBJECT,
}


def _header(name: str) -> str:
    return re.sub(r"//.*", "", (HEADERS / name).read_text(encoding="utf-8"))


def _declared_identifiers() -> Dict[str, UUID]:
    found = {}
    for name, fields in _IDENTIFIER.findall(_header("zuPolicyManager.h") + _header("zucomrt.h")):
        numbers = [int(number, 16) for number in re.findall(r"0x[0-9A-Fa-f]+|\b0\b", fields)]
        if len(numbers) == 11:
            tail = int.from_bytes(bytes(numbers[3:]), "big")
            found[name] = UUID(int=numbers[0] << 96 | numbers[1] << 80 | numbers[2] << 64 | tail)
    return found


def _kind(parameter: str) -> str:
    type_ = " ".join(parameter.split()[:-1])
    if type_.endswith("**"):
        return table.OBJECT_OUT
    return _KINDS[type_]


def _declared_interfaces() -> Dict[str, Tuple[str, List[Tuple[str, Tuple[str, ...]]]]]:
    found = {}
    for name, base, body in _INTERFACE.findall(_header("zuPolicyManager.h") + _header("zucomrt.h")):
        if name in {interface.name for interface in table.INTERFACES}:
            methods = [
                (method, tuple(_kind(parameter) for parameter in parameters.split(",") if parameter.strip()))
                for method, parameters in _METHOD.findall(body)
            ]
            assert len(methods) == body.count("virtual"), name
            found[name] = base, methods
    return found


@pytest.mark.parametrize("interface", table.INTERFACES, ids=lambda interface: interface.name)
def test_an_interface_is_as_the_header_declares_it(interface: table.Interface) -> None:
    base, methods = _declared_interfaces()[interface.name]
    assert interface.base == base
    assert [tuple(method) for method in interface.methods] == methods
    assert _declared_identifiers()[f"IID_{interface.name}"] == UUID(bytes_le=interface.identifier)


def test_every_interface_of_a_policy_file_is_in_the_table() -> None:
    declared = set(re.findall(r"^struct (IPolicy\w+) :", _header("zuPolicyManager.h"), re.MULTILINE))
    assert declared == {interface.name for interface in table.INTERFACES if interface.name.startswith("IPolicy")}


def test_the_class_is_the_one_of_the_header() -> None:
    assert _declared_identifiers()["CLSID_PolicyFile"] == UUID(bytes_le=table.CLSID_POLICY_FILE)


@pytest.mark.parametrize("base", sorted(table.BASE_SLOTS))
def test_a_base_has_as_many_slots_as_the_runtime_declares(base: str) -> None:
    text = _header("zucomrt.h")
    own = {
        name: len(re.findall(r"\bvirtual\b", body))
        for name, body in re.findall(r"^struct (\w+)(?: : \w+)? \{\n(.*?)^\};", text, re.MULTILINE | re.DOTALL)
    }
    inherited = own["IUnknown"] if base != "IUnknown" else 0
    assert table.BASE_SLOTS[base] == own[base] + inherited


def test_query_and_release_have_the_slots_of_the_runtime() -> None:
    body = re.search(r"^struct IUnknown \{\n(.*?)^\};", _header("zucomrt.h"), re.MULTILINE | re.DOTALL)
    assert body is not None
    names = re.findall(r"virtual \w+ (\w+)\(", body.group(1))
    assert names.index("QueryInterface") == table.QUERY_INTERFACE_SLOT
    assert names.index("Release") == table.RELEASE_SLOT


def _declared_codes() -> Dict[str, int]:
    found = {}
    for name, value in re.findall(r"inline constexpr Code (\w+) = ([^;]+);", _header("Results.h")):
        bits = re.search(r"0x([0-9A-Fa-f]+)u", value)
        found[name] = int(bits.group(1), 16) - (1 << 32) if bits else int(value)
    return found


def test_the_result_codes_are_those_of_the_header() -> None:
    codes = _declared_codes()
    rows = re.findall(r"\{(\w+),\s*\"\w+\",\s*((?:u\"[^\"]*\"\s*)+)\}", _header("Results.h"))
    declared = {codes[name]: (name, "".join(re.findall(r'u"([^"]*)"', sentence))) for name, sentence in rows}
    assert len(declared) == len(codes) > 30
    assert {code: tuple(meaning) for code, meaning in _results.MEANINGS.items()} == declared


def test_the_constants_are_the_codes_of_their_names() -> None:
    for name, code in _declared_codes().items():
        constant = re.sub(r"(?<!^)([A-Z])", r"_\1", name).upper()
        assert getattr(_results, constant) == code, name
