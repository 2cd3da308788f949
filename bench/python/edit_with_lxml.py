"""Makes the same edits in many files, with a process for each processor: edit_with_lxml.py FOLDER EDITS"""
import functools
import multiprocessing
import pathlib
import sys

from edits_with_lxml import make_edits, read_edits

if __name__ == "__main__":
    folder, edits = sys.argv[1:]
    change = functools.partial(make_edits, edits=read_edits(edits))
    with multiprocessing.Pool() as pool:
        for _ in pool.imap_unordered(change, map(str, pathlib.Path(folder).glob("*.xml")), chunksize=10):
            pass
