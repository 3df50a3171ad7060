#!/usr/bin/python3
"""A long run of the remote control on the virtual board: throughput and resident memory.

    /usr/bin/python3 bench/bench_soak.py build/qz7740 [COMMANDS]      (1,000,000 by default)

Starts `qz7740 --headless --simulate --remote 0` and sends COMMANDS units (a compound line
counts one per unit) through one TCP socket, after a warm-up of 1,000 that is not counted.
The mix is what a bench script sends: settings (VOLT, CURR:RANG, the clamps in amperes,
OUTP, MEASO:SOUR, SLEW, the sweep's STAR/STOP/STEP/DEL/SDEL), their queries, MEAS:VOLT? and
MEAS:CURR?, STAT:QUES?, *STB?, SYST:ERR?, compound lines, and a few units refused on
purpose (a voltage out of range, a clamp beyond the range, an unknown header), whose errors
are expected. Every 10,000 commands a short sweep runs (11 points, then FETC:SWE?).

Up to --window lines are in flight, so the figure is throughput rather than round trips;
every answer is read and checked against what was set before it (the expectations are
taken when a line is sent, since the program runs the lines in order). SYST:ERR? drains
the queue as the mix goes: an error the mix did not provoke is counted as unexpected.

Prints commands per second (overall and per 100,000), VmRSS at the start, every 100,000
and at the end, the growth from 100,000 to the end, the refusals seen against those
provoked, and the unexpected errors and answers. Ends the program with SYST:EXIT and exits
non-zero when anything unexpected happened (or the program's exit code is not 0).
"""

import argparse
import collections
import math
import os
import random
import re
import socket
import subprocess
import sys
import threading
import time

NOT_SET = 9.91e37
RANGES = (5e-6, 2.5e-5, 2.5e-4, 2.5e-3, 2.5e-2)       # the internal current ranges, A
CLAMP_LIMIT = 1.28                                   # CLAM:HIGH? MAX over the full scale
SLEWS = (1000000, 875000, 750000, 625000, 500000, 437500, 350000, 312500)
MEASOUT_SOURCES = 8
SWEEP_STEPS = (0.01, 0.02, 0.05, 0.1, 0.125, 0.25, 0.5, 1)
SWEEP_DELAYS = (0, 0.1, 0.2, 0.3, 0.4, 0.5)
SAMPLE_DELAYS = (0, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9)
QUESTIONABLE_BITS = 1 | 2 | 16 | 512 | 1024
SHORT_SWEEP = "SWE:STAR 0;STOP 0.5;STEP 0.05;DEL 0;SDEL 0;:INIT:SWE;*OPC?"
SHORT_SWEEP_POINTS = 11
UNDEFINED_HEADER = -113
OUT_OF_RANGE = -222
ERROR_LINE = re.compile(r'^([+-]?\d+),"(.*)"$', re.S)
SHOWN = 5          # the first few of each kind of fault are printed
DRAIN_AT = 5       # a drain follows once this many provoked errors wait in the queue


def split_fields(answer):
    """The fields of an answer line: split on ';' outside quoted strings."""
    fields, field, quoted = [], [], False
    for c in answer:
        if c == '"':
            quoted = not quoted
        elif c == ";" and not quoted:
            fields.append("".join(field))
            field = []
            continue
        field.append(c)
    fields.append("".join(field))
    return fields


def same(answer, expected):
    try:
        value = float(answer)
    except ValueError:
        return False
    return abs(value - expected) <= 1e-6 * abs(expected) + 1e-12


class Program:
    """The program under test, its output collected so that its pipes never fill."""

    def __init__(self, path):
        self.process = subprocess.Popen(
            [path, "--headless", "--simulate", "--remote", "0"], stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        first = self.process.stdout.readline()
        match = re.search(r"listening on [\d.]+:(\d+)", first)
        if not match:
            raise RuntimeError("no listening line from %s: %r" % (path, first))
        self.port = int(match.group(1))
        self.output = []
        self.readers = [threading.Thread(target=self._collect, args=(pipe, name), daemon=True)
                        for pipe, name in ((self.process.stdout, "stdout"),
                                           (self.process.stderr, "stderr"))]
        for reader in self.readers:
            reader.start()

    def _collect(self, pipe, name):
        for line in pipe:
            self.output.append("%s: %s" % (name, line.rstrip("\n")))

    def resident_kb(self):
        return self._status("VmRSS")

    def peak_kb(self):
        return self._status("VmHWM")

    def cpu_seconds(self):
        with open("/proc/%d/stat" % self.process.pid) as stat:
            fields = stat.read().rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def _status(self, key):
        with open("/proc/%d/status" % self.process.pid) as status:
            for line in status:
                if line.startswith(key + ":"):
                    return int(line.split()[1])
        return 0

    def stop(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        for reader in self.readers:
            reader.join(timeout=5)


class Soak:
    def __init__(self, sock, seed, window):
        self.sock = sock
        self.reader = sock.makefile("rb", buffering=1 << 16)
        self.random = random.Random(seed)
        self.window = window
        self.out = []                        # lines not yet written to the socket
        self.pending = collections.deque()   # (line index, fields, check, line) of queries
        self.lines = 0                       # lines sent
        self.done = 0                        # lines known to have run (an answer after them)
        self.commands = 0                    # units sent
        self.recent = collections.deque(maxlen=200)   # (index, line), for the reports
        # What the program should hold, as of the last line sent.
        self.volt = None
        self.range = 2.5e-3
        self.clamp_high = None               # fraction of the range's full scale
        self.clamp_low = None
        self.output_on = True
        self.measout = 2
        self.slew = 1000000
        self.sweep = [-5.0, 5.0, 1.0, 0.0, 0.0]
        # The error queue: the provoked errors not yet read, as (line index, code).
        self.provoked = collections.deque()
        self.queued = 0                      # provoked errors the queue holds after the last line
        self.resync = False
        self.last_drain = -1
        # The tally.
        self.provoked_total = 0
        self.seen = 0
        self.missing = 0
        self.unexpected = []
        self.unexpected_count = 0
        self.bad = []
        self.bad_count = 0
        self.sweeps = 0
        self.sweep_seconds = 0.0
        self.range_after_sweep = 0
        self.range_after_sweep_example = None
        self.ranges_picked_again = 0

    # --- the link -----------------------------------------------------------------------

    def send(self, line, units, queries=0, check=None):
        index = self.lines
        self.out.append(line + "\n")
        self.lines += 1
        self.commands += units
        self.recent.append((index, line))
        if queries:
            self.pending.append((index, queries, check, line))
        while self.lines - self.done > self.window:
            if not self.pending:     # only settings in flight: *OPC? tells when they have run
                self.send("*OPC?", 1, 1, self.expect_text("1"))
                continue
            self.read_one()
        return index

    def write_out(self):
        if self.out:
            self.sock.sendall("".join(self.out).encode())
            self.out.clear()

    def read_one(self):
        self.write_out()
        raw = self.reader.readline()
        if not raw:
            raise ConnectionError("the program closed the connection")
        index, queries, check, line = self.pending.popleft()
        answer = raw.decode("latin-1").rstrip("\r\n")
        fields = split_fields(answer)
        if len(fields) != queries:
            self.fault("%d fields for %d queries" % (len(fields), queries), line, answer)
        elif check:
            check(index, fields, line, answer)
        self.done = index + 1

    def flush(self):
        """Reads every answer in flight; the lines sent so far have all run afterwards."""
        while self.pending:
            self.read_one()
        if self.out:   # settings after the last query: one *OPC? to know they have run
            self.send("*OPC?", 1, 1, self.expect_text("1"))
            self.read_one()
        if self.resync:
            self.drain_all()

    def fault(self, what, line, answer):
        self.bad_count += 1
        if len(self.bad) < SHOWN:
            self.bad.append("%s: %r -> %r" % (what, line, answer))

    # --- checks -------------------------------------------------------------------------

    def expect_text(self, *texts):
        def check(index, fields, line, answer):
            if list(fields) != list(texts):
                self.fault("expected %s" % ";".join(texts), line, answer)
        return check

    def expect_values(self, *values):
        """Each field the value set before (None: 9.91E+37, never set); '' for a skipped one."""
        def check(index, fields, line, answer):
            for field, value in zip(fields, values):
                if value == "":
                    ok = field == ""
                else:
                    ok = same(field, NOT_SET if value is None else value)
                if not ok:
                    self.fault("expected %s" % ";".join(map(str, values)), line, answer)
                    return
        return check

    def expect_readings(self, limits):
        """Readings: finite numbers within the given magnitudes."""
        def check(index, fields, line, answer):
            for field, limit in zip(fields, limits):
                if limit is None:
                    continue
                try:
                    value = float(field)
                except ValueError:
                    value = math.nan
                if not math.isfinite(value) or abs(value) > limit:
                    self.fault("expected a reading within +-%g" % limit, line, answer)
                    return
        return check

    def expect_questionable(self, index, fields, line, answer):
        if not fields[0].isdigit() or int(fields[0]) & ~QUESTIONABLE_BITS:
            self.fault("expected alarm bits", line, answer)

    def expect_status_byte(self, queued):
        # Alone on its line, with no enables set, *STB? has only bit 2 (4): errors queued.
        def check(index, fields, line, answer):
            if fields[0] != ("4" if queued else "0"):
                self.fault("expected %d" % (4 if queued else 0), line, answer)
        return check

    def errors_since(self, previous):
        """The check of a SYST:ERR? line sent after the drain at line `previous`."""
        return lambda index, fields, line, answer: self.check_errors(
            previous, index, fields, line, answer)

    def check_errors(self, previous, index, fields, line, answer):
        """SYST:ERR? fields read at line `index`: they match the errors provoked before it."""
        for position, field in enumerate(fields):
            match = ERROR_LINE.match(field)
            if not match:
                self.fault("expected an error queue entry", line, answer)
                self.resync = True
                return
            code = int(match.group(1))
            if code == 0:
                # The queue was empty there: every provoked error before it has been read.
                while self.provoked and self.provoked[0][0] < index:
                    self.provoked.popleft()
                    self.missing += 1
                if any(not f.startswith("0,") for f in fields[position:]):
                    self.fault("an error after 0,\"No error\"", line, answer)
                return
            for n, (provoked_at, provoked_code) in enumerate(self.provoked):
                if provoked_at >= index:
                    break
                if provoked_code == code:
                    del self.provoked[n]
                    self.seen += 1
                    break
            else:
                self.unexpected_count += 1
                if len(self.unexpected) < SHOWN:
                    lines = [l for i, l in self.recent if previous < i < index
                             and any("?" not in unit for unit in l.split(";"))][-8:]
                    self.unexpected.append("%s, read at line %d, after the settings: %s"
                                           % (field, index, " | ".join(lines)))
        # Every field held an error, though the line asked once more than the queue should
        # hold: it holds errors the mix did not provoke, and perhaps more of them.
        self.resync = True

    def drain(self):
        """SYST:ERR? as many times as the queue should hold errors, and once more for 0."""
        count = self.queued + 1
        index = self.send(";:".join(["SYST:ERR?"] * count), count, count,
                          self.errors_since(self.last_drain))
        self.last_drain = index
        self.queued = 0

    def drain_all(self):
        """After an error the mix did not provoke: read the queue until it is empty."""
        self.resync = False
        while True:
            while self.pending:
                self.read_one()
            index = self.send("SYST:ERR?", 1, 1, self.errors_since(self.last_drain))
            self.last_drain = index
            self.read_one()
            if not self.resync:
                break
            self.resync = False
        self.queued = 0

    def provoke(self, index, code):
        self.provoked.append((index, code))
        self.provoked_total += 1
        self.queued += 1

    # --- the mix ------------------------------------------------------------------------

    def volt_value(self):
        return round(self.random.uniform(-12.8, 12.8), 3)

    def clamp_fraction(self):
        return float("%.4g" % self.random.uniform(0.05, 1.2))

    def amperes(self, value):
        """A current as a script writes it: plain, or with the unit's suffix."""
        if self.random.random() < 0.5:
            return "%.4g" % value
        if value < 1e-3:
            return "%.4gUA" % (value * 1e6)
        return "%.4gMA" % (value * 1e3)

    def clamp_text(self, fraction):
        return "%.4g" % (fraction * self.range)

    def set_volt(self):
        self.volt = self.volt_value()
        self.send("VOLT %.3f" % self.volt, 1)

    def set_volt_in_millivolts(self):
        millivolts = self.random.randint(-12800, 12800)
        self.volt = millivolts / 1000.0
        self.send("SOUR:VOLT %dMV" % millivolts, 1)

    def query_volt(self):
        self.send("VOLT?", 1, 1, self.expect_values(self.volt))

    def force_and_measure(self):
        self.volt = self.volt_value()
        self.send("VOLT %.3f;:MEAS:VOLT?;:MEAS:CURR?" % self.volt, 3, 2,
                  self.expect_readings((14.0, 2.0)))

    def measure(self):
        self.send("MEAS:VOLT?", 1, 1, self.expect_readings((14.0,)))

    def measure_and_source(self):
        # MEAS:VOLT? switches MEASOUT to VSENSE and puts the source back after it.
        reading, source = self.expect_readings((14.0,)), self.expect_text(str(self.measout))

        def check(index, fields, line, answer):
            reading(index, fields[:1], line, answer)
            source(index, fields[1:], line, answer)
        self.send("MEAS:VOLT?;:MEASO:SOUR?", 2, 2, check)

    def measure_current(self):
        self.send("MEAS:CURR?", 1, 1, self.expect_readings((2.0,)))

    def set_range(self, query=False):
        full_scale = self.random.choice(RANGES)
        value = full_scale * self.random.uniform(0.5, 0.999)
        self.range = full_scale
        if query:
            self.send("CURR:RANG %s;RANG?" % self.amperes(value), 2, 1,
                      self.expect_values(full_scale))
        else:
            self.send("CURR:RANG %s" % self.amperes(value), 1)

    def query_range(self):
        self.send("CURR:RANG?", 1, 1, self.expect_values(self.range))

    def set_clamps(self):
        high, low = self.clamp_fraction(), -self.clamp_fraction()
        high_text, low_text = self.clamp_text(high), self.clamp_text(low)
        self.clamp_high, self.clamp_low = float(high_text) / self.range, float(low_text) / self.range
        if self.random.random() < 0.3:
            self.send("CLAM:HIGH %s;HIGH?;LOW %s;LOW?" % (high_text, low_text), 4, 2,
                      self.expect_values(float(high_text), float(low_text)))
        else:
            self.send("SOUR:CLAM:HIGH %s;LOW %s" % (high_text, low_text), 2)

    def query_clamps(self):
        # A clamp's code stays when the range changes: it answers that code's current now.
        expected = [None if f is None else f * self.range for f in (self.clamp_high, self.clamp_low)]
        self.send("CLAM:HIGH?;LOW?", 2, 2, self.expect_values(*expected))

    def set_output(self):
        self.output_on = self.random.random() < 0.7
        word = self.random.choice(("ON", "1") if self.output_on else ("OFF", "0"))
        self.send("OUTP %s" % word, 1)

    def query_output(self):
        self.send("OUTP?", 1, 1, self.expect_text("1" if self.output_on else "0"))

    def set_measout(self):
        self.measout = self.random.randrange(MEASOUT_SOURCES)
        self.send("MEASO:SOUR %d" % self.measout, 1)

    def query_measout(self):
        self.send("MEASO:SOUR?", 1, 1, self.expect_text(str(self.measout)))

    def set_slew(self):
        self.slew = self.random.choice(SLEWS)
        self.send("SLEW %d" % self.slew, 1)

    def query_slew(self):
        self.send("SLEW?", 1, 1, self.expect_text(str(self.slew)))

    def set_sweep(self):
        start = self.random.randint(-5, 0)
        self.sweep = [float(start), float(self.random.randint(start + 1, 5)),
                      self.random.choice(SWEEP_STEPS), self.random.choice(SWEEP_DELAYS),
                      self.random.choice(SAMPLE_DELAYS)]
        self.send("SWE:STAR %d;STOP %d;STEP %g;DEL %g;SDEL %g" % tuple(self.sweep), 5)

    def set_sweep_step(self):
        self.sweep[2] = self.random.choice(SWEEP_STEPS)
        self.send("SWE:STEP %gMV" % (self.sweep[2] * 1000), 1)

    def query_sweep(self):
        self.send("SWE:STAR?;STOP?;STEP?;DEL?;SDEL?", 5, 5, self.expect_values(*self.sweep))

    def query_settings(self):
        clamps = [None if f is None else f * self.range for f in (self.clamp_high, self.clamp_low)]
        self.send("VOLT?;:CURR:RANG?;:CLAM:HIGH?;LOW?;:OUTP?;:MEASO:SOUR?;:SLEW?", 7, 7,
                  self.expect_values(self.volt, self.range, clamps[0], clamps[1],
                                     1 if self.output_on else 0, self.measout, self.slew))

    def query_questionable(self):
        self.send("STAT:QUES?", 1, 1, self.expect_questionable)

    def query_status_byte(self):
        self.send("*STB?", 1, 1, self.expect_status_byte(self.queued > 0))

    # The refusals the mix provokes: the setting before them stands.
    def refuse_voltage(self):
        self.provoke(self.send("VOLT 99", 1), OUT_OF_RANGE)

    def refuse_clamp(self):
        self.provoke(self.send("CLAM:HIGH %s" % self.clamp_text(2 * CLAMP_LIMIT), 1), OUT_OF_RANGE)

    def refuse_header(self):
        if self.random.random() < 0.5:
            self.provoke(self.send("SOUR:VOLT:LEVX %.3f" % self.volt_value(), 1), UNDEFINED_HEADER)
        else:
            self.provoke(self.send("MEAS:VOLTX?", 1, 1, self.expect_text("")), UNDEFINED_HEADER)

    def refuse_in_line(self):
        # The units before the error run, the rest of the line is skipped: VOLT? has an
        # empty field, and the first voltage stands.
        self.volt = self.volt_value()
        self.provoke(self.send("VOLT %.3f;:VOLT 99;:VOLT?" % self.volt, 3, 1,
                               self.expect_text("")), OUT_OF_RANGE)

    def short_sweep(self):
        self.flush()   # the sweep's time is its own, not that of the lines in flight
        t0 = time.perf_counter()
        self.sweep = [0.0, 0.5, 0.05, 0.0, 0.0]
        self.send(SHORT_SWEEP, 7, 1, self.expect_text("1"))

        def fetched(index, fields, line, answer):
            values = answer.split(",")
            try:
                ok = len(values) == SHORT_SWEEP_POINTS and all(
                    math.isfinite(float(v)) for v in values)
            except ValueError:
                ok = False
            if not ok:
                self.fault("expected %d readings" % SHORT_SWEEP_POINTS, line, answer)
        self.send("FETC:SWE?", 1, 1, fetched)
        self.flush()
        self.sweeps += 1
        self.sweep_seconds += time.perf_counter() - t0

        # A sweep leaves the chip on its own range and the clamps on the first, as on the
        # panels, while CURR:RANG? answers the front panel's list: counted here, and the
        # front range picked again, so that the clamps the mix sets are in the range it
        # believes.
        full_scale = self.range
        before = self.range_after_sweep

        def same_range(index, fields, line, answer):
            if not same(fields[0], full_scale) or not same(fields[1], CLAMP_LIMIT * full_scale):
                self.range_after_sweep += 1
                if self.range_after_sweep_example is None:
                    self.range_after_sweep_example = "%r -> %r" % (line, answer)
        self.send("CURR:RANG?;:CLAM:HIGH? MAX", 2, 2, same_range)
        self.flush()
        if self.range_after_sweep > before:
            self.send("CURR:RANG %g" % full_scale, 1)
            self.ranges_picked_again += 1

    def mix(self):
        return (
            (self.set_volt, 10), (self.set_volt_in_millivolts, 2), (self.query_volt, 6),
            (self.force_and_measure, 6), (self.measure, 8), (self.measure_and_source, 3),
            (self.measure_current, 2),
            (self.set_range, 3), (lambda: self.set_range(query=True), 2), (self.query_range, 2),
            (self.set_clamps, 5), (self.query_clamps, 3),
            (self.set_output, 2), (self.query_output, 2),
            (self.set_measout, 2), (self.query_measout, 2),
            (self.set_slew, 2), (self.query_slew, 2),
            (self.set_sweep, 2), (self.set_sweep_step, 1), (self.query_sweep, 2),
            (self.query_settings, 2),
            (self.query_questionable, 3), (self.query_status_byte, 3), (self.drain, 3),
            (self.refuse_voltage, 0.3), (self.refuse_clamp, 0.2), (self.refuse_header, 0.3),
            (self.refuse_in_line, 0.2),
        )

    def start_state(self):
        """The settings a fresh program holds (the table of *RST in the README)."""
        self.query_settings()
        self.query_sweep()
        self.query_status_byte()
        self.drain()
        self.flush()


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program", help="the qz7740 program to start")
    parser.add_argument("commands", nargs="?", type=int, default=1000000,
                        help="remote commands to send (units; default 1,000,000)")
    parser.add_argument("--seed", type=int, default=7740)
    parser.add_argument("--window", type=int, default=50, help="lines in flight at most")
    parser.add_argument("--warmup", type=int, default=1000)
    parser.add_argument("--every", type=int, default=100000, help="a figure every N commands")
    parser.add_argument("--sweep-every", type=int, default=10000)
    args = parser.parse_args()

    began = time.perf_counter()
    program = Program(args.program)
    sock = None
    exit_code = None
    try:
        sock = socket.create_connection(("127.0.0.1", program.port), timeout=120)
        sock.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        soak = Soak(sock, args.seed, args.window)
        actions, weights = zip(*soak.mix())
        choose = soak.random.choices

        def run(until, figures):
            base = soak.commands   # sweeps and figures count from the measured run's start
            next_sweep = base + args.sweep_every
            next_figure = base + args.every
            batch = []
            while soak.commands < until:
                if not batch:
                    batch = choose(actions, weights, k=1000)
                if soak.queued >= DRAIN_AT:
                    soak.drain()
                else:
                    batch.pop()()
                if soak.resync:
                    soak.flush()
                if soak.commands >= next_sweep and figures is not None:
                    soak.short_sweep()
                    next_sweep += args.sweep_every
                if soak.commands >= next_figure and figures is not None:
                    soak.flush()
                    figures.append((soak.commands, time.perf_counter(), program.resident_kb()))
                    next_figure += args.every
            soak.drain()
            soak.flush()

        soak.start_state()
        run(args.warmup, None)
        warm = soak.commands
        start_kb = program.resident_kb()
        print("program %s, pid %d, port %d; seed %d, up to %d lines in flight"
              % (args.program, program.process.pid, program.port, args.seed, args.window))
        print("warm-up: %d commands; VmRSS at the start %d kB" % (warm, start_kb))

        figures = []
        program_cpu, own_cpu = program.cpu_seconds(), time.process_time()
        t0 = time.perf_counter()
        run(warm + args.commands, figures)
        t1 = time.perf_counter()
        program_cpu, own_cpu = program.cpu_seconds() - program_cpu, time.process_time() - own_cpu
        total = soak.commands - warm
        end_kb = program.resident_kb()
        peak_kb = program.peak_kb()

        print("%12s %10s %14s %10s" % ("commands", "seconds", "commands/s", "VmRSS kB"))
        last_count, last_time = warm, t0
        for count, at, kb in figures:
            print("%12d %10.1f %14.0f %10d" % (count - warm, at - t0,
                                              (count - last_count) / (at - last_time), kb))
            last_count, last_time = count, at
        tail = soak.commands - last_count   # a rate over a few commands says nothing
        print("%12d %10.1f %14s %10d   (end)" % (
            total, t1 - t0, "%.0f" % (tail / (t1 - last_time)) if tail >= 1000 else "-", end_kb))
        print("overall: %d commands in %d lines, %.1f s: %.0f commands/s" % (
            total, soak.lines, t1 - t0, total / (t1 - t0)))
        print("CPU time over the run: the program %.1f s, this client %.1f s" % (
            program_cpu, own_cpu))
        print("sweeps: %d, %.2f s in all (%.1f ms each, with their fetch)" % (
            soak.sweeps, soak.sweep_seconds, 1000 * soak.sweep_seconds / max(soak.sweeps, 1)))
        if figures:
            base_count, _, base_kb = figures[0]
            print("VmRSS: start %d kB, after %d commands %d kB, end %d kB (peak %d kB); "
                  "growth from %d to the end %+d kB (%+.1f%%)" % (
                      start_kb, base_count - warm, base_kb, end_kb, peak_kb,
                      base_count - warm, end_kb - base_kb, 100.0 * (end_kb - base_kb) / base_kb))
        else:
            print("VmRSS: start %d kB, end %d kB (peak %d kB)" % (start_kb, end_kb, peak_kb))
        print("provoked errors: %d seen of %d provoked (%d missing), warm-up included"
              % (soak.seen, soak.provoked_total, soak.missing))
        if soak.range_after_sweep:
            print("as the README says, a sweep left the clamps off the front panel's range: "
                  "%d of %d sweeps, e.g. %s; CURR:RANG sent again after %d of them"
                  % (soak.range_after_sweep, soak.sweeps, soak.range_after_sweep_example,
                     soak.ranges_picked_again))
        print("unexpected errors: %d" % soak.unexpected_count)
        for entry in soak.unexpected:
            print("    " + entry)
        print("unexpected answers: %d" % soak.bad_count)
        for entry in soak.bad:
            print("    " + entry)

        soak.send("SYST:EXIT", 1)
        soak.write_out()
        exit_code = program.process.wait(timeout=30)
        print("SYST:EXIT: the program ended with %d; %.1f s from start to end"
              % (exit_code, time.perf_counter() - began))
    finally:
        if sock:
            sock.close()
        program.stop()
    for line in program.output:
        print("program " + line)
    failed = (soak.unexpected_count or soak.bad_count or soak.missing
              or soak.seen != soak.provoked_total or exit_code != 0)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
