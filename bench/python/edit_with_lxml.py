"""Makes the same edits in many files, with a process for each processor: edit_with_lxml.py FOLDER EDITS

EDITS has one JSON object a line, as `zupolicy apply` takes them.
"""
import json
import multiprocessing
import os
import pathlib
import sys

from lxml import etree

SETTING = etree.XPath(
    "/PolicyFile/PolicyRoot/PolicyGroup/Policy/Product[@SoftwareID=$id]/Section[@name=$section]/Setting[@name=$name]"
)

folder, edits = sys.argv[1:]
with open(edits, encoding="utf-8") as lines:
    EDITS = [json.loads(line) for line in lines]


def change(path):
    tree = etree.parse(path)
    for edit in EDITS:
        (setting,) = SETTING(tree, id=edit["softwareId"], section=edit["section"], name=edit["name"])
        setting.text = edit["value"]
    with open(path + ".new", "wb") as new:
        tree.write(new, encoding=tree.docinfo.encoding, xml_declaration=True)
        new.flush()
        os.fsync(new.fileno())
    os.replace(path + ".new", path)


if __name__ == "__main__":
    with multiprocessing.Pool() as pool:
        for _ in pool.imap_unordered(change, map(str, pathlib.Path(folder).glob("*.xml")), chunksize=10):
            pass
