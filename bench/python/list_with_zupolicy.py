"""Reads every setting of a policy file: list_with_zupolicy.py LIBRARIES FILE SETTINGS"""
import pathlib
import sys

from sample import Sample

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "python"))
import zupolicy

libraries, path, settings = sys.argv[1:]
zupolicy.use_libraries(libraries)
with Sample() as sample:
    with zupolicy.open(path) as file:
        found = file.policies.to_dict()
sample.require(sum(len(section) for policy in found.values() for section in policy.values()) == int(settings))
sample.print()
