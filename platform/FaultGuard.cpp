// The guard rests on one set of signal handlers installed for the whole process on first use;
// each thread that runs a guarded call keeps its own jump target.
#include "platform/FaultGuard.h"

#include <setjmp.h>
#include <signal.h>

#include <mutex>

namespace LodeQDBUtil {

namespace {

constexpr int kGuardedSignals[] = {SIGSEGV, SIGBUS, SIGFPE};

struct PreviousHandlers {
    struct sigaction actions[std::size(kGuardedSignals)];
};

PreviousHandlers& previous() {
    static PreviousHandlers* const handlers = new PreviousHandlers();
    return *handlers;
}

thread_local sigjmp_buf* t_target = nullptr;

void OnFault(int signal, siginfo_t* info, void* context) {
    if (t_target != nullptr) siglongjmp(*t_target, signal);
    // Not ours: hand the fault to whoever handled it before. Restoring their action and
    // returning makes the faulting instruction run again under it.
    for (size_t i = 0; i < std::size(kGuardedSignals); ++i) {
        if (kGuardedSignals[i] != signal) continue;
        const struct sigaction& before = previous().actions[i];
        if ((before.sa_flags & SA_SIGINFO) != 0 && before.sa_sigaction != nullptr) {
            before.sa_sigaction(signal, info, context);
            return;
        }
        sigaction(signal, &before, nullptr);
        return;
    }
}

void InstallHandlers() {
    struct sigaction action {};
    action.sa_sigaction = &OnFault;
    action.sa_flags = SA_SIGINFO | SA_NODEFER;
    sigemptyset(&action.sa_mask);
    for (size_t i = 0; i < std::size(kGuardedSignals); ++i)
        sigaction(kGuardedSignals[i], &action, &previous().actions[i]);
}

}  // namespace

bool RunGuarded(const std::function<void()>& call) {
    static std::once_flag installed;
    std::call_once(installed, InstallHandlers);
    sigjmp_buf target;
    sigjmp_buf* const outer = t_target;
    // The signal mask is saved so that a jump out of the handler unblocks the signal again.
    if (sigsetjmp(target, 1) != 0) {
        t_target = outer;
        return false;
    }
    t_target = &target;
    try {
        call();
    } catch (...) {
        t_target = outer;
        throw;
    }
    t_target = outer;
    return true;
}

}  // namespace LodeQDBUtil
