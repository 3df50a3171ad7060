"""The program serving the virtual board, driven by real Python clients.

Starts ``qz7740 --headless --simulate --remote 0``, reads the port from its first line,
runs the five-voltage example through plain PyVISA and through the pymeasure class, checks
what the board answers through both, then ends the program with SYST:EXIT and expects
exit code 0. Whatever fails, the program is not left running.

usage: test_clients.py PROGRAM [--version X.Y.Z]
"""

import argparse
import os
import queue
import re
import subprocess
import sys
import threading
import traceback

HERE = os.path.dirname(os.path.abspath(__file__))
PYTHON_DIR = os.path.join(HERE, "..", "..", "python")
EXAMPLE = os.path.join(PYTHON_DIR, "example_five_voltages.py")
sys.path.insert(0, PYTHON_DIR)

# The virtual board's readings carry a little noise and the ADC's step; a reading this far
# from the forced voltage means the force or the scaling went wrong.
VOLTAGE_TOLERANCE = 0.05
OUT_OF_RANGE_VOLTS = 100
REFUSED_VOLTAGE_TEXT = "Number too large. Please reenter voltage between Z/S and F/S."

failures = []


def check(condition, what):
    print(("ok    " if condition else "FAIL  ") + what, flush=True)
    if not condition:
        failures.append(what)
    return condition


class Program:
    """The program under test, its output drained so that it never blocks on a pipe."""

    def __init__(self, path):
        self.lines = queue.Queue()
        self.process = subprocess.Popen(
            [path, "--headless", "--simulate", "--remote", "0"],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
            text=True)
        threading.Thread(target=self._drain, daemon=True).start()

    def _drain(self):
        for line in self.process.stdout:
            self.lines.put(line.rstrip("\n"))
        self.lines.put(None)

    def port(self, timeout=20):
        try:
            first = self.lines.get(timeout=timeout)
        except queue.Empty:
            raise RuntimeError("no line from the program within %d s" % timeout)
        match = re.fullmatch(r"listening on 127\.0\.0\.1:(\d+)", first or "")
        if not match:
            raise RuntimeError("first line is not the listening line: %r" % first)
        return int(match.group(1))

    def wait(self, timeout):
        try:
            return self.process.wait(timeout=timeout)
        except subprocess.TimeoutExpired:
            return None

    def kill(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()


def run_example(port, client):
    result = subprocess.run([sys.executable, EXAMPLE, str(port), "--client", client],
                            capture_output=True, text=True, timeout=30)
    print(result.stdout + result.stderr, flush=True)
    check(result.returncode == 0, "%s example ends with 0" % client)
    rows = []
    for line in result.stdout.splitlines():
        fields = line.split()
        if len(fields) == 4:
            try:
                rows.append(tuple(float(f) for f in fields))
            except ValueError:
                pass  # the header
    check(len(rows) == 5, "%s example prints five rows" % client)
    for forced, held, volts, amps in rows:
        check(held == forced, "%s: SOUR:VOLT? holds %g after forcing %g" % (client, held, forced))
        check(abs(volts - forced) < VOLTAGE_TOLERANCE,
              "%s: MEAS:VOLT? %g near the forced %g" % (client, volts, forced))
        check(abs(amps) < 1.0, "%s: MEAS:CURR? %g is a current" % (client, amps))
    return rows


def check_identity(idn, version):
    fields = idn.split(",")
    check(len(fields) == 4, "*IDN? has four fields: %r" % idn)
    fields += [""] * 4
    check(fields[0] == "QZ7740", "*IDN? maker field")
    check(fields[1] == "QZ7740 evaluation board", "*IDN? model field")
    check(fields[2] == "virtual board", "*IDN? names the virtual board")
    if version:
        check(fields[3] == version, "*IDN? version %r is %r" % (fields[3], version))


def through_pyvisa(port, version):
    import pyvisa

    rm = pyvisa.ResourceManager("@py")
    board = rm.open_resource("TCPIP0::127.0.0.1::%d::SOCKET" % port, read_termination="\n",
                             write_termination="\n", timeout=5000)
    try:
        check_identity(board.query("*IDN?"), version)
        check(board.query("SYST:ERR?") == '0,"No error"', "error queue starts empty")

        # A refused voltage leaves the setting alone and queues the panel's own refusal.
        board.write("SOUR:VOLT 1.5")
        board.write("SOUR:VOLT %d" % OUT_OF_RANGE_VOLTS)
        error = board.query("SYST:ERR?")
        check(error == '-222,"%s"' % REFUSED_VOLTAGE_TEXT,
              "refused voltage queues -222 with the panel's text: %r" % error)
        check(float(board.query("SOUR:VOLT?")) == 1.5, "refused voltage keeps 1.5 V")
        check(board.query("SYST:ERR?") == '0,"No error"', "SYST:ERR? takes the error away")

        # Long and short forms, any case, a leading colon; an unknown header is a -100 error.
        check(float(board.query(":source:voltage?")) == 1.5, "long lower-case form with colon")
        board.write("NOT:A:COMMAND")
        error = board.query("SYST:ERR?")
        check(re.match(r'-1\d\d,"', error) is not None, "unknown header queues -1xx: %r" % error)
        board.write("*CLS")
        check(board.query("SYST:ERR?") == '0,"No error"', "*CLS empties the queue")

        # The register read-back answers six hexadecimal digits.
        answer = board.query("REG:READ? #H0")
        check(re.fullmatch(r"[0-9A-F]{6}", answer) is not None,
              "REG:READ? answers six hex digits: %r" % answer)
    finally:
        board.close()
        rm.close()


def through_pymeasure(port, version):
    from qz7740 import QZ7740

    board = QZ7740(port)
    try:
        check_identity(board.id, version)
        board.output_enabled = False
        check(board.output_enabled is False, "output_enabled reads back False")
        board.output_enabled = True
        check(board.output_enabled is True, "output_enabled reads back True")

        board.source_voltage = 2.5
        check(board.source_voltage == 2.5, "source_voltage reads back 2.5")
        check(abs(board.voltage - 2.5) < VOLTAGE_TOLERANCE,
              "voltage %g measured near 2.5" % board.voltage)
        board.source_voltage = -OUT_OF_RANGE_VOLTS
        errors = board.check_errors()
        check(errors == [(-222, REFUSED_VOLTAGE_TEXT)],
              "check_errors gives the refusal of -%d V: %r" % (OUT_OF_RANGE_VOLTS, errors))
        check(board.source_voltage == 2.5, "refused voltage keeps 2.5 V")

        for index in (2, 4, 3):
            board.current_range = index
            check(board.current_range == index, "current_range reads back %d" % index)
        check(board.check_errors() == [], "the settings above queued no error")

        temperature = board.temperature
        check(-40 < temperature < 150, "temperature %g is a die temperature" % temperature)
        check(board.alarms >= 0, "alarms read as a word")
        check(board.running is False, "no run in progress")

        # Every setting of the class reads back and takes its own value again without an
        # error: a header or a format the program does not know would queue one.
        settings = [n for n, v in vars(type(board)).items() if isinstance(v, property) and v.fset]
        for name in settings:
            value = getattr(board, name)
            if value is not None and value != -1:
                setattr(board, name, value)
        check(board.check_errors() == [], "%d settings read and written back" % len(settings))

        # A short sweep on a range that carries the load's current: its points are the
        # voltages stepped through.
        board.sweep_range = 3
        board.sweep_delay = 0
        board.sweep_start = 0
        board.sweep_stop = 1
        board.sweep_step = 250
        check((board.sweep_start, board.sweep_stop, board.sweep_step) == (0, 1, 250),
              "sweep parameters read back")
        board.init_sweep()
        check(board.wait_for_completion(timeout=30), "*OPC? answers 1 after the sweep")
        points = board.fetch_sweep()
        expected = [0, 0.25, 0.5, 0.75, 1]
        check(len(points) == len(expected)
              and all(abs(p - e) < VOLTAGE_TOLERANCE for p, e in zip(points, expected)),
              "sweep measures 0 to 1 V in steps of 0.25 V: %r" % points)

        # The time run holds its voltage for 101 samples.
        board.time_voltage = 1.5
        board.init_time_run()
        check(board.wait_for_completion(timeout=30), "*OPC? answers 1 after the time run")
        samples = board.fetch_time_run()
        check(len(samples) == 101 and all(abs(v - 1.5) < VOLTAGE_TOLERANCE for v in samples),
              "time run gives 101 samples near 1.5 V (%d)" % len(samples))

        # A slow sweep (500 ms a point, 21 points) stopped at once keeps what it took: the
        # points it did not take show that ABOR ended it, however busy the machine is.
        board.sweep_delay = 5
        board.sweep_step = 50
        board.init_sweep()
        check(board.running, "STAT:OPER? reports the sweep in progress")
        board.abort()
        check(board.wait_for_completion(timeout=30), "*OPC? answers 1 after ABOR")
        check(not board.running, "no run in progress after ABOR")
        kept = board.fetch_sweep()
        check(1 <= len(kept) < 21, "the stopped sweep keeps its first points (%d)" % len(kept))
        board.sweep_delay = 0
        check(board.check_errors() == [], "the runs queued no error")
        board.exit_program()
    finally:
        board.adapter.connection.close()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--version", default="")
    args = parser.parse_args()

    program = Program(args.program)
    try:
        port = program.port()
        print("program serves on port %d" % port, flush=True)
        run_example(port, "pyvisa")
        through_pyvisa(port, args.version)
        run_example(port, "pymeasure")
        through_pymeasure(port, args.version)
        code = program.wait(timeout=15)
        check(code == 0, "SYST:EXIT ends the program with code 0 (got %r)" % code)
    except Exception:
        traceback.print_exc()
        failures.append("exception")
    finally:
        program.kill()
        while True:  # the program's own words, for the log
            try:
                line = program.lines.get(timeout=1)
            except queue.Empty:
                break
            if line is None:
                break
            print("program: " + line)

    if failures:
        print("%d check(s) failed" % len(failures))
        return 1
    print("all checks passed")
    return 0


if __name__ == "__main__":
    sys.exit(main())
