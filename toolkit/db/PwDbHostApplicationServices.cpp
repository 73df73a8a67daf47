// The default host services, and the process-wide slot that holds the installed ones.
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>

#include <atomic>
#include <cstdlib>

#include <lodeqdb/lodeutil/Utf.h>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace {

// The identity of the toolkit running alone, the plain kind of drawing application; drawings
// saved by a host that sets none carry it, and are told plain drawings by their headers.
constexpr char16_t kLodeQdbOwnerGuid[] = u"{F29F85E0-4FF9-1068-AB91-08002B27B3D9}";
constexpr char16_t kLodeQdbCreatorName[] = u"LodeQDB";

bool isAsciiLetter(char16_t unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

bool isSchemeUnit(char16_t unit) {
    return isAsciiLetter(unit) || (unit >= u'0' && unit <= u'9') || unit == u'+' || unit == u'-' ||
           unit == u'.';
}

// The folder a host that says nothing else works from: LODEQDB_ROOT when set, else the user's
// configuration folder for LodeQDB (the XDG rule), else nothing.
wstring defaultRootFolder() {
    const auto variable = [](const char* name) -> std::string {
        const char* value = std::getenv(name);
        return value == nullptr ? std::string() : std::string(value);
    };
    if (std::string root = variable("LODEQDB_ROOT"); !root.empty())
        return LodeUtil::Utf16FromNative(root);
    if (std::string config = variable("XDG_CONFIG_HOME"); !config.empty())
        return LodeUtil::Utf16FromNative(config + "/lodeqdb");
    if (std::string home = variable("HOME"); !home.empty())
        return LodeUtil::Utf16FromNative(home + "/.config/lodeqdb");
    return wstring();
}

// The default instance is never deleted: databases and modules may still ask for the host's
// services while other statics of the process are destroyed. Keeping it in a pointer of its
// own also keeps it reachable after a host replaced it and dropped the pointer it got back.
PwDbHostApplicationServices* defaultServices() {
    static PwDbHostApplicationServices* const instance = new PwDbHostApplicationServices;
    return instance;
}

std::atomic<PwDbHostApplicationServices*>& installedServices() {
    // An atomic pointer has no destructor worth running, so this slot outlives every caller.
    static std::atomic<PwDbHostApplicationServices*> installed{defaultServices()};
    return installed;
}

}  // namespace

PwDbHostLayoutService::~PwDbHostLayoutService() = default;

PwDbObjectId PwDbHostLayoutService::activeLayoutBlockId(PwDbDatabase* database) const {
    if (database == nullptr) {
        const PwDbHostApplicationServices* services = pwdbHostApplicationServices();
        if (services != nullptr) database = services->workingDatabase();
    }
    return database == nullptr ? PwDbObjectId() : database->currentLayoutBlockId();
}

PwDbHostApplicationServices::PwDbHostApplicationServices()
    : m_rootFolder(defaultRootFolder()),
      m_ownerGuid(kLodeQdbOwnerGuid),
      m_creatorName(kLodeQdbCreatorName) {}

PwDbHostApplicationServices::~PwDbHostApplicationServices() = default;

int PwDbHostApplicationServices::hostKind() const {
    return kInkstoneHostKind;
}

void PwDbHostApplicationServices::setWorkingDatabase(PwDbDatabase* database) {
    m_workingDatabase = database;
}

int PwDbHostApplicationServices::isURL(const char16_t* text) const {
    if (text == nullptr || !isAsciiLetter(text[0])) return 0;
    // A one-letter scheme is a drive ("C:\x", "C://x"), never a URL.
    size_t length = 1;
    while (isSchemeUnit(text[length])) ++length;
    if (length < 2) return 0;
    return text[length] == u':' && text[length + 1] == u'/' && text[length + 2] == u'/' ? 1 : 0;
}

wstring PwDbHostApplicationServices::rootFolder() const {
    return m_rootFolder;
}

PwDbHostLayoutService* PwDbHostApplicationServices::hostLayoutService() {
    return &m_layoutService;
}

Plotwright::ErrorStatus PwDbHostApplicationServices::findFile(wstring& /*found*/,
                                                              const char16_t* /*name*/,
                                                              PwDbDatabase* /*database*/,
                                                              FindFileHint /*hint*/) {
    return Plotwright::StatusFileNotFound;
}

void PwDbHostApplicationServices::setApplicationIdentity(const wstring& ownerGuid,
                                                         const wstring& creatorName) {
    m_ownerGuid = ownerGuid;
    m_creatorName = creatorName;
}

PwDbHostApplicationServices* pwdbHostApplicationServices() {
    return installedServices().load();
}

PwDbHostApplicationServices* pwdbSetHostApplicationServices(PwDbHostApplicationServices* services) {
    return installedServices().exchange(services);
}
