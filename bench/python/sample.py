"""One sample of a process that measures itself: seconds, and the largest resident memory in bytes."""
import sys
import time


def peak_memory():
    """The largest resident memory of this program in bytes; getrusage counts that of its starter too."""
    with open("/proc/self/status", encoding="ascii") as status:
        return next(int(line.split()[1]) * 1024 for line in status if line.startswith("VmHWM:"))


class Sample:
    def __enter__(self):
        self._begin = time.perf_counter()
        return self

    def __exit__(self, *exception):
        self._seconds = time.perf_counter() - self._begin
        self._peak = peak_memory()

    def require(self, holds):
        if not holds:
            sys.exit("the result is wrong")

    def print(self):
        print(self._seconds, self._peak)
