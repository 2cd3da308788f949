"""One sample of a process that measures itself: seconds, and the largest resident memory in bytes."""
import resource
import sys
import time


class Sample:
    def __enter__(self):
        self._begin = time.perf_counter()
        return self

    def __exit__(self, *exception):
        self._seconds = time.perf_counter() - self._begin
        self._peak = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss * 1024

    def require(self, holds):
        if not holds:
            sys.exit("the result is wrong")

    def print(self):
        print(self._seconds, self._peak)
