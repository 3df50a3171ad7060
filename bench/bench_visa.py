#!/usr/bin/python3
"""The remote control through PyVISA's pure-Python backend on loopback: figures, not tests.

    /usr/bin/python3 bench/bench_visa.py build/qz7740

(a) ten units in one program message against the same ten as lines of their own: ten
    setting queries, and ten settings closed by *OPC? (each line of its own closed by
    *OPC? too, so that every line is a round trip);
(b) FETC:SWE? of a sweep over all 65,536 codes of the sweep's DAC, as ASCII
    (query_ascii_values) and as REAL,32 and REAL,64 blocks, read by PyVISA's
    query_binary_values and by qz7740.read_block (the bytes by count);
(c) the *IDN? round trip against a bare Python server answering the same line
    (bench_idn.py beside this file).
Each figure is the median of its repetitions; the ratios say how much faster the first
is than the second.
"""

import argparse
import os
import statistics
import sys
import time

import pyvisa

sys.dont_write_bytecode = True  # no __pycache__ in the source tree
HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)
sys.path.insert(0, os.path.join(HERE, "..", "python"))
import bench_idn  # noqa: E402
from qz7740 import no_delay, read_block  # noqa: E402

SETTINGS = ("VOLT 1", "CURR:RANG 2.5E-3", "CLAM:HIGH 1E-3", "CLAM:LOW -1E-3", "CLAM:STAT ON",
            "OUTP ON", "SLEW 5E5", "MEASO:GAIN 1", "SENS:CURR:GAIN 20", "SYST:TSH 120")
QUERIES = tuple(s.split()[0] + "?" for s in SETTINGS)

# A sweep over every code: at VREF 5 (the sweep's reference) the DAC spans 25.625 V, a code
# is 0.391 mV, and a step of 0.2 mV rounds to one code. With OFFSET 31457 code 0 is
# -12.29990 V and code 65535 is 13.32471 V; the entry checks take both, as their whole
# volts (-12 and 13) lie inside the range the panel shows (-12.30 to 13.32).
FULL_SWEEP = ("OFFS 31457;:SWE:STAR -12.2999;STOP 13.32471;STEP 0.0002;DEL 0;SDEL 0;"
              "FUNC VOLT;RANG 2.5E-3")
FULL_POINTS = 65536


def median_us(action, count):
    times = []
    for _ in range(count):
        t0 = time.perf_counter_ns()
        action()
        times.append(time.perf_counter_ns() - t0)
    return statistics.median(times) / 1000.0


def open_program(program):
    process, port = bench_idn.start([program, "--headless", "--simulate", "--remote", "0"])
    rm = pyvisa.ResourceManager("@py")
    inst = rm.open_resource("TCPIP0::127.0.0.1::%d::SOCKET" % port, read_termination="\n",
                            write_termination="\n", timeout=120000)
    no_delay(inst)
    return process, rm, inst


def close_program(process, rm, inst):
    try:
        inst.write("SYST:EXIT")
        process.wait(timeout=20)
    finally:
        inst.close()
        rm.close()
        if process.poll() is None:
            process.kill()


def compound(inst, count):
    one_line = ";:".join(QUERIES)
    expected = inst.query(one_line).split(";")
    assert len(expected) == len(QUERIES) and all(expected), expected
    line_q = median_us(lambda: inst.query(one_line), count)
    lines_q = median_us(lambda: [inst.query(q) for q in QUERIES], count)
    settings = ";:".join(SETTINGS) + ";*OPC?"
    assert inst.query(settings) == "1" and inst.query("SYST:ERR?") == '0,"No error"'
    line_s = median_us(lambda: inst.query(settings), count)
    lines_s = median_us(lambda: [inst.query(s + ";*OPC?") for s in SETTINGS], count)
    assert inst.query("SYST:ERR?") == '0,"No error"'
    print("(a) ten setting queries: one line %.0f us, ten lines %.0f us: %.1fx"
          % (line_q, lines_q, lines_q / line_q))
    print("    ten settings + *OPC?: one line %.0f us, ten lines %.0f us: %.1fx"
          % (line_s, lines_s, lines_s / line_s))


def full_sweep(inst, count):
    assert inst.query(FULL_SWEEP + ";*OPC?") == "1", inst.query("SYST:ERR?")
    t0 = time.perf_counter()
    assert inst.query("INIT:SWE;*OPC?") == "1"
    print("(b) sweep over all codes: %.1f s" % (time.perf_counter() - t0))
    inst.write("FORM REAL,64")
    forced = inst.query_binary_values("FETC:SWE:FORC?", datatype="d", is_big_endian=True)
    if len(forced) != FULL_POINTS:
        print("    the sweep gave %d points, not %d" % (len(forced), FULL_POINTS))
    figures = {}
    for label, form, read in (
            ("ASCII", "ASC", lambda: inst.query_ascii_values("FETC:SWE?")),
            ("REAL,32", "REAL,32", lambda: inst.query_binary_values(
                "FETC:SWE?", datatype="f", is_big_endian=True)),
            ("REAL,64", "REAL,64", lambda: inst.query_binary_values(
                "FETC:SWE?", datatype="d", is_big_endian=True)),
            ("REAL,32 by count", "REAL,32", lambda: read_block(inst, "FETC:SWE?", "f")),
            ("REAL,64 by count", "REAL,64", lambda: read_block(inst, "FETC:SWE?", "d"))):
        inst.write("FORM %s" % form)
        values = read()
        assert len(values) == len(forced), (label, len(values))
        figures[label] = median_us(read, count) / 1000.0
        ratio = figures["ASCII"] / figures[label]
        print("    FETC:SWE? %d points as %-16s %6.1f ms%s" % (
            len(values), label, figures[label], ": %.1fx faster than ASCII" % ratio if ratio != 1 else ""))
    inst.write("FORM ASC")


def idn_round_trip(program, count):
    def served_by(command):
        process, port = bench_idn.start(command)
        try:
            _, figures = bench_idn.measure(port, count, count // 10)
            process.wait(timeout=10)
        finally:
            if process.poll() is None:
                process.kill()
        return figures["median"]

    ours = served_by([program, "--headless", "--simulate", "--remote", "0"])
    bare = served_by([sys.executable, "-c", bench_idn.FLOOR_SERVER])
    print("(c) *IDN? x %d: program %.1f us, bare Python server %.1f us (medians): %.2fx"
          % (count, ours, bare, ours / bare))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program", help="the qz7740 program to start")
    parser.add_argument("--count", type=int, default=200, help="repetitions of (a)")
    parser.add_argument("--fetches", type=int, default=5, help="repetitions of each fetch in (b)")
    parser.add_argument("--idn", type=int, default=2000, help="queries of (c)")
    args = parser.parse_args()

    process, rm, inst = open_program(args.program)
    try:
        compound(inst, args.count)
        full_sweep(inst, args.fetches)
    finally:
        close_program(process, rm, inst)
    idn_round_trip(args.program, args.idn)
    return 0


if __name__ == "__main__":
    sys.exit(main())
