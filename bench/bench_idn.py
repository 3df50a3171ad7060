#!/usr/bin/python3
"""Round trip of *IDN? through PyVISA's pure-Python backend on loopback.

    bench/bench_idn.py build/qz7740                # starts the program on the virtual board
    bench/bench_idn.py --port 5025                 # a program already serving
    bench/bench_idn.py build/qz7740 --floor        # also a bare Python server, for the floor

Prints the median, the 10th and 90th percentiles and the fastest of N queries, after a warm-up.
The floor is the same query answered by a few lines of Python on a plain socket: no server
can be faster than the client's own share of the round trip.
"""

import argparse
import re
import statistics
import subprocess
import sys
import time

import pyvisa

FLOOR_SERVER = r"""
import socket
s = socket.socket(); s.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
s.bind(("127.0.0.1", 0)); s.listen(1)
print("listening on 127.0.0.1:%d" % s.getsockname()[1], flush=True)
c, _ = s.accept(); c.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
f = c.makefile("rb")
for line in f:
    if line.strip() == b"SYST:EXIT":
        break
    c.sendall(b"QZ7740,QZ7740 evaluation board,virtual board,0.0.0\n")
"""


def start(command):
    process = subprocess.Popen(command, stdout=subprocess.PIPE, stdin=subprocess.DEVNULL,
                               text=True)
    line = process.stdout.readline()
    match = re.search(r"listening on [\d.]+:(\d+)", line)
    if not match:
        process.kill()
        raise SystemExit("no listening line from %s: %r" % (command[0], line))
    return process, int(match.group(1))


def measure(port, count, warmup):
    rm = pyvisa.ResourceManager("@py")
    inst = rm.open_resource("TCPIP0::127.0.0.1::%d::SOCKET" % port, read_termination="\n",
                            write_termination="\n", timeout=5000)
    try:
        answer = inst.query("*IDN?")
        for _ in range(warmup):
            inst.query("*IDN?")
        times = []
        clock = time.perf_counter_ns
        for _ in range(count):
            t0 = clock()
            inst.query("*IDN?")
            times.append(clock() - t0)
        inst.write("SYST:EXIT")
    finally:
        inst.close()
        rm.close()
    times = [t / 1000.0 for t in sorted(times)]
    return answer, {
        "median": statistics.median(times),
        "p10": times[len(times) // 10],
        "p90": times[len(times) * 9 // 10],
        "min": times[0],
    }


def report(label, answer, figures, count):
    print("%-9s %s" % (label, answer))
    print("%-9s *IDN? x %d: median %.1f us, p10 %.1f us, p90 %.1f us, min %.1f us"
          % ("", count, figures["median"], figures["p10"], figures["p90"], figures["min"]))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program", nargs="?", help="the qz7740 program to start")
    parser.add_argument("--port", type=int, help="a program already serving on this port")
    parser.add_argument("--count", type=int, default=2000)
    parser.add_argument("--warmup", type=int, default=200)
    parser.add_argument("--floor", action="store_true", help="measure a bare server too")
    args = parser.parse_args()
    if not args.program and not args.port:
        parser.error("give the program or --port")

    process = None
    if args.port:
        port = args.port
    else:
        process, port = start([args.program, "--headless", "--simulate", "--remote", "0"])
    try:
        answer, figures = measure(port, args.count, args.warmup)
        if process:
            process.wait(timeout=10)
    finally:
        if process and process.poll() is None:
            process.kill()
    report("program", answer, figures, args.count)

    if args.floor:
        floor, floor_port = start([sys.executable, "-c", FLOOR_SERVER])
        try:
            answer, figures = measure(floor_port, args.count, args.warmup)
            floor.wait(timeout=10)
        finally:
            if floor.poll() is None:
                floor.kill()
        report("floor", answer, figures, args.count)
    return 0


if __name__ == "__main__":
    sys.exit(main())
