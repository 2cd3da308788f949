"""Reads all settings of a policy from its XML text, when the text has the plain form that editors write.

A call of the component for each setting takes longer than all the rest. So a whole file is read from one text.
Only text whose every tag is accounted for is read here, and that gives what the component answers. For anything else
(comments, other attributes, character references) the functions return None, and the caller asks the component.
"""

from __future__ import annotations

import re
from typing import Dict, List, Optional, Tuple

Settings = Dict[str, str]
Sections = Dict[str, Settings]
AllSettings = Dict[str, Sections]

_PRODUCT = '<Product SoftwareID="'
_ANY_PRODUCT = "<Product"
_ID = "SoftwareID"
_PRODUCT_END = "</Product>"
_SECTION = '<Section name="'
_SECTION_END = "</Section>"
_SETTING = re.compile(r'<Setting name="([^"]*)">([^<]*)</Setting>')
_ODD = re.compile(r'[<"\r\n\t]')


def products_of(document: str, software_ids: List[str]) -> List[Tuple[str, Optional[Sections]]]:
    """The products of those IDs, which the component has listed, each with its sections; None when it is not plain.

    Every tag of a product, also one in a comment, is plain and in the list once, and no other element has an ID before
    the last of them. So the tags are the products that the component finds.
    """
    found: List[Tuple[str, Optional[Sections]]] = []
    start = document.find(_PRODUCT)
    odd = document.find(_ID, 0, max(start, 0)) >= 0
    while start >= 0 and not odd:
        content = document.find('">', start)
        following = document.find(_PRODUCT, content)
        end = document.find(_PRODUCT_END, content, following if following >= 0 else len(document))
        if content < 0 or end < 0:
            break
        software_id = _unescaped(document[start + len(_PRODUCT) : content])
        found.append((software_id, sections_of(document[content + 2 : end])))
        odd = following >= 0 and document.find(_ID, end, following) >= 0
        start = following
    count = document.count(_ANY_PRODUCT)
    if odd or len(found) != count or [software_id for software_id, _ in found] != software_ids:
        return [(software_id, None) for software_id in software_ids]
    return found


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
        settings = dict(pairs)
        if not start or not end or "<" in rest or content.count("<") != 2 * len(pairs) or _ODD.search(name):
            return None
        # Of equal names the dictionary has the last text only.
        if _has_odd_space(settings) or (len(settings) < len(pairs) and "\r" in content):
            return None
        if "&" in content:
            pairs = [(_unescaped(setting), _unescaped(text)) for setting, text in pairs]
            settings = dict(pairs)
        name = _unescaped(name)
        if len(settings) == len(pairs) and name not in found:
            found[name] = settings
        else:
            _merge(found.setdefault(name, {}), pairs)
    return found


def _has_odd_space(settings: Settings) -> bool:
    """Whether a name or text has white space that XML replaces. Joining first is faster than one test for each."""
    names = "".join(settings)
    return "\n" in names or "\t" in names or "\r" in names or "\r" in "".join(settings.values())


def _merge(settings: Settings, pairs: List[Tuple[str, str]]) -> None:
    """Of equal names the first one counts."""
    for name, text in pairs:
        settings.setdefault(name, text)


def _unescaped(text: str) -> str:
    if "&" not in text:
        return text
    text = text.replace("&lt;", "<").replace("&gt;", ">").replace("&quot;", '"').replace("&apos;", "'")
    return text.replace("&amp;", "&")
