// The toolkit's locale value over the utility library's locale table.
#include <lodeqdb/toolkit/pal/PwLocale.h>

#include <lodeqdb/lodeutil/LocaleId.h>

PwLocale::PwLocale() : m_id(LodeUtil::ProcessLocaleId()) {}

PwLocale PwLocale::fromTag(const wstring& tag) {
    return PwLocale(LodeUtil::LocaleIdFromTag(tag));
}

wstring PwLocale::tag() const {
    return LodeUtil::LocaleTagFromId(m_id);
}
