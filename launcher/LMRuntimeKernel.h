// Reference-counted access to the runtime kernel library and its stage interface.
//
// The kernel is loaded by name ("libIAEKernel.so") with the dynamic loader's own search path, so
// the same code reaches the device's kernel or our stand-in, whichever the program finds.
// Acquire and release come in pairs; the library is unloaded when the last kernel reference goes.
#ifndef LM_RUNTIMEKERNEL_H
#define LM_RUNTIMEKERNEL_H

#include "ae/AEKernel.h"
#include "ae/IStagecraft.h"

// Loads and initialises the kernel on first use (with the runtime's argument vector) and adds a
// reference. Null when the library cannot be loaded ("Failed to load ..." on stderr), lacks one
// of its three entry points or gives no kernel.
ae::IAEKernel* LMAcquireKernel(int argc, const char* const* argv);
void LMReleaseKernel();

// The kernel's "IStagecraft" interface, counted like the kernel. Needs an acquired kernel; null
// when the kernel has none.
ae::stagecraft::IStagecraft* LMAcquireStagecraft();
void LMReleaseStagecraft();

#endif  // LM_RUNTIMEKERNEL_H
