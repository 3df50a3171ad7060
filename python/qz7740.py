"""The QZ7740 evaluation board as a pymeasure instrument.

The evaluation program serves the board on a TCP socket when started with
``--remote [PORT]`` (``qz7740 --headless --simulate --remote 5025`` serves the virtual
board with no window). This class speaks to it through PyVISA's pure-Python backend::

    from qz7740 import QZ7740
    board = QZ7740(5025)
    board.output_enabled = True
    board.source_voltage = 2.5
    print(board.voltage, board.current)

Quantities are in SI base units: volts, amperes (clamps and ranges too, whatever the
range), seconds. Each setting goes through the same operation as the panel's control,
and the program refuses what the panel refuses; a refused setting raises
:class:`QZ7740Error` here (the class reads the error queue after every setting), and
the program has changed nothing. Values the class can check itself (a voltage outside
``VOLT? MIN``..``VOLT? MAX``, a slew rate that is not one of the list) raise ValueError
before anything is sent. A setting read back as ``None`` has not been set yet.
"""

import re
import socket
import struct
import time

from pymeasure.instruments import Instrument
from pymeasure.instruments.validators import strict_discrete_set, strict_range

try:  # pymeasure 0.14 and later: the SCPI commands are a mix-in
    from pymeasure.instruments.generic_types import SCPIMixin
    _BASES = (SCPIMixin, Instrument)
    _SCPI_KWARGS = {}
except ImportError:  # earlier releases (Debian 12 ships 0.9) take a flag
    _BASES = (Instrument,)
    _SCPI_KWARGS = {"includeSCPI": True}

# From pymeasure 0.11 on a control's check_set_errors=True calls check_set_errors(); before,
# it calls check_errors(), which here only reads the queue. Those releases get the call
# added around the setter (see _control).
_CALLS_CHECK_SET_ERRORS = hasattr(Instrument, "check_set_errors")

DEFAULT_PORT = 5025

# The answer of a setting that has not been set yet (SCPI's "not a number").
NOT_SET = 9.91e37

# The bit of STAT:OPER:COND? that a run in progress sets.
OPERATION_MEASURING = 16

_LIMIT_WORDS = ("MIN", "MAX", "DEF", "MINIMUM", "MAXIMUM", "DEFAULT")
_ERROR_LINE = re.compile(r'^\s*([+-]?\d+)\s*,\s*"(.*)"\s*$', re.S)
_RESOURCE = re.compile(r"^TCPIP\d*::([^:]+)::(\d+)::SOCKET$", re.I)


class QZ7740Error(Exception):
    """A command the program refused: ``errors`` holds its queue's ``(code, text)`` pairs."""

    def __init__(self, errors, command=""):
        self.errors = list(errors)
        self.command = command
        what = "; ".join('%d,"%s"' % e for e in self.errors) or "no error queued"
        super().__init__("%s: %s" % (command, what) if command else what)


def resource_name(port=DEFAULT_PORT, host="127.0.0.1"):
    """The VISA resource of the program serving on ``host:port``."""
    return "TCPIP0::%s::%d::SOCKET" % (host, int(port))


def parse_error(line):
    """``(code, text)`` from a ``SYST:ERR?`` answer such as ``-222,"..."``."""
    match = _ERROR_LINE.match(line)
    if not match:
        raise ValueError("not an error queue entry: %r" % line)
    return int(match.group(1)), match.group(2).replace('""', '"')


def _is_limit_word(value):
    return isinstance(value, str) and value.strip().upper() in _LIMIT_WORDS


def _number_text(value):
    """A number as the program reads it, or MIN/MAX/DEF as they are."""
    if _is_limit_word(value):
        return value.strip().upper()
    return "%.10g" % value


def _or_limit_word(validator):
    """The validator, letting MIN, MAX and DEF through for the program to resolve."""
    def validate(value, values):
        return value if _is_limit_word(value) else validator(value, values)
    return validate


def _one_of(value, values):
    """The item of a list of numbers that the value is (0.3 is 0.1 * 3)."""
    for v in values:
        if abs(float(value) - v) <= 1e-9 * max(1.0, abs(v)):
            return v
    raise ValueError("%r is not one of %s" % (value, ", ".join("%g" % v for v in values)))


def _set_or_none(value):
    # 9.91E+37: the box has not been given a value yet.
    return None if isinstance(value, float) and value >= NOT_SET * 0.999 else value


def _index_or_none(value):
    # A list shows its start text, no item chosen yet: -1.
    index = int(value)
    return None if index < 0 else index


def _control(header, docs, **kwargs):
    """A setting that writes ``HEADER value`` and reads ``HEADER?``; the error queue is read
    after every write, so that a refused value raises :class:`QZ7740Error`."""
    kwargs.setdefault("set_process", _number_text)
    prop = Instrument.control(header + "?", header + " %s", docs,
                              check_set_errors=_CALLS_CHECK_SET_ERRORS, **kwargs)
    if _CALLS_CHECK_SET_ERRORS:
        return prop

    def fset(self, value):
        prop.fset(self, value)
        self.check_set_errors()
    return property(prop.fget, fset, doc=prop.__doc__)


def _limited(header, docs, whole=False, **kwargs):
    """A setting whose limits depend on the state of the board (VREF, OFFSET, the range):
    each write is checked against the limits the program gives now. A client-side copy of
    the limits would go stale whenever the operator or another command changes VREF or the
    range, so they are asked for; it costs one round trip. The measurement panel's voltage
    boxes check whole volts: the value rounded (half to even, as the program rounds) must
    lie within the limits, and the box keeps the value as given."""
    prop = _control(header, docs, **kwargs)

    def fset(self, value):
        if not _is_limit_word(value):
            low, high = self.limits(header)
            strict_range(round(value) if whole else value, (low, high))
        prop.fset(self, value)
    return property(prop.fget, fset, doc=prop.__doc__)


def _flag(header, docs):
    return _control(header, docs, validator=strict_discrete_set, values={True: 1, False: 0},
                    map_values=True, set_process=lambda v: v)


def _choice(header, docs, values, **kwargs):
    """A list whose items stand for numbers: the number chooses its item."""
    return _control(header, docs, validator=_or_limit_word(_one_of), values=values, **kwargs)


def _list_index(header, docs):
    """A list chosen by its index, or by the text of an item (a str, sent quoted)."""
    def index_or_name(value):
        if isinstance(value, str):
            return '"%s"' % value.replace('"', '""')
        return "%d" % strict_range(int(value), (0, 255))
    return _control(header, docs + " None until an item is chosen.",
                    set_process=index_or_name, get_process=_index_or_none)


def _mask(header, docs, bits):
    return _control(header, docs, validator=strict_range, values=(0, (1 << bits) - 1),
                    set_process=lambda v: "%d" % v, get_process=int)


def _word(header, docs, values, normal=lambda v: v):
    """A setting of character data (FORM, FORM:BORD, SWE:FUNC)."""
    return _control(header, docs, validator=lambda v, vs: strict_discrete_set(str(v).upper(), vs),
                    values=values, set_process=lambda v: v, get_process=normal, cast=str,
                    separator="\n")


class QZ7740(*_BASES):
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
        kwargs.update(_SCPI_KWARGS)
        super().__init__(adapter, name, **kwargs)
        connection = getattr(self.adapter, "connection", None)
        no_delay(connection)
        self._control_port = None
        if connection is not None:
            # Asked now: when the device clear is needed, a query of this connection may be
            # held behind the very *OPC? the clear is meant to drop. A program serving
            # another client answers its refusal instead.
            answer = self.ask("SYST:COMM:LAN:CONT?").strip()
            if not answer.isdigit():
                refusal = [parse_error(answer)] if _ERROR_LINE.match(answer) else []
                raise QZ7740Error(refusal, "connecting to %s" % connection.resource_name)
            self._control_port = int(answer)

    # --- queries that fail, and the error queue -----------------------------------------

    def values(self, command, **kwargs):
        """The answer split into values; a query the program refused (its answer is empty)
        raises :class:`QZ7740Error` with the errors it queued."""
        result = super().values(command, **kwargs)
        if len(result) == 1 and result[0] == "":
            raise QZ7740Error(self.check_errors(), command)
        return result

    def _ask(self, command):
        answer = self.ask(command).strip()
        if not answer:
            raise QZ7740Error(self.check_errors(), command)
        return answer

    next_error = Instrument.measurement(
        "SYST:ERR?", """The oldest entry of the error queue as ``(code, text)``; ``(0, 'No error')``
        when it is empty.""", cast=str, separator="\n", get_process=parse_error)

    error_count = Instrument.measurement(
        "SYST:ERR:COUN?", """The number of errors in the queue.""", get_process=int)

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

    def check_set_errors(self):
        """Reads the error queue after a setting; raises :class:`QZ7740Error` if it held any
        (an error left by an earlier raw ``write`` is reported here too)."""
        errors = self.check_errors()
        if errors:
            raise QZ7740Error(errors)
        return errors

    def limits(self, header):
        """``(minimum, maximum)`` the program gives now for a setting (``"VOLT"``,
        ``"CLAM:HIGH"``, ``"CURR:RANG"`` ...), in its SI unit."""
        answer = self._ask("%s? MIN;:%s? MAX" % (header, header))
        low, high = answer.split(";")
        return float(low), float(high)

    # --- IEEE 488.2 common commands and status ------------------------------------------

    @property
    def id(self):
        """The ``*IDN?`` answer: maker, model, board and the program's version."""
        return self.ask("*IDN?").strip()

    @property
    def identity(self):
        """The ``*IDN?`` answer as a dict: maker, model, board and version."""
        fields = [f.strip() for f in self.id.split(",", 3)]
        fields += [""] * (4 - len(fields))
        return dict(zip(("maker", "model", "board", "version"), fields))

    def reset(self):
        """``*RST``: stops a run and brings the chip and the panels to the program's start."""
        self.write("*RST")

    def clear(self):
        """``*CLS``: empties the error queue and the event registers."""
        self.write("*CLS")

    event_status_enable = _mask("*ESE", """The bits of ``event_status`` that set bit 5 of
        ``status_byte``.""", 8)
    service_request_enable = _mask("*SRE", """The bits of ``status_byte`` that request
        service.""", 8)
    operation_enable = _mask("STAT:OPER:ENAB", """The operation bits that set bit 7 of
        ``status_byte``.""", 16)
    questionable_enable = _mask("STAT:QUES:ENAB", """The questionable bits that set bit 3 of
        ``status_byte``.""", 16)

    event_status = Instrument.measurement(
        "*ESR?", """The event status register, cleared by the reading: 1 operation complete,
        4 query error, 8 device error, 16 execution error, 32 command error.""", get_process=int)
    status_byte = Instrument.measurement(
        "*STB?", """The status byte: 4 error queue, 8 questionable, 16 message available,
        32 event status, 64 service request, 128 operation.""", get_process=int)
    self_test = Instrument.measurement(
        "*TST?", """The self test: 0 passed (the board answers and a register reads back
        what was written to it).""", get_process=int)
    scpi_version = Instrument.measurement(
        "SYST:VERS?", """The SCPI version the program follows (``1999.0``).""", cast=str)
    control_port = Instrument.measurement(
        "SYST:COMM:LAN:CONT?", """The port of the control connection (device clear).""",
        get_process=int)
    operation_event = Instrument.measurement(
        "STAT:OPER?", """The operation event register, cleared by the reading (16: a run
        started since the last reading).""", get_process=int)
    operation_condition = Instrument.measurement(
        "STAT:OPER:COND?", """16 while a run is in progress, else 0.""", get_process=int)
    questionable_event = Instrument.measurement(
        "STAT:QUES?", """The questionable event register, cleared by the reading: 1 open sense,
        2 clamp, 16 temperature, 512 DUT ground, 1024 guard.""", get_process=int)
    questionable_condition = Instrument.measurement(
        "STAT:QUES:COND?", """The chip's alarms present now, on the bits of
        ``questionable_event``.""", get_process=int)
    alarms = Instrument.measurement(
        "STAT:ALAR?", """A bit per alarm present: bits 15 to 6 of the alarm status word
        (0 when none); the reading clears nothing.""", get_process=int)

    def preset_status(self):
        """``STAT:PRES``: both SCPI enables to 0."""
        self.write("STAT:PRES")

    def clear_alarms(self):
        """Reads the alarm word and clears the latched alarms; returns the word read."""
        return int(self._ask("STAT:ALAR:CLE?"))

    @property
    def running(self):
        """True while a run is in progress (whoever started it)."""
        return bool(self.operation_condition & OPERATION_MEASURING)

    def wait_for_completion(self, timeout=60.0):
        """Waits until no run is in progress; False if one still is after ``timeout`` s.

        ``*OPC`` arms the operation-complete bit of ``event_status`` for whoever reads it
        later; the wait itself polls ``STAT:OPER:COND?``, which is answered at once. A
        ``*OPC?`` is answered only when the run ends: after a time-out its late ``1`` would
        be taken as the answer of the next query, and the device clear that would drop it
        also stops the run. Polling leaves nothing behind and the run goes on.

        The program answers between the points of a run, so the wait can outlast
        ``timeout`` by a point's delay.
        """
        deadline = time.monotonic() + timeout
        condition = int(self._ask("*OPC;:STAT:OPER:COND?"))
        pause = 0.001
        while condition & OPERATION_MEASURING:
            left = deadline - time.monotonic()
            if left <= 0:
                return False
            time.sleep(min(pause, left))
            pause = min(pause * 2, 0.02)
            condition = int(self._ask("STAT:OPER:COND?"))
        return True

    def device_clear(self):
        """The device clear of the control connection: the program drops the input and the
        answers it has not sent yet and stops a run this connection started; what had
        already arrived here is dropped too."""
        host = _host_of(self.adapter.connection.resource_name)
        if self._control_port is None:
            self._control_port = self.control_port
        with socket.create_connection((host, self._control_port), timeout=10) as s:
            s.sendall(b"DCL\n")
            with s.makefile("rb") as f:
                answer = f.readline()
        if answer.strip() != b"DCL":
            raise QZ7740Error([], "DCL answered %r" % answer)
        self.adapter.connection.clear()

    def go_local(self):
        """Hands the panels back to the operator until the next command."""
        self.write("SYST:LOC")

    def go_remote(self):
        """Locks the panels for the operator, their Local key left free."""
        self.write("SYST:REM")

    def lock_out(self):
        """Locks the panels and their Local key, until go_local() or the end of the connection."""
        self.write("SYST:RWL")

    def exit_program(self):
        """Ends the program serving the board (its remote control ends with it)."""
        self.write("SYST:EXIT")

    # --- raw words ----------------------------------------------------------------------

    def write_register(self, word):
        """Sends one 24-bit word to the chip (address and data as the chip takes them)."""
        self.write("REG:WRIT #H%06X" % strict_range(int(word), (0, 0xFFFFFF)))
        self.check_set_errors()

    def read_register(self, address):
        """The read-back of the register at ``address``, as an integer."""
        return int(self._ask("REG:READ? %d" % strict_range(int(address), (0, 0x7F))), 16)

    def register_reply(self):
        """The chip's reply to the word sent last, fetched alone, as an integer."""
        return int(self._ask("REG:REPL?"), 16)

    def shadow_register(self, address, word=None):
        """The program's copy of the register at ``address`` (1 to 7, the words the panels
        compose), as an integer; with ``word``, that word becomes the copy instead: nothing
        is sent, and the panels' next words build on it."""
        if word is None:
            return int(self._ask("REG:SHAD? %d" % strict_range(int(address), (1, 7))), 16)
        if (int(word) >> 16) != int(address):
            raise ValueError("word %06X is not one of register %d" % (int(word), int(address)))
        self.write("REG:SHAD #H%06X" % strict_range(int(word), (0, 0x7FFFFF)))
        self.check_set_errors()

    # --- the board's own requests -------------------------------------------------------

    def _send(self, command):
        self.write(command)
        self.check_set_errors()

    def board_reset(self):
        """Pulses the chip's hardware reset (nothing else; compare ``reset``)."""
        self._send("BOARD:RES")

    def hardware_inhibit(self, on):
        """/HW-INH to its inhibiting level (True) or not."""
        self._send("BOARD:HWIN %s" % ("ON" if on else "OFF"))

    def clamp_pin(self, on):
        """The CL EN pin."""
        self._send("BOARD:CLEN %s" % ("ON" if on else "OFF"))

    def switch_enabled(self, on):
        """The SW8130 channel switch enabled."""
        self._send("BOARD:SWIT %s" % ("ON" if on else "OFF"))

    def switch_channel(self, channel):
        """The SW8130 input: 0 MEASOUT, 1 GND, 2 VREF, 3 GND."""
        self._send("BOARD:SWIT:CHAN %d" % strict_range(int(channel), (0, 3)))

    def adc_convert(self):
        """Starts one conversion of the ADC."""
        self._send("BOARD:ADC:CONV")

    def adc_code(self):
        """The last conversion's code, 0 to 65535."""
        return int(self._ask("BOARD:ADC:READ?"))

    def sensor_write(self, pointer, byte):
        """A byte to a register of the temperature sensor."""
        self._send("BOARD:SENS:WRIT %d,%d" % (strict_range(int(pointer), (0, 255)), strict_range(int(byte), (0, 255))))

    def sensor_read(self, pointer):
        """A register of the temperature sensor, 0 to 255."""
        return int(self._ask("BOARD:SENS:READ? %d" % strict_range(int(pointer), (0, 255))))

    # --- the panels ---------------------------------------------------------------------

    def open_panel(self, name):
        """Shows a panel (``"frmDIAG"``) as its menu entry does; one not loaded loads."""
        self._send("DISP:PAN %s" % name)

    def close_panel(self, name):
        """Unloads a panel as its "Close" does."""
        self._send("DISP:PAN:CLOS %s" % name)

    # --- the front panel ----------------------------------------------------------------

    source_voltage = _limited(
        "VOLT", """Forced voltage in volts. Its limits follow VREF and the OFFSET code
        (``limits("VOLT")``); ``"MIN"``, ``"MAX"`` and ``"DEF"`` (0 V) are taken too.""",
        get_process=_set_or_none)

    current_range = _limited(
        "CURR:RANG", """Current range as its full scale in amperes; a value chooses the
        smallest range that covers it (``2e-3`` chooses the 2.5 mA range). The full scales
        follow VREF and the sense gain.""")

    current_range_name = Instrument.measurement(
        "CURR:RANG:NAME?", """The present range's name as the front panel lists it
        (``2.5mA``).""", cast=str, get_process=lambda v: v.strip('"'))

    range_index = _control(
        "CURR:RANG:IND", """The range index (0 to 6) the program scales clamps and readings by;
        setting it sends nothing.""", validator=strict_range, values=(0, 6), cast=int)

    def select_current_range(self, name):
        """Chooses the current range by its name in the front panel's list (``"25mA"``)."""
        self.write('CURR:RANG "%s"' % str(name).replace('"', '""'))
        self.check_set_errors()

    clamp_high = _limited(
        "CLAM:HIGH", """High current clamp in amperes, 0 to the range's limit. The chip
        keeps the clamp's code across a range change, so the amperes follow the range.""",
        get_process=_set_or_none)

    clamp_low = _limited(
        "CLAM:LOW", """Low current clamp in amperes, the range's negative limit to 0.""",
        get_process=_set_or_none)

    clamps_enabled = _flag("CLAM:STAT", """True when the current clamp is enabled.""")
    output_enabled = _flag("OUTP", """True when the channel is enabled.""")
    powered_up = _flag("POW", """True when the channel is powered up.""")
    gpo = _flag("GPO", """The GPO pin.""")
    force_sense_resistor = _flag("RTEN", """True when the 10k resistor joins force and sense.""")

    offset_code = _control(
        "OFFS", """The OFFSET DAC code, 0 to 65535 (32768 by default), which moves the force
        range.""", validator=_or_limit_word(strict_range), values=(0, 0xFFFF),
        set_process=lambda v: v if _is_limit_word(v) else "%d" % v, get_process=int)

    force_gain_code = _control(
        "CAL:FORC:GAIN", """The FIN DAC's gain code m, 0 to 65535 (65535 by default), which the
        force voltage's law reads.""", validator=_or_limit_word(strict_range), values=(0, 0xFFFF),
        set_process=lambda v: v if _is_limit_word(v) else "%d" % v, get_process=int)

    force_offset_code = _control(
        "CAL:FORC:OFFS", """The FIN DAC's offset code c, 0 to 65535 (32768 by default).""",
        validator=_or_limit_word(strict_range), values=(0, 0xFFFF),
        set_process=lambda v: v if _is_limit_word(v) else "%d" % v, get_process=int)

    reference_voltage = _control(
        "VREF", """VREF in volts, 2 to 5 (5 and 2.5 are the board's references). It moves
        the force range and the full scales of the current ranges.""",
        validator=_or_limit_word(strict_range), values=(2.0, 5.0))

    gang_mode = _list_index("GANG", """The gang mode, as the index of its list (0 is master).""")
    comparator = _list_index("COMP", """What the comparator outputs report, by index.""")
    system_force = _list_index("SYST:FORC", """System force/sense, by index.""")
    measout_source = _list_index("MEASO:SOUR", """What MEASOUT carries, by index.""")

    slew_rate = _choice(
        "SLEW", """The slew rate in V/s: 1e6, 875e3, 750e3, 625e3, 500e3, 437.5e3, 350e3 or
        312.5e3.""", (1e6, 875e3, 750e3, 625e3, 500e3, 437.5e3, 350e3, 312.5e3))
    shutdown_temperature = _choice(
        "SYST:TSH", """Thermal shutdown temperature in degrees Celsius: 130, 120, 110 or 100.""",
        (130, 120, 110, 100))
    measout_gain = _choice("MEASO:GAIN", """The MEASOUT gain: 0.2 or 1.""", (0.2, 1))
    current_sense_gain = _choice("SENS:CURR:GAIN", """The current-sense (MI) gain: 20 or 10.""",
                                 (20, 10))

    diagnostic_node_a = _list_index("DIAG:NODE:A", """The node of DIAG A, by its option index.""")
    diagnostic_node_b = _list_index("DIAG:NODE:B", """The node of DIAG B, by its option index.""")

    # --- readings -----------------------------------------------------------------------

    voltage = Instrument.measurement(
        "MEAS:VOLT?", """One reading of the output voltage in volts.""")
    current = Instrument.measurement(
        "MEAS:CURR?", """One reading of the output current in amperes.""")
    temperature = Instrument.measurement(
        "MEAS:TEMP?", """The temperature sensor's local reading in degrees Celsius.""")

    # --- the runs -----------------------------------------------------------------------

    sweep_start = _limited(
        "SWE:STAR", """First voltage of the sweep in volts; rounded to whole volts it lies
        within ``limits("SWE:STAR")``, which follow VREF and the OFFSET code.""",
        whole=True, get_process=_set_or_none)
    sweep_stop = _limited(
        "SWE:STOP", """Last voltage of the sweep in volts (above the start), checked as
        ``sweep_start``.""", whole=True, get_process=_set_or_none)
    sweep_step = _control(
        "SWE:STEP", """Step of the sweep in volts, 0 to 1 (the box takes millivolts; the
        run steps by whole DAC codes, one at least).""",
        validator=_or_limit_word(strict_range), values=(0.0, 1.0), get_process=_set_or_none)
    sweep_range = _limited(
        "SWE:RANG", """Current range of the sweep and the time run, as its full scale in
        amperes (a value chooses the smallest range that covers it).""")
    sweep_measures = _word(
        "SWE:FUNC", """What the runs measure: ``"VOLT"`` or ``"CURR"``.""", ("VOLT", "CURR"))
    sweep_delay = _choice(
        "SWE:DEL", """The cycle delay of a point in seconds: 0 (none) or 0.1 to 0.5.""",
        (0, 0.1, 0.2, 0.3, 0.4, 0.5))
    sample_delay = _choice(
        "SWE:SDEL", """The sample delay as a fraction of the cycle: 0 to 0.9 in tenths.""",
        tuple(k / 10 for k in range(10)))
    time_voltage = _limited(
        "TIME:VOLT", """Voltage forced during the time run, in volts, checked as
        ``sweep_start``.""", whole=True, get_process=_set_or_none)

    data_format = _word(
        "FORM", """How the runs' data come back: ``"ASC"`` (text), ``"REAL,32"`` or
        ``"REAL,64"`` (IEEE 488.2 blocks of floats, see ``read_block``).""",
        ("ASC", "REAL,32", "REAL,64"),
        normal=lambda v: "ASC" if v.upper().startswith("ASC") else v.upper())
    byte_order = _word(
        "FORM:BORD", """Byte order of the blocks: ``"NORM"`` (most significant byte first) or
        ``"SWAP"``.""", ("NORM", "SWAP"))

    def init_sweep(self):
        """Starts the sweep with the present parameters; returns at once."""
        self.write("INIT:SWE")
        self.check_set_errors()

    def init_time_run(self):
        """Starts the time run; returns at once."""
        self.write("INIT:TIME")
        self.check_set_errors()

    def abort(self):
        """Stops the run in progress, keeping the points it took."""
        self.write("ABOR")

    def fetch_sweep(self):
        """The readings of the last sweep that ended: volts, or amperes when it measured
        current. Raises :class:`QZ7740Error` during a run or before the first."""
        return self._fetch("FETC:SWE?")

    def fetch_sweep_forced(self):
        """The voltages the last sweep forced."""
        return self._fetch("FETC:SWE:FORC?")

    def fetch_time_run(self):
        """The readings of the last time run."""
        return self._fetch("FETC:TIME?")

    def fetch_time_run_times(self):
        """The sample times of the last time run, in seconds."""
        return self._fetch("FETC:TIME:TIM?")

    def _fetch(self, command):
        data, order = self._ask("FORM?;:FORM:BORD?").split(";")
        if data.upper().startswith("ASC"):
            return [float(v) for v in self._ask(command).split(",")]
        values = read_block(self.adapter.connection, command, "f" if data.endswith("32") else "d",
                            big_endian=order.upper() == "NORM")
        if values is None:
            raise QZ7740Error(self.check_errors(), command)
        return values

    # --- leaving --------------------------------------------------------------------------

    def shutdown(self):
        """Leaves the board safe: the channel disabled."""
        self.output_enabled = False
        super().shutdown()


def read_block(connection, command, datatype="f", big_endian=True):
    """Sends a query through a PyVISA resource and reads its answer as an IEEE 488.2
    definite-length block (``#``, the digit count, the byte count, the bytes, LF) of
    floats (``"f"`` 32-bit, ``"d"`` 64-bit); None when the answer holds no block (a query
    the program refused answers an empty line).

    The bytes are read by count with the termination character off. PyVISA's
    ``query_binary_values`` reads with it on, and the pure-Python backend then ends a read
    at every LF byte inside the block and copies what it holds each time: for 65,536
    floats that is three to four times slower than the count."""
    from pyvisa import constants

    connection.write(command)
    connection.set_visa_attribute(constants.VI_ATTR_TERMCHAR_EN, constants.VI_FALSE)
    try:
        mark = connection.read_bytes(1)
        if mark == b"#":
            size = int(connection.read_bytes(int(connection.read_bytes(1))))
            block = connection.read_bytes(size + 1)
    finally:
        connection.set_visa_attribute(constants.VI_ATTR_TERMCHAR_EN, constants.VI_TRUE)
    if mark != b"#":
        if mark != b"\n":
            connection.read_raw()  # the rest of a line that is no block
        return None
    width = struct.calcsize(datatype)
    if block[-1:] != b"\n" or size % width:
        raise ValueError("the answer of %r is no block of %d-byte values" % (command, width))
    return list(struct.unpack("%s%d%s" % (">" if big_endian else "<", size // width, datatype),
                              block[:size]))


def _host_of(resource):
    match = _RESOURCE.match(resource)
    if not match:
        raise ValueError("not a TCPIP SOCKET resource: %r" % resource)
    return match.group(1)


def no_delay(connection):
    """Makes a PyVISA TCPIP SOCKET resource send small lines at once. Without it a line
    that gets no answer (a setting) holds back the next line until the program's
    acknowledgement, which the TCP stack delays by up to 40 ms: a setting followed by a
    query would take that long."""
    if connection is None:
        return
    try:
        from pyvisa import constants
        connection.set_visa_attribute(constants.VI_ATTR_TCPIP_NODELAY, constants.VI_TRUE)
    except Exception:
        pass  # the pure-Python backend 0.5 does not pass the attribute to its socket
    try:
        session = connection.visalib.sessions[connection.session]
        session.interface.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
    except Exception:
        pass  # another backend, which keeps its socket to itself
