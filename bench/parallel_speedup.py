#!/usr/bin/env python3
"""Measures the speedup of the parallel search: the time the "bench" command needs to search its
positions to a fixed depth with one thread and with more, alternating, and the extra nodes the
threads search for it. Prints each run, then the medians and the load average of the machine before
and after (other work on the machine slows the threaded runs most).

    bench/parallel_speedup.py [--binary build/release/kelvra] [--depth 8] [--threads 2] [--rounds 3]
"""
import argparse
import os
import re
import statistics
import subprocess
import sys
import tempfile


def bench(binary, workdir, threads, depth):
    """Wall-clock milliseconds and nodes of one bench run with the given thread count."""
    script = "set threads %d\nbench %d\nquit\n" % (threads, depth)
    output = subprocess.run([binary, os.path.join(workdir, "speedup.ini")], input=script, capture_output=True,
                            text=True, cwd=workdir, check=True).stdout
    ms = int(re.search(r"positions, (\d+) ms", output).group(1))
    nodes = int(re.search(r"(\d+) nodes \d+ nps", output).group(1))
    return ms, nodes


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--binary", default="build/release/kelvra")
    parser.add_argument("--depth", type=int, default=8)
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
                ms, nodes = bench(binary, workdir, threads, args.depth)
                runs[threads].append((ms, nodes))
                print("round %d, %d thread(s): %6d ms %10d nodes" % (round_ + 1, threads, ms, nodes), flush=True)
    load_after = os.getloadavg()[0]

    one_ms = statistics.median(ms for ms, _ in runs[1])
    many_ms = statistics.median(ms for ms, _ in runs[args.threads])
    one_nodes = statistics.median(n for _, n in runs[1])
    many_nodes = statistics.median(n for _, n in runs[args.threads])
    print("depth %d: 1 thread %d ms, %d threads %d ms: speedup %.2f, node overhead %+.1f%%" %
          (args.depth, one_ms, args.threads, many_ms, one_ms / many_ms, 100.0 * (many_nodes / one_nodes - 1)))
    print("load average %.1f before, %.1f after" % (load_before, load_after))
    sys.exit(0)


if __name__ == "__main__":
    main()
