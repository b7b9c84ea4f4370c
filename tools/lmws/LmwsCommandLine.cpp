#include "LmwsCommandLine.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <limits>

namespace {

const int64_t kInt32Min = std::numeric_limits<int32_t>::min();
const int64_t kInt32Max = std::numeric_limits<int32_t>::max();
const int64_t kUInt32Max = std::numeric_limits<uint32_t>::max();

// One set-up option: a text or a number member of LmwsSettings (the other pointer is null),
// with the range a number must fall in.
struct OptionRow {
    const char* name;  // without the leading "--"
    std::string LmwsSettings::*text;
    int64_t LmwsSettings::*number;
    int64_t min;
    int64_t max;
    const char* help;
};

OptionRow TextOption(const char* name, std::string LmwsSettings::*member, const char* help) {
    return {name, member, nullptr, 0, 0, help};
}

OptionRow NumberOption(const char* name, int64_t LmwsSettings::*member, int64_t min, int64_t max,
                       const char* help) {
    return {name, nullptr, member, min, max, help};
}

// In LM_WS_SetupParams order.
const std::vector<OptionRow>& Options() {
    static const std::vector<OptionRow> options = {
        TextOption("api-key", &LmwsSettings::apiKey, "API key"),
        TextOption("auth-token", &LmwsSettings::authToken, "device authorisation token"),
        TextOption("device-id", &LmwsSettings::deviceId,
                   "device unique id, at most 350 characters"),
        NumberOption("device-type", &LmwsSettings::deviceType, kInt32Min, kInt32Max,
                     "device type id"),
        TextOption("user", &LmwsSettings::user, "account user name"),
        TextOption("password", &LmwsSettings::password, "account password"),
        TextOption("base-url", &LmwsSettings::baseUrl,
                   "service base URL, carried only (the environment picks the hosts)"),
        NumberOption("type", &LmwsSettings::type, 0, 1, "catalogue: 0 general, 1 adult"),
        NumberOption("env", &LmwsSettings::env, 0, kUInt32Max,
                     "environment: 0 staging API, 1 staging, 2 production, more asks the service"),
        NumberOption("cache-type", &LmwsSettings::cacheType, 0, 2,
                     "cache: 0 none, 1 in memory, 2 file in --cache-path"),
        NumberOption("cache-data", &LmwsSettings::cacheData, 0, 7,
                     "what is cached, bits: 1 service answers, 2 box art, 4 user data"),
        NumberOption("cache-limit", &LmwsSettings::cacheLimit, 0, kUInt32Max,
                     "cache size budget in bytes: 0 none, else at least 358400"),
        TextOption("cache-path", &LmwsSettings::cachePath,
                   "folder of the cache file (\"\" the current folder)"),
        TextOption("proxy-host", &LmwsSettings::proxyHost, "HTTP proxy host (\"\" no proxy)"),
        NumberOption("proxy-port", &LmwsSettings::proxyPort, 0, 65535, "HTTP proxy port"),
        TextOption("proxy-user", &LmwsSettings::proxyUser, "HTTP proxy user name"),
        TextOption("proxy-password", &LmwsSettings::proxyPassword, "HTTP proxy password"),
        NumberOption("access-type", &LmwsSettings::accessType, kInt32Min, kInt32Max,
                     "1 download, 2 streaming, anything else asks the service"),
        TextOption("revision", &LmwsSettings::revision, "application revision (User-Agent)"),
        TextOption("firmware", &LmwsSettings::firmware, "firmware version (User-Agent)"),
        TextOption("model", &LmwsSettings::model, "model number (User-Agent)"),
    };
    return options;
}

const OptionRow* FindOption(const std::string& name) {
    for (const OptionRow& o : Options()) {
        if (name == o.name) {
            return &o;
        }
    }
    return nullptr;
}

enum class NumberParse { Ok, NotANumber, OutOfRange };

// A whole word as a number: an optional sign, then decimal digits or 0x and hexadecimal digits.
// Blanks, trailing characters and an empty word are refused.
NumberParse ParseNumber(const std::string& word, int64_t& out) {
    size_t digits = word.size() > 0 && (word[0] == '-' || word[0] == '+') ? 1 : 0;
    if (digits >= word.size() || !isdigit(static_cast<unsigned char>(word[digits]))) {
        return NumberParse::NotANumber;
    }
    int base = 10;
    if (word.compare(digits, 2, "0x") == 0 || word.compare(digits, 2, "0X") == 0) {
        base = 16;
        // strtoll would read "0x" alone, or "0x-5", as 0 followed by junk: refuse here.
        if (digits + 2 >= word.size() || !isxdigit(static_cast<unsigned char>(word[digits + 2]))) {
            return NumberParse::NotANumber;
        }
    }
    errno = 0;
    char* end = nullptr;
    long long value = strtoll(word.c_str(), &end, base);
    if (*end != 0) {
        return NumberParse::NotANumber;
    }
    if (errno == ERANGE) {
        return NumberParse::OutOfRange;
    }
    out = value;
    return NumberParse::Ok;
}

// "" when `word` is a number from min to max (stored in `out`), else what is wrong with it;
// `notANumber` is the message for a word that is no number at all.
std::string Number(const std::string& word, int64_t min, int64_t max, int64_t& out,
                   const std::string& notANumber) {
    int64_t value = 0;
    NumberParse parsed = ParseNumber(word, value);
    if (parsed == NumberParse::NotANumber) {
        return notANumber;
    }
    if (parsed == NumberParse::OutOfRange || value < min || value > max) {
        return word + " is out of range (" + std::to_string(min) + ".." + std::to_string(max) + ")";
    }
    out = value;
    return "";
}

std::string Number(const std::string& word, int64_t min, int64_t max, int64_t& out) {
    return Number(word, min, max, out, "'" + word + "' is not a number");
}

std::string SetOption(const OptionRow& row, const std::string& value, LmwsSettings& settings) {
    if (row.text != nullptr) {
        settings.*row.text = value;
        return "";
    }
    std::string error = Number(value, row.min, row.max, settings.*row.number);
    return error.empty() ? "" : std::string("--") + row.name + ": " + error;
}

std::string ArgNames(const LmwsOperation& op) {
    std::string names;
    for (const LmwsParam& a : op.args) {
        names += names.empty() ? "" : " ";
        names += a.name;
    }
    return names;
}

// How --help shows what an argument must be: its kind, or an Int's range when the function
// accepts fewer values than an int32_t holds.
std::string KindName(const LmwsParam& param) {
    switch (param.kind) {
        case LmwsArgKind::Int:
            return param.min == kInt32Min && param.max == kInt32Max
                       ? "int"
                       : std::to_string(param.min) + ".." + std::to_string(param.max);
        case LmwsArgKind::UInt:
            return "uint";
        case LmwsArgKind::Flag:
            return "flag";
        case LmwsArgKind::Text:
            return "text";
        case LmwsArgKind::IntList:
            return "int-list";
    }
    return "?";
}

std::string ParseArg(const LmwsParam& param, const std::string& word, LmwsArg& out) {
    switch (param.kind) {
        case LmwsArgKind::Text:
            out.text = word;
            return "";
        case LmwsArgKind::Int: {
            int64_t value = 0;
            std::string error = Number(word, param.min, param.max, value);
            out.number = static_cast<int32_t>(value);
            return error;
        }
        case LmwsArgKind::UInt: {
            int64_t value = 0;
            std::string error = Number(word, 0, kUInt32Max, value);
            out.unsignedNumber = static_cast<uint32_t>(value);
            return error;
        }
        case LmwsArgKind::Flag:
            // Exactly these four words: "2", "yes" or "" could be a slip for another argument.
            if (word == "1" || word == "true") {
                out.flag = 1;
                return "";
            }
            if (word == "0" || word == "false") {
                out.flag = 0;
                return "";
            }
            return "'" + word + "' is not a flag (0, 1, false or true)";
        case LmwsArgKind::IntList: {
            // Every comma separates two numbers: "", "1,", ",1" and "1,,2" are refused.
            size_t start = 0;
            while (true) {
                size_t comma = word.find(',', start);
                int64_t value = 0;
                std::string error =
                    Number(word.substr(start, comma - start), kInt32Min, kInt32Max, value,
                           "'" + word + "' is not a comma-separated list of numbers");
                if (!error.empty()) {
                    return error;
                }
                out.list.push_back(static_cast<int32_t>(value));
                if (comma == std::string::npos) {
                    return "";
                }
                start = comma + 1;
            }
        }
    }
    return "unknown argument kind";
}

// `text` as lines of at most `width` columns, each started by `indent`; words are never split.
std::string Wrap(const std::string& text, const std::string& indent, size_t width) {
    std::string out;
    std::string line = indent;
    size_t start = 0;
    while (start < text.size()) {
        size_t space = text.find(' ', start);
        std::string word = text.substr(start, space - start);
        start = space == std::string::npos ? text.size() : space + 1;
        if (line.size() > indent.size() && line.size() + 1 + word.size() > width) {
            out += line + "\n";
            line = indent;
        }
        line += (line.size() > indent.size() ? " " : "") + word;
    }
    return out + line + "\n";
}

// Checks one operation's words (name first) and appends the call.
std::string ParseCall(const std::vector<std::string>& words, size_t begin, size_t end,
                      std::vector<LmwsCall>& calls) {
    if (begin == end) {
        return "an operation is missing before or after '--'";
    }
    const LmwsOperation* op = LmwsFindOperation(words[begin]);
    if (op == nullptr) {
        return "unknown operation '" + words[begin] + "'";
    }
    size_t given = end - begin - 1;
    if (given != op->args.size()) {
        return std::string(op->name) + ": expects " + std::to_string(op->args.size()) +
               " argument(s) (" + ArgNames(*op) + "), got " + std::to_string(given);
    }
    LmwsCall call{op, LmwsArgs(given)};
    for (size_t i = 0; i < given; ++i) {
        std::string error = ParseArg(op->args[i], words[begin + 1 + i], call.args[i]);
        if (!error.empty()) {
            return std::string(op->name) + ": " + op->args[i].name + ": " + error;
        }
    }
    calls.push_back(std::move(call));
    return "";
}

}  // namespace

LM_WS_SetupParams LmwsSettings::Params() const {
    LM_WS_SetupParams p{};
    p.APIKey = apiKey.c_str();
    p.AuthToken = authToken.c_str();
    p.DestinationUniqueID = deviceId.c_str();
    p.DestinationTypeID = static_cast<int32_t>(deviceType);
    p.UserName = user.c_str();
    p.Password = password.c_str();
    p.ServiceBaseURL = baseUrl.c_str();
    p.Type = static_cast<int32_t>(type);
    p.EnvNum = static_cast<LM_WS_EnvNum>(env);
    p.CacheType = static_cast<uint32_t>(cacheType);
    p.CacheData = static_cast<uint32_t>(cacheData);
    p.CacheLimit = static_cast<uint32_t>(cacheLimit);
    p.CachePath = cachePath.c_str();
    p.ProxyHost = proxyHost.c_str();
    p.ProxyPort = static_cast<int32_t>(proxyPort);
    p.ProxyUserName = proxyUser.c_str();
    p.ProxyPassword = proxyPassword.c_str();
    p.AccessType = static_cast<LM_WS_AccessType>(accessType);
    p.ApplicationRevision = revision.c_str();
    p.firmwareVersion = firmware.c_str();
    p.modelNumber = model.c_str();
    return p;
}

std::string LmwsParseCommandLine(const std::vector<std::string>& words, LmwsCommandLine& out) {
    size_t i = 0;
    // Options come first; the first word that does not start with '-' names an operation.
    for (; i < words.size() && !words[i].empty() && words[i][0] == '-'; ++i) {
        const std::string& word = words[i];
        if (word == "-h" || word == "--help") {
            out.help = true;
            return "";
        }
        if (word == "-q" || word == "--quiet") {
            out.quiet = true;
            continue;
        }
        if (word == "--") {
            return "an operation is missing before '--'";
        }
        size_t equals = word.find('=');
        std::string name = word.substr(0, equals);
        if (name == "--quiet" || name == "--help") {
            return name + " takes no value";
        }
        const OptionRow* row = name.compare(0, 2, "--") == 0 ? FindOption(name.substr(2)) : nullptr;
        if (row == nullptr) {
            return "unknown option '" + name + "'";
        }
        std::string value;
        if (equals != std::string::npos) {
            value = word.substr(equals + 1);
        } else if (i + 1 < words.size()) {
            value = words[++i];
        } else {
            return name + ": missing value";
        }
        std::string error = SetOption(*row, value, out.settings);
        if (!error.empty()) {
            return error;
        }
    }
    if (i == words.size()) {
        return "no operation given";
    }
    while (true) {
        size_t end = i;
        while (end < words.size() && words[end] != "--") {
            ++end;
        }
        std::string error = ParseCall(words, i, end, out.calls);
        if (!error.empty()) {
            return error;
        }
        if (end == words.size()) {
            return "";
        }
        i = end + 1;
    }
}

std::string LmwsHelpText() {
    std::string text =
        "usage: lmws [set-up options] OPERATION [ARGS...] [-- OPERATION [ARGS...]]...\n"
        "\n"
        "Sets up one client, runs the operations in order (a failed one does not stop the\n"
        "others) and prints one JSON line per operation on stdout:\n"
        "  {\"operation\": NAME, \"status\": N, \"result\": {...}}\n"
        "Result fields carry the service's names; flags are booleans. A failed set-up prints\n"
        "one line for operation \"Setup\" and runs nothing. Everything else goes to stderr.\n"
        "Exit status: 0 every status 0, 1 a non-zero status, 2 a usage error.\n"
        "\n"
        "Set-up options (--NAME VALUE or --NAME=VALUE; numbers are decimal or 0x hex):\n";
    const LmwsSettings defaults;
    for (const OptionRow& o : Options()) {
        std::string left = std::string("  --") + o.name + (o.text != nullptr ? " TEXT" : " N");
        std::string value =
            o.text != nullptr ? "\"" + defaults.*o.text + "\"" : std::to_string(defaults.*o.number);
        left.resize(std::max<size_t>(left.size() + 1, 26), ' ');
        std::string line = left + o.help;
        std::string dflt = "(default " + value + ")";
        // Lines stay within 100 columns: a long one carries its default on a line of its own.
        text += line.size() + 1 + dflt.size() <= 100
                    ? line + " " + dflt + "\n"
                    : line + "\n" + std::string(26, ' ') + dflt + "\n";
    }
    text +=
        "  -q, --quiet             discard the library's console output instead of sending it\n"
        "                          to stderr\n"
        "  -h, --help              this text\n"
        "\n"
        "Operations (arguments in the order of the LM_WS_ function; a page is two numbers,\n"
        "the page counted from 1, then the titles per page). Argument kinds: int a 32-bit number,\n"
        "uint an unsigned one (both decimal or 0x hex), N..M a number from N to M, int-list\n"
        "\"12,14,3\", flag 0, 1, false or true, text any text (\"\" included and passed on as\n"
        "\"\"; only \"--\" cannot be one). A value written back comes out as {NAME: value}, and\n"
        "an operation that returns only a status gives {}:\n";
    for (const LmwsOperation& op : LmwsOperationTable()) {
        text += std::string("  ") + op.name;
        for (const LmwsParam& a : op.args) {
            text += std::string(" ") + a.name + ":" + KindName(a);
        }
        text += "\n" + Wrap(op.help, "      ", 100);
    }
    text +=
        "\n"
        "The service's hosts and ports come from the environment: LM_WS_PRODUCTION_HOST,\n"
        "LM_WS_STAGING_HOST, LM_WS_STAGING_API_HOST, LM_WS_ADULT_PRODUCTION_HOST,\n"
        "LM_WS_ADULT_STAGING_HOST, LM_WS_WEB_HOST, LM_WS_HTTPS_PORT, LM_WS_HTTP_PORT, and an\n"
        "extra trusted CA file from LM_WS_CAFILE.\n";
    return text;
}
