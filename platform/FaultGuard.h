// Running a call into a run-time module so that a machine fault inside it (SIGSEGV, SIGBUS,
// SIGFPE) comes back as an answer instead of ending the process.
//
//   bool answer = false;
//   if (!LodeQDBUtil::RunGuarded([&] { answer = probe(path); })) answer = false;
//
// The guard jumps out of the faulting code: whatever the call had begun (locks, memory) stays
// as it was at the fault. It is meant for calls whose faults are known to be harmless to
// leave behind, such as probing a file. Faults outside a guard go to the handlers that were
// there before, so debuggers and sanitizers see them as ever.
#pragma once

#include <functional>

namespace LodeQDBUtil {

/// Runs `call` on the calling thread. False when a fault ended it; true when it returned.
/// Exceptions pass through. Guards may nest.
bool RunGuarded(const std::function<void()>& call);

}  // namespace LodeQDBUtil
