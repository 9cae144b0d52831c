#!/usr/bin/env python3
"""Measures the speedup of the parallel search: the time the "bench" command needs to search its
positions to a fixed depth with one thread and with more, alternating, and the extra nodes the
threads search for it. Prints each run, then the medians and the load average of the machine before
and after (other work on the machine slows the threaded runs most).

The total time is dominated by the few positions with the largest trees, whose node counts under
several threads swing widely from run to run; the geometric mean of the speedups of the positions
that take at least half a second on one thread (each position's median time over the rounds) is
printed beside it as the steadier figure.

    bench/parallel_speedup.py [--binary build/release/kelvra] [--depth 10] [--threads 2] [--rounds 3]
"""
import math
import argparse
import os
import re
import statistics
import subprocess
import sys
import tempfile


POSITION = re.compile(r"position +\d+: +\d+ nodes +(\d+) ms")


def bench(binary, workdir, threads, depth):
    """Wall-clock milliseconds, nodes and per-position milliseconds of one bench run with the given
    thread count."""
    script = "set threads %d\nbench %d\nquit\n" % (threads, depth)
    output = subprocess.run([binary, os.path.join(workdir, "speedup.ini")], input=script, capture_output=True,
                            text=True, cwd=workdir, check=True).stdout
    ms = int(re.search(r"positions, (\d+) ms", output).group(1))
    nodes = int(re.search(r"(\d+) nodes \d+ nps", output).group(1))
    return ms, nodes, [int(t) for t in POSITION.findall(output)]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--binary", default="build/release/kelvra")
    parser.add_argument("--depth", type=int, default=10)
    parser.add_argument("--threads", type=int, default=2)
    parser.add_argument("--rounds", type=int, default=3)
    args = parser.parse_args()

    binary = os.path.abspath(args.binary)
    load_before = os.getloadavg()[0]
    runs = {1: [], args.threads: []}
    with tempfile.TemporaryDirectory() as workdir:
        open(os.path.join(workdir, "speedup.ini"), "w").close()
        for round_ in range(args.rounds):
            for threads in (1, args.threads):
                ms, nodes, positions = bench(binary, workdir, threads, args.depth)
                runs[threads].append((ms, nodes, positions))
                print("round %d, %d thread(s): %6d ms %10d nodes" % (round_ + 1, threads, ms, nodes), flush=True)
    load_after = os.getloadavg()[0]

    one_ms = statistics.median(run[0] for run in runs[1])
    many_ms = statistics.median(run[0] for run in runs[args.threads])
    one_nodes = statistics.median(run[1] for run in runs[1])
    many_nodes = statistics.median(run[1] for run in runs[args.threads])
    print("depth %d: 1 thread %d ms, %d threads %d ms: speedup %.2f, node overhead %+.1f%%" %
          (args.depth, one_ms, args.threads, many_ms, one_ms / many_ms, 100.0 * (many_nodes / one_nodes - 1)))

    def per_position(threads):
        return [statistics.median(times) for times in zip(*(run[2] for run in runs[threads]))]

    pairs = [(one, many) for one, many in zip(per_position(1), per_position(args.threads)) if one >= 500]
    if pairs:
        mean = math.exp(statistics.mean(math.log(one / max(many, 1)) for one, many in pairs))
        print("geometric mean of the speedups of the %d positions of 500 ms or more: %.2f" % (len(pairs), mean))
    print("load average %.1f before, %.1f after" % (load_before, load_after))
    sys.exit(0)


if __name__ == "__main__":
    main()
