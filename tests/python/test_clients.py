"""The program serving the virtual board (``qz7740 --headless --simulate --remote 0``),
driven by real Python clients: the example, plain PyVISA and the pymeasure class, then
SYST:EXIT with exit code 0. Whatever fails, the program is not left running.

usage: test_clients.py PROGRAM [--version X.Y.Z]
"""

import argparse
import os
import queue
import re
import socket
import struct
import subprocess
import sys
import threading
import traceback

sys.dont_write_bytecode = True  # no __pycache__ in the source tree
HERE = os.path.dirname(os.path.abspath(__file__))
PYTHON_DIR = os.path.join(HERE, "..", "..", "python")
EXAMPLE = os.path.join(PYTHON_DIR, "example_five_voltages.py")
sys.path.insert(0, PYTHON_DIR)

# The virtual board's readings carry a little noise and the ADC's step; a reading this far
# from the forced voltage means the force or the scaling went wrong.
VOLTAGE_TOLERANCE = 0.05
# At VREF 5 and OFFSET 32768 the force range's low end is -12.8125 V.
VOLT_MIN = "-12.8125"
# A sweep of 0 to 1 V in steps of 50 mV: 21 points, the forced volts on codes of 0.39 mV.
SWEEP_POINTS = 21
SWEEP_FORCED = [k * 0.05 for k in range(SWEEP_POINTS)]

failures = []


def check(condition, what):
    print(("ok    " if condition else "FAIL  ") + what, flush=True)
    if not condition:
        failures.append(what)
    return condition


def raises(exception, action):
    """The exception the action raised, or None."""
    try:
        action()
    except exception as e:
        return e
    return None


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
    result = subprocess.run([sys.executable, "-B", EXAMPLE, str(port), "--client", client],
                            capture_output=True, text=True, timeout=30)
    print(result.stdout + result.stderr, flush=True)
    check(result.returncode == 0, "%s example ends with 0" % client)
    rows = []
    for line in result.stdout.splitlines():
        try:
            rows.append(tuple(float(f) for f in line.split()))
        except ValueError:
            pass  # the identity, the header, the error queue
    rows = [r for r in rows if len(r) == 4]
    check(len(rows) == 5, "%s example prints five rows" % client)
    for forced, held, volts, amps in rows:
        check(held == forced, "%s: VOLT? holds %g after forcing %g" % (client, held, forced))
        check(abs(volts - forced) < VOLTAGE_TOLERANCE,
              "%s: MEAS:VOLT? %g near the forced %g" % (client, volts, forced))
        check(abs(amps) < 1.0, "%s: MEAS:CURR? %g is a current" % (client, amps))


def check_identity(idn, version):
    fields = idn.split(",")
    check(len(fields) == 4 and fields[:3] == ["QZ7740", "QZ7740 evaluation board", "virtual board"],
          "*IDN? names maker, model and the virtual board: %r" % idn)
    if version:
        check(fields[-1] == version, "*IDN? version %r is %r" % (fields[-1], version))


def same_values(ascii_values, real64, real32, what):
    """The formats of one set of readings agree: REAL,32 is REAL,64 in single precision,
    ASCII is REAL,64 to its seven significant digits."""
    single = [struct.unpack("f", struct.pack("f", v))[0] for v in real64]
    check(len(real64) == len(ascii_values) and real32 == single
          and all(abs(a - b) <= 6e-7 * abs(b) + 1e-12 for a, b in zip(ascii_values, real64)),
          "%s: ASCII, REAL,32 and REAL,64 give the same %d values" % (what, len(ascii_values)))


def through_pyvisa(port, version):
    import pyvisa
    from qz7740 import no_delay

    rm = pyvisa.ResourceManager("@py")
    board = rm.open_resource("TCPIP0::127.0.0.1::%d::SOCKET" % port, read_termination="\n",
                             write_termination="\n", timeout=5000)
    no_delay(board)
    q = board.query
    try:
        check_identity(q("*IDN?"), version)

        # The compound messages, refusals, limits and ranges are the C++ tests' to check;
        # here PyVISA reads one line back for a line of several units.
        check(q("VOLT 1.5;:CURR:RANG 2mA;:VOLT?;:CURR:RANG?") == "1.5;0.0025",
              "four units in one line, one answer line")

        # A sweep, its data in every format and byte order.
        check(q("CURR:RANG 2.5MA;:SWE:STAR 0;STOP 1;STEP 50MV;DEL 0;SDEL 0;RANG 2.5mA;"
                ":INIT:SWE;*OPC?") == "1", "INIT:SWE;*OPC? answers when the sweep ends")
        readings = board.query_ascii_values("FETC:SWE?")
        forced = board.query_ascii_values("FETC:SWE:FORC?")
        check(len(forced) == SWEEP_POINTS and
              all(abs(f - e) < 1e-3 for f, e in zip(forced, SWEEP_FORCED)),
              "the sweep forced 0 to 1 V in 50 mV steps: %r" % forced)
        check(all(abs(r - f) < VOLTAGE_TOLERANCE for r, f in zip(readings, forced)),
              "its readings follow the forced volts")
        blocks = {}
        for bits, datatype in ((32, "f"), (64, "d")):
            for order, big in (("NORM", True), ("SWAP", False)):
                board.write("FORM REAL,%d;:FORM:BORD %s" % (bits, order))
                blocks[bits, order] = board.query_binary_values(
                    "FETC:SWE?", datatype=datatype, is_big_endian=big)
        check(blocks[32, "NORM"] == blocks[32, "SWAP"] and blocks[64, "NORM"] == blocks[64, "SWAP"],
              "NORM and SWAP blocks read the same through query_binary_values")
        same_values(readings, blocks[64, "NORM"], blocks[32, "NORM"], "FETC:SWE?")
        check(q("FORM ASC;:FORM?;*IDN?").startswith("ASC,0;QZ7740,"),
              "each block ends where its length says: the next answer is whole")
    finally:
        board.close()
        rm.close()


def check_reconnects(port, count=50):
    """A client that has closed is gone: the next, connecting as it closes, is served."""
    refused = []
    for _ in range(count):
        with socket.create_connection(("127.0.0.1", port), timeout=10) as s, s.makefile("rb") as f:
            s.sendall(b"*IDN?\n")
            answer = f.readline()
        if not answer.startswith(b"QZ7740,"):
            refused.append(answer)
    check(not refused,
          "%d clients one after the other are served (refused: %r)" % (count, refused[:1]))


def through_pymeasure(port, version):
    import pyvisa
    from qz7740 import QZ7740, QZ7740Error
    from qz7740_commands import COMMANDS

    board = QZ7740(port)
    try:
        check_identity(board.id, version)
        board.reset()
        check(board.source_voltage is None and board.clamp_high is None,
              "after *RST the voltage and the clamps read None: not set yet")
        board.source_voltage = 2.5
        check(board.source_voltage == 2.5 and abs(board.voltage - 2.5) < VOLTAGE_TOLERANCE,
              "source_voltage 2.5 reads back and measures near 2.5 V")

        # What the program refuses raises, and changes nothing; what the class can tell
        # itself raises before anything is sent.
        gang = board.gang_mode
        refused = raises(QZ7740Error, lambda: setattr(board, "gang_mode", 9))
        check(refused is not None and refused.errors == [(-222, "Data out of range")]
              and board.gang_mode == gang,
              "gang_mode = 9, past the list, raises the program's -222 and keeps %r" % gang)
        refused = raises(QZ7740Error, lambda: board.select_current_range("3mA"))
        check(refused is not None and refused.errors[0][0] == -224,
              "an unknown range name raises -224")
        check(all(raises(ValueError, lambda: setattr(board, name, value)) is not None
                  for name, value in (("source_voltage", 13), ("slew_rate", 3),
                                      ("sweep_start", 13.6), ("clamp_low", 1e-3)))
              and board.error_count == 0 and board.source_voltage == 2.5,
              "13 V, a slew rate of 3 V/s, a start of 13.6 V, a positive low clamp raise "
              "ValueError and send nothing")
        board.sweep_start = -12.4
        check(board.sweep_start == -12.4, "a start of -12.4 V, -12 whole volts, is taken as it is")

        # MIN/MAX through the class, in amperes: 20 mA chooses the 25 mA range.
        board.current_range = 0.02
        check(board.current_range_name == "25mA", "20 mA chooses the 25 mA range")
        board.clamp_high, board.source_voltage = "MAX", "MIN"
        check((board.clamp_high, board.limits("CLAM:HIGH"), board.source_voltage)
              == (0.032, (0.0, 0.032), float(VOLT_MIN)), "MAX and MIN set the limits")

        # A sweep in every format, then a time run.
        board.current_range = 2.5e-3
        board.sweep_start, board.sweep_stop, board.sweep_step = 0, 1, 0.05
        board.sweep_delay, board.sample_delay, board.sweep_range = 0, 0, 2.5e-3
        board.sweep_measures = "VOLT"
        board.init_sweep()
        check(board.wait_for_completion(timeout=30), "wait_for_completion after the sweep")
        fetched = {}
        for data_format, order in (("ASC", "NORM"), ("REAL,64", "SWAP"), ("REAL,32", "NORM")):
            board.data_format, board.byte_order = data_format, order
            check((board.data_format, board.byte_order) == (data_format, order),
                  "data format %s, byte order %s read back" % (data_format, order))
            fetched[data_format] = board.fetch_sweep()
        same_values(fetched["ASC"], fetched["REAL,64"], fetched["REAL,32"], "fetch_sweep")
        check(len(board.fetch_sweep_forced()) == SWEEP_POINTS, "fetch_sweep_forced: 21 points")
        board.time_voltage = 1.5
        board.init_time_run()
        check(board.wait_for_completion(timeout=30), "wait_for_completion after the time run")
        samples, times = board.fetch_time_run(), board.fetch_time_run_times()
        check(len(samples) == len(times) == 101 and times == sorted(times)
              and all(abs(v - 1.5) < VOLTAGE_TOLERANCE for v in samples),
              "the time run: 101 samples near 1.5 V at rising times")

        # A wait that times out leaves no answer behind: the next query gets its own. The
        # sweep takes 20 s at least (41 points of 0.5 s); ABOR cuts it short.
        board.sweep_delay, board.sweep_step = 0.5, 0.025
        board.init_sweep()
        check(board.wait_for_completion(timeout=0.3) is False, "wait_for_completion times out")
        check(board.id.startswith("QZ7740,") and board.running, "the next query answers itself")
        stale = raises(QZ7740Error, board.fetch_sweep)
        check(stale is not None and stale.errors[0][0] == -230 and board.id.startswith("QZ7740,"),
              "a REAL,64 fetch during the run raises -230 and leaves nothing behind")
        board.abort()
        check(board.wait_for_completion(timeout=30) and not board.running, "ABOR ends the sweep")
        check(board.event_status & 1 == 1, "*OPC set the operation-complete bit")
        check(1 <= len(board.fetch_sweep()) < 41, "the stopped sweep kept its first points")

        # *OPC? given up on the client: device_clear drops its late answer and the sweep.
        board.init_sweep()
        board.adapter.connection.timeout = 300
        timed_out = raises(pyvisa.errors.VisaIOError, lambda: board.ask("*OPC?"))
        board.adapter.connection.timeout = 10000
        board.device_clear()
        check(timed_out is not None and board.id.startswith("QZ7740,") and not board.running,
              "device_clear after *OPC? timed out: the next query answers, the sweep stopped")
        board.sweep_delay = 0
        check(board.check_errors() == [], "the class's settings and runs queued no error")

        check_commands(board, QZ7740, COMMANDS)
    finally:
        board.adapter.connection.close()


# How the attributes that need more than a plain call are exercised.
CALLS = {
    "write_register": lambda b: b.write_register(b.read_register(8)),
    "read_register": lambda b: b.read_register(8),
    "shadow_register": lambda b: b.shadow_register(1, b.shadow_register(1)),
    "hardware_inhibit": lambda b: b.hardware_inhibit(False),
    "clamp_pin": lambda b: b.clamp_pin(True),
    "switch_enabled": lambda b: b.switch_enabled(True),
    "switch_channel": lambda b: b.switch_channel(1),
    "sensor_write": lambda b: b.sensor_write(12, 0),
    "sensor_read": lambda b: b.sensor_read(0),
    "open_panel": lambda b: b.open_panel("frmDIAG"),
    "close_panel": lambda b: b.close_panel("frmAbout"),
    "wait_for_completion": lambda b: b.wait_for_completion(5),
    "init_sweep": lambda b: b.init_sweep() or b.wait_for_completion(30),
    "init_time_run": lambda b: b.init_time_run() or b.wait_for_completion(30),
}
# A value for settings that read None (not set yet, or no item chosen).
UNSET = {"source_voltage": 0, "clamp_high": 1e-3, "clamp_low": -1e-3,
         "gang_mode": 0, "comparator": 0, "system_force": 0}


def check_commands(board, cls, commands):
    """Every attribute the command table names exists and sends its header in its short
    form: a property's getter `HEADER?`, its setter `HEADER value`, a method one of them,
    as the lines PyVISA writes show."""
    sent = []
    connection = board.adapter.connection
    write = connection.write

    def recording(message, *args, **kwargs):
        sent.append(message)
        return write(message, *args, **kwargs)
    connection.write = recording

    def heads(action):
        del sent[:]
        action()
        return {unit.split()[0].lstrip(":").upper()
                for line in sent for unit in line.split(";") if unit.strip()}

    for _, short, has_set, has_ask, name in commands:
        if not name or name == "exit_program":
            continue
        if not check(hasattr(cls, name), "QZ7740.%s exists" % name):
            continue
        try:
            if isinstance(getattr(cls, name), property):
                got = []
                sends = [(short + "?", heads(lambda: got.append(getattr(board, name))))]
                if has_set:
                    value = UNSET.get(name, 0) if got[0] is None else got[0]
                    sends.append((short, heads(lambda: setattr(board, name, value))))
                check(all(head in found for head, found in sends),
                      "QZ7740.%s sends %s" % (name, " and ".join(h for h, _ in sends)))
            else:
                found = heads(lambda: CALLS.get(name, lambda b: getattr(b, name)())(board))
                wanted = ([short + "?"] if has_ask else []) + ([short] if has_set else [])
                check(any(w in found for w in wanted),
                      "QZ7740.%s() sends %s (sent %s)" % (name, " or ".join(wanted), sorted(found)))
        except Exception as e:
            check(False, "QZ7740.%s: %r" % (name, e))

    del sent[:]
    board.exit_program()
    check(sent == ["SYST:EXIT"], "QZ7740.exit_program sends SYST:EXIT")


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
        run_example(port, "pymeasure")
        through_pyvisa(port, args.version)
        check_reconnects(port)
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
