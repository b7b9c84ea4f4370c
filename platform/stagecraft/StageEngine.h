// The one place the script engine's header comes in. Everything here is written against
// Duktape 2.7: its error handling unwinds with longjmp, so no engine call that can throw is
// made while a C++ object with a destructor is live in the calling frame; such calls run
// inside duk_safe_call bodies or in C-style frames that hold nothing to destroy.
#ifndef STAGECRAFT_STAGEENGINE_H
#define STAGECRAFT_STAGEENGINE_H

#include <duktape.h>

#if !defined(DUK_VERSION) || DUK_VERSION != 20700L
#error "the stage is built against Duktape 2.7 (DUK_VERSION 20700)"
#endif

// Hidden keys: unreachable from the movie.
#define STAGE_KEY_INSTANCE DUK_HIDDEN_SYMBOL("stageInstance")
#define STAGE_KEY_HANDLES DUK_HIDDEN_SYMBOL("stageHandles")
#define STAGE_KEY_TIMERS DUK_HIDDEN_SYMBOL("stageTimers")
#define STAGE_KEY_KEEP DUK_HIDDEN_SYMBOL("stageKeep")

#endif  // STAGECRAFT_STAGEENGINE_H
