// Host services: defaults, URL recognition, layouts, overriding hosts and installing them.
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace {

// Installs `services` for the length of a test and puts back what was there before.
class ScopedHostServices {
  public:
    explicit ScopedHostServices(PwDbHostApplicationServices* services)
        : m_previous(pwdbSetHostApplicationServices(services)) {}
    ~ScopedHostServices() { pwdbSetHostApplicationServices(m_previous); }
    ScopedHostServices(const ScopedHostServices&) = delete;
    ScopedHostServices& operator=(const ScopedHostServices&) = delete;

    PwDbHostApplicationServices* previous() const { return m_previous; }

  private:
    PwDbHostApplicationServices* m_previous;
};

// A host that knows its own kind and where its reference files live.
class ArchiveHost : public PwDbHostApplicationServices {
  public:
    static constexpr int kArchiveHostKind = 9;

    int hostKind() const override { return kArchiveHostKind; }

    Plotwright::ErrorStatus findFile(wstring& found, const char16_t* name, PwDbDatabase* database,
                                     FindFileHint hint) override {
        ++m_questions;
        if (name != nullptr && hint == kXrefDrawing) {
            const auto known = m_files.find(name);
            if (known != m_files.end()) {
                found = known->second;
                return Plotwright::StatusOk;
            }
        }
        return PwDbHostApplicationServices::findFile(found, name, database, hint);
    }

    void addFile(const wstring& name, const wstring& path) { m_files[name] = path; }
    int questions() const { return m_questions; }

  private:
    std::map<wstring, wstring> m_files;
    int m_questions = 0;
};

// A host whose layouts are its own business.
class PaperFirstLayouts : public PwDbHostLayoutService {
  public:
    PwDbObjectId activeLayoutBlockId(PwDbDatabase* database) const override {
        return database == nullptr ? PwDbObjectId() : database->paperSpaceId();
    }
};

class PaperFirstHost : public PwDbHostApplicationServices {
  public:
    PwDbHostLayoutService* hostLayoutService() override { return &m_layouts; }

  private:
    PaperFirstLayouts m_layouts;
};

TEST(PwDbHostApplicationServices, DefaultsDescribeAToolkitOnlyProcess) {
    PwDbHostApplicationServices services;
    EXPECT_EQ(services.hostKind(), PwDbHostApplicationServices::kInkstoneHostKind);
    EXPECT_EQ(services.hostKind(), 4);
    EXPECT_EQ(services.workingDatabase(), nullptr);
    EXPECT_NE(services.hostLayoutService(), nullptr);
    EXPECT_EQ(services.ownerGuid(), u"{F29F85E0-4FF9-1068-AB91-08002B27B3D9}");
    EXPECT_EQ(services.creatorName(), u"LodeQDB");
}

TEST(PwDbHostApplicationServices, ProcessHasServicesWithoutSetUp) {
    PwDbHostApplicationServices* services = pwdbHostApplicationServices();
    ASSERT_NE(services, nullptr);
    EXPECT_EQ(services, pwdbHostApplicationServices());
    EXPECT_EQ(services->hostKind(), PwDbHostApplicationServices::kInkstoneHostKind);
    EXPECT_EQ(services->creatorName(), u"LodeQDB");
}

TEST(PwDbHostApplicationServices, UrlNeedsSchemeOfTwoOrMoreCharacters) {
    const PwDbHostApplicationServices services;
    EXPECT_EQ(services.isURL(u"http://example.com/a.plw"), 1);
    EXPECT_EQ(services.isURL(u"https://example.com"), 1);
    EXPECT_EQ(services.isURL(u"ftp://files.example.com/x"), 1);
    EXPECT_EQ(services.isURL(u"file:///home/a/b.plw"), 1);
    EXPECT_EQ(services.isURL(u"svn+ssh://host/repo"), 1);
    EXPECT_EQ(services.isURL(u"x-y.z2://thing"), 1);
    EXPECT_EQ(services.isURL(u"HTTP://EXAMPLE.COM"), 1);
    EXPECT_EQ(services.isURL(u"ab://"), 1);

    EXPECT_EQ(services.isURL(u"C:\\x"), 0);
    EXPECT_EQ(services.isURL(u"C://x"), 0);
    EXPECT_EQ(services.isURL(u"x://"), 0);
    EXPECT_EQ(services.isURL(u"://x"), 0);
    EXPECT_EQ(services.isURL(u"2ab://x"), 0);
    EXPECT_EQ(services.isURL(u"+ab://x"), 0);
    EXPECT_EQ(services.isURL(u" http://x"), 0);
    EXPECT_EQ(services.isURL(u"ht tp://x"), 0);
    EXPECT_EQ(services.isURL(u"http:/x"), 0);
    EXPECT_EQ(services.isURL(u"http:"), 0);
    EXPECT_EQ(services.isURL(u"http"), 0);
    EXPECT_EQ(services.isURL(u"mailto:someone@example.com"), 0);
    EXPECT_EQ(services.isURL(u"/home/a/http://x"), 0);
    EXPECT_EQ(services.isURL(u"h\u00e9://x"), 0);
    EXPECT_EQ(services.isURL(u""), 0);
    EXPECT_EQ(services.isURL(nullptr), 0);
}

TEST(PwDbHostApplicationServices, WorkingDatabaseAndRootFolderAreKept) {
    PwDbHostApplicationServices services;
    PwDbDatabase drawing;
    services.setWorkingDatabase(&drawing);
    EXPECT_EQ(services.workingDatabase(), &drawing);
    services.setWorkingDatabase(nullptr);
    EXPECT_EQ(services.workingDatabase(), nullptr);

    services.setRootFolder(u"/srv/drawings");
    EXPECT_EQ(services.rootFolder(), u"/srv/drawings");
}

TEST(PwDbHostApplicationServices, ActiveLayoutIsModelSpaceByDefault) {
    PwDbHostApplicationServices services;
    PwDbDatabase drawing;
    const PwDbHostLayoutService* layouts = services.hostLayoutService();
    ASSERT_NE(layouts, nullptr);
    EXPECT_FALSE(drawing.modelSpaceId().isNull());
    EXPECT_EQ(layouts->activeLayoutBlockId(&drawing), drawing.modelSpaceId());
    EXPECT_TRUE(layouts->activeLayoutBlockId(nullptr).isNull());
}

TEST(PwDbHostApplicationServices, HostMayKeepItsOwnLayoutService) {
    PaperFirstHost host;
    PwDbDatabase drawing;
    PwDbHostApplicationServices& services = host;
    EXPECT_EQ(services.hostLayoutService()->activeLayoutBlockId(&drawing), drawing.paperSpaceId());
    EXPECT_NE(drawing.paperSpaceId(), drawing.modelSpaceId());
}

TEST(PwDbHostApplicationServices, BaseFindFileFindsNothingAndLeavesResultAlone) {
    PwDbHostApplicationServices services;
    wstring found = u"untouched";
    EXPECT_EQ(services.findFile(found, u"ref.plw", nullptr, PwDbHostApplicationServices::kDefault),
              Plotwright::StatusFileNotFound);
    EXPECT_EQ(found, u"untouched");
    EXPECT_EQ(services.findFile(found, nullptr, nullptr, PwDbHostApplicationServices::kRasterImage),
              Plotwright::StatusFileNotFound);
    EXPECT_EQ(found, u"untouched");
}

TEST(PwDbHostApplicationServices, ApplicationIdentityCanBeReplaced) {
    PwDbHostApplicationServices services;
    services.setApplicationIdentity(u"{00000000-1111-2222-3333-444455556666}", u"Archive");
    EXPECT_EQ(services.ownerGuid(), u"{00000000-1111-2222-3333-444455556666}");
    EXPECT_EQ(services.creatorName(), u"Archive");
}

TEST(PwDbHostApplicationServices, InstalledHostAnswersThroughTheProcessServices) {
    ArchiveHost host;
    host.addFile(u"site.plw", u"/srv/archive/site.plw");
    const ScopedHostServices installed(&host);
    ASSERT_NE(installed.previous(), nullptr);

    PwDbHostApplicationServices* services = pwdbHostApplicationServices();
    ASSERT_EQ(services, &host);
    EXPECT_EQ(services->hostKind(), ArchiveHost::kArchiveHostKind);

    wstring found;
    EXPECT_EQ(
        services->findFile(found, u"site.plw", nullptr, PwDbHostApplicationServices::kXrefDrawing),
        Plotwright::StatusOk);
    EXPECT_EQ(found, u"/srv/archive/site.plw");

    wstring missing = u"before";
    EXPECT_EQ(services->findFile(missing, u"other.plw", nullptr,
                                 PwDbHostApplicationServices::kXrefDrawing),
              Plotwright::StatusFileNotFound);
    EXPECT_EQ(services->findFile(missing, u"site.plw", nullptr,
                                 PwDbHostApplicationServices::kRasterImage),
              Plotwright::StatusFileNotFound);
    EXPECT_EQ(missing, u"before");
    EXPECT_EQ(host.questions(), 3);
    // What the host does not override stays as it was.
    EXPECT_EQ(services->isURL(u"https://example.com"), 1);
    EXPECT_EQ(services->creatorName(), u"LodeQDB");
}

TEST(PwDbHostApplicationServices, InstallingNoneLeavesNoServicesUntilRestored) {
    PwDbHostApplicationServices* const original = pwdbHostApplicationServices();
    ASSERT_NE(original, nullptr);

    EXPECT_EQ(pwdbSetHostApplicationServices(nullptr), original);
    EXPECT_EQ(pwdbHostApplicationServices(), nullptr);
    EXPECT_EQ(pwdbSetHostApplicationServices(nullptr), nullptr);

    EXPECT_EQ(pwdbSetHostApplicationServices(original), nullptr);
    EXPECT_EQ(pwdbHostApplicationServices(), original);
    EXPECT_EQ(original->hostKind(), PwDbHostApplicationServices::kInkstoneHostKind);
}

// Each installation hands back exactly one earlier installation: none is lost or handed out
// twice, however the threads interleave.
TEST(PwDbHostApplicationServices, InstallingFromSeveralThreadsLosesNoServices) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 500;
    std::vector<PwDbHostApplicationServices> hosts(kThreads);
    std::vector<std::vector<PwDbHostApplicationServices*>> received(kThreads);
    PwDbHostApplicationServices* const original = pwdbHostApplicationServices();
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&, i] {
            for (int round = 0; round < kRounds; ++round) {
                received[i].push_back(pwdbSetHostApplicationServices(&hosts[i]));
            }
        });
    }
    for (std::thread& thread : threads) thread.join();

    std::map<PwDbHostApplicationServices*, int> handedBack;
    ++handedBack[pwdbSetHostApplicationServices(original)];
    for (const auto& list : received) {
        for (PwDbHostApplicationServices* services : list) ++handedBack[services];
    }
    EXPECT_EQ(handedBack[original], 1);
    for (PwDbHostApplicationServices& host : hosts) EXPECT_EQ(handedBack[&host], kRounds);
    EXPECT_EQ(handedBack.size(), hosts.size() + 1);
}

}  // namespace

TEST(PwDbHostApplicationServices, TheRootFolderComesFromTheEnvironment) {
    // Each variable as a test process may or may not have it, put back afterwards.
    struct SavedVariable {
        const char* name;
        std::optional<std::string> value;
        explicit SavedVariable(const char* n) : name(n) {
            if (const char* v = std::getenv(n)) value = v;
        }
        ~SavedVariable() {
            if (value) {
                ::setenv(name, value->c_str(), 1);
            } else {
                ::unsetenv(name);
            }
        }
    };
    SavedVariable root("LODEQDB_ROOT"), config("XDG_CONFIG_HOME"), home("HOME");
    ::setenv("HOME", "/home/tester", 1);
    ::setenv("LODEQDB_ROOT", "/opt/host root", 1);
    EXPECT_EQ(PwDbHostApplicationServices().rootFolder(), u"/opt/host root");
    ::unsetenv("LODEQDB_ROOT");
    ::setenv("XDG_CONFIG_HOME", "/home/u/conf", 1);
    EXPECT_EQ(PwDbHostApplicationServices().rootFolder(), u"/home/u/conf/lodeqdb");
    ::unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(PwDbHostApplicationServices().rootFolder(), u"/home/tester/.config/lodeqdb");
    ::unsetenv("HOME");
    EXPECT_EQ(PwDbHostApplicationServices().rootFolder(), u"") << "no root folder at all";
}
