#include "toolkit/dgn/PwDbDgnReferences.h"

#include "toolkit/rx/PwRxModules.h"

namespace {

constexpr char16_t kDgnModule[] = u"PwDgnIO.qdb";

}  // namespace

Plotwright::ErrorStatus pwdbGetDgnFileReferences(const char16_t* name, const char16_t* unused,
                                                 PwArray<PwDbDgnRefFileData*>& references) {
    if (name == nullptr) return Plotwright::StatusInvalidInput;
    if (!pwrxIsModuleLoaded(kDgnModule) && !pwrxLoadModule(kDgnModule, false, true))
        return Plotwright::StatusModuleNotFound;
    auto read = reinterpret_cast<PwDbDgnReferencesFunction>(
        LodeUtil::Module::Symbol(pwrxModuleHandle(kDgnModule), kPwDbDgnReferencesEntry));
    if (read == nullptr) return Plotwright::StatusModuleNotFound;
    return read(name, unused, references);
}
