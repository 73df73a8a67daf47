// A well-formed toolkit module for the tests: registers the service "PwTestService" and exports
// functions that the tests call through the service, or use to watch the module's life.
#include <lodeqdb/toolkit/rx/PwRxModules.h>

namespace {

// Loads run one at a time, so plain counters suffice. Both live and die with the module's
// mapping, so their difference counts the initializations of the current load alone.
int g_initializations = 0;
int g_uninitializations = 0;
// A counter owned by a test, which outlives the module and so can see its uninitialization.
int* g_uninitializeWatch = nullptr;

}  // namespace

extern "C" {

bool pwrxModuleInitialize() {
    ++g_initializations;
    return pwrxRegisterService(u"PwTestService");
}

void pwrxModuleUninitialize() {
    ++g_uninitializations;
    if (g_uninitializeWatch != nullptr) ++*g_uninitializeWatch;
    g_uninitializeWatch = nullptr;
}

int pwTestAdd(int a, int b) {
    return a + b;
}

/// Initializations less uninitializations since the module was mapped: 1 while it is loaded
/// once, whether or not the system kept an earlier mapping.
int pwTestLiveInitializations() {
    return g_initializations - g_uninitializations;
}

/// Makes the module count its next uninitialization in `counter`.
void pwTestWatchUninitialize(int* counter) {
    g_uninitializeWatch = counter;
}

}  // extern "C"
