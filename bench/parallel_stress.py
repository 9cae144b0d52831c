#!/usr/bin/env python3
"""Stress test of the parallel search over UCI: many short searches with the thread count changing.

Each cycle picks a position and a way to search it: a short "go movetime", a "go depth", a clock
search, an infinite search stopped after a random wait, an infinite search interrupted by a new
"position", or a ponder search ended by "ponderhit" or "stop". Between cycles "setoption name Threads"
picks a new count from 1 to 8. Every "go" must get exactly one "bestmove" (within a time-out that
catches a deadlock), and every best move must be legal in its position: a second engine process,
driven through the console, plays it and must accept it. Ends with a summary; the exit code is 0
when nothing went wrong.

    bench/parallel_stress.py [--binary build/release/kelvra] [--cycles 2000] [--seed 1]
"""
import argparse
import os
import queue
import random
import subprocess
import sys
import tempfile
import threading
import time

POSITIONS = [
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "r1bq1rk1/pp2bppp/2n1pn2/3p4/2PP4/2N1PN2/PP3PPP/R2QKB1R w KQ - 0 8",
    "2rq1rk1/pp1bppbp/3p1np1/4n3/3NP3/1BN1BP2/PPPQ2PP/2KR3R w - - 0 13",
    "r1bq2rk/pp3pbp/2p1p1pQ/7P/3P4/2PB1N2/PP3PPR/2KR4 w - - 0 1",
    "3r1rk1/1pp2ppp/p1n5/4P3/2P1q3/2Q2N2/PP3PPP/3RR1K1 b - - 0 1",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
    "8/7p/5k2/5p2/p1p2P2/Pr1pPK2/1P1R3P/8 b - - 0 1",
    "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
    "4k3/8/8/4b3/8/8/P7/K7 w - - 0 1",
]

BESTMOVE_TIMEOUT = 20.0  # seconds: far beyond any search of this script, so only a hang exceeds it


class Process:
    """An engine process whose output lines arrive on a queue."""

    def __init__(self, binary, workdir):
        ini = os.path.join(workdir, "stress.ini")
        open(ini, "w").close()
        self.process = subprocess.Popen([binary, ini], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL, cwd=workdir, text=True, bufsize=1)
        self.lines = queue.Queue()
        threading.Thread(target=self._read, daemon=True).start()

    def _read(self):
        for line in self.process.stdout:
            self.lines.put(line.rstrip("\n"))
        self.lines.put(None)

    def send(self, line):
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()

    def read_until(self, prefix, timeout):
        """The lines up to and including the first that starts with prefix; None on a time-out or exit."""
        seen = []
        deadline = time.monotonic() + timeout
        while True:
            try:
                line = self.lines.get(timeout=max(0.0, deadline - time.monotonic()))
            except queue.Empty:
                return None
            if line is None:
                return None
            seen.append(line.replace("% ", ""))
            if seen[-1].startswith(prefix):
                return seen

    def close(self):
        try:
            self.send("quit")
            self.process.wait(timeout=10)
        except (OSError, subprocess.TimeoutExpired):
            self.process.kill()
        return self.process.returncode


class Checker:
    """Plays a move in a position through the console of a second engine process."""

    def __init__(self, binary, workdir):
        self.engine = Process(binary, workdir)
        self.engine.send("set threads 1")

    def legal(self, fen, move):
        self.engine.send(fen)
        self.engine.send(move)
        self.engine.send("isready")
        lines = self.engine.read_until("readyok", 10)
        if lines is None:
            raise RuntimeError("the checker does not answer")
        return not any(l.startswith(("not a valid move", "move not accepted", "no such command")) for l in lines)


def cycle(engine, checker, rng, failures):
    """One go with its answer; returns the kind of search."""
    fen = rng.choice(POSITIONS)
    engine.send("position fen " + fen)
    kind = rng.choice(["movetime", "depth", "clock", "stop", "position", "ponderhit", "ponderstop"])
    if kind == "movetime":
        engine.send("go movetime %d" % rng.randint(1, 40))
    elif kind == "depth":
        engine.send("go depth %d" % rng.randint(1, 5))
    elif kind == "clock":
        engine.send("go wtime %d btime %d winc 0 binc 0" % (rng.randint(50, 1500), rng.randint(50, 1500)))
    elif kind in ("stop", "position"):
        engine.send("go infinite")
        time.sleep(rng.uniform(0, 0.04))
        engine.send("stop" if kind == "stop" else "position fen " + rng.choice(POSITIONS))
    else:
        engine.send("go ponder wtime 1000 btime 1000")
        time.sleep(rng.uniform(0, 0.04))
        engine.send("ponderhit" if kind == "ponderhit" else "stop")
    lines = engine.read_until("bestmove", BESTMOVE_TIMEOUT)
    if lines is None:
        failures.append("%s on %s: no bestmove within %.0f s (hang or crash)" % (kind, fen, BESTMOVE_TIMEOUT))
        return kind
    # No second answer: everything up to readyok must be free of another bestmove.
    engine.send("isready")
    after = engine.read_until("readyok", BESTMOVE_TIMEOUT)
    if after is None:
        failures.append("%s on %s: no readyok after the bestmove" % (kind, fen))
    elif any(l.startswith("bestmove") for l in after):
        failures.append("%s on %s: two bestmoves for one go" % (kind, fen))
    words = lines[-1].split()
    if len(words) < 2 or not checker.legal(fen, words[1]):
        failures.append("%s on %s: illegal best move: %s" % (kind, fen, lines[-1]))
    return kind


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--binary", default="build/release/kelvra")
    parser.add_argument("--cycles", type=int, default=2000)
    parser.add_argument("--seed", type=int, default=1)
    args = parser.parse_args()

    rng = random.Random(args.seed)
    failures = []
    counts = {}
    threads_seen = set()
    start = time.monotonic()
    with tempfile.TemporaryDirectory() as workdir:
        engine = Process(os.path.abspath(args.binary), workdir)
        checker = Checker(os.path.abspath(args.binary), workdir)
        engine.send("uci")
        if engine.read_until("uciok", 10) is None:
            sys.exit("no uciok from " + args.binary)
        for i in range(args.cycles):
            if i % 5 == 0:
                threads = rng.randint(1, 8)
                threads_seen.add(threads)
                engine.send("setoption name Threads value %d" % threads)
            kind = cycle(engine, checker, rng, failures)
            counts[kind] = counts.get(kind, 0) + 1
            if failures and failures[-1].startswith(kind) and "no bestmove" in failures[-1]:
                break
        code = engine.close()
        checker.engine.close()
    elapsed = time.monotonic() - start
    print("%d cycles in %.0f s, threads %s; %s" % (sum(counts.values()), elapsed, sorted(threads_seen),
                                                   ", ".join("%s %d" % kv for kv in sorted(counts.items()))))
    print("engine exit code %s" % code)
    for failure in failures[:20]:
        print("FAIL " + failure)
    print("%d failures" % len(failures))
    sys.exit(1 if failures or code != 0 else 0)


if __name__ == "__main__":
    main()
