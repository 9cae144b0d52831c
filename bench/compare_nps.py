#!/usr/bin/env python3
"""Nodes per second of Kelvra against another UCI engine, measured side by side.

Each engine in turn gets `uci`, one thread, `ucinewgame`, `position startpos` and `go movetime T`;
the speed of a run is the nodes of its last info line that has nodes and time, divided by that time
(wall clock) and by the processor time the engine process used (per CPU second, which a busy machine
disturbs less; it includes the engine's start-up). The runs alternate so that a busy machine slows
both alike. Kelvra's own nps field counts per millisecond, so the script computes every figure itself.

    bench/compare_nps.py build/release/kelvra /usr/games/glaurung --runs 5 --movetime 3000
"""
import argparse
import re
import resource
import statistics
import subprocess
import time

INFO = re.compile(r"\btime (\d+)\b.*?\bnodes (\d+)\b|\bnodes (\d+)\b.*?\btime (\d+)\b")


def run(engine, setup, movetime):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    proc = subprocess.Popen([engine], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1)
    commands = ["uci"] + setup + ["ucinewgame", "isready", "position startpos", f"go movetime {movetime}"]
    proc.stdin.write("\n".join(commands) + "\n")
    proc.stdin.flush()
    nodes = ms = 0
    for line in proc.stdout:
        if line.startswith("info"):
            match = INFO.search(line)
            if match:
                t, n, n2, t2 = match.groups()
                ms, nodes = int(t or t2), int(n or n2)
        if line.startswith("bestmove"):
            break
    proc.stdin.write("quit\n")
    proc.stdin.flush()
    try:
        proc.wait(timeout=5)
    except subprocess.TimeoutExpired:
        proc.kill()
        proc.wait()
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    cpu = (after.ru_utime + after.ru_stime) - (before.ru_utime + before.ru_stime)
    return nodes * 1000 / max(ms, 1), nodes / max(cpu, 0.001)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("kelvra")
    parser.add_argument("other")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--movetime", type=int, default=3000)
    args = parser.parse_args()
    setups = {
        args.kelvra: ["setoption name Threads value 1", "setoption name OwnBook value false"],
        args.other: ["setoption name Threads value 1", "setoption name OwnBook value false"],
    }
    results = {args.kelvra: [], args.other: []}
    for _ in range(args.runs):
        for engine in (args.kelvra, args.other):
            results[engine].append(run(engine, setups[engine], args.movetime))
            time.sleep(0.2)
    for kind, index in (("wall", 0), ("cpu", 1)):
        medians = {}
        for engine, speeds in results.items():
            values = [speed[index] for speed in speeds]
            medians[engine] = statistics.median(values)
            print(f"{kind} {engine}: median {medians[engine] / 1e6:.2f} M nps "
                  f"(runs: {', '.join(f'{v / 1e6:.2f}' for v in values)})")
        print(f"{kind} ratio: {medians[args.kelvra] / medians[args.other]:.2f}")


if __name__ == "__main__":
    main()
