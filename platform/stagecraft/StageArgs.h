// The runtime argument vector of a window set, and the decoding of its --flashvars string.
#ifndef STAGECRAFT_STAGEARGS_H
#define STAGECRAFT_STAGEARGS_H

#include <string>
#include <utility>
#include <vector>

namespace ae {
namespace stagecraft {

struct StageOptions {
    std::string programName;
    std::string moviePath;  // as given (before the LM_MOVIE_DIR look-up)
    bool asTrace = false;
    bool hooks = false;  // --lmstage-hooks: lmstageQuit(code)
    std::string flashvars;
    double bgAlpha = 1.0;
    int outputWidth = 0;  // 0: the display's own size
    int outputHeight = 0;
    std::string keymap;  // empty unless the file exists
};

// False when there is no movie argument (the last entry, which is never an option). Options
// that take a value and unknown "--" options are consumed as described in Stagecraft.cpp.
// May throw std::bad_alloc.
bool ParseStageArguments(int argc, const char* const* argv, StageOptions& options);

// "dir/name.swf" becomes "$LM_MOVIE_DIR/name.js" when LM_MOVIE_DIR is set; other paths are
// returned unchanged.
std::string ResolveMoviePath(const std::string& path);

// "k=v&k2=v2": split at '&', then at the first '='; %XX decoded in keys and values, '+' kept;
// a segment without '=' has the value ""; empty segments are skipped.
std::vector<std::pair<std::string, std::string>> DecodeFlashvars(const std::string& text);

}  // namespace stagecraft
}  // namespace ae

#endif  // STAGECRAFT_STAGEARGS_H
