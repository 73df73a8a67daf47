// Symbol name rules and the standard block look-ups.
#include <lodeqdb/toolkit/db/PwDbSymbolUtilities.h>

#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace PwDbSymbolUtilities {

namespace {

bool isForbiddenUnit(char16_t unit) {
    if (unit < 0x20 || (unit >= 0x7F && unit <= 0x9F)) return true;
    switch (unit) {
        case u'<':
        case u'>':
        case u'/':
        case u'\\':
        case u'"':
        case u':':
        case u';':
        case u'?':
        case u'*':
        case u'|':
        case u',':
        case u'=':
        case u'`':
            return true;
        default:
            return false;
    }
}

}  // namespace

bool isValidSymbolName(const wstring& name, bool allowLeadingAsterisk) {
    size_t first = 0;
    if (allowLeadingAsterisk && !name.empty() && name[0] == u'*') first = 1;
    if (name.size() <= first) return false;
    for (size_t i = first; i < name.size(); ++i) {
        if (isForbiddenUnit(name[i])) return false;
    }
    return true;
}

Services::~Services() = default;

Plotwright::ErrorStatus Services::modelSpaceBlockId(PwDbObjectId& id,
                                                    const PwDbDatabase* database) const {
    id = PwDbObjectId();
    if (database == nullptr) return Plotwright::StatusNullDatabase;
    id = database->modelSpaceId();
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus Services::paperSpaceBlockId(PwDbObjectId& id,
                                                    const PwDbDatabase* database) const {
    id = PwDbObjectId();
    if (database == nullptr) return Plotwright::StatusNullDatabase;
    id = database->paperSpaceId();
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus Services::validateSymbolName(const char16_t* name,
                                                     bool allowLeadingAsterisk) const {
    if (name == nullptr) return Plotwright::StatusInvalidKey;
    return isValidSymbolName(wstring(name), allowLeadingAsterisk) ? Plotwright::StatusOk
                                                                  : Plotwright::StatusInvalidKey;
}

int Services::compareSymbolName(const char16_t* first, const char16_t* second) const {
    return LodeUtil::Order(wstring(first ? first : u""), wstring(second ? second : u""),
                           LodeUtil::StringOrder::CodeUnit, LodeUtil::StringCase::Ignore);
}

const Services* servicesPtr106() {
    static const Services services;
    return &services;
}

}  // namespace PwDbSymbolUtilities
