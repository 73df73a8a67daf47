// A stand-in "PwXopen.qmx" that registers the service but exports no function for it.
#include <lodeqdb/toolkit/rx/PwRxModules.h>

extern "C" bool pwrxModuleInitialize() {
    return pwrxRegisterService(u"PlotwrightXopen");
}
