#include "StageArgs.h"

#include <sys/stat.h>

#include <cstdlib>
#include <cstring>

namespace ae {
namespace stagecraft {

namespace {

bool EndsWith(const std::string& text, const char* suffix) {
    size_t n = std::strlen(suffix);
    return text.size() >= n && text.compare(text.size() - n, n, suffix) == 0;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// %XX becomes its byte; a '%' not followed by two hex digits stays as it is.
std::string PercentDecode(const char* begin, const char* end) {
    std::string out;
    out.reserve(size_t(end - begin));
    for (const char* p = begin; p < end; ++p) {
        if (*p == '%' && end - p >= 3) {
            int hi = HexDigit(p[1]);
            int lo = HexDigit(p[2]);
            if (hi >= 0 && lo >= 0) {
                out.push_back(static_cast<char>(hi * 16 + lo));
                p += 2;
                continue;
            }
        }
        out.push_back(*p);
    }
    return out;
}

bool FileExists(const std::string& path) {
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

}  // namespace

bool ParseStageArguments(int argc, const char* const* argv, StageOptions& options) {
    if (argc >= 1 && argv[0])
        options.programName = argv[0];
    if (argc < 2 || !argv[argc - 1])
        return false;
    std::string movie = argv[argc - 1];
    if (movie.empty() || movie.compare(0, 2, "--") == 0)
        return false;

    // The options lie between the program name and the movie; an option whose value would be
    // the movie itself has no value and is ignored.
    const int last = argc - 1;
    for (int i = 1; i < last; ++i) {
        const char* arg = argv[i];
        if (!arg)
            continue;
        bool hasValue = i + 1 < last && argv[i + 1];
        if (std::strcmp(arg, "--astrace") == 0) {
            options.asTrace = true;
        } else if (std::strcmp(arg, "--lmstage-hooks") == 0) {
            options.hooks = true;
        } else if (std::strcmp(arg, "--bgalpha") == 0) {
            if (hasValue)
                options.bgAlpha = std::strtod(argv[++i], nullptr);
        } else if (std::strcmp(arg, "--outputdims") == 0) {
            if (hasValue) {
                const char* dims = argv[++i];
                char* rest = nullptr;
                long w = std::strtol(dims, &rest, 10);
                if (rest && *rest == ',') {
                    options.outputWidth = static_cast<int>(w);
                    options.outputHeight = static_cast<int>(std::strtol(rest + 1, nullptr, 10));
                }
            }
        } else if (std::strcmp(arg, "--keymap") == 0) {
            if (hasValue) {
                std::string file = argv[++i];
                if (FileExists(file))
                    options.keymap = file;
            }
        } else if (std::strcmp(arg, "--flashvars") == 0) {
            if (hasValue)
                options.flashvars = argv[++i];
        }
        // Anything else, "--" option or stray word, is skipped on its own.
    }
    options.moviePath = movie;
    return true;
}

std::string ResolveMoviePath(const std::string& path) {
    const char* dir = std::getenv("LM_MOVIE_DIR");
    if (!dir || !*dir || !EndsWith(path, ".swf"))
        return path;
    size_t slash = path.rfind('/');
    std::string base = path.substr(slash == std::string::npos ? 0 : slash + 1);
    base.resize(base.size() - 4);
    std::string resolved = dir;
    if (resolved.back() != '/')
        resolved.push_back('/');
    return resolved + base + ".js";
}

std::vector<std::pair<std::string, std::string>> DecodeFlashvars(const std::string& text) {
    std::vector<std::pair<std::string, std::string>> vars;
    const char* p = text.data();
    const char* end = p + text.size();
    while (p < end) {
        const char* amp = static_cast<const char*>(std::memchr(p, '&', size_t(end - p)));
        const char* segEnd = amp ? amp : end;
        if (segEnd > p) {
            const char* eq = static_cast<const char*>(std::memchr(p, '=', size_t(segEnd - p)));
            if (eq)
                vars.emplace_back(PercentDecode(p, eq), PercentDecode(eq + 1, segEnd));
            else
                vars.emplace_back(PercentDecode(p, segEnd), std::string());
        }
        p = segEnd + 1;
    }
    return vars;
}

}  // namespace stagecraft
}  // namespace ae
