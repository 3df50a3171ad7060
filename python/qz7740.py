"""The QZ7740 evaluation board as a pymeasure instrument.

The evaluation program serves the board on a TCP socket when started with
``--remote [PORT]`` (``qz7740 --headless --simulate --remote 5025`` serves the virtual
board with no window). This class speaks to it through PyVISA's pure-Python backend::

    from qz7740 import QZ7740
    board = QZ7740(5025)
    board.output_enabled = True
    board.source_voltage = 2.5
    print(board.voltage, board.current)

Each setting goes through the same operation as the panel's control, so the program
refuses here what it refuses there (a voltage outside the range the reference and
offset allow, a step over 1000 mV ...). A refused value is not raised at once: it lands
in the error queue, which :meth:`QZ7740.check_errors` reads.
"""

import re

from pymeasure.instruments import Instrument
from pymeasure.instruments.validators import strict_discrete_set, strict_range

DEFAULT_PORT = 5025

# The current ranges by index, as the front panel lists them at VREF 5 and MI gain 20.
# The program renames them with VREF and the gain, so the index is what selects.
CURRENT_RANGES = ("5uA", "25uA", "250uA", "2.5mA", "25mA", "EXT2", "EXT1")

_ERROR_LINE = re.compile(r'^\s*([+-]?\d+)\s*,\s*"(.*)"\s*$')


def resource_name(port=DEFAULT_PORT, host="127.0.0.1"):
    """The VISA resource of the program serving on ``host:port``."""
    return "TCPIP0::%s::%d::SOCKET" % (host, int(port))


def parse_integer(text):
    """An integer from the program's answers: decimal, ``#H`` or ``0x`` hexadecimal.
    None for the empty line of a query that failed (its error waits in the queue)."""
    text = str(text).strip()
    if not text:
        return None
    if text[:2].upper() in ("#H", "0X"):
        return int(text[2:], 16)
    return int(float(text))


def parse_error(line):
    """``(code, text)`` from a ``SYST:ERR?`` answer such as ``-222,"..."``."""
    match = _ERROR_LINE.match(line)
    if not match:
        raise ValueError("not an error queue entry: %r" % line)
    return int(match.group(1)), match.group(2).replace('""', '"')


def _number_or_none(value):
    # A box the operator has not filled yet, or a query that failed, answers an empty line.
    return None if value == "" else value


def _quoted(text):
    return '"%s"' % str(text).replace('"', '""')


def _list_control(header, docs):
    """A front panel list chosen by its index, as the operator picks an item."""
    return Instrument.control(header + "?", header + " %d", docs + " -1 until an item is chosen.",
                              get_process=parse_integer, set_process=int)


class QZ7740(Instrument):
    """The evaluation board behind the QZ7740 evaluation program's remote control.

    :param adapter: a port number of the program on this machine, a VISA resource name
        such as ``TCPIP0::127.0.0.1::5025::SOCKET``, or a pymeasure adapter.
    :param kwargs: passed to the VISA adapter (``timeout`` in ms, ``visa_library``).
    """

    def __init__(self, adapter=DEFAULT_PORT, name="QZ7740 evaluation board", **kwargs):
        if isinstance(adapter, int):
            adapter = resource_name(adapter)
        if isinstance(adapter, str):
            kwargs.setdefault("visa_library", "@py")
            kwargs.setdefault("read_termination", "\n")
            kwargs.setdefault("write_termination", "\n")
            kwargs.setdefault("timeout", 5000)
        super().__init__(adapter, name, includeSCPI=True, **kwargs)

    # --- the front panel -------------------------------------------------------------

    source_voltage = Instrument.control(
        "SOUR:VOLT?", "SOUR:VOLT %g",
        """Forced voltage in volts, as the front panel's voltage box holds it. The range
        follows VREF and the offset DAC; a value outside it is refused by the program
        (error -222 in the queue) and the setting stays as it was.""",
        get_process=_number_or_none,
    )

    current_range = Instrument.control(
        "SOUR:CURR:RANG?", "SOUR:CURR:RANG %d",
        """Current range as the index of the front panel's range list (0 to 6, see
        ``CURRENT_RANGES``: 0 is the 5 uA range, 5 and 6 the external ones).""",
        validator=strict_discrete_set,
        values=range(len(CURRENT_RANGES)),
        get_process=parse_integer,
    )

    clamp_high = Instrument.control(
        "SOUR:CLAM:HIGH?", "SOUR:CLAM:HIGH %g",
        """High current clamp, in the unit the front panel shows for the present range
        (uA for the three lowest ranges, mA for the next two, A for the external ones).""",
        get_process=_number_or_none,
    )

    clamp_low = Instrument.control(
        "SOUR:CLAM:LOW?", "SOUR:CLAM:LOW %g",
        """Low current clamp, in the same unit as ``clamp_high``.""",
        get_process=_number_or_none,
    )

    output_enabled = Instrument.control(
        "OUTP?", "OUTP %d",
        """True when the channel is enabled (the front panel's channel enable box).""",
        validator=strict_discrete_set,
        values={True: 1, False: 0},
        map_values=True,
    )

    clamps_enabled = Instrument.control(
        "SOUR:CLAM:STAT?", "SOUR:CLAM:STAT %d",
        """True when the current clamp is enabled.""",
        validator=strict_discrete_set,
        values={True: 1, False: 0},
        map_values=True,
    )

    powered_up = Instrument.control(
        "SOUR:POW?", "SOUR:POW %d",
        """True when the channel is powered up.""",
        validator=strict_discrete_set,
        values={True: 1, False: 0},
        map_values=True,
    )

    reference_voltage = Instrument.control(
        "SOUR:VREF?", "SOUR:VREF %g",
        """VREF in volts: 5, 2.5, or another value the program accepts for its Other
        choice (2 to 5 V). It changes the force range and the names of the current ranges.""",
    )

    offset_code = Instrument.control(
        "SOUR:OFFS?", "SOUR:OFFS %d",
        """The offset DAC code (0 to 65535), which moves the force range.""",
        get_process=parse_integer,
        set_process=int,
    )

    measout_source = _list_control(
        "MEASO:SOUR", "What MEASOUT carries, as the index of the front panel's list.")
    measout_gain = _list_control(
        "MEASO:GAIN", "The MEASOUT gain, as the index of its list (0 is gain 0.2).")
    current_sense_gain = _list_control(
        "SENS:CURR:GAIN", "The current-sense (MI) gain, as the index of its list (0 is 20).")
    gang_mode = _list_control(
        "SOUR:GANG", "The gang mode, as the index of its list (0 is master).")
    slew_rate = _list_control(
        "SOUR:SLEW", "The slew rate, as the index of its list.")

    diagnostic_node_a = _list_control(
        "DIAG:NODE:A", "The node routed by the diagnostic register's bank A, by its option index.")
    diagnostic_node_b = _list_control(
        "DIAG:NODE:B", "The node routed by the diagnostic register's bank B, by its option index.")

    # --- measurements ----------------------------------------------------------------

    voltage = Instrument.measurement(
        "MEAS:VOLT?",
        """One reading of the output voltage in volts, scaled as the measurement panel
        scales it.""",
        get_process=_number_or_none,
    )

    current = Instrument.measurement(
        "MEAS:CURR?",
        """One reading of the output current in amperes.""",
        get_process=_number_or_none,
    )

    temperature = Instrument.measurement(
        "MEAS:TEMP?",
        """The temperature sensor's local reading in degrees Celsius.""",
        get_process=_number_or_none,
    )

    alarms = Instrument.measurement(
        "STAT:ALAR?",
        """The alarm status word (0 when no alarm is set); reading it clears nothing.""",
        get_process=parse_integer,
    )

    operation_status = Instrument.measurement(
        "STAT:OPER?",
        """1 while a sweep or time run is in progress, else 0.""",
        get_process=parse_integer,
    )

    # --- runs ------------------------------------------------------------------------

    sweep_start = Instrument.control(
        "SWE:STAR?", "SWE:STAR %g",
        """First voltage of the sweep, in volts.""",
        get_process=_number_or_none,
    )

    sweep_stop = Instrument.control(
        "SWE:STOP?", "SWE:STOP %g",
        """Last voltage of the sweep, in volts (above the start).""",
        get_process=_number_or_none,
    )

    sweep_step = Instrument.control(
        "SWE:STEP?", "SWE:STEP %d",
        """Step of the sweep in whole millivolts, 0 to 1000.""",
        validator=strict_range,
        values=(0, 1000),
        get_process=parse_integer,
    )

    sweep_range = Instrument.control(
        "SWE:RANG?", "SWE:RANG %d",
        """Current range the sweep and the time run use, as the index of the measurement
        panel's list (0 is 5 uA, as in ``CURRENT_RANGES``; -1 until one is chosen, when
        the runs take the 5 uA range). A load needs a range that can deliver its current:
        on the smallest the output stops where the clamp holds it.""",
        validator=strict_discrete_set,
        values=range(len(CURRENT_RANGES)),
        get_process=parse_integer,
    )

    sweep_measures = Instrument.control(
        "SWE:FUNC?", "SWE:FUNC %d",
        """What the runs measure at each point: "voltage" or "current".""",
        validator=strict_discrete_set,
        values={"voltage": 0, "current": 1},
        map_values=True,
    )

    sweep_delay = _list_control(
        "SWE:DEL", "The cycle delay of the runs' points, as the index of its list "
        "(0 is no delay, then 100 ms to 500 ms in steps of 100 ms).")

    time_voltage = Instrument.control(
        "TIME:VOLT?", "TIME:VOLT %g",
        """Voltage forced during the time run, in volts.""",
        get_process=_number_or_none,
    )

    @property
    def running(self):
        """True while a run is in progress."""
        return self.operation_status == 1

    def init_sweep(self):
        """Starts the sweep with the present parameters; returns at once."""
        self.write("INIT:SWE")

    def init_time_run(self):
        """Starts the time run; returns at once."""
        self.write("INIT:TIME")

    def abort(self):
        """Stops the run in progress, keeping the points it took."""
        self.write("ABOR")

    def wait_for_completion(self, timeout=60.0):
        """Waits (through ``*OPC?``) until no run is in progress, at most ``timeout`` s."""
        connection = self.adapter.connection
        saved = connection.timeout
        connection.timeout = timeout * 1000
        try:
            return parse_integer(self.ask("*OPC?")) == 1
        finally:
            connection.timeout = saved

    def fetch_sweep(self):
        """The voltages measured at each point of the last sweep, in volts."""
        return self._numbers("FETC:SWE?")

    def fetch_time_run(self):
        """The values of the last time run."""
        return self._numbers("FETC:TIME?")

    def _numbers(self, command):
        answer = self.ask(command).strip()
        return [float(v) for v in answer.split(",")] if answer else []

    # --- raw words and the program ---------------------------------------------------

    def write_register(self, word):
        """Sends one 24-bit word to the chip (address and data as the chip takes them)."""
        self.write("REG:WRITE #H%06X" % strict_range(int(word), (0, 0xFFFFFF)))

    def read_register(self, address):
        """The read-back of the register at ``address``, as an integer."""
        return int(self.ask("REG:READ? #H%X" % int(address)).strip(), 16)

    def select_current_range(self, name):
        """Chooses the current range by the text of its item in the front panel's list."""
        self.write("SOUR:CURR:RANG %s" % _quoted(name))

    def clear_alarms(self):
        """Reads the alarm word and clears the latched alarms; returns the word read."""
        return parse_integer(self.ask("STAT:ALAR:CLE?"))

    @property
    def identity(self):
        """The ``*IDN?`` answer as a dict: maker, model, board and version."""
        fields = [f.strip() for f in self.id.split(",", 3)]
        fields += [""] * (4 - len(fields))
        return dict(zip(("maker", "model", "board", "version"), fields))

    def check_errors(self):
        """Empties the error queue; returns its entries as ``(code, text)``, oldest first."""
        errors = []
        while True:
            code, text = parse_error(self.ask("SYST:ERR?"))
            if code == 0:
                return errors
            errors.append((code, text))
            if len(errors) > 100:  # a queue that never empties is a fault of its own
                raise RuntimeError("error queue does not empty: %r" % errors[-1])

    def shutdown(self):
        """Leaves the board safe: the channel disabled."""
        self.output_enabled = False
        super().shutdown()

    def exit_program(self):
        """Ends the program serving the board (its remote control ends with it)."""
        self.write("SYST:EXIT")
