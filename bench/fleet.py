"""Measures the tool over many files, and prints one table in Markdown: fleet.py ZUPOLICY [--quick]

Each row is a whole process over a folder that is in the file cache. The peer is one Python script with lxml and a
process for each processor. Contenders take turns; a figure is the median of three. The memory is that of the largest
process. The applied edits differ from turn to turn, so each turn writes every file.
"""
import json
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

SCRIPTS = pathlib.Path(__file__).resolve().parent / "python"
PYTHON = "/usr/bin/python3"
TURNS = 3
SETTINGS = 40
SMALL = 20_000


def product(number):
    settings = "".join(
        f'          <Setting name="Setting{i}">value of setting {i}</Setting>\r\n' for i in range(SETTINGS)
    )
    return (
        f'      <Product SoftwareID="PRODUCT{1000 + number}">\r\n        <Section name="Section0">\r\n{settings}'
        "        </Section>\r\n      </Product>\r\n"
    )


def document(size):
    products = []
    length = 0
    while length < size:
        products.append(product(len(products)))
        length += len(products[-1])
    return (
        '<?xml version="1.0" encoding="UTF-8"?>\r\n<PolicyFile>\r\n  <PolicyRoot version="1">\r\n'
        '    <PolicyGroup Path="0_4">\r\n    <Policy PathID="0_4" PolicyVersion="1">\r\n' + "".join(products) +
        "    </Policy>\r\n    </PolicyGroup>\r\n  </PolicyRoot>\r\n  <TaskRoot version=\"1\">\r\n  </TaskRoot>\r\n"
        "</PolicyFile>\r\n"
    )


def make_files(folder, count, size):
    folder.mkdir()
    text = document(size)
    old = ">value of setting 20<"
    at = text.index(old)
    for number in range(count):
        value = "15" if number % 50 == 3 else "60"
        changed = text[:at] + f">{value}<" + text[at + len(old):]
        (folder / f"{number}.xml").write_bytes(changed.encode())


def write_edits(path, turn):
    with open(path, "w", encoding="utf-8") as lines:
        for number in range(5):
            edit = {"edit": "set", "softwareId": "PRODUCT1001", "section": "Section0", "name": f"Setting{number}",
                    "value": f"value {turn}"}
            lines.write(json.dumps(edit) + "\n")


def run(command):
    """Seconds and the peak in megabytes of the largest process."""
    begin = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    seconds = time.perf_counter() - begin
    if os.waitstatus_to_exitcode(status) != 0:
        sys.exit(f"failed: {command[:4]}")
    return seconds, usage.ru_maxrss / 1000


class Row:
    """One work, by the tool and by a script."""

    def __init__(self, name, ours, theirs=None):
        self.name, self.ours, self.theirs = name, ours, theirs

    def measure(self):
        samples = {"ours": [], "theirs": []}
        for turn in range(TURNS):
            samples["ours"].append(run(self.ours(2 * turn)))
            if self.theirs:
                samples["theirs"].append(run(self.theirs(2 * turn + 1)))
        return {
            who: (statistics.median(s for s, _ in taken), statistics.median(m for _, m in taken))
            for who, taken in samples.items() if taken
        }


def rows(tool, folder):
    files = sorted(str(path) for path in folder.glob("*.xml"))
    edits = folder / "edits.jsonl"
    sought = ["PRODUCT1000", "Section0", "Setting20"]

    def script(name, *arguments):
        return [PYTHON, str(SCRIPTS / name), str(folder), *arguments]

    def apply(turn):
        write_edits(edits, turn)
        return [tool, "apply", *files, "--edits", str(edits), "--jobs", str(os.cpu_count())]

    def apply_with_lxml(turn):
        write_edits(edits, turn)
        return script("edit_with_lxml.py", str(edits))

    yield Row("check", lambda turn: [tool, "check", *files], lambda turn: script("check_with_lxml.py"))
    yield Row("query --count",
              lambda turn: [tool, "query", *files, "--software", sought[0], "--section", sought[1], "--name", sought[2],
                            "--count"],
              lambda turn: script("count_with_lxml.py", *sought))
    yield Row("apply, five edits", apply, apply_with_lxml)
    yield Row("report", lambda turn: [tool, "report", *files, "-o", str(folder / "report.html")])


def cells(count, result):
    seconds, peak = result["ours"]
    yield f"{seconds:.2f}"
    yield f"{count / seconds:,.0f}"
    yield f"{peak:.0f} MB"
    if "theirs" in result:
        their_seconds, their_peak = result["theirs"]
        yield f"{their_seconds:.2f}"
        yield f"{their_peak:.0f} MB"
        yield f"{their_seconds / seconds:.2f}x"
    else:
        yield from ("", "", "")


def print_row(*columns):
    print("| " + " | ".join(columns) + " |", flush=True)


def print_growth(few, many, results):
    """How many times as long the work over the many files takes."""
    print()
    print_row(f"from {few:,} to {many:,} files", "time grows", "Python with lxml")
    print_row("---", "---", "---")
    for name, small in results[few].items():
        large = results[many][name]
        growth = [f"{large[who][0] / small[who][0]:.1f}x" for who in small]
        print_row(name, *growth, *[""] * (2 - len(growth)))


def main():
    tool = str(pathlib.Path(sys.argv[1]).resolve())
    few, many, large = 1_000, 10_000, (100, 16_000_000)
    if "--quick" in sys.argv:
        few, many, large = 100, 1_000, None
    print_row("work", "files", "seconds", "files a second", "peak memory", "Python with lxml, seconds", "its peak", "ratio")
    print_row(*["---"] * 8)
    results = {}
    for count, size in [(few, SMALL), (many, SMALL)] + ([large] if large else []):
        with tempfile.TemporaryDirectory() as temporary:
            folder = pathlib.Path(temporary) / "fleet"
            make_files(folder, count, size)
            results[count, size] = {}
            for row in rows(tool, folder):
                result = results[count, size][row.name] = row.measure()
                print_row(row.name, f"{count:,} of {size // 1000:,} KB", *cells(count, result))
    print_growth(few, many, {count: results[count, SMALL] for count in (few, many)})


main()
