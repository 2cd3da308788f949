"""Reading all settings at once gives what reading them one by one gives."""

from __future__ import annotations

import pathlib
import random

import pytest

import zupolicy
from zupolicy import _text

_HEAD = '<?xml version="1.0" encoding="UTF-8"?>\n<PolicyFile><PolicyRoot version="1"><PolicyGroup Path="0_4">'
_TAIL = "</PolicyGroup></PolicyRoot><TaskRoot version='1'/></PolicyFile>\n"

#: Names, texts and elements: plain ones first, and everything that is not plain.
_NAMES = ["a", "b", "", "a b", "&lt;&amp;lt;", "&#65;", "🗓", ">", "a\tb", "a\nb", "&quot;"]
_TEXTS = ["", "1", "&amp;amp;", "a > b", "&#10;", "a\r\nb", "x<!-- c -->y"]
_TEXTS += ['<![CDATA[<Setting name="x">y</Setting>]]>'] + ["<b>z</b>", "<?p i?>", " 𝔘 ", "]]&gt;", "'\"", 'a">b']
_SETTINGS = ['<Setting name="{0}">{1}</Setting>'] * 6 + [
    "<Setting name='{0}'>{1}</Setting>",
    '<Setting name="{0}"/>',
    '<Setting  name="{0}" other="1">{1}</Setting >',
    '<Value name="{0}">{1}</Value>',
    "<Setting>{1}</Setting>",
    '<!-- <Setting name="{0}"></Setting> -->',
    '<Section name="{0}">{1}</Section>',
]
_SECTIONS = ['<Section name="{0}">{1}</Section>'] * 6 + [
    '<Section name="{0}"/>',
    "<Section>{1}</Section>",
    "<Section name='{0}'>{1}</Section>",
    '<Other name="{0}">{1}</Other>',
    '<!-- <Section name="{0}"></Section> -->',
    '<Setting name="{0}">x</Setting>',
    "{1}",
    "<![CDATA[</Product>]]>",
]
_PRODUCTS = ['<Product SoftwareID="{0}">{1}</Product>'] * 6 + [
    '<Product other="" SoftwareID="{0}">{1}</Product>',
    "<Product SoftwareID='{0}'>{1}</Product>",
    '<Product SoftwareID="{0}"/>',
    '<!-- <Product SoftwareID="{0}"></Product> -->',
    '<Thing SoftwareID="{0}">{1}</Thing>',
    '<Product SoftwareID="{0}"><Product SoftwareID="inner"><Section name="s"/></Product>{1}</Product>',
]


def _document(chance: random.Random, oddity: float) -> str:
    def pick(choices: "list[str]") -> str:
        return chance.choice(choices) if chance.random() < oddity else choices[0]

    def some(make: object, most: int) -> str:
        space = chance.choice(["", "\n ", "\r\n\t", " text "])
        return space.join(make() for _ in range(chance.randint(0, most))) + space  # type: ignore[operator]

    def setting() -> str:
        name = pick(_NAMES) if chance.random() < 0.5 else f"s{chance.randint(0, 5)}"
        return pick(_SETTINGS).format(name.replace("<", ""), pick(_TEXTS))

    def section() -> str:
        name = pick(_NAMES) if chance.random() < 0.3 else f"S{chance.randint(0, 3)}"
        return pick(_SECTIONS).format(name, some(setting, 5))

    def product() -> str:
        name = pick(_NAMES) if chance.random() < 0.2 else f"P{chance.randint(0, 9)}"
        return pick(_PRODUCTS).format(name, some(section, 4))

    def policy() -> str:
        return '<Policy PathID="0_4" PolicyVersion="1">' + some(product, 3) + "</Policy>"

    return _HEAD + some(policy, 4) + _TAIL


@pytest.mark.parametrize("oddity", [0.0, 0.02, 0.1, 0.5])
def test_all_settings_at_once_are_those_one_by_one(tmp_path: pathlib.Path, oddity: float) -> None:
    chance = random.Random(f"{oddity}")
    path = tmp_path / "policy.xml"
    settings = documents = 0
    for _ in range(400):
        path.write_bytes(_document(chance, oddity).encode())
        try:
            file = zupolicy.open(path)
        except zupolicy.ParseError:
            continue  # chance made something that is no XML, such as a comment in a comment
        with file:
            expected = {software_id: policy.to_dict() for software_id, policy in file.policies.items()}
            assert file.policies.to_dict() == expected
            assert list(file.policies.to_dict()) == list(expected)
        documents += 1
        settings += sum(len(section) for policy in expected.values() for section in policy.values())
    assert documents > 100 and settings > 500


def test_a_plain_document_is_read_from_its_text() -> None:
    section = '<Section name="s">\n<Setting name="a">1 &lt; 2</Setting>\n</Section>'
    document = _HEAD + f'<Policy><Product SoftwareID="P">{section}</Product></Policy>' + _TAIL
    assert _text.products_of(document, ["P"]) == [("P", {"s": {"a": "1 < 2"}})]


@pytest.mark.parametrize(
    "products",
    [
        """<Product SoftwareID='P'>{a}</Product><Product SoftwareID="P">{b}</Product>""",
        """<Product other="" SoftwareID="P">{a}</Product><Product SoftwareID="P">{b}</Product>""",
        """<Thing SoftwareID="P">{a}</Thing><Product SoftwareID="P">{b}</Product>""",
        """<Product SoftwareID="A"></Product><Thing SoftwareID="P">{a}</Thing><Product SoftwareID="P">{b}</Product>""",
        """<!-- <Product SoftwareID="P">{a}</Product> --><Product SoftwareID="P">{b}</Product>""",
        """<!-- <Product SoftwareID="P">{a}</Product> --><Product SoftwareID='P'>{b}</Product>""",
        """<Product SoftwareID="P">{b}</Product><Product SoftwareID="P">{a}</Product>""",
        """<Product SoftwareID="P"/><Product SoftwareID="Q">{b}</Product>""",
        """<Product SoftwareID="P"><Product SoftwareID="Q">{a}</Product>{b}</Product>""",
        """<Product SoftwareID="P"><Thing>{a}</Thing>{b}</Product>""",
        """<Product SoftwareID="P"><Section name="s"><Section name="t">{a}</Section></Section></Product>""",
        """<Product SoftwareID="P"><Section name="s"></Section><Setting name="x">y</Setting></Product>""",
        """<Product SoftwareID="P"><Setting name="x">y</Setting>{b}</Product>""",
        """<Product SoftwareID="P">{a}{b}{a}</Product>""",
        """<Product SoftwareID="P"><Section name="s"><Setting name="a\nb">1</Setting></Section>{a}</Product>""",
        """<Product SoftwareID="P"><Section name="s"><Setting name="a\tb">1</Setting></Section>{a}</Product>""",
        """<Product SoftwareID="P"><Section name="s"><Setting name="a">1\r\n2</Setting></Section>{a}</Product>""",
        """<Product SoftwareID="P"><Section name="s"><Setting name="a\r\nb">1</Setting></Section>{a}</Product>""",
        """<Product SoftwareID="P"><Section name="s"><!--<Setting name="<"></Setting>--></Section>{a}</Product>""",
        """<Product SoftwareID="&#80;">{a}</Product><Product SoftwareID="P">{b}</Product>""",
    ],
)
def test_what_looks_plain_and_is_not_is_read_as_the_component_reads_it(tmp_path: pathlib.Path, products: str) -> None:
    a, b = ('<Section name="s"><Setting name="x">%s</Setting></Section>' % name for name in "ab")
    path = tmp_path / "policy.xml"
    policy = products.format(a=a, b=b)
    path.write_bytes(f"{_HEAD}<Policy>{policy}</Policy>{_TAIL}".encode())
    with zupolicy.open(path) as file:
        expected = {software_id: policy.to_dict() for software_id, policy in file.policies.items()}
        assert file.policies.to_dict() == expected


def test_the_sample_file_is_read_from_its_text_as_far_as_it_is_plain(policy_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path) as file:
        products = dict(_text.products_of(file.to_xml(), list(file.policies)))
        assert products["PRODUCTA1000"] is None, "it has a CDATA section"
        assert products["PRODUCTB2000"] is None, "it has an empty tag"
        assert file.policies.to_dict()["PRODUCTB2000"] == {"General": {"Enabled": "0", "LogLevel": "3"}, "Proxy": {}}


def test_the_changes_are_among_them(policy_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path) as file:
        file.policies["PRODUCTA1000"]["General"]["ScanInterval"] = "<15>"
        assert file.policies.to_dict()["PRODUCTA1000"]["General"]["ScanInterval"] == "<15>"
        assert file.policies.to_dict() == {name: policy.to_dict() for name, policy in file.policies.items()}


def test_a_read_only_file_lists_the_changes_of_its_copies(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "policy.xml"
    section = '<Section name="s"><Setting name="a">1</Setting></Section>'
    products = "".join(f'<Product SoftwareID="{name}">{section}</Product>' for name in "PQ")
    path.write_text(f"{_HEAD}<Policy>{products}</Policy>{_TAIL}", encoding="utf-8")
    with zupolicy.open(path, read_only=True) as file:
        file.policies["Q"]["s"]["a"] = "2"
        assert file.policies.to_dict() == {"P": {"s": {"a": "1"}}, "Q": {"s": {"a": "2"}}}
