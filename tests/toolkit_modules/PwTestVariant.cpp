// Toolkit modules that a load must refuse or resolve, one per compile definition:
// PWTEST_NO_ENTRY lacks pwrxModuleInitialize, PWTEST_REFUSES fails its initialization after
// registering a service, PWTEST_DUPLICATE claims a service name that another module may hold,
// PWTEST_PINNED is a plain module that the tests pin.
#include <lodeqdb/toolkit/rx/PwRxModules.h>

extern "C" {

#if defined(PWTEST_NO_ENTRY)

int pwTestNoEntryAnswer() {
    return 42;
}

#elif defined(PWTEST_REFUSES)

bool pwrxModuleInitialize() {
    pwrxRegisterService(u"PwTestRefused");
    return false;
}

#elif defined(PWTEST_DUPLICATE)

// Loads only when the name is free, so the tests see which module a service stays with.
bool pwrxModuleInitialize() {
    return pwrxRegisterService(u"PwTestService");
}

int pwTestDuplicateMarker() {
    return 7;
}

#elif defined(PWTEST_PINNED)

bool pwrxModuleInitialize() {
    return pwrxRegisterService(u"PwTestPinned");
}

int pwTestPinnedAnswer() {
    return 9;
}

#else
#error "define one of PWTEST_NO_ENTRY, PWTEST_REFUSES, PWTEST_DUPLICATE, PWTEST_PINNED"
#endif

}  // extern "C"
