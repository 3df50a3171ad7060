#include "remote/Scpi.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace qz::remote {

namespace {

struct CodeText {
    int code;
    const char* text;
};
constexpr CodeText kStandardTexts[] = {
    {err::kNone, "No error"},
    {err::kCommand, "Command error"},
    {err::kInvalidCharacter, "Invalid character"},
    {err::kSyntax, "Syntax error"},
    {err::kDataType, "Data type error"},
    {err::kParameterNotAllowed, "Parameter not allowed"},
    {err::kMissingParameter, "Missing parameter"},
    {err::kUndefinedHeader, "Undefined header"},
    {err::kNumericData, "Numeric data error"},
    {err::kExecution, "Execution error"},
    {err::kInitIgnored, "Init ignored"},
    {err::kSettingsConflict, "Settings conflict"},
    {err::kOutOfRange, "Data out of range"},
    {err::kIllegalValue, "Illegal parameter value"},
    {err::kHardware, "Hardware error"},
    {err::kQueueOverflow, "Queue overflow"},
};

bool isBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view trim(std::string_view s) {
    while (!s.empty() && isBlank(s.front())) s.remove_prefix(1);
    while (!s.empty() && isBlank(s.back())) s.remove_suffix(1);
    return s;
}

bool nodeMatches(std::string_view pattern, std::string_view node) {
    if (equalNoCase(node, pattern)) return true;
    // The short form: the capitals (and digits) of the pattern.
    size_t k = 0;
    for (char c : pattern) {
        if (!(std::isupper(static_cast<unsigned char>(c)) || c == '*' || std::isdigit(static_cast<unsigned char>(c))))
            continue;
        if (k >= node.size() || std::toupper(static_cast<unsigned char>(node[k])) != c) return false;
        ++k;
    }
    return k == node.size();
}

bool validNode(std::string_view node, bool common) {
    if (node.empty()) return false;
    size_t i = 0;
    if (common) {
        if (node[0] != '*') return false;
        i = 1;
        if (node.size() == 1) return false;
    }
    if (!std::isalpha(static_cast<unsigned char>(node[i]))) return false;
    return std::all_of(node.begin() + static_cast<std::ptrdiff_t>(i), node.end(),
                       [](char c) { return std::isalnum(static_cast<unsigned char>(c)); });
}

std::optional<int64_t> parseHex(std::string_view digits) {
    if (digits.empty() || digits.size() > 15 ||
        !std::all_of(digits.begin(), digits.end(), [](char c) { return std::isxdigit(static_cast<unsigned char>(c)); }))
        return std::nullopt;
    int64_t v = 0;
    const auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), v, 16);
    if (ec != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    return v;
}

bool isHexHead(std::string_view t) { return t.size() >= 2 && t[0] == '#' && (t[1] == 'H' || t[1] == 'h'); }

} // namespace

bool equalNoCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::toupper(static_cast<unsigned char>(x)) ==
                      std::toupper(static_cast<unsigned char>(y));
           });
}

const char* standardText(int code) {
    for (const CodeText& c : kStandardTexts)
        if (c.code == code) return c.text;
    return "Error";
}

Error standardError(int code) { return {code, standardText(code)}; }

Parsed parseLine(std::string_view text) {
    Parsed p;
    const std::string_view t = trim(text);
    if (t.empty()) return p;
    const size_t headEnd = std::min(t.find_first_of(" \t"), t.size());
    std::string_view head = t.substr(0, headEnd);
    p.query = !head.empty() && head.back() == '?';
    for (char c : t) {
        const auto b = static_cast<unsigned char>(c);
        if ((b < 0x20 && c != '\t') || b >= 0x7F) {
            p.error = standardError(err::kInvalidCharacter);
            return p;
        }
    }
    if (p.query) head.remove_suffix(1);
    if (!head.empty() && head.front() == ':') head.remove_prefix(1);
    Line line;
    line.query = p.query;
    const bool common = !head.empty() && head.front() == '*';
    for (size_t start = 0;;) {
        const size_t colon = std::min(head.find(':', start), head.size());
        const std::string_view node = head.substr(start, colon - start);
        if (!validNode(node, common && start == 0) || (common && start > 0)) {
            p.error = standardError(err::kSyntax);
            return p;
        }
        line.nodes.emplace_back(node);
        if (colon == head.size()) break;
        start = colon + 1;
    }

    // Parameters: comma separated, a comma inside quotes belonging to its string.
    const std::string_view rest = trim(t.substr(headEnd));
    if (!rest.empty()) {
        std::string current;
        char quote = 0;
        for (char c : rest) {
            if (quote) {
                current += c;
                if (c == quote) quote = 0;
            } else if (c == '"' || c == '\'') {
                quote = c;
                current += c;
            } else if (c == ',') {
                line.params.emplace_back(trim(current));
                current.clear();
            } else {
                current += c;
            }
        }
        line.params.emplace_back(trim(current));
        if (quote || std::any_of(line.params.begin(), line.params.end(),
                                 [](const std::string& s) { return s.empty(); })) {
            p.error = standardError(err::kSyntax);
            return p;
        }
    }
    p.line = std::move(line);
    return p;
}

bool headerMatches(std::string_view pattern, const std::vector<std::string>& nodes) {
    size_t i = 0, start = 0;
    for (;; ++i) {
        const size_t colon = std::min(pattern.find(':', start), pattern.size());
        if (i >= nodes.size() || !nodeMatches(pattern.substr(start, colon - start), nodes[i]))
            return false;
        if (colon == pattern.size()) return i + 1 == nodes.size();
        start = colon + 1;
    }
}

std::optional<double> parseNumber(std::string_view text) {
    const std::string_view t = trim(text);
    if (isHexHead(t)) {
        const auto v = parseHex(t.substr(2));
        if (!v) return std::nullopt;
        return static_cast<double>(*v);
    }
    // from_chars takes no leading '+' and would take "inf" and "nan": neither is a number here.
    std::string_view digits = t;
    if (!digits.empty() && digits.front() == '+') digits.remove_prefix(1);
    if (digits.empty() || digits.front() == '+' ||
        std::any_of(digits.begin(), digits.end(), [](char c) {
            return !(std::isdigit(static_cast<unsigned char>(c)) || c == '.' || c == '-' ||
                     c == 'e' || c == 'E' || c == '+');
        }))
        return std::nullopt;
    double v = 0.0;
    const auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), v);
    if (ec != std::errc() || end != digits.data() + digits.size() || !std::isfinite(v))
        return std::nullopt;
    return v;
}

std::optional<int64_t> parseWhole(std::string_view text) {
    const std::string_view t = trim(text);
    if (isHexHead(t)) return parseHex(t.substr(2));
    const auto v = parseNumber(t);
    if (!v || *v != std::floor(*v) || std::fabs(*v) > 9.0e15) return std::nullopt;
    return static_cast<int64_t>(*v);
}

std::optional<std::string> parseQuoted(std::string_view text) {
    const std::string_view t = trim(text);
    if (t.size() < 2 || (t.front() != '"' && t.front() != '\'') || t.back() != t.front())
        return std::nullopt;
    std::string out;
    const std::string_view inner = t.substr(1, t.size() - 2);
    for (size_t i = 0; i < inner.size(); ++i) {
        out += inner[i];
        if (inner[i] == t.front() && i + 1 < inner.size() && inner[i + 1] == t.front()) ++i;
    }
    return out;
}

std::optional<bool> parseBoolean(std::string_view text) {
    const std::string_view t = trim(text);
    if (equalNoCase(t, "ON")) return true;
    if (equalNoCase(t, "OFF")) return false;
    const auto v = parseWhole(t);
    if (v && (*v == 0 || *v == 1)) return *v == 1;
    return std::nullopt;
}

std::string numberText(double value) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.7g", value);
    return buffer;
}

void ErrorQueue::push(Error e) {
    if (errors_.size() >= kDepth) {
        errors_.back() = standardError(err::kQueueOverflow);
        return;
    }
    errors_.push_back(std::move(e));
}

std::string ErrorQueue::pop() {
    if (errors_.empty()) return errorText(standardError(err::kNone));
    Error e = std::move(errors_.front());
    errors_.pop_front();
    return errorText(e);
}

std::string errorText(const Error& e) {
    std::string out = std::to_string(e.code) + ",\"";
    for (char c : e.text) {
        out += c;
        if (c == '"') out += '"';
    }
    return out + "\"";
}

} // namespace qz::remote
