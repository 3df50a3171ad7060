#include "remote/Scpi.h"

#include <algorithm>
#include <bit>
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
    {err::kHeaderSuffix, "Header suffix out of range"},
    {err::kNumericData, "Numeric data error"},
    {err::kInvalidSuffix, "Invalid suffix"},
    {err::kSuffixNotAllowed, "Suffix not allowed"},
    {err::kCharacterData, "Character data error"},
    {err::kExecution, "Execution error"},
    {err::kInitIgnored, "Init ignored"},
    {err::kSettingsConflict, "Settings conflict"},
    {err::kOutOfRange, "Data out of range"},
    {err::kIllegalValue, "Illegal parameter value"},
    {err::kDataStale, "Data corrupt or stale"},
    {err::kHardware, "Hardware error"},
    {err::kSelfTest, "Self-test failed"},
    {err::kQueueOverflow, "Queue overflow"},
    {err::kQueryInterrupted, "Query INTERRUPTED"},
    {err::kQueryDeadlocked, "Query DEADLOCKED"},
};

bool isBlank(char c) { return c == ' ' || c == '\t'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isAlpha(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }
char upper(char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); }

std::string_view trim(std::string_view s) {
    while (!s.empty() && isBlank(s.front())) s.remove_prefix(1);
    while (!s.empty() && isBlank(s.back())) s.remove_suffix(1);
    return s;
}

bool validNode(std::string_view node, bool common) {
    if (node.empty()) return false;
    size_t i = 0;
    if (common) {
        if (node[0] != '*' || node.size() == 1) return false;
        i = 1;
    }
    if (!isAlpha(node[i])) return false;
    return std::all_of(node.begin() + static_cast<std::ptrdiff_t>(i), node.end(),
                       [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; });
}

using PatternNode = HeaderPattern::Node;

std::vector<PatternNode> patternNodes(std::string_view pattern) {
    std::vector<PatternNode> out;
    size_t i = 0;
    while (i < pattern.size()) {
        if (pattern[i] == ':') {
            ++i;
            continue;
        }
        PatternNode n;
        std::string_view part;
        if (pattern[i] == '[') {
            const size_t close = std::min(pattern.find(']', i), pattern.size());
            part = pattern.substr(i + 1, close - i - 1);
            i = close + 1;
            n.optional = true;
        } else {
            const size_t end = std::min(pattern.find_first_of(":[", i), pattern.size());
            part = pattern.substr(i, end - i);
            i = end;
        }
        while (!part.empty() && part.front() == ':') part.remove_prefix(1);
        while (!part.empty() && part.back() == ':') part.remove_suffix(1);
        if (!part.empty() && part.back() == '#') {
            n.suffix = true;
            part.remove_suffix(1);
        }
        n.name = std::string(part);
        out.push_back(std::move(n));
    }
    return out;
}

Match nodeMatch(const PatternNode& p, std::string_view node) {
    if (!p.suffix) return mnemonicMatches(p.name, node) ? Match::Yes : Match::No;
    size_t cut = node.size();
    while (cut > 0 && isDigit(node[cut - 1])) --cut;
    if (!mnemonicMatches(p.name, node.substr(0, cut))) return Match::No;
    const std::string_view digits = node.substr(cut);
    if (digits.empty()) return Match::Yes;
    const size_t first = digits.find_first_not_of('0');
    return first != std::string_view::npos && digits.substr(first) == "1" ? Match::Yes : Match::BadSuffix;
}

Match better(Match a, Match b) {
    if (a == Match::Yes || b == Match::Yes) return Match::Yes;
    if (a == Match::BadSuffix || b == Match::BadSuffix) return Match::BadSuffix;
    return Match::No;
}

Match matchFrom(const std::vector<PatternNode>& p, size_t pi, const std::vector<std::string>& nodes, size_t ni) {
    if (pi == p.size()) return ni == nodes.size() ? Match::Yes : Match::No;
    Match best = Match::No;
    if (ni < nodes.size()) {
        const Match here = nodeMatch(p[pi], nodes[ni]);
        if (here != Match::No) {
            const Match rest = matchFrom(p, pi + 1, nodes, ni + 1);
            if (rest == Match::Yes) best = here;
            else if (rest == Match::BadSuffix) best = Match::BadSuffix;
        }
    }
    if (best != Match::Yes && p[pi].optional) best = better(best, matchFrom(p, pi + 1, nodes, ni));
    return best;
}

std::optional<int64_t> parseBased(std::string_view t) {
    if (t.size() < 3 || t[0] != '#') return std::nullopt;
    int base = 0;
    switch (upper(t[1])) {
    case 'H': base = 16; break;
    case 'Q': base = 8; break;
    case 'B': base = 2; break;
    default: return std::nullopt;
    }
    const std::string_view digits = t.substr(2);
    if (digits.size() > 53) return std::nullopt;
    int64_t v = 0;
    const auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), v, base);
    if (ec != std::errc() || end != digits.data() + digits.size() || v > (int64_t{1} << 53))
        return std::nullopt;
    // from_chars takes a leading '-', which a non-decimal number has not.
    if (digits.front() == '-') return std::nullopt;
    return v;
}

// The length of the decimal number at the head of t (sign, mantissa, exponent); 0 for none.
size_t decimalLength(std::string_view t) {
    size_t i = 0;
    if (i < t.size() && (t[i] == '+' || t[i] == '-')) ++i;
    size_t digits = 0;
    while (i < t.size() && isDigit(t[i])) ++i, ++digits;
    if (i < t.size() && t[i] == '.') {
        ++i;
        while (i < t.size() && isDigit(t[i])) ++i, ++digits;
    }
    if (digits == 0) return 0;
    // An exponent only when digits follow it: "2E" is 2 and a suffix E.
    if (i < t.size() && (t[i] == 'e' || t[i] == 'E')) {
        size_t j = i + 1;
        if (j < t.size() && (t[j] == '+' || t[j] == '-')) ++j;
        const size_t expStart = j;
        while (j < t.size() && isDigit(t[j])) ++j;
        if (j > expStart) i = j;
    }
    return i;
}

std::optional<double> decimalValue(std::string_view t) {
    // from_chars takes no '+', of the number or of its exponent.
    std::string text;
    text.reserve(t.size());
    for (char c : t)
        if (c != '+') text += c;
    double v = 0.0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (ec != std::errc() || end != text.data() + text.size() || !std::isfinite(v)) return std::nullopt;
    return v;
}

struct Suffix {
    const char* text;
    double factor;
};
constexpr Suffix kVoltSuffixes[] = {{"V", 1.0}, {"MV", 1e-3}, {"UV", 1e-6}};
constexpr Suffix kAmpereSuffixes[] = {{"A", 1.0}, {"MA", 1e-3}, {"UA", 1e-6}, {"NA", 1e-9}};
constexpr Suffix kSecondSuffixes[] = {{"S", 1.0}, {"MS", 1e-3}, {"US", 1e-6}};

std::span<const Suffix> suffixesOf(SiUnit unit) {
    switch (unit) {
    case SiUnit::Volt: return kVoltSuffixes;
    case SiUnit::Ampere: return kAmpereSuffixes;
    case SiUnit::Second: return kSecondSuffixes;
    case SiUnit::None: break;
    }
    return {};
}

void appendBytes(std::string& out, uint64_t bits, int bytes, bool swapped) {
    for (int i = 0; i < bytes; ++i) {
        const int shift = swapped ? 8 * i : 8 * (bytes - 1 - i);
        out += static_cast<char>((bits >> shift) & 0xFF);
    }
}

} // namespace

bool mnemonicMatches(std::string_view pattern, std::string_view node) {
    if (equalNoCase(node, pattern)) return true;
    // The short form: the capitals, digits and '*' of the long.
    size_t k = 0;
    for (char c : pattern) {
        if (!(std::isupper(static_cast<unsigned char>(c)) || c == '*' || isDigit(c))) continue;
        if (k >= node.size() || upper(node[k]) != c) return false;
        ++k;
    }
    return k == node.size();
}

bool equalNoCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return upper(x) == upper(y); });
}

const char* standardText(int code) {
    for (const CodeText& c : kStandardTexts)
        if (c.code == code) return c.text;
    return "Error";
}

Error standardError(int code) { return {code, standardText(code)}; }

Parsed parseUnit(std::string_view text) {
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
    Unit unit;
    unit.query = p.query;
    if (p.query) head.remove_suffix(1);
    if (!head.empty() && head.front() == ':') {
        unit.absolute = true;
        head.remove_prefix(1);
    }
    unit.common = !head.empty() && head.front() == '*';
    if (unit.common && unit.absolute) {
        p.error = standardError(err::kSyntax);
        return p;
    }
    for (size_t start = 0;;) {
        const size_t colon = std::min(head.find(':', start), head.size());
        const std::string_view node = head.substr(start, colon - start);
        if (!validNode(node, unit.common && start == 0) || (unit.common && start > 0)) {
            p.error = standardError(err::kSyntax);
            return p;
        }
        unit.nodes.emplace_back(node);
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
                unit.params.emplace_back(trim(current));
                current.clear();
            } else {
                current += c;
            }
        }
        unit.params.emplace_back(trim(current));
        if (quote || std::any_of(unit.params.begin(), unit.params.end(),
                                 [](const std::string& s) { return s.empty(); })) {
            p.error = standardError(err::kSyntax);
            return p;
        }
    }
    p.unit = std::move(unit);
    return p;
}

std::vector<std::string_view> splitUnits(std::string_view line) {
    std::vector<std::string_view> units;
    char quote = 0;
    size_t start = 0;
    for (size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quote) {
            if (c == quote) quote = 0;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == ';') {
            units.push_back(line.substr(start, i - start));
            start = i + 1;
        }
    }
    units.push_back(line.substr(start));
    return units;
}

std::vector<MessageUnit> parseMessage(std::string_view line) {
    std::vector<MessageUnit> out;
    std::vector<std::string> path;
    for (std::string_view text : splitUnits(line)) {
        MessageUnit m{parseUnit(text)};
        if (!m.parsed.unit && m.parsed.error.code == err::kNone) continue;
        if (m.parsed.unit && !m.parsed.unit->common) {
            Unit& u = *m.parsed.unit;
            if (!u.absolute && !path.empty()) u.nodes.insert(u.nodes.begin(), path.begin(), path.end());
            path.assign(u.nodes.begin(), u.nodes.end() - 1);
        }
        out.push_back(std::move(m));
    }
    return out;
}

HeaderPattern::HeaderPattern(std::string_view pattern) : nodes_(patternNodes(pattern)) {}

Match HeaderPattern::match(const std::vector<std::string>& nodes) const { return matchFrom(nodes_, 0, nodes, 0); }

Match matchHeader(std::string_view pattern, const std::vector<std::string>& nodes) {
    return HeaderPattern(pattern).match(nodes);
}

std::string shortForm(std::string_view pattern) {
    std::string out;
    for (const PatternNode& n : patternNodes(pattern)) {
        if (n.optional) continue;
        if (!out.empty()) out += ':';
        for (char c : n.name)
            if (std::isupper(static_cast<unsigned char>(c)) || c == '*' || isDigit(c)) out += c;
    }
    return out;
}

std::optional<double> parseNumber(std::string_view text) {
    const NumericParse p = parseNumeric(text, SiUnit::None, false);
    if (!p.numeric) return std::nullopt;
    return p.numeric->value;
}

std::optional<int64_t> parseWhole(std::string_view text) {
    const std::string_view t = trim(text);
    if (!t.empty() && t.front() == '#') return parseBased(t);
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

const char* unitSymbol(SiUnit unit) {
    switch (unit) {
    case SiUnit::Volt: return "V";
    case SiUnit::Ampere: return "A";
    case SiUnit::Second: return "s";
    case SiUnit::None: break;
    }
    return "";
}

NumericParse parseNumeric(std::string_view text, SiUnit unit, bool limits) {
    NumericParse out;
    const std::string_view t = trim(text);
    if (limits) {
        const std::pair<const char*, Numeric::Kind> words[] = {
            {"MINimum", Numeric::Kind::Min}, {"MAXimum", Numeric::Kind::Max}, {"DEFault", Numeric::Kind::Def}};
        for (const auto& [word, kind] : words)
            if (mnemonicMatches(word, t)) {
                out.numeric = Numeric{kind, 0.0};
                return out;
            }
    }
    if (!t.empty() && t.front() == '#') {
        if (const auto v = parseBased(t)) out.numeric = Numeric{Numeric::Kind::Value, static_cast<double>(*v)};
        else out.error = standardError(err::kNumericData);
        return out;
    }
    const size_t n = decimalLength(t);
    if (n == 0) {
        // A word where a number belongs is data of the wrong type; anything else is no number.
        const bool word = !t.empty() && isAlpha(t.front()) &&
                          std::all_of(t.begin(), t.end(), [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; });
        out.error = standardError(word ? err::kDataType : err::kNumericData);
        return out;
    }
    const auto value = decimalValue(t.substr(0, n));
    if (!value) {
        out.error = standardError(err::kNumericData);
        return out;
    }
    const std::string_view suffix = trim(t.substr(n));
    double factor = 1.0;
    if (!suffix.empty()) {
        if (!std::all_of(suffix.begin(), suffix.end(), isAlpha)) {
            out.error = standardError(err::kNumericData);
            return out;
        }
        if (unit == SiUnit::None) {
            out.error = standardError(err::kSuffixNotAllowed);
            return out;
        }
        const auto known = suffixesOf(unit);
        const auto s = std::find_if(known.begin(), known.end(), [&](const Suffix& k) { return equalNoCase(k.text, suffix); });
        if (s == known.end()) {
            out.error = standardError(err::kInvalidSuffix);
            return out;
        }
        factor = s->factor;
    }
    out.numeric = Numeric{Numeric::Kind::Value, *value * factor};
    return out;
}

std::string numberText(double value) {
    if (value == 0.0) return "0"; // never "-0"
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.7g", value);
    std::string out = buffer;
    for (char& c : out)
        if (c == 'e') c = 'E';
    return out;
}

std::string formatValues(std::span<const double> values, const Format& format) {
    std::string out;
    if (format.data == DataFormat::Ascii) {
        out.reserve(values.size() * 12);
        for (size_t i = 0; i < values.size(); ++i) {
            if (i) out += ',';
            out += numberText(values[i]);
        }
        return out;
    }
    const int width = format.data == DataFormat::Real32 ? 4 : 8;
    const std::string count = std::to_string(values.size() * static_cast<size_t>(width));
    out.reserve(2 + count.size() + values.size() * static_cast<size_t>(width));
    out += '#';
    out += static_cast<char>('0' + count.size());
    out += count;
    for (double v : values) {
        if (width == 4) appendBytes(out, std::bit_cast<uint32_t>(static_cast<float>(v)), 4, format.swapped);
        else appendBytes(out, std::bit_cast<uint64_t>(v), 8, format.swapped);
    }
    return out;
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
