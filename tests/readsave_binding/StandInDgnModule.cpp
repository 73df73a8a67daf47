// Stand-ins for the DGN reader module, for the tests of its binding. What each does is chosen
// when it is built (see CMakeLists.txt).
#include <signal.h>

#include <cstddef>

#include "toolkit/core/PwString.h"
#include "toolkit/rx/PwRxModules.h"

namespace {

int g_probes = 0;

// Whether `text` holds the ASCII `part`; allocates nothing, since a fault jumps past
// destructors.
[[maybe_unused]] bool Holds(const char16_t* text, const char* part) {
    for (const char16_t* start = text; *start != 0; ++start) {
        size_t i = 0;
        while (part[i] != 0 && start[i] == static_cast<char16_t>(part[i])) ++i;
        if (part[i] == 0) return true;
    }
    return false;
}

}  // namespace

extern "C" {

bool pwrxModuleInitialize() {
    return pwrxRegisterService(u"PwDgnIO");
}

/// How many times the probe ran in this process.
int StandInProbeCount() {
    return g_probes;
}

#if !defined(STAND_IN_WITHOUT_PROBE)
bool DGNIsDgnFile(const PwString& path) {
    ++g_probes;
    const char16_t* name = path.kwszPtr();
#if defined(STAND_IN_FAULTS)
    if (Holds(name, "fpe")) {
        volatile int zero = 0;
        return 1 / zero == 1;
    }
    if (Holds(name, "bus")) raise(SIGBUS);
    volatile int* nowhere = nullptr;
    *nowhere = 1;
    return true;
#else
    // Any name holding "dgn" is taken for a design file, whatever its extension.
    return Holds(name, "dgn");
#endif
}
#endif

}  // extern "C"
