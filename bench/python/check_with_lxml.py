"""Parses many files, with a process for each processor: check_with_lxml.py FOLDER"""
import multiprocessing
import pathlib
import sys

from lxml import etree


def check(path):
    etree.parse(path)


if __name__ == "__main__":
    with multiprocessing.Pool() as pool:
        for _ in pool.imap_unordered(check, map(str, pathlib.Path(sys.argv[1]).glob("*.xml")), chunksize=10):
            pass
