"""Changes settings and replaces the file: set_with_lxml.py FILE EDITS"""
import sys

from edits_with_lxml import make_edits, read_edits

path, edits = sys.argv[1:]
make_edits(path, read_edits(edits))
