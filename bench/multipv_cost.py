#!/usr/bin/env python3
"""Measures what several lines cost: six middlegame positions of the bench list searched to a fixed
depth on one thread, each from an empty table, with MultiPV 1 and with MultiPV k, alternating; prints
per position and in total the time and the nodes to that depth, and the ratios.

    bench/multipv_cost.py [--binary build/release/kelvra] [--depth 10] [--lines 4] [--rounds 1]
"""
import argparse
import os
import re
import statistics
import subprocess
import tempfile

POSITIONS = [
    "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10",
    "r1bq1rk1/pp2bppp/2n1pn2/3p4/2PP4/2N1PN2/PP3PPP/R2QKB1R w KQ - 0 8",
    "r2q1rk1/pb1nbppp/1p2pn2/2pp4/2PP4/1PN1PN2/PB2BPPP/R2Q1RK1 w - - 0 10",
    "2rq1rk1/pp1bppbp/3p1np1/4n3/3NP3/1BN1BP2/PPPQ2PP/2KR3R w - - 0 13",
    "r1b2rk1/2q1bppp/p2ppn2/1p6/3BPP2/2NB4/PPP1Q1PP/2KR3R w - - 0 14",
    "r3r1k1/ppq2pp1/2p2n1p/3p4/3P4/2PBPN2/P1Q2PPP/R4RK1 w - - 0 16",
]
LAST = re.compile(r"info depth \d+ seldepth \d+ (?:multipv \d+ )?score \S+ -?\d+ time (\d+) nodes (\d+)")


def search(binary, workdir, fen, depth, lines):
    """Milliseconds and nodes of the search's closing line."""
    script = ("uci\nsetoption name Threads value 1\nsetoption name OwnBook value false\n"
              "setoption name MultiPV value %d\nisready\nposition fen %s\ngo depth %d infinite\n"
              % (lines, fen, depth))
    process = subprocess.Popen([binary, os.path.join(workdir, "multipv.ini")], stdin=subprocess.PIPE,
                               stdout=subprocess.PIPE, text=True, cwd=workdir)
    process.stdin.write(script)
    process.stdin.flush()
    last = None
    for line in process.stdout:
        match = LAST.match(line)
        if match:
            last = match
        if line.startswith("bestmove"):
            break
    process.stdin.write("quit\n")
    process.stdin.close()
    process.wait()
    return int(last.group(1)), int(last.group(2))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--binary", default="build/release/kelvra")
    parser.add_argument("--depth", type=int, default=10)
    parser.add_argument("--lines", type=int, default=4)
    parser.add_argument("--rounds", type=int, default=1)
    args = parser.parse_args()
    binary = os.path.abspath(args.binary)
    totals = {1: [0, 0], args.lines: [0, 0]}
    with tempfile.TemporaryDirectory() as workdir:
        open(os.path.join(workdir, "multipv.ini"), "w").close()
        for index, fen in enumerate(POSITIONS):
            figures = {}
            for lines in (1, args.lines):
                runs = [search(binary, workdir, fen, args.depth, lines) for _ in range(args.rounds)]
                figures[lines] = (statistics.median(r[0] for r in runs), statistics.median(r[1] for r in runs))
                totals[lines][0] += figures[lines][0]
                totals[lines][1] += figures[lines][1]
            one, many = figures[1], figures[args.lines]
            print("position %d: MultiPV 1 %7d ms %10d nodes, MultiPV %d %7d ms %10d nodes: x%.2f time, x%.2f nodes"
                  % (index + 1, one[0], one[1], args.lines, many[0], many[1], many[0] / max(one[0], 1),
                     many[1] / one[1]), flush=True)
    one, many = totals[1], totals[args.lines]
    print("all: MultiPV 1 %d ms %d nodes, MultiPV %d %d ms %d nodes: x%.2f time, x%.2f nodes; load average %.1f"
          % (one[0], one[1], args.lines, many[0], many[1], many[0] / max(one[0], 1), many[1] / one[1],
             os.getloadavg()[0]))


if __name__ == "__main__":
    main()
