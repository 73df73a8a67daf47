// Run-time modules: loading by name, services and their functions, refusal, unloading.
#include <lodeqdb/toolkit/rx/PwRxModules.h>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <fstream>
#include <latch>
#include <string>
#include <thread>
#include <vector>

#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/Module.h>
#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/rx/PwRxDictionary.h>
#include <lodeqdb/toolkit/rx/PwRxDynamicLinker.h>

namespace {

constexpr char16_t kServiceModule[] = u"PwTestService.qmx";
constexpr char16_t kNoEntryModule[] = u"PwTestNoEntry.qmx";
constexpr char16_t kRefusingModule[] = u"PwTestRefuses.qmx";
constexpr char16_t kDuplicateModule[] = u"PwTestDuplicate.qmx";
constexpr char16_t kService[] = u"PwTestService";

using AddFunction = int (*)(int, int);
using CountFunction = int (*)();
using WatchFunction = void (*)(int*);

template <class Function>
Function serviceFunction(const char* symbol) {
    return reinterpret_cast<Function>(pwrxServiceSymbol(kService, symbol));
}

int liveInitializations() {
    const auto count = serviceFunction<CountFunction>("pwTestLiveInitializations");
    return count == nullptr ? -1 : count();
}

wstring pathInModuleFolder(const wstring& name) {
    return LodeUtil::CombineRelative(pwrxModuleFolder(), name);
}

// What the system itself says, apart from the toolkit's own records.
bool systemHoldsModule(const wstring& path) {
    void* held = dlopen(LodeUtil::Utf8FromUtf16(path).c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (held != nullptr) dlclose(held);
    return held != nullptr;
}

// Every test starts and ends with none of the test modules loaded.
class PwRxModules : public ::testing::Test {
  protected:
    void SetUp() override { unloadTestModules(); }
    void TearDown() override { unloadTestModules(); }

    static void unloadTestModules() {
        for (const char16_t* name : {kServiceModule, kDuplicateModule}) pwrxUnloadModule(name);
    }
};

TEST_F(PwRxModules, FolderIsThatOfTheToolkitLibrary) {
    const wstring folder = pwrxModuleFolder();
    ASSERT_FALSE(folder.empty());
    EXPECT_TRUE(LodeUtil::Path::IsPathRooted(folder));
    EXPECT_NE(folder.back(), u'/');
    EXPECT_TRUE(LodeUtil::File::Exists(pathInModuleFolder(u"libpwdb.so")));
    EXPECT_TRUE(LodeUtil::File::Exists(pathInModuleFolder(kServiceModule)));
}

TEST_F(PwRxModules, LoadByNameRegistersTheService) {
    EXPECT_FALSE(pwrxIsModuleLoaded(kServiceModule));
    EXPECT_FALSE(pwrxServiceIsRegistered(kService));
    EXPECT_EQ(pwrxServiceSymbol(kService, "pwTestAdd"), nullptr);

    ASSERT_TRUE(pwrxLoadModule(kServiceModule, false, false))
        << LodeUtil::Utf8FromUtf16(pwrxModuleLoadError());
    EXPECT_TRUE(pwrxIsModuleLoaded(kServiceModule));
    EXPECT_TRUE(pwrxServiceIsRegistered(kService));
    EXPECT_NE(pwrxModuleHandle(kServiceModule), nullptr);
    EXPECT_TRUE(pwrxModuleLoadError().empty());
    EXPECT_TRUE(systemHoldsModule(pathInModuleFolder(kServiceModule)));
}

TEST_F(PwRxModules, ServiceFunctionsAreCallable) {
    ASSERT_TRUE(pwrxLoadModule(kServiceModule));
    const auto add = serviceFunction<AddFunction>("pwTestAdd");
    ASSERT_NE(add, nullptr);
    EXPECT_EQ(add(2, 3), 5);
    EXPECT_EQ(add(-7, 4), -3);
}

TEST_F(PwRxModules, UnknownServicesAndSymbolsGiveNull) {
    ASSERT_TRUE(pwrxLoadModule(kServiceModule));
    EXPECT_EQ(pwrxServiceSymbol(u"PwNoSuchService", "pwTestAdd"), nullptr);
    EXPECT_EQ(pwrxServiceSymbol(kService, "pwNoSuchFunction"), nullptr);
    EXPECT_EQ(pwrxServiceSymbol(kService, ""), nullptr);
    EXPECT_EQ(pwrxServiceSymbol(nullptr, "pwTestAdd"), nullptr);
    EXPECT_EQ(pwrxServiceSymbol(kService, nullptr), nullptr);
    // The module reaches these through the libraries it uses; they are not its own.
    EXPECT_EQ(pwrxServiceSymbol(kService, "malloc"), nullptr);
    EXPECT_EQ(pwrxServiceSymbol(kService, "pwrxRegisterService"), nullptr);
    EXPECT_FALSE(pwrxServiceIsRegistered(u"PwNoSuchService"));
    EXPECT_FALSE(pwrxServiceIsRegistered(nullptr));
}

TEST_F(PwRxModules, LoadingAgainDoesNotInitializeAgain) {
    ASSERT_TRUE(pwrxLoadModule(kServiceModule));
    EXPECT_EQ(liveInitializations(), 1);
    const LodeUtil::ModuleHandle handle = pwrxModuleHandle(kServiceModule);

    EXPECT_TRUE(pwrxLoadModule(kServiceModule));
    const wstring rooted = pathInModuleFolder(kServiceModule);
    EXPECT_TRUE(pwrxLoadModule(rooted.c_str()));
    // Another spelling of the same path, through the parent folder.
    const wstring roundabout = LodeUtil::CombineRelative(
        pwrxModuleFolder(),
        u"../" + LodeUtil::Path::GetFileName(pwrxModuleFolder()) + u"/" + kServiceModule);
    EXPECT_TRUE(pwrxLoadModule(roundabout.c_str()));

    EXPECT_EQ(liveInitializations(), 1);
    EXPECT_EQ(pwrxModuleHandle(rooted.c_str()), handle);
    EXPECT_EQ(pwrxModuleHandle(roundabout.c_str()), handle);
    // One unload is enough, whatever path the loads took.
    EXPECT_TRUE(pwrxUnloadModule(kServiceModule));
    EXPECT_FALSE(pwrxIsModuleLoaded(rooted.c_str()));
}

TEST_F(PwRxModules, LinkToLoadedModuleNamesTheSameModule) {
    ASSERT_TRUE(pwrxLoadModule(kServiceModule));
    const std::string link = ::testing::TempDir() + "PwRxModulesLinkedService.qmx";
    std::remove(link.c_str());
    const std::string target = LodeUtil::Utf8FromUtf16(pathInModuleFolder(kServiceModule));
    ASSERT_EQ(symlink(target.c_str(), link.c_str()), 0);
    const wstring linkPath = LodeUtil::Utf16FromUtf8(link);

    EXPECT_TRUE(pwrxLoadModule(linkPath.c_str()));
    EXPECT_EQ(liveInitializations(), 1);
    EXPECT_TRUE(pwrxIsModuleLoaded(linkPath.c_str()));
    EXPECT_EQ(pwrxModuleHandle(linkPath.c_str()), pwrxModuleHandle(kServiceModule));
    EXPECT_TRUE(pwrxUnloadModule(linkPath.c_str()));
    EXPECT_FALSE(pwrxIsModuleLoaded(kServiceModule));
    EXPECT_FALSE(pwrxIsModuleLoaded(linkPath.c_str()));
    std::remove(link.c_str());
}

TEST_F(PwRxModules, MissingModuleIsNotFound) {
    EXPECT_FALSE(pwrxLoadModule(u"PwNoSuchModule.qmx"));
    EXPECT_EQ(pwrxLoadModuleStatus(u"PwNoSuchModule.qmx"), Plotwright::StatusFileNotFound);
    EXPECT_NE(pwrxModuleLoadError().find(u"PwNoSuchModule.qmx"), wstring::npos);
    EXPECT_FALSE(pwrxIsModuleLoaded(u"PwNoSuchModule.qmx"));
    EXPECT_EQ(pwrxLoadModuleStatus(u"/no/such/folder/PwTestService.qmx"),
              Plotwright::StatusFileNotFound);
    // A relative name with folders stays below the module folder.
    EXPECT_EQ(pwrxLoadModuleStatus(u"sub/PwTestService.qmx"), Plotwright::StatusFileNotFound);
    EXPECT_EQ(pwrxLoadModuleStatus(u"C:\\modules\\PwTestService.qmx"),
              Plotwright::StatusFileNotFound);
}

TEST_F(PwRxModules, NullOrEmptyNameIsInvalid) {
    EXPECT_FALSE(pwrxLoadModule(nullptr));
    EXPECT_FALSE(pwrxLoadModule(u""));
    EXPECT_EQ(pwrxLoadModuleStatus(nullptr), Plotwright::StatusInvalidInput);
    EXPECT_EQ(pwrxLoadModuleStatus(u""), Plotwright::StatusInvalidInput);
    EXPECT_FALSE(pwrxModuleLoadError().empty());
    EXPECT_FALSE(pwrxUnloadModule(nullptr));
    EXPECT_FALSE(pwrxUnloadModule(u""));
    EXPECT_FALSE(pwrxIsModuleLoaded(nullptr));
    EXPECT_EQ(pwrxModuleHandle(nullptr), nullptr);
}

TEST_F(PwRxModules, ModuleWithoutEntryPointIsRefusedAndReleased) {
    EXPECT_FALSE(pwrxLoadModule(kNoEntryModule));
    EXPECT_EQ(pwrxLoadModuleStatus(kNoEntryModule), Plotwright::StatusModuleNotFound);
    EXPECT_NE(pwrxModuleLoadError().find(u"pwrxModuleInitialize"), wstring::npos);
    EXPECT_FALSE(pwrxIsModuleLoaded(kNoEntryModule));
    EXPECT_EQ(pwrxModuleHandle(kNoEntryModule), nullptr);
    EXPECT_FALSE(pwrxUnloadModule(kNoEntryModule));
    EXPECT_FALSE(systemHoldsModule(pathInModuleFolder(kNoEntryModule)));
}

TEST_F(PwRxModules, FailedInitializationDropsServicesAndReleases) {
    EXPECT_FALSE(pwrxLoadModule(kRefusingModule));
    EXPECT_EQ(pwrxLoadModuleStatus(kRefusingModule), Plotwright::StatusModuleNotFound);
    EXPECT_FALSE(pwrxIsModuleLoaded(kRefusingModule));
    EXPECT_FALSE(pwrxServiceIsRegistered(u"PwTestRefused"));
    EXPECT_FALSE(systemHoldsModule(pathInModuleFolder(kRefusingModule)));
}

TEST_F(PwRxModules, FileThatIsNoModuleIsRefused) {
    const std::string native = ::testing::TempDir() + "PwRxModulesNotAModule.qmx";
    {
        std::ofstream file(native, std::ios::binary | std::ios::trunc);
        file << "plain text, no shared object";
    }
    const wstring path = LodeUtil::Utf16FromUtf8(native);
    ASSERT_TRUE(LodeUtil::File::Exists(path));
    EXPECT_EQ(pwrxLoadModuleStatus(path.c_str()), Plotwright::StatusModuleNotFound);
    EXPECT_FALSE(pwrxModuleLoadError().empty());
    EXPECT_FALSE(pwrxIsModuleLoaded(path.c_str()));
    std::remove(native.c_str());
}

TEST_F(PwRxModules, UnloadUninitializesAndDropsTheService) {
    ASSERT_TRUE(pwrxLoadModule(kServiceModule));
    int uninitializations = 0;
    const auto watch = serviceFunction<WatchFunction>("pwTestWatchUninitialize");
    ASSERT_NE(watch, nullptr);
    watch(&uninitializations);

    EXPECT_TRUE(pwrxUnloadModule(kServiceModule));
    EXPECT_EQ(uninitializations, 1);
    EXPECT_FALSE(pwrxIsModuleLoaded(kServiceModule));
    EXPECT_FALSE(pwrxServiceIsRegistered(kService));
    EXPECT_EQ(pwrxServiceSymbol(kService, "pwTestAdd"), nullptr);
    EXPECT_EQ(pwrxModuleHandle(kServiceModule), nullptr);
    EXPECT_FALSE(pwrxUnloadModule(kServiceModule));
    EXPECT_EQ(uninitializations, 1);

    // A later load starts afresh.
    ASSERT_TRUE(pwrxLoadModule(kServiceModule));
    EXPECT_EQ(liveInitializations(), 1);
}

TEST_F(PwRxModules, ServicesRegisterOnlyDuringInitialization) {
    EXPECT_FALSE(pwrxRegisterService(u"PwTestFromOutside"));
    EXPECT_FALSE(pwrxServiceIsRegistered(u"PwTestFromOutside"));
    EXPECT_FALSE(pwrxRegisterService(nullptr));
    EXPECT_FALSE(pwrxRegisterService(u""));
}

TEST_F(PwRxModules, ServiceNameStaysWithTheFirstModule) {
    ASSERT_TRUE(pwrxLoadModule(kServiceModule));
    EXPECT_FALSE(pwrxLoadModule(kDuplicateModule));
    EXPECT_FALSE(pwrxIsModuleLoaded(kDuplicateModule));
    EXPECT_NE(serviceFunction<AddFunction>("pwTestAdd"), nullptr);
    EXPECT_EQ(serviceFunction<CountFunction>("pwTestDuplicateMarker"), nullptr);

    // Once the name is free, the other module may take it.
    ASSERT_TRUE(pwrxUnloadModule(kServiceModule));
    ASSERT_TRUE(pwrxLoadModule(kDuplicateModule));
    const auto marker = serviceFunction<CountFunction>("pwTestDuplicateMarker");
    ASSERT_NE(marker, nullptr);
    EXPECT_EQ(marker(), 7);
    EXPECT_EQ(serviceFunction<AddFunction>("pwTestAdd"), nullptr);
    EXPECT_FALSE(pwrxLoadModule(kServiceModule));
}

TEST_F(PwRxModules, LinkerInTheRegistryGivesTheSameAnswers) {
    auto* linker = PwRxDynamicLinker::cast(pwrxSysRegistry()->at(u"DynamicLinker"));
    ASSERT_NE(linker, nullptr);
    EXPECT_EQ(linker->moduleHandle(kServiceModule), nullptr);
    EXPECT_EQ(linker->getSymbolAddress(kService, "pwTestAdd"), nullptr);

    ASSERT_TRUE(linker->loadModule(kServiceModule, true, true));
    EXPECT_TRUE(pwrxIsModuleLoaded(kServiceModule));
    EXPECT_NE(linker->moduleHandle(kServiceModule), nullptr);
    EXPECT_EQ(linker->moduleHandle(kServiceModule), pwrxModuleHandle(kServiceModule));
    void* address = linker->getSymbolAddress(kService, "pwTestAdd");
    ASSERT_NE(address, nullptr);
    EXPECT_EQ(address, pwrxServiceSymbol(kService, "pwTestAdd"));
    EXPECT_EQ(reinterpret_cast<AddFunction>(address)(20, 22), 42);
    EXPECT_EQ(LodeUtil::Module::Containing(address), linker->moduleHandle(kServiceModule));
    EXPECT_EQ(linker->getSymbolAddress(kService, "pwNoSuchFunction"), nullptr);
    EXPECT_EQ(linker->getSymbolAddress(nullptr, nullptr), nullptr);
    EXPECT_FALSE(linker->loadModule(kNoEntryModule, false, false));
    EXPECT_FALSE(linker->loadModule(u"PwNoSuchModule.qmx", false, false));

    EXPECT_TRUE(linker->unloadModule(kServiceModule));
    EXPECT_FALSE(pwrxIsModuleLoaded(kServiceModule));
    EXPECT_EQ(linker->moduleHandle(kServiceModule), nullptr);
    EXPECT_FALSE(linker->unloadModule(kServiceModule));
}

TEST_F(PwRxModules, ConcurrentLoadsInitializeOnce) {
    constexpr int kThreads = 8;
    std::latch start(kThreads);
    std::atomic<int> loaded{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            start.arrive_and_wait();
            if (pwrxLoadModule(kServiceModule)) ++loaded;
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(loaded.load(), kThreads);
    EXPECT_EQ(liveInitializations(), 1);
}

// A pinned module refuses to be unloaded, so addresses kept of its functions stay callable.
// (It stays for the rest of this process: no other test uses this module.)
TEST_F(PwRxModules, APinnedModuleStaysLoaded) {
    constexpr char16_t kPinnedModule[] = u"PwTestPinned.qmx";
    EXPECT_FALSE(pwrxPinModule(kPinnedModule)) << "only a loaded module can be pinned";
    ASSERT_TRUE(pwrxLoadModule(kPinnedModule));
    using AnswerFunction = int (*)();
    const auto answer =
        reinterpret_cast<AnswerFunction>(pwrxServiceSymbol(u"PwTestPinned", "pwTestPinnedAnswer"));
    ASSERT_NE(answer, nullptr);
    ASSERT_TRUE(pwrxPinModule(kPinnedModule));
    EXPECT_FALSE(pwrxUnloadModule(kPinnedModule));
    EXPECT_TRUE(pwrxIsModuleLoaded(kPinnedModule));
    EXPECT_TRUE(pwrxServiceIsRegistered(u"PwTestPinned"));
    EXPECT_EQ(answer(), 9);
}

// Binding an entry is the one way the toolkit and the library keep a module's addresses: it
// pins the module, so the entry can't dangle, and it finds only the module's own exports.
TEST_F(PwRxModules, BindingAnEntryPinsItsModule) {
    constexpr char16_t kPinnedModule[] = u"PwTestPinned.qmx";
    EXPECT_EQ(pwrxBindModuleEntry(u"PwNoSuchModule.qmx", "pwTestPinnedAnswer"), nullptr);
    ASSERT_TRUE(pwrxLoadModule(kPinnedModule));
    EXPECT_EQ(pwrxBindModuleEntry(kPinnedModule, "pwNoSuchFunction"), nullptr);
    EXPECT_EQ(pwrxBindModuleEntry(kPinnedModule, "malloc"), nullptr);
    EXPECT_EQ(pwrxBindModuleEntry(kPinnedModule, nullptr), nullptr);
    using AnswerFunction = int (*)();
    const auto answer = reinterpret_cast<AnswerFunction>(
        pwrxBindModuleEntry(kPinnedModule, "pwTestPinnedAnswer"));
    ASSERT_NE(answer, nullptr);
    EXPECT_FALSE(pwrxUnloadModule(kPinnedModule));
    EXPECT_TRUE(pwrxIsModuleLoaded(kPinnedModule));
    EXPECT_EQ(answer(), 9);
}

TEST_F(PwRxModules, ConcurrentLoadsAndUnloadsStayConsistent) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 25;
    std::latch start(kThreads);
    std::atomic<int> failedLoads{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            start.arrive_and_wait();
            for (int round = 0; round < kRounds; ++round) {
                if (!pwrxLoadModule(kServiceModule)) ++failedLoads;
                pwrxServiceSymbol(kService, "pwTestAdd");
                pwrxUnloadModule(kServiceModule);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(failedLoads.load(), 0);
    EXPECT_FALSE(pwrxIsModuleLoaded(kServiceModule));
    EXPECT_FALSE(pwrxServiceIsRegistered(kService));
    ASSERT_TRUE(pwrxLoadModule(kServiceModule));
    EXPECT_EQ(liveInitializations(), 1);
}

}  // namespace
