"""Changes settings and replaces the file: set_with_lxml.py FILE EDITS

EDITS has one JSON object a line, as `zupolicy apply` takes them.
"""
import json
import os
import sys

from lxml import etree

SETTING = etree.XPath(
    "/PolicyFile/PolicyRoot/PolicyGroup/Policy/Product[@SoftwareID=$id]/Section[@name=$section]/Setting[@name=$name]"
)

path, edits = sys.argv[1:]
tree = etree.parse(path)
with open(edits, encoding="utf-8") as lines:
    for edit in map(json.loads, lines):
        (setting,) = SETTING(tree, id=edit["softwareId"], section=edit["section"], name=edit["name"])
        setting.text = edit["value"]
with open(path + ".new", "wb") as new:
    tree.write(new, encoding=tree.docinfo.encoding, xml_declaration=True)
    new.flush()
    os.fsync(new.fileno())
os.replace(path + ".new", path)
