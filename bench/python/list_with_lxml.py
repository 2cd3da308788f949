"""Reads every setting of a policy file: list_with_lxml.py FILE SETTINGS"""
import sys

from lxml import etree

from sample import Sample

path, settings = sys.argv[1:]
with Sample() as sample:
    root = etree.parse(path).getroot()
    found = {
        product.get("SoftwareID"): {
            section.get("name"): {setting.get("name"): setting.text or "" for setting in section}
            for section in product
        }
        for product in root.iterfind("PolicyRoot/PolicyGroup/Policy/Product")
    }
sample.require(sum(len(section) for policy in found.values() for section in policy.values()) == int(settings))
sample.print()
