"""Changes settings of a file and replaces it. EDITS has one JSON object a line, as `zupolicy apply` takes them."""
import json
import os

from lxml import etree

SETTING = etree.XPath(
    "/PolicyFile/PolicyRoot/PolicyGroup/Policy/Product[@SoftwareID=$id]/Section[@name=$section]/Setting[@name=$name]"
)


def read_edits(path):
    with open(path, encoding="utf-8") as lines:
        return [json.loads(line) for line in lines]


def make_edits(path, edits):
    tree = etree.parse(path)
    for edit in edits:
        (setting,) = SETTING(tree, id=edit["softwareId"], section=edit["section"], name=edit["name"])
        setting.text = edit["value"]
    with open(path + ".new", "wb") as new:
        tree.write(new, encoding=tree.docinfo.encoding, xml_declaration=True)
        new.flush()
        os.fsync(new.fileno())
    os.replace(path + ".new", path)
