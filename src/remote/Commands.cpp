// The command table: every header the remote control knows, with what it works on and
// how the README and the Python class name it.

#include "remote/Commands.h"

#include <algorithm>
#include <vector>

namespace qz::remote {

namespace {

using I = Instrument;
using forms::Form;
constexpr Access R = Access::Reads, W = Access::Writes;

// The numbers that the items of a list stand for, in item order.
constexpr double kCurrentGains[] = {20, 10};
constexpr double kMeasoutGains[] = {0.2, 1};
constexpr double kSlewRates[] = {1e6, 0.875e6, 0.75e6, 0.625e6, 0.5e6, 0.4375e6, 0.35e6, 0.3125e6};
constexpr double kShutdownCelsius[] = {130, 120, 110, 100};
constexpr double kCycleSeconds[] = {0, 0.1, 0.2, 0.3, 0.4, 0.5};
constexpr double kSampleFractions[] = {0, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9};
constexpr const char* kMeasureWords[] = {"VOLTage", "CURRent"};
// What a run's results are fetched by, a column each.
constexpr const char* kSweepFetches[] = {"FETCh:SWEep:FORCe", "FETCh:SWEep[:READing]"};
constexpr const char* kTimeFetches[] = {"FETCh:TIME:TIMes", "FETCh:TIME[:READing]"};

constexpr const char* kIndexOrName = "`<index>` or `\"<item>\"`";
constexpr const char* kBool = "`0`, `1`, `OFF`, `ON`";
constexpr const char* kMask = "`<0..255>`";
constexpr const char* kMask16 = "`<0..65535>`";

const Command kTable[] = {
    // IEEE 488.2 common commands.
    {.header = "*IDN", .ask = &I::idn, .answer = "`QZ7740,QZ7740 evaluation board,<board>,<version>`",
     .what = "identity; the board is `virtual board`, `usb <path>` or `no board`",
     .example = "`*IDN?` → `QZ7740,QZ7740 evaluation board,virtual board,1.6.0`", .python = "id"},
    {.header = "*RST", .set = &I::rst,
     .what = "stops a run, resets the chip as \"RESET QZ7740\" does and brings the chip and the panels to the "
             "program's start (table below); never refused",
     .example = "`*RST`", .python = "reset"},
    {.header = "*CLS", .set = &I::cls, .atOnce = true,
     .what = "empties the error queue and the event registers; at once, even behind a waiting `*OPC?`",
     .example = "`*CLS`", .python = "clear"},
    {.header = "*ESE", .set = &I::eseSet, .ask = &I::eseAsk, .setMin = 1, .setMax = 1, .param = kMask,
     .answer = "the mask", .what = "event status enable: the bits of `*ESR?` that set bit 5 of `*STB?`",
     .example = "`*ESE 60`", .python = "event_status_enable"},
    {.header = "*ESR", .ask = &I::esrAsk, .answer = "the register, then cleared",
     .what = "event status: 1 operation complete, 4 query error, 8 device error, 16 execution error, 32 "
             "command error",
     .example = "`*ESR?` → `32`", .python = "event_status"},
    {.header = "*SRE", .set = &I::sreSet, .ask = &I::sreAsk, .setMin = 1, .setMax = 1, .param = kMask,
     .answer = "the mask", .what = "service request enable: the bits of `*STB?` that set its bit 6",
     .example = "`*SRE 4`", .python = "service_request_enable"},
    {.header = "*STB", .ask = &I::stbAsk, .answer = "the status byte",
     .what = "4 error queue not empty, 8 questionable, 16 an answer waits, 32 event status, 64 service "
             "request, 128 operation",
     .example = "`*STB?` → `4`", .python = "status_byte"},
    {.header = "*OPC", .set = &I::opcSet, .ask = &I::opcAsk, .answer = "`1` once no run is in progress",
     .what = "the command sets bit 1 of `*ESR?` when the runs in progress end; the query waits for their end "
             "(later lines are read meanwhile)",
     .example = "`INIT:SWE;*OPC?` → `1`", .python = "wait_for_completion"},
    {.header = "*WAI", .set = &I::wai, .what = "the units after it wait until no run is in progress",
     .example = "`INIT:SWE;*WAI;FETC:SWE?`"},
    {.header = "*TST", .ask = &I::tst, .askAccess = W, .answer = "`0` passed, `1` failed (-330 queued)",
     .what = "self test: the link answers and the ramp end register reads back a pattern written to it (its "
             "value is put back)",
     .example = "`*TST?` → `0`", .python = "self_test"},

    // SCPI system and status.
    {.header = "SYSTem:ERRor[:NEXT]", .ask = &I::systErr,
     .answer = "`code,\"text\"`, oldest first, or `0,\"No error\"`", .what = "the error queue, 20 deep",
     .example = "`SYST:ERR?` → `-113,\"Undefined header\"`", .python = "next_error"},
    {.header = "SYSTem:ERRor:COUNt", .ask = &I::systErrCount, .answer = "the errors in the queue",
     .example = "`SYST:ERR:COUN?` → `0`", .python = "error_count"},
    {.header = "SYSTem:VERSion", .ask = &I::systVersion, .answer = "`1999.0`", .what = "the SCPI version followed",
     .example = "`SYST:VERS?` → `1999.0`", .python = "scpi_version"},
    {.header = "SYSTem:EXIT", .set = &I::systExit, .what = "ends the program (a run in progress is stopped first)",
     .example = "`SYST:EXIT`", .python = "exit_program"},
    {.header = "SYSTem:LOCal", .set = &I::systLocal,
     .what = "hands the panels back to the operator (the lockout ends too) until the next command",
     .example = "`SYST:LOC`", .python = "go_local"},
    {.header = "SYSTem:REMote", .set = &I::systRemote,
     .what = "remote without lockout: the panels locked, their Local key free", .example = "`SYST:REM`",
     .python = "go_remote"},
    {.header = "SYSTem:RWLock", .set = &I::systLockout,
     .what = "remote with lockout: the panels' Local key locked too, until `SYST:LOC` or the client leaves",
     .example = "`SYST:RWL`", .python = "lock_out"},
    {.header = "SYSTem:COMMunicate:LAN:CONTrol", .ask = &I::lanControl,
     .answer = "the control connection's port, `0` without one",
     .what = "a line `DCL` on that port clears this connection's input and output and stops a run it "
             "started, then answers `DCL`",
     .example = "`SYST:COMM:LAN:CONT?` → `5026`", .python = "control_port"},
    {.header = "STATus:OPERation[:EVENt]", .ask = &I::operEvent, .answer = "the event register, then cleared",
     .what = "bit 4 (16), measuring, latched when a run starts", .example = "`STAT:OPER?` → `16`",
     .python = "operation_event"},
    {.header = "STATus:OPERation:CONDition", .ask = &I::operCondition,
     .answer = "`16` while a run is in progress, else `0`", .example = "`STAT:OPER:COND?` → `16`",
     .python = "operation_condition"},
    {.header = "STATus:OPERation:ENABle", .set = &I::operEnableSet, .ask = &I::operEnableAsk, .setMin = 1,
     .setMax = 1, .param = kMask16, .answer = "the mask", .what = "the operation bits that set bit 7 of `*STB?`",
     .example = "`STAT:OPER:ENAB 16`", .python = "operation_enable"},
    {.header = "STATus:QUEStionable[:EVENt]", .ask = &I::quesEvent, .askAccess = R,
     .answer = "the event register, then cleared",
     .what = "the chip's alarms (read now, latched or live): 1 open sense (voltage), 2 clamp (current), 16 "
             "temperature, 512 DUT ground, 1024 guard",
     .example = "`STAT:QUES?` → `2`", .python = "questionable_event"},
    {.header = "STATus:QUEStionable:CONDition", .ask = &I::quesCondition, .askAccess = R,
     .answer = "the alarms present now, on the bits above", .example = "`STAT:QUES:COND?` → `0`",
     .python = "questionable_condition"},
    {.header = "STATus:QUEStionable:ENABle", .set = &I::quesEnableSet, .ask = &I::quesEnableAsk, .setMin = 1,
     .setMax = 1, .param = kMask16, .answer = "the mask",
     .what = "the questionable bits that set bit 3 of `*STB?`", .example = "`STAT:QUES:ENAB 18`",
     .python = "questionable_enable"},
    {.header = "STATus:PRESet", .set = &I::statPreset, .what = "both SCPI enables to 0", .example = "`STAT:PRES`",
     .python = "preset_status"},
    {.header = "STATus:ALARm", .ask = &I::alarms, .askAccess = R, .control = "cmdCheckAlarms",
     .record = Rec::Press,
     .answer = "a bit per alarm present: bits 15 to 6 of the alarm status word (the chip's are active low)",
     .what = "\"Check Alarm Status\"; served during a run", .example = "`STAT:ALAR?` → `0`", .python = "alarms"},
    {.header = "STATus:ALARm:CLEar", .ask = &I::alarms, .askAccess = R, .control = "cmdCLEAR", .arg = 1,
     .record = Rec::Press, .answer = "as `STAT:ALAR?`",
     .what = "\"CLEAR\": the read that clears the latched alarms", .example = "`STAT:ALAR:CLE?` → `0`",
     .python = "clear_alarms"},

    // The chip's words.
    {.header = "REGister:WRITe", .set = &I::regWrite, .setMin = 1, .setMax = 1, .setAccess = W,
     .param = "`<word>`", .what = "one 24-bit word to the chip", .example = "`REG:WRITE #H0889FE`",
     .python = "write_register"},
    {.header = "REGister:READ", .ask = &I::regRead, .askMin = 1, .askMax = 1, .askAccess = R,
     .param = "`<address>`", .answer = "six hexadecimal digits", .what = "the read-back of the register",
     .example = "`REG:READ? 8` → `0889FE`", .python = "read_register"},
    {.header = "REGister:REPLy", .ask = &I::regReply, .askAccess = R, .answer = "six hexadecimal digits",
     .what = "the chip's reply to the word sent last, fetched alone", .example = "`REG:REPL?` → `012200`",
     .python = "register_reply"},
    {.header = "REGister:SHADow", .set = &I::shadowSet, .ask = &I::shadowAsk, .setMin = 1, .setMax = 1,
     .askMin = 1, .askMax = 1, .param = "`<word>`; the query `<address>`", .answer = "six hexadecimal digits",
     .what = "the program's copy of a register that the panels compose (1 system control to 7 diagnostic): "
             "the word becomes it, nothing is sent; the panels' next words build on it",
     .example = "`REG:SHAD #H012A00`", .python = "shadow_register"},

    // The board's own requests, as the console's buttons and the sensor page make them.
    {.header = "BOARD:RESet", .set = &I::boardRequest, .setAccess = W, .arg = 0,
     .what = "pulses the chip's hardware reset (nothing else: compare `*RST`)", .example = "`BOARD:RES`",
     .python = "board_reset"},
    {.header = "BOARD:HWINhibit", .set = &I::boardSwitch, .setMin = 1, .setMax = 1, .setAccess = W, .arg = 0,
     .param = kBool, .what = "/HW-INH to its inhibiting level (`ON`) or not", .example = "`BOARD:HWIN OFF`",
     .python = "hardware_inhibit"},
    {.header = "BOARD:CLENable", .set = &I::boardSwitch, .setMin = 1, .setMax = 1, .setAccess = W, .arg = 1,
     .param = kBool, .what = "the CL EN pin", .example = "`BOARD:CLEN ON`", .python = "clamp_pin"},
    {.header = "BOARD:SWITch[:STATe]", .set = &I::boardSwitch, .setMin = 1, .setMax = 1, .setAccess = W, .arg = 2,
     .param = kBool, .what = "the SW8130 channel switch enabled", .example = "`BOARD:SWIT ON`",
     .python = "switch_enabled"},
    {.header = "BOARD:SWITch:CHANnel", .set = &I::boardChannel, .setMin = 1, .setMax = 1, .setAccess = W,
     .param = "`0` MEASOUT, `1` GND, `2` VREF, `3` GND", .what = "the SW8130 input",
     .example = "`BOARD:SWIT:CHAN 2`", .python = "switch_channel"},
    {.header = "BOARD:ADC:CONVert", .set = &I::boardRequest, .setAccess = R, .arg = 1,
     .what = "starts one conversion of the ADC", .example = "`BOARD:ADC:CONV`", .python = "adc_convert"},
    {.header = "BOARD:ADC:READ", .ask = &I::adcRead, .askAccess = R, .answer = "the code, 0 to 65535",
     .what = "the last conversion", .example = "`BOARD:ADC:READ?` → `39321`", .python = "adc_code"},
    {.header = "BOARD:SENSor:WRITe", .set = &I::sensorWrite, .setMin = 2, .setMax = 2, .setAccess = W,
     .param = "`<pointer>,<byte>`", .what = "a byte to a register of the temperature sensor",
     .example = "`BOARD:SENS:WRIT 9,#H04`", .python = "sensor_write"},
    {.header = "BOARD:SENSor:READ", .ask = &I::sensorRead, .askMin = 1, .askMax = 1, .askAccess = R,
     .param = "`<pointer>`", .answer = "the byte, 0 to 255", .what = "a register of the temperature sensor",
     .example = "`BOARD:SENS:READ? 0` → `26`", .python = "sensor_read"},

    // The panels.
    {.header = "DISPlay:PANel[:OPEN]", .set = &I::panelOpen, .setMin = 1, .setMax = 1, .setAccess = W,
     .param = "`frmMAINQZ7740`, `frmMain`, `frmMeasure`, `frmDIAG`, `frmCompensation`, `frmAbout`",
     .what = "shows the panel as its menu entry does; a panel not loaded loads, with the words its load sends",
     .example = "`DISP:PAN frmDIAG`", .python = "open_panel"},
    {.header = "DISPlay:PANel:CLOSe", .set = &I::panelClose, .setMin = 1, .setMax = 1, .setAccess = W,
     .param = "`frmMeasure`, `frmDIAG`, `frmCompensation`, `frmAbout`, `frmMEASOUTGAIN`",
     .what = "unloads the panel as its \"Close\" does: its next showing loads it afresh",
     .example = "`DISP:PAN:CLOS frmCompensation`", .python = "close_panel"},

    // The front panel.
    {.header = "[SOURce#:]VOLTage[:LEVel][:IMMediate][:AMPLitude]", .set = &I::voltSet, .ask = &I::voltAsk,
     .setMin = 1, .setMax = 1, .askMax = 1, .setAccess = W, .control = "txtV", .unit = SiUnit::Volt,
     .limits = true, .record = Rec::Number, .reads = true, .param = "`<volts>`, `MIN`, `MAX`, `DEF` (0 V)",
     .answer = "volts; `9.91E+37` before the first",
     .what = "force voltage (txtV and Enter), between Z/S and F/S; `VOLT? MIN` and `VOLT? MAX` answer them",
     .example = "`VOLT 2.5`; `VOLT? MAX` → `12.812108`", .python = "source_voltage"},
    {.header = "[SOURce#:]CURRent:RANGe", .set = &I::rangeSet, .ask = &I::rangeAsk, .setMin = 1, .setMax = 1,
     .askMax = 1, .setAccess = W, .control = "cboCurrent", .unit = SiUnit::Ampere, .limits = true,
     .record = Rec::Range, .param = "`<amperes>`, `MIN`, `MAX`, `DEF` (2.5 mA), or `\"<name>\"`",
     .answer = "the range's full scale, amperes",
     .what = "current range (cboCurrent): the smallest whose full scale covers the value",
     .example = "`CURR:RANG 2MA`; `CURR:RANG?` → `0.0025`", .python = "current_range"},
    {.header = "[SOURce#:]CURRent:RANGe:INDex", .set = &I::rangeIndexSet, .ask = &I::rangeIndexAsk, .setMin = 1,
     .setMax = 1, .param = "`<0..6>`", .answer = "the index",
     .what = "the range the program scales clamps and readings by, which the range lists set (the "
             "measurement panel's stimulus lists without a word to the chip); nothing is sent",
     .example = "`CURR:RANG:IND 3`", .python = "range_index"},
    {.header = "[SOURce#:]CURRent:RANGe:NAME", .ask = &I::rangeName, .control = "cboCurrent",
     .answer = "`\"<name>\"` as the list shows it, without ± and \"Current Range\"",
     .example = "`CURR:RANG:NAME?` → `\"2.5mA\"`", .python = "current_range_name"},
    {.header = "[SOURce#:]CLAMp:HIGH", .set = &I::clampSet, .ask = &I::clampAsk, .setMin = 1, .setMax = 1,
     .askMax = 1, .setAccess = W, .control = "txtclamph", .unit = SiUnit::Ampere, .limits = true, .arg = 1,
     .record = Rec::RangeUnit, .param = "`<amperes>`, `MIN` (0), `MAX`, `DEF` (the range's limit)",
     .answer = "amperes at the present range; `9.91E+37` before the first",
     .what = "high current clamp (txtclamph in the range's unit, and Enter)", .example = "`CLAM:HIGH 2mA`",
     .python = "clamp_high"},
    {.header = "[SOURce#:]CLAMp:LOW", .set = &I::clampSet, .ask = &I::clampAsk, .setMin = 1, .setMax = 1,
     .askMax = 1, .setAccess = W, .control = "txtClampl", .unit = SiUnit::Ampere, .limits = true, .arg = 0,
     .record = Rec::RangeUnit, .param = "`<amperes>`, `MIN`, `DEF` (the range's limit, negative), `MAX` (0)",
     .answer = "as `CLAM:HIGH?`", .what = "low current clamp (txtClampl)", .example = "`CLAM:LOW -2E-3`",
     .python = "clamp_low"},
    {.header = "[SOURce#:]CLAMp:STATe", .set = &I::checkSet, .ask = &I::checkAsk, .setMin = 1, .setMax = 1,
     .setAccess = W, .control = "chkCLAMPEN", .record = Rec::State, .param = kBool, .answer = "`0` or `1`",
     .what = "\"Enable Current Clamp\"", .example = "`CLAM:STAT OFF`", .python = "clamps_enabled"},
    {.header = "OUTPut#[:STATe]", .set = &I::checkSet, .ask = &I::checkAsk, .setMin = 1, .setMax = 1,
     .setAccess = W, .control = "chkENABLECH", .record = Rec::State, .param = kBool, .answer = "`0` or `1`",
     .what = "\"Enable DPS(/SW-INH)\"", .example = "`OUTP ON`", .python = "output_enabled"},
    {.header = "[SOURce#:]POWer[:STATe]", .set = &I::checkSet, .ask = &I::checkAsk, .setMin = 1, .setMax = 1,
     .setAccess = W, .control = "chkPD", .record = Rec::State, .param = kBool, .answer = "`0` or `1`",
     .what = "\"Power Up DPS\"", .example = "`POW 1`", .python = "powered_up"},
    {.header = "[SOURce#:]OFFSet", .set = &I::codeSet, .ask = &I::codeAsk, .setMin = 1, .setMax = 1,
     .askMax = 1, .setAccess = W, .control = "OFFSETx1", .array = true, .limits = true, .arg = 0x8000,
     .record = Rec::Hex, .read = true, .reads = true,
     .param = "`<0..65535>`, `MIN`, `MAX`, `DEF` (32768)", .answer = "the code in decimal",
     .what = "the OFFSET DAC code of the front panel", .example = "`OFFS #H8000`", .python = "offset_code"},
    {.header = "CALibration:FORCe:GAIN", .set = &I::codeSet, .ask = &I::codeAsk, .setMin = 1, .setMax = 1,
     .askMax = 1, .setAccess = W, .form = Form::frmMAINQZ7740, .control = "txtFINM", .limits = true, .arg = 0xFFFF,
     .record = Rec::Hex, .read = true, .reads = true, .param = "`<0..65535>`, `MIN`, `MAX`, `DEF` (65535)", .answer = "the code in decimal",
     .what = "the FIN DAC's gain code m (the console's txtFINM), which the force voltage's law reads",
     .example = "`CAL:FORC:GAIN #HFFFE`", .python = "force_gain_code"},
    {.header = "CALibration:FORCe:OFFSet", .set = &I::codeSet, .ask = &I::codeAsk, .setMin = 1, .setMax = 1,
     .askMax = 1, .setAccess = W, .form = Form::frmMAINQZ7740, .control = "txtFINC", .limits = true, .arg = 0x8000,
     .record = Rec::Hex, .read = true, .reads = true, .param = "`<0..65535>`, `MIN`, `MAX`, `DEF` (32768)", .answer = "the code in decimal",
     .what = "the FIN DAC's offset code c (the console's txtFINC)", .example = "`CAL:FORC:OFFS #H8001`",
     .python = "force_offset_code"},
    {.header = "[SOURce#:]VREF", .set = &I::vrefSet, .ask = &I::vrefAsk, .setMin = 1, .setMax = 1, .askMax = 1,
     .setAccess = W, .control = "optRef", .array = true, .unit = SiUnit::Volt, .limits = true,
     .record = Rec::Reference, .shared = true, .read = true, .reads = true, .param = "`<volts>` (2 to 5), `MIN`, `MAX`, `DEF` (5 V)", .answer = "VREF in volts",
     .what = "the reference: 5, 2.5 or Other with its number", .example = "`VREF 2.5`",
     .python = "reference_voltage"},
    {.header = "[SOURce#:]GANG", .set = &I::listSet, .ask = &I::listAsk, .setMin = 1, .setMax = 1, .setAccess = W,
     .control = "cboSlave", .record = Rec::Index, .param = kIndexOrName, .answer = "the index",
     .what = "gang mode", .example = "`GANG \"SLAVE - FV\"`", .python = "gang_mode"},
    {.header = "[SOURce#:]SLEW", .set = &I::valueSet, .ask = &I::valueAsk, .setMin = 1, .setMax = 1, .askMax = 1,
     .setAccess = W, .control = "cboSlew", .limits = true, .values = kSlewRates, .record = Rec::Value,
     .param = "V/s of an item: `1E6` ... `312500`, `MIN`, `MAX`, `DEF`", .answer = "V/s", .what = "slew rate",
     .example = "`SLEW 5E5`", .python = "slew_rate"},
    {.header = "[SOURce#:]COMParator", .set = &I::listSet, .ask = &I::listAsk, .setMin = 1, .setMax = 1,
     .setAccess = W, .control = "cboCompare", .record = Rec::Index, .param = kIndexOrName, .answer = "the index",
     .what = "what the comparator outputs report", .example = "`COMP 3`", .python = "comparator"},
    {.header = "[SOURce#:]GPO", .set = &I::checkSet, .ask = &I::checkAsk, .setMin = 1, .setMax = 1, .setAccess = W,
     .control = "chkGPO", .record = Rec::State, .param = kBool, .answer = "`0` or `1`", .what = "GPO",
     .example = "`GPO 1`", .python = "gpo"},
    {.header = "[SOURce#:]RTEN", .set = &I::checkSet, .ask = &I::checkAsk, .setMin = 1, .setMax = 1,
     .setAccess = W, .control = "chk10k", .record = Rec::State, .param = kBool, .answer = "`0` or `1`",
     .what = "the 10k resistor between force and sense", .example = "`RTEN 0`", .python = "force_sense_resistor"},
    {.header = "SYSTem:FORCe", .set = &I::listSet, .ask = &I::listAsk, .setMin = 1, .setMax = 1, .setAccess = W,
     .control = "cboSysforce", .record = Rec::Index, .param = kIndexOrName, .answer = "the index",
     .what = "system force/sense", .example = "`SYST:FORC 1`", .python = "system_force"},
    {.header = "SYSTem:TSHutdown", .set = &I::valueSet, .ask = &I::valueAsk, .setMin = 1, .setMax = 1, .askMax = 1,
     .setAccess = W, .control = "tempset", .limits = true, .values = kShutdownCelsius, .record = Rec::Value,
     .param = "`130`, `120`, `110`, `100` (°C), `MIN`, `MAX`, `DEF`", .answer = "°C",
     .what = "thermal shutdown temperature", .example = "`SYST:TSH 110`", .python = "shutdown_temperature"},
    {.header = "MEASOut:SOURce", .set = &I::listSet, .ask = &I::listAsk, .setMin = 1, .setMax = 1, .setAccess = W,
     .control = "cboMEASURE", .record = Rec::Index, .param = kIndexOrName, .answer = "the index",
     .what = "MEASOUT source (cboMEASURE)", .example = "`MEASO:SOUR 2`", .python = "measout_source"},
    {.header = "MEASOut:GAIN", .set = &I::valueSet, .ask = &I::valueAsk, .setMin = 1, .setMax = 1, .askMax = 1,
     .setAccess = W, .control = "MEASOUTG", .limits = true, .values = kMeasoutGains, .record = Rec::Value,
     .param = "`0.2`, `1`, `MIN`, `MAX`, `DEF`", .answer = "the gain", .what = "MEASOUT gain",
     .example = "`MEASO:GAIN 0.2`", .python = "measout_gain"},
    {.header = "SENSe:CURRent:GAIN", .set = &I::valueSet, .ask = &I::valueAsk, .setMin = 1, .setMax = 1,
     .askMax = 1, .setAccess = W, .control = "IMEASG", .limits = true, .values = kCurrentGains,
     .record = Rec::Value, .param = "`20`, `10`, `MIN`, `MAX`, `DEF`", .answer = "the gain",
     .what = "current-sense (MI) gain", .example = "`SENS:CURR:GAIN 10`", .python = "current_sense_gain"},

    // Readings.
    {.header = "MEASure[:SCALar]:VOLTage[:DC]", .ask = &I::measVolt, .askAccess = W, .answer = "volts",
     .what = "one ADC reading of MEASOUT set to VSENSE, scaled as the measurement panel scales it",
     .example = "`MEAS:VOLT?` → `2.499695`", .python = "voltage"},
    {.header = "MEASure[:SCALar]:CURRent[:DC]", .ask = &I::measCurr, .askAccess = W, .answer = "amperes",
     .what = "one reading of MEASOUT set to ISENSE", .example = "`MEAS:CURR?` → `0.0002500343`",
     .python = "current"},
    {.header = "MEASure[:SCALar]:TEMPerature", .ask = &I::measTemp, .askAccess = W, .form = Form::frmDIAG,
     .control = "cmdReadI2C", .record = Rec::Press, .answer = "°C",
     .what = "the sensor's local temperature (\"READ I2C\")", .example = "`MEAS:TEMP?` → `26`",
     .python = "temperature"},

    // The measurement panel's runs.
    {.header = "SWEep:STARt", .set = &I::entrySet, .ask = &I::entryAsk, .setMin = 1, .setMax = 1, .askMax = 1,
     .setAccess = W, .askAccess = R, .form = Form::frmMeasure, .control = "txtstartV", .unit = SiUnit::Volt,
     .limits = true, .arg = -5, .record = Rec::Number, .read = true, .reads = true,
     .param = "`<volts>`, `MIN`, `MAX` (the whole volts inside Z/S and F/S), `DEF` (-5 V)", .answer = "volts",
     .what = "the sweep's start; the limits follow VREF and the chip's OFFSET code", .example = "`SWE:STAR -1`",
     .python = "sweep_start"},
    {.header = "SWEep:STOP", .set = &I::entrySet, .ask = &I::entryAsk, .setMin = 1, .setMax = 1, .askMax = 1,
     .setAccess = W, .askAccess = R, .form = Form::frmMeasure, .control = "txtendV", .unit = SiUnit::Volt,
     .limits = true, .arg = 5, .record = Rec::Number, .read = true, .reads = true,
     .param = "`<volts>`, `MIN`, `MAX` (whole volts), `DEF` (5 V)", .answer = "volts", .what = "the sweep's end",
     .example = "`SWE:STOP 1`", .python = "sweep_stop"},
    {.header = "SWEep:STEP", .set = &I::stepSet, .ask = &I::stepAsk, .setMin = 1, .setMax = 1, .askMax = 1,
     .setAccess = W, .form = Form::frmMeasure, .control = "txtstep", .unit = SiUnit::Volt, .limits = true,
     .record = Rec::Millivolts, .read = true, .reads = true,
     .param = "`<volts>`, 0 to 1 V (the box takes millivolts), `MIN`, `MAX`, `DEF` (1 V)", .answer = "volts",
     .what = "the sweep's step", .example = "`SWE:STEP 250MV`", .python = "sweep_step"},
    {.header = "SWEep:RANGe", .set = &I::rangeSet, .ask = &I::rangeAsk, .setMin = 1, .setMax = 1, .askMax = 1,
     .setAccess = W, .form = Form::frmMeasure, .control = "cboSweepI", .unit = SiUnit::Ampere, .limits = true,
     .arg = 1, .record = Rec::Range, .param = "`<amperes>`, `MIN`, `MAX`, `DEF` (5 uA), or `\"<name>\"`",
     .answer = "the range's full scale, amperes", .what = "the runs' current range (cboSweepI)",
     .example = "`SWE:RANG 2.5MA`", .python = "sweep_range"},
    {.header = "SWEep:FUNCtion", .set = &I::choiceSet, .ask = &I::choiceAsk, .setMin = 1, .setMax = 1,
     .setAccess = W, .form = Form::frmMeasure, .control = "cboMeasureVI", .words = kMeasureWords,
     .record = Rec::Word, .param = "`VOLTage`, `CURRent`", .answer = "`VOLT` or `CURR`",
     .what = "what the runs measure", .example = "`SWE:FUNC CURR`", .python = "sweep_measures"},
    {.header = "SWEep:DELay", .set = &I::valueSet, .ask = &I::valueAsk, .setMin = 1, .setMax = 1, .askMax = 1,
     .setAccess = W, .form = Form::frmMeasure, .control = "cboDela", .unit = SiUnit::Second, .limits = true,
     .values = kCycleSeconds, .record = Rec::Value,
     .param = "`0` (no delay), `0.1` ... `0.5` s, `MIN`, `MAX`, `DEF`", .answer = "seconds",
     .what = "the cycle delay of a point", .example = "`SWE:DEL 200MS`", .python = "sweep_delay"},
    {.header = "SWEep:SDELay", .set = &I::valueSet, .ask = &I::valueAsk, .setMin = 1, .setMax = 1, .askMax = 1,
     .setAccess = W, .form = Form::frmMeasure, .control = "cboMDelay", .limits = true, .values = kSampleFractions,
     .record = Rec::Value, .param = "`0`, `0.1` ... `0.9`, `MIN`, `MAX`, `DEF`", .answer = "the fraction",
     .what = "the sample delay, a fraction of the cycle", .example = "`SWE:SDEL 0.5`", .python = "sample_delay"},
    {.header = "TIME:VOLTage", .set = &I::entrySet, .ask = &I::entryAsk, .setMin = 1, .setMax = 1, .askMax = 1,
     .setAccess = W, .askAccess = R, .form = Form::frmMeasure, .control = "txtForceV", .unit = SiUnit::Volt,
     .limits = true, .arg = 5, .record = Rec::Number, .read = true, .reads = true,
     .param = "`<volts>`, `MIN`, `MAX` (whole volts), `DEF` (5 V)", .answer = "volts",
     .what = "the time run's voltage", .example = "`TIME:VOLT 2`", .python = "time_voltage"},
    {.header = "INITiate:SWEep", .set = &I::initSweep, .form = Form::frmMeasure, .control = "cmdPlot",
     .words = kSweepFetches, .record = Rec::Run, .reads = true,
     .what = "starts the sweep of the measurement panel; returns at once", .example = "`INIT:SWE`",
     .python = "init_sweep"},
    {.header = "INITiate:TIME", .set = &I::initTime, .form = Form::frmMeasure, .control = "cmdPlotit",
     .words = kTimeFetches, .record = Rec::Run, .reads = true, .what = "starts the time run; returns at once",
     .example = "`INIT:TIME`", .python = "init_time_run"},
    {.header = "ABORt", .set = &I::abor, .form = Form::frmMeasure, .control = "cmdStop", .atOnce = true,
     .record = Rec::Press, .alias = "cmdStopit",
     .what = "STOP for the run in progress (the temperature run's \"STOP\" box is ticked); at once, even "
             "behind a waiting `*OPC?`",
     .example = "`ABOR`", .python = "abort"},
    {.header = "FETCh:SWEep[:READing]", .ask = &I::fetch, .arg = 0,
     .answer = "the readings of the last sweep that ended: volts, or amperes when it measured current",
     .what = "-230 during a run or before the first; in the data format",
     .example = "`FETC:SWE?` → `-1.000338,-0.5001831,...`", .python = "fetch_sweep"},
    {.header = "FETCh:SWEep:FORCe", .ask = &I::fetch, .arg = 1, .answer = "the voltages that sweep forced",
     .example = "`FETC:SWE:FORC?` → `-1.000195,-0.5000973,...`", .python = "fetch_sweep_forced"},
    {.header = "FETCh:TIME[:READing]", .ask = &I::fetch, .arg = 2, .answer = "the readings of the last time run",
     .example = "`FETC:TIME?`", .python = "fetch_time_run"},
    {.header = "FETCh:TIME:TIMes", .ask = &I::fetch, .arg = 3, .answer = "its sample times, seconds",
     .example = "`FETC:TIME:TIM?`", .python = "fetch_time_run_times"},
    {.header = "FORMat[:DATA]", .set = &I::formatSet, .ask = &I::formatAsk, .setMin = 1, .setMax = 2,
     .param = "`ASCii`, `REAL,32`, `REAL,64`", .answer = "`ASC,0`, `REAL,32` or `REAL,64`",
     .what = "the data of `FETC`: comma-separated numbers, or a definite-length block (`#` and its length) of "
             "floats",
     .example = "`FORM REAL,64`", .python = "data_format"},
    {.header = "FORMat:BORDer", .set = &I::borderSet, .ask = &I::borderAsk, .setMin = 1, .setMax = 1,
     .param = "`NORMal`, `SWAPped`", .answer = "`NORM` or `SWAP`",
     .what = "the blocks' byte order: most significant byte first, or last", .example = "`FORM:BORD SWAP`",
     .python = "byte_order"},

    // The diagnostics panel.
    {.header = "DIAGnostic:NODE:A", .set = &I::nodeSet, .ask = &I::nodeAsk, .setMin = 1, .setMax = 1,
     .setAccess = W, .form = Form::frmDIAG, .control = "optDIAGA", .array = true, .arg = 0, .record = Rec::Index,
     .param = "`<k>`", .answer = "the index", .what = "the node of DIAG A (optDIAGA(k))",
     .example = "`DIAG:NODE:A 3`", .python = "diagnostic_node_a"},
    {.header = "DIAGnostic:NODE:B", .set = &I::nodeSet, .ask = &I::nodeAsk, .setMin = 1, .setMax = 1,
     .setAccess = W, .form = Form::frmDIAG, .control = "optDIAGB", .array = true, .arg = 1, .record = Rec::Index, .param = "`<k>`",
     .answer = "the index", .what = "the node of DIAG B (optDIAGB(k))", .example = "`DIAG:NODE:B 0`",
     .python = "diagnostic_node_b"},
};

std::string cell(const char* text) {
    std::string out = text;
    for (size_t i = 0; (i = out.find('|', i)) != std::string::npos; i += 2) out.replace(i, 1, "\\|");
    return out;
}

} // namespace

std::span<const Command> commandTable() { return kTable; }

const Command* findCommand(const Unit& unit, Error& error) {
    static const std::vector<HeaderPattern> patterns = [] {
        std::vector<HeaderPattern> p;
        for (const Command& c : kTable) p.emplace_back(c.header);
        return p;
    }();
    bool badSuffix = false;
    for (size_t i = 0; i < std::size(kTable); ++i) {
        const Command& c = kTable[i];
        const Match m = patterns[i].match(unit.nodes);
        if (m == Match::BadSuffix) badSuffix = true;
        if (m != Match::Yes) continue;
        if (unit.query ? c.ask != nullptr : c.set != nullptr) return &c;
    }
    error = standardError(badSuffix ? err::kHeaderSuffix : err::kUndefinedHeader);
    return nullptr;
}

std::string markdownTable() {
    std::string out = "| command | parameter | answer | what it does | example | Python |\n"
                      "|---|---|---|---|---|---|\n";
    for (const Command& c : kTable) {
        std::string head = std::string("`") + c.header + (c.set ? "" : "?") + "`";
        if (c.set && c.ask) head += " / `?`";
        out += "| " + head + " | " + cell(c.param) + " | " + cell(c.answer) + " | " + cell(c.what) + " | " +
               cell(c.example) + " | " + (*c.python ? std::string("`") + c.python + "`" : std::string()) + " |\n";
    }
    return out;
}

std::string pythonTable() {
    std::string out = "# The program's remote commands, as `build/tests/qz7740-commands python` prints them from\n"
                      "# its command table; a test fails when the two differ.\n"
                      "# (header, short form, has a command form, has a query form, QZ7740 attribute)\n"
                      "COMMANDS = (\n";
    for (const Command& c : kTable) {
        out += "    (\"" + std::string(c.header) + "\", \"" + shortForm(c.header) + "\", " + (c.set ? "True" : "False") +
               ", " + (c.ask ? "True" : "False") + ", \"" + c.python + "\"),\n";
    }
    return out + ")\n";
}

} // namespace qz::remote
