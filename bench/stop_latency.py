#!/usr/bin/env python3
"""Measures how fast the engine answers "stop" during an infinite search.

Runs the engine over the UCI protocol through many go/stop cycles: "position startpos", "go infinite",
a short random wait so the stop lands at varying points of the search, then "stop", timing the
interval from writing "stop" to reading "bestmove". Each cycle ends with "isready"/"readyok" so that a
second "bestmove" for the same "go" would be caught. Prints the latency percentiles in milliseconds.

    bench/stop_latency.py [--binary build/release/kelvra] [--cycles 500] [--threads N]
"""
import argparse
import os
import random
import statistics
import subprocess
import sys
import tempfile
import time


def percentile(sorted_values, p):
    index = min(len(sorted_values) - 1, max(0, round(p / 100 * len(sorted_values)) - 1))
    return sorted_values[index]


class Engine:
    def __init__(self, binary, workdir, threads):
        # No book and no log files; 0 threads is the engine's default of one per processor.
        ini = os.path.join(workdir, "bench.ini")
        with open(ini, "w") as file:
            file.write("search.nthreads=%d\n" % threads)
        self.process = subprocess.Popen([binary, ini], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        cwd=workdir, text=True, bufsize=1)

    def send(self, line):
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()

    def read_until(self, prefix):
        """Returns the first line that starts with prefix and every line read before it."""
        seen = []
        while True:
            line = self.process.stdout.readline()
            if not line:
                sys.exit("engine ended unexpectedly; last lines: %r" % seen[-5:])
            line = line.rstrip("\n")
            if line.startswith(prefix):
                return line, seen
            seen.append(line)


def main():
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--binary", default=os.path.join(root, "build", "release", "kelvra"))
    parser.add_argument("--cycles", type=int, default=500)
    parser.add_argument("--threads", type=int, default=0)
    parser.add_argument("--seed", type=int, default=1)
    args = parser.parse_args()
    random.seed(args.seed)

    with tempfile.TemporaryDirectory() as workdir:
        engine = Engine(os.path.abspath(args.binary), workdir, args.threads)
        engine.send("uci")
        engine.read_until("uciok")
        latencies = []
        for cycle in range(args.cycles):
            engine.send("position startpos")
            engine.send("go infinite")
            time.sleep(random.uniform(0.002, 0.03))
            start = time.perf_counter()
            engine.send("stop")
            engine.read_until("bestmove")
            latencies.append((time.perf_counter() - start) * 1000)
            engine.send("isready")
            _, between = engine.read_until("readyok")
            if any(line.startswith("bestmove") for line in between):
                sys.exit("cycle %d: a second bestmove for one go" % cycle)
        engine.send("quit")
        engine.process.wait(timeout=10)

    values = sorted(latencies)
    print("go/stop cycles: %d, search threads: %s" % (len(values), args.threads or "one per processor"))
    print("stop -> bestmove latency ms: median %.2f  p90 %.2f  p99 %.2f  max %.2f  mean %.2f" % (
        statistics.median(values), percentile(values, 90), percentile(values, 99), values[-1],
        statistics.mean(values)))


if __name__ == "__main__":
    main()
