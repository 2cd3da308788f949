"""Changes one setting and overwrites FILE.lxml: change_with_lxml.py FILE SOFTWARE-ID SECTION NAME"""
import sys
import time

from lxml import etree

from sample import Sample

path, software_id, section, name = sys.argv[1:]
value = str(time.time_ns())
SETTING = (
    "/PolicyFile/PolicyRoot/PolicyGroup/Policy/Product[@SoftwareID=$id]/Section[@name=$section]/Setting[@name=$name]"
)


def find(tree):
    (setting,) = tree.xpath(SETTING, id=software_id, section=section, name=name)
    return setting


with Sample() as sample:
    tree = etree.parse(path)
    find(tree).text = value
    tree.write(path + ".lxml", encoding=tree.docinfo.encoding, xml_declaration=True)
sample.require(find(etree.parse(path + ".lxml")).text == value)
sample.print()
