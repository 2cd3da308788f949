"""Reads all settings of a policy from its XML text, when the text has the plain form that editors write.

A call of the component for each setting takes longer than everything else. So a whole file is read from one text.
Only text whose every tag is accounted for is read here, and that gives what the component answers. For anything else
(comments, other attributes, character references) the functions return None, and the caller asks the component.
"""

from __future__ import annotations

import re
from typing import Dict, Iterator, List, Optional, Tuple

Settings = Dict[str, str]
Sections = Dict[str, Settings]
AllSettings = Dict[str, Sections]

_PRODUCT = '<Product SoftwareID="'
_ANY_PRODUCT = "<Product"
_ID = "SoftwareID"
_NO_CONTENT = "<"
_PRODUCT_END = "</Product>"
_SECTION = '<Section name="'
_SECTION_END = "</Section>"
_SETTING = re.compile(r'<Setting name="([^"<\r\n\t]*)">([^<\r]*)</Setting>')
_ODD = re.compile(r'[<"\r\n\t]')


def products_of(document: str, software_ids: List[str]) -> Iterator[Tuple[str, str]]:
    """The products of those IDs, which the component has listed, with the content of each as far as it is plain.

    Every tag of a product that begins as it does in a plain text is in the list once, and no other element has an ID
    before the last of them. So the tags are the products that the component finds.
    """
    head, *pieces = document.split(_PRODUCT)
    found: List[Tuple[str, str]] = []
    odd = len(pieces) != document.count(_ANY_PRODUCT) or _ID in head
    for piece in pieces:
        software_id, _, content = piece.partition('">')
        content, _, rest = content.partition(_PRODUCT_END)
        odd = odd or len(found) + 1 < len(pieces) and _ID in rest
        found.append((_unescaped(software_id), content))
    if odd or [software_id for software_id, _ in found] != software_ids:
        return iter([(software_id, _NO_CONTENT) for software_id in software_ids])
    return iter(found)


def sections_of(product: str) -> Optional[Sections]:
    """The sections of a product, from the text between its tags; None when the text is not plain."""
    pieces = iter(product.split(_SECTION))
    if "<" in next(pieces) or "&#" in product:
        return None
    found: Sections = {}
    for piece in pieces:
        name, start, content = piece.partition('">')
        content, end, rest = content.partition(_SECTION_END)
        pairs = _SETTING.findall(content)
        if not start or not end or "<" in rest or content.count("<") != 2 * len(pairs) or _ODD.search(name):
            return None
        if "&" in content:
            pairs = [(_unescaped(setting), _unescaped(text)) for setting, text in pairs]
        name = _unescaped(name)
        settings = dict(pairs)
        if len(settings) == len(pairs) and name not in found:
            found[name] = settings
        else:
            _merge(found.setdefault(name, {}), pairs)
    return found


def _merge(settings: Settings, pairs: List[Tuple[str, str]]) -> None:
    """Of equal names the first one counts."""
    for name, text in pairs:
        settings.setdefault(name, text)


def _unescaped(text: str) -> str:
    if "&" not in text:
        return text
    text = text.replace("&lt;", "<").replace("&gt;", ">").replace("&quot;", '"').replace("&apos;", "'")
    return text.replace("&amp;", "&")
