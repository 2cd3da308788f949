"""Changes one setting and saves: change_with_zupolicy.py LIBRARIES FILE SOFTWARE-ID SECTION NAME"""
import pathlib
import sys
import time

from sample import Sample

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "python"))
import zupolicy

libraries, path, software_id, section, name = sys.argv[1:]
value = str(time.time_ns())
zupolicy.use_libraries(libraries)
with Sample() as sample:
    with zupolicy.open(path) as file:
        file.policies[software_id][section][name] = value
        file.save()
with zupolicy.open(path, read_only=True) as file:
    sample.require(file.policies[software_id][section][name] == value)
sample.print()
