"""The whole program on the emulated USB board, driven by its Python clients.

Run under qz7740-emulated-board, which serves the board on an emulated bus to every
program it starts. Copies the program beside a firmware file of its own, starts
``qz7740 --headless --remote 0`` (no --simulate: the board is found, loaded and used
through libusb), asks *IDN?, forces a voltage and reads it back, runs the five-voltage
example through plain PyVISA, then ends the program with SYST:EXIT.

usage: program.py PROGRAM
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "python"))
from test_clients import EXAMPLE, check, failures  # noqa: E402  the clients' own checks

# One data record at address 0 and the end record: the board takes any image.
FIRMWARE = ":0100000055AA\n:00000001FF\n"


def main():
    import pyvisa

    work = tempfile.mkdtemp()
    program = os.path.join(work, "qz7740")
    shutil.copy(sys.argv[1], program)
    with open(os.path.join(work, "QZ7740SPI.hex"), "w") as f:
        f.write(FIRMWARE)
    process = subprocess.Popen([program, "--headless", "--remote", "0"], stdin=subprocess.DEVNULL,
                               stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    try:
        first = process.stdout.readline().strip()
        match = re.fullmatch(r"listening on 127\.0\.0\.1:(\d+)", first)
        check(match is not None, "the program serves the remote control: %r" % first)
        if not match:
            return
        port = int(match.group(1))
        rm = pyvisa.ResourceManager("@py")
        board = rm.open_resource("TCPIP0::127.0.0.1::%d::SOCKET" % port, read_termination="\n",
                                 write_termination="\n", timeout=10000)
        idn = board.query("*IDN?").split(",")
        check(len(idn) == 4 and idn[2] == "usb 1", "*IDN? names the board on USB: %r" % idn)
        board.write("SOUR:VOLT 1.5")
        volts = float(board.query("MEAS:VOLT?"))
        check(abs(volts - 1.5) < 0.05, "MEAS:VOLT? %g near the forced 1.5 V" % volts)
        check(board.query("SYST:ERR?") == '0,"No error"', "no error queued")
        board.close()
        result = subprocess.run([sys.executable, EXAMPLE, str(port), "--client", "pyvisa"],
                                capture_output=True, text=True, timeout=60)
        print(result.stdout + result.stderr, flush=True)
        check(result.returncode == 0, "the five-voltage example ends with 0")
        board = rm.open_resource("TCPIP0::127.0.0.1::%d::SOCKET" % port, read_termination="\n",
                                 write_termination="\n", timeout=10000)
        board.write("SYST:EXIT")
        check(process.wait(timeout=30) == 0, "SYST:EXIT ends the program with 0")
    finally:
        if process.poll() is None:
            process.kill()
            process.wait()
        shutil.rmtree(work, ignore_errors=True)


if __name__ == "__main__":
    try:
        main()
    except Exception as e:  # a failure of the test itself is a failure, not a crash
        check(False, "the test ran to its end: %r" % e)
    print("%d failed" % len(failures))
    sys.exit(1 if failures else 0)
