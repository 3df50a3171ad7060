#pragma once
// The remote protocol as plain code: a line is a program message of units separated by
// ';', each a header with its parameters; headers match their short or long form, with
// optional nodes and a numeric suffix; numbers come in decimal or #H/#Q/#B, with the
// suffixes of their unit, or as MIN, MAX and DEF; answers are numbers, or definite-length
// blocks; errors wait in a queue that SYST:ERR? reads. No Qt here: the server and the
// tests share it.

#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qz::remote {

// The error codes the remote control gives, with their standard texts.
namespace err {
inline constexpr int kNone = 0;
// A warning of the device on a setting it made (positive: the device's own).
inline constexpr int kWarning = 1;
inline constexpr int kCommand = -100;
inline constexpr int kInvalidCharacter = -101;
inline constexpr int kSyntax = -102;
inline constexpr int kDataType = -104;
inline constexpr int kParameterNotAllowed = -108;
inline constexpr int kMissingParameter = -109;
inline constexpr int kUndefinedHeader = -113;
inline constexpr int kHeaderSuffix = -114;
inline constexpr int kNumericData = -120;
inline constexpr int kInvalidSuffix = -131;
inline constexpr int kSuffixNotAllowed = -138;
inline constexpr int kCharacterData = -140;
inline constexpr int kExecution = -200;
inline constexpr int kInitIgnored = -213;
inline constexpr int kSettingsConflict = -221;
inline constexpr int kOutOfRange = -222;
inline constexpr int kIllegalValue = -224;
inline constexpr int kDataStale = -230;
inline constexpr int kHardware = -240;
inline constexpr int kSelfTest = -330;
inline constexpr int kQueueOverflow = -350;
inline constexpr int kQueryInterrupted = -410;
inline constexpr int kQueryDeadlocked = -430;
} // namespace err

struct Error {
    int code = err::kNone;
    std::string text;
};

// The standard text of a code of the table above.
const char* standardText(int code);
// An error with its standard text.
Error standardError(int code);

// One unit of a program message as the client sent it.
struct Unit {
    std::vector<std::string> nodes;  // the header's mnemonics as sent; "*IDN" for a common command
    bool query = false;
    bool absolute = false;           // the header began with ':'
    bool common = false;             // a '*' command
    std::vector<std::string> params; // trimmed, quotes kept
};

// One unit split, or the error that refuses it. `query` tells even of a refused unit
// whether it was asked as a query, so that its answer still has its (empty) place.
struct Parsed {
    std::optional<Unit> unit;
    Error error;
    bool query = false;
};
// Nothing (and no error) for an empty unit.
Parsed parseUnit(std::string_view text);

// The units of one line, split at the ';' outside quotes.
std::vector<std::string_view> splitUnits(std::string_view line);

// A line as its units, each with its header made whole: a header after the first that
// does not begin with ':' is taken relative to the path of the header before it (its
// nodes but the last); common commands leave the path alone. Empty units are dropped.
struct MessageUnit {
    Parsed parsed;                   // the unit, its nodes resolved against the path
};
std::vector<MessageUnit> parseMessage(std::string_view line);

// Whether two texts are equal but for the case of their ASCII letters.
bool equalNoCase(std::string_view a, std::string_view b);

// Whether a mnemonic (a header's node, or a word of character data) is the pattern's long
// form or its short form (the capitals), in any case.
bool mnemonicMatches(std::string_view pattern, std::string_view text);

// How a header's nodes meet a pattern such as "[SOURce#:]VOLTage[:LEVel]": each node in
// its short form (the capitals) or long form, in any case; a bracketed node may be left
// out; a node marked '#' takes the numeric suffix 1 (OUTP1), any other suffix is out of
// range.
enum class Match { No, Yes, BadSuffix };
Match matchHeader(std::string_view pattern, const std::vector<std::string>& nodes);
// A pattern read once, for the many headers a table meets.
class HeaderPattern {
  public:
    explicit HeaderPattern(std::string_view pattern);
    Match match(const std::vector<std::string>& nodes) const;
    struct Node {
        std::string name;
        bool optional = false;
        bool suffix = false;
    };

  private:
    std::vector<Node> nodes_;
};
inline bool headerMatches(std::string_view pattern, const std::vector<std::string>& nodes) {
    return matchHeader(pattern, nodes) == Match::Yes;
}
// The pattern's short form with every optional node left out: "VOLT" for the one above.
std::string shortForm(std::string_view pattern);

// A number parameter without a unit: decimal (2.5, -1, 1e-3) or #H1F, #Q17, #B101.
// Nothing for any other text.
std::optional<double> parseNumber(std::string_view text);
// A whole number in decimal or non-decimal form; a fraction or a value beyond 2^53 is nothing.
std::optional<int64_t> parseWhole(std::string_view text);
// The text of a quoted string parameter ('...' or "..."), its doubled quotes made single.
std::optional<std::string> parseQuoted(std::string_view text);
// ON/OFF/1/0.
std::optional<bool> parseBoolean(std::string_view text);

// The unit of a numeric parameter, which names its suffixes: V, MV, UV for volts; A, MA,
// UA, NA for amperes; S, MS, US for seconds; in any case, after the number or a space.
enum class SiUnit { None, Volt, Ampere, Second };
const char* unitSymbol(SiUnit unit);

// A numeric parameter: a value in the base unit, or MINimum, MAXimum, DEFault.
struct Numeric {
    enum class Kind { Value, Min, Max, Def };
    Kind kind = Kind::Value;
    double value = 0.0;
};
struct NumericParse {
    std::optional<Numeric> numeric;
    Error error; // -120, -131, -138 or -104 when refused
};
NumericParse parseNumeric(std::string_view text, SiUnit unit, bool limits);

// A number as the answers give it: up to 7 significant digits, no trailing zeros, an
// upper-case E when it has an exponent.
std::string numberText(double value);
// The answer for a value that is not there (no level set yet).
inline constexpr const char* kNotANumber = "9.91E+37";

// The data formats of FORMat[:DATA] and FORMat:BORDer.
enum class DataFormat { Ascii, Real32, Real64 };
struct Format {
    DataFormat data = DataFormat::Ascii;
    bool swapped = false; // least significant byte first
};
// The values in the format: comma-separated numbers, or an IEEE 488.2 definite-length
// block (#, the digit count, the byte count, the bytes) of 32- or 64-bit floats.
std::string formatValues(std::span<const double> values, const Format& format);

// The queue of errors, oldest first, 20 deep; the last place tells of an overflow.
class ErrorQueue {
  public:
    static constexpr size_t kDepth = 20;
    void push(Error e);
    void push(int code, std::string text) { push(Error{code, std::move(text)}); }
    // The oldest error as code,"text", or 0,"No error".
    std::string pop();
    void clear() { errors_.clear(); }
    size_t size() const { return errors_.size(); }

  private:
    std::deque<Error> errors_;
};

// code,"text" with the text's quotes doubled.
std::string errorText(const Error& e);

} // namespace qz::remote
