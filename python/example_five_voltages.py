#!/usr/bin/python3
"""Forces five voltages on the QZ7740 board and measures each, printing a table.

Start the program serving the board first, for example on the virtual board:

    qz7740 --headless --simulate --remote 5025 &
    python/example_five_voltages.py 5025
    python/example_five_voltages.py 5025 --client pyvisa

With ``--client pymeasure`` (the default) it drives the board through the QZ7740
instrument class beside this script; with ``--client pyvisa`` it sends the commands
itself through plain PyVISA, for benches that do not use pymeasure, each voltage and its
readings in one line.
"""

import argparse
import os
import sys

VOLTAGES = (-2.0, -1.0, 0.0, 1.0, 2.0)


def run_pyvisa(port, host):
    import pyvisa

    rm = pyvisa.ResourceManager("@py")
    board = rm.open_resource("TCPIP0::%s::%d::SOCKET" % (host, port),
                             read_termination="\n", write_termination="\n", timeout=5000)
    try:
        print(board.query("*IDN?"))
        board.query("OUTP ON;*OPC?")
        rows = []
        for volts in VOLTAGES:
            # One line sets the voltage and reads it back with both readings: one answer
            # line, its fields in the order asked (empty ones if the setting was refused).
            fields = board.query("VOLT %g;:VOLT?;:MEAS:VOLT?;:MEAS:CURR?" % volts).split(";")
            rows.append((volts,) + tuple(float(f) if f else float("nan") for f in fields))
        error = board.query("SYST:ERR?")
    finally:
        board.close()
        rm.close()
    return rows, error


def run_pymeasure(port, host):
    sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
    from qz7740 import QZ7740, resource_name

    board = QZ7740(resource_name(port, host))
    try:
        print(board.id)
        board.output_enabled = True
        rows = []
        for volts in VOLTAGES:
            board.source_voltage = volts
            rows.append((volts, board.source_voltage, board.voltage, board.current))
        errors = board.check_errors()
    finally:
        board.adapter.connection.close()
    return rows, ("%d,\"%s\"" % errors[0]) if errors else '0,"No error"'


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("port", type=int, help="the port the program serves on")
    parser.add_argument("--host", default="127.0.0.1")
    parser.add_argument("--client", choices=("pymeasure", "pyvisa"), default="pymeasure")
    args = parser.parse_args()

    run = run_pymeasure if args.client == "pymeasure" else run_pyvisa
    rows, error = run(args.port, args.host)

    print("%10s %10s %12s %14s" % ("forced V", "set V", "measured V", "measured A"))
    for forced, held, volts, amps in rows:
        print("%10.3f %10.3f %12.6f %14.6g" % (forced, held, volts, amps))
    print("error queue: %s" % error)
    return 0 if error.startswith("0,") else 1


if __name__ == "__main__":
    sys.exit(main())
