// Reading a design file's attachments through the DGN module, bound by name at every call: the
// module may be unloaded between calls.
#include "toolkit/dgn/PwDbDgnReferences.h"

#include "toolkit/rx/PwRxModules.h"

Plotwright::ErrorStatus pwdbGetDgnFileReferences(const char16_t* fileName, const char16_t* unused,
                                                 PwArray<PwDbDgnRefFileData*>& references) {
    if (fileName == nullptr || fileName[0] == u'\0') return Plotwright::StatusInvalidInput;
    if (!pwrxIsModuleLoaded(kPwDgnModuleName) && !pwrxLoadModule(kPwDgnModuleName, false, true))
        return Plotwright::StatusModuleNotFound;
    auto read = reinterpret_cast<PwDbDgnGetFileReferencesFunction>(
        LodeUtil::Module::Symbol(pwrxModuleHandle(kPwDgnModuleName), kPwDbDgnReferencesEntry));
    if (read == nullptr) return Plotwright::StatusModuleNotFound;
    return read(fileName, unused, references);
}

void pwdbDeleteDgnFileReferences(PwArray<PwDbDgnRefFileData*>& references) {
    for (size_t i = 0; i < references.length(); ++i) delete references[i];
    references.removeAll();
}
