#pragma once
// The remote line protocol as plain code: a line split into its header and parameters,
// headers matched in their short or long form, numbers in decimal or #H hexadecimal, and
// the error queue that SYST:ERR? reads. No Qt here: the server and the tests share it.

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qz::remote {

// The error codes the remote control gives, with their standard texts.
namespace err {
inline constexpr int kNone = 0;
inline constexpr int kCommand = -100;          // "Command error"
inline constexpr int kInvalidCharacter = -101; // a byte outside printable ASCII
inline constexpr int kSyntax = -102;
inline constexpr int kDataType = -104;
inline constexpr int kParameterNotAllowed = -108;
inline constexpr int kMissingParameter = -109;
inline constexpr int kUndefinedHeader = -113;
inline constexpr int kNumericData = -120;
inline constexpr int kExecution = -200;
inline constexpr int kInitIgnored = -213;
inline constexpr int kSettingsConflict = -221;
inline constexpr int kOutOfRange = -222;
inline constexpr int kIllegalValue = -224;
inline constexpr int kHardware = -240;
inline constexpr int kQueueOverflow = -350;
} // namespace err

struct Error {
    int code = err::kNone;
    std::string text;
};

// The standard text of a code of the table above.
const char* standardText(int code);
// An error with its standard text.
Error standardError(int code);

// One line as the client sent it, split.
struct Line {
    std::vector<std::string> nodes;  // the header's mnemonics, "*IDN" for a common command
    bool query = false;
    std::vector<std::string> params; // trimmed, quotes kept
};

// Splits one line (its end of line already cut). Nothing for an empty line; an error for
// a line that is not a header and parameters.
struct Parsed {
    std::optional<Line> line;
    Error error;
    bool query = false; // even when the line is refused, whether it was asked as a query
};
Parsed parseLine(std::string_view text);

// Whether two texts are equal but for the case of their ASCII letters.
bool equalNoCase(std::string_view a, std::string_view b);

// Whether the header nodes match the pattern, "SOURce:VOLTage": each node in the short
// form (the capitals) or the long form, in any case.
bool headerMatches(std::string_view pattern, const std::vector<std::string>& nodes);

// A number parameter: decimal (2.5, -1, 1e-3) or hexadecimal #H1F. Nothing for any other text.
std::optional<double> parseNumber(std::string_view text);
// A whole number in decimal or #H; a fraction or a value beyond 64 bits is nothing.
std::optional<int64_t> parseWhole(std::string_view text);
// The text of a quoted string parameter ('...' or "..."), its doubled quotes made single.
std::optional<std::string> parseQuoted(std::string_view text);
// ON/OFF/1/0.
std::optional<bool> parseBoolean(std::string_view text);

// A number as the answers give it: up to 7 significant digits, no trailing zeros.
std::string numberText(double value);

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
