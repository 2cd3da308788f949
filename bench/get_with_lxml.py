"""Prints one setting of a policy file: get_with_lxml.py FILE SOFTWARE-ID SECTION NAME"""
import sys

from lxml import etree

path, software_id, section, name = sys.argv[1:]
product = "/PolicyFile/PolicyRoot/PolicyGroup/Policy/Product[@SoftwareID=$id]"
found = etree.parse(path).xpath(
    product + "/Section[@name=$section]/Setting[@name=$name]", id=software_id, section=section, name=name)
print(found[0].text)
