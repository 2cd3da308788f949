"""Counts the values of one setting over many files, with a process for each processor:
count_with_lxml.py FOLDER SOFTWARE-ID SECTION NAME
"""
import collections
import multiprocessing
import pathlib
import sys

from lxml import etree

SETTING = etree.XPath(
    "/PolicyFile/PolicyRoot/PolicyGroup/Policy/Product[@SoftwareID=$id]/Section[@name=$section]/Setting[@name=$name]/text()",
    smart_strings=False,  # plain strings: the others keep their document in memory
)

folder, software_id, section, name = sys.argv[1:]


def values(path):
    return set(SETTING(etree.parse(path), id=software_id, section=section, name=name))


if __name__ == "__main__":
    counts = collections.Counter()
    with multiprocessing.Pool() as pool:
        for found in pool.imap_unordered(values, map(str, pathlib.Path(folder).glob("*.xml")), chunksize=10):
            counts.update(found)
    for value, count in counts.most_common():
        print(f'"{value}": {count} files')
