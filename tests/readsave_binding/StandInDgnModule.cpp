// Stand-ins for the DGN reader module, for the tests of its binding. What each does is chosen
// when it is built (see CMakeLists.txt).
#include <signal.h>

#include <cstddef>
#include <set>

#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnConvertOptions.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnRefFileData.h>
#include <lodeqdb/toolkit/rx/PwRxModules.h>

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

// A real integer division by zero: both operands are unknown to the compiler, so it can't turn
// the division into a comparison (as it may for 1 / x).
[[maybe_unused]] int DivideByZero() {
    volatile int numerator = 7;
    volatile int zero = 0;
    return numerator / zero;
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
    if (Holds(name, "fpe")) return DivideByZero() == 1;
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

#if defined(STAND_IN_FAULTS)
Plotwright::ErrorStatus DGNGetFileReferences(const char16_t* path, const char16_t*,
                                             PwArray<PwDbDgnRefFileData*>&) {
    if (Holds(path, "fpe")) return static_cast<Plotwright::ErrorStatus>(DivideByZero());
    volatile int* nowhere = nullptr;
    *nowhere = 1;
    return Plotwright::StatusOk;
}
#endif

#if defined(STAND_IN_ANSWERS)
// A file of three models, "Main", one whose name can't be read, and "Sheet"; a name holding
// "empty" has none, "bad" doesn't load, "null-item" hands out null items, "fail" fails its
// translation with StatusNotApplicable, "unnamed" has no readable name for its first model.
struct StandInFile {
    uint32_t items = 3;
    bool nullItems = false;
    bool failing = false;
    bool unnamedFirst = false;
};
struct StandInItem {
    uint32_t index = 0;
    bool failing = false;
    bool unnamedFirst = false;
};

// The files handed out and not closed: the library leaves a file open when the model it looks
// for isn't there, and such files stay reachable here, as in a real module.
// A set that is never destroyed, so that it still holds them when leaks are looked for.
std::set<StandInFile*>& OpenFileSet() {
    static auto* const files = new std::set<StandInFile*>;
    return *files;
}
int g_openFiles = 0;
int g_openItems = 0;
int g_converted = -1;
PwDbDgnConvertOptions g_options;

/// Files and items not yet closed, the index of the last model translated, and the options it
/// came with.
int StandInOpenFiles() {
    return g_openFiles;
}
int StandInOpenItems() {
    return g_openItems;
}
int StandInConvertedItem() {
    return g_converted;
}
const PwDbDgnConvertOptions* StandInConvertOptions() {
    return &g_options;
}

void* DGNLoadFile(const char16_t* path, int mode, uint32_t flags, int all) {
    if (Holds(path, "bad") || mode != 0 || flags != 0x80000000u || all != 1) return nullptr;
    auto* file = new StandInFile;
    if (Holds(path, "empty")) file->items = 0;
    file->nullItems = Holds(path, "null-item");
    file->failing = Holds(path, "fail");
    file->unnamedFirst = Holds(path, "unnamed");
    OpenFileSet().insert(file);
    ++g_openFiles;
    return file;
}

void DGNCloseFile(void* file) {
    OpenFileSet().erase(static_cast<StandInFile*>(file));
    delete static_cast<StandInFile*>(file);
    --g_openFiles;
}

uint32_t DGNGetItemCount(void* file) {
    return static_cast<StandInFile*>(file)->items;
}

void* DGNGetItem(void* file, uint32_t index) {
    const auto* open = static_cast<StandInFile*>(file);
    if (open->nullItems || index >= open->items) return nullptr;
    ++g_openItems;
    return new StandInItem{index, open->failing, open->unnamedFirst};
}

void DGNCloseItem(void* item) {
    if (item == nullptr) return;
    delete static_cast<StandInItem*>(item);
    --g_openItems;
}

Plotwright::ErrorStatus DGNGetItemName(void* item, PwString* name) {
    if (item == nullptr) return Plotwright::StatusInvalidInput;
    const auto* open = static_cast<StandInItem*>(item);
    switch (open->index) {
        case 0:
            if (open->unnamedFirst) return Plotwright::StatusKeyNotFound;
            return name->assign(u"Main");
        case 2:
            return name->assign(u"Sheet");
        default:
            return Plotwright::StatusKeyNotFound;
    }
}

// Records a real module never makes: a relative resolved path, and nothing at all.
Plotwright::ErrorStatus DGNGetFileReferences(const char16_t*, const char16_t*,
                                             PwArray<PwDbDgnRefFileData*>& references) {
    auto* relative = new PwDbDgnRefFileData;
    relative->storedPath.assign(u"file://elsewhere.dgn");
    relative->resolvedPath.assign(u"found\\here.dgn");
    relative->refId = 7;
    references.append(relative);
    references.append(new PwDbDgnRefFileData);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus DGNConvertItemEx(void* item, PwDbDgnConvertOptions* options, void*) {
    const auto* open = static_cast<StandInItem*>(item);
    g_converted = static_cast<int>(open->index);
    g_options = *options;
    return open->failing ? Plotwright::StatusNotApplicable : Plotwright::StatusOk;
}
#endif

}  // extern "C"
