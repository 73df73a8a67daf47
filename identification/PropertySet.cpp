// Parsing property set text into typed properties.
#include <lodeqdb/identification/PropertySet.h>

#include <cstdio>
#include <ctime>
#include <exception>
#include <string>

namespace LodeQDBUtil {

const Guid kOwnerGuidKey = {
    0xE006715E, 0x1EB4, 0x4AE0, {0xBC, 0x05, 0x4B, 0xC5, 0xEF, 0xDD, 0xB4, 0x1E}};

namespace {

// The numbers are read by the C library's own scanning, on a narrow copy: a unit beyond ASCII
// becomes '?', which no number and no literal of the formats below can take.
std::string Narrow(const wstring& text) {
    std::string narrow;
    narrow.reserve(text.size());
    for (char16_t unit : text) narrow.push_back(unit < 0x80 && unit != 0 ? char(unit) : '?');
    return narrow;
}

wstring Widen(const std::string& text) {
    return wstring(text.begin(), text.end());
}

const wstring kSetHead = u"<prop_set fmt_id=\"";
const wstring kPropertyEnd = u"</prop>";

}  // namespace

namespace {

int HexDigit(char16_t unit) {
    if (unit >= u'0' && unit <= u'9') return unit - u'0';
    if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
    if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
    return -1;
}

// The form every writer uses, "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}", read digit by digit:
// the header reader meets one in every drawing. False for any other spelling.
bool ParseCanonicalGuid(const wstring& text, Guid& guid) {
    constexpr size_t kLength = 38;
    if (text.size() != kLength || text.front() != u'{' || text.back() != u'}' || text[9] != u'-' ||
        text[14] != u'-' || text[19] != u'-' || text[24] != u'-') {
        return false;
    }
    uint8_t bytes[16] = {};
    size_t at = 1;
    for (uint8_t& byte : bytes) {
        if (text[at] == u'-') ++at;
        const int high = HexDigit(text[at]);
        const int low = HexDigit(text[at + 1]);
        if (high < 0 || low < 0) return false;
        byte = static_cast<uint8_t>((high << 4) | low);
        at += 2;
    }
    guid.data1 = (uint32_t{bytes[0]} << 24) | (uint32_t{bytes[1]} << 16) |
                 (uint32_t{bytes[2]} << 8) | bytes[3];
    guid.data2 = static_cast<uint16_t>((bytes[4] << 8) | bytes[5]);
    guid.data3 = static_cast<uint16_t>((bytes[6] << 8) | bytes[7]);
    for (int i = 0; i < 8; ++i) guid.data4[i] = bytes[8 + i];
    return true;
}

}  // namespace

bool ParseGuidText(const wstring& text, Guid& guid) {
    if (ParseCanonicalGuid(text, guid)) return true;
    // Other spellings are taken as the C library's scanning takes them.
    unsigned int parts[11] = {};
    const int read =
        std::sscanf(Narrow(text).c_str(), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                    &parts[0], &parts[1], &parts[2], &parts[3], &parts[4], &parts[5], &parts[6],
                    &parts[7], &parts[8], &parts[9], &parts[10]);
    if (read != 11) return false;
    guid.data1 = parts[0];
    guid.data2 = static_cast<uint16_t>(parts[1]);
    guid.data3 = static_cast<uint16_t>(parts[2]);
    for (int i = 0; i < 8; ++i) guid.data4[i] = static_cast<uint8_t>(parts[3 + i]);
    return true;
}

void PropertyKey::SetText(const wstring& name) {
    kind_ = KeyKindText;
    hasText_ = true;
    text_ = name;
}

void PropertyKey::SetNumber(uint32_t number) {
    kind_ = KeyKindNumber;
    hasText_ = false;
    text_.clear();
    number_ = number;
}

const char16_t* PropertyKey::Text() const {
    if (kind_ != KeyKindText) std::terminate();
    return hasText_ ? text_.c_str() : nullptr;
}

uint32_t PropertyKey::Number() const {
    if (kind_ != KeyKindNumber) std::terminate();
    return number_;
}

void PropertyValue::Reset(Tag tag) {
    tag_ = tag;
    text_.clear();
}

void PropertyValue::SetDouble(double value) {
    Reset(ValueDouble);
    double_ = value;
}

void PropertyValue::SetBool(bool value) {
    Reset(ValueBool);
    bool_ = value;
}

void PropertyValue::SetInt(int32_t value) {
    Reset(ValueInt);
    int_ = value;
}

void PropertyValue::SetUInt(uint32_t value) {
    Reset(ValueUInt);
    uint_ = value;
}

void PropertyValue::SetText(const wstring& value) {
    Reset(ValueText);
    text_ = value;
}

void PropertyValue::SetTime(int64_t seconds) {
    Reset(ValueTime);
    time_ = seconds;
}

const wstring& PropertyValue::Text() const {
    if (tag_ != ValueText) std::terminate();
    return text_;
}

bool PropertySetFormatId(const wstring& set, Guid& formatId) {
    if (set.size() < kSetHead.size()) return false;
    const size_t head = set.find(kSetHead);
    if (head == wstring::npos) return false;
    const size_t start = head + kSetHead.size();
    const size_t quote = set.find(u'"', start);
    if (quote == wstring::npos) return false;
    return ParseGuidText(set.substr(start, quote - start), formatId);
}

bool ReadPropertySetProperty(const Guid& formatId, const wstring& set, const PropertyKey& key,
                             PropertyValue& value) {
    if (key.GetKind() == PropertyKey::KeyKindNumber) {
        if (key.Number() > 0x7FFFFFFF) return false;
    } else if (key.GetKind() == PropertyKey::KeyKindText) {
        if (key.Text() == nullptr || *key.Text() == 0) return false;
    }
    Guid found;
    if (!PropertySetFormatId(set, found) || !(found == formatId)) return false;
    wstring attribute;
    if (key.GetKind() == PropertyKey::KeyKindNumber) {
        char number[11];
        std::snprintf(number, sizeof number, "%d", static_cast<int>(key.Number()));
        attribute = u" id=\"" + Widen(number);
    } else {
        attribute = u" id_str=\"" + wstring(key.Text());
    }
    const wstring openingTag = u"<prop" + attribute + u"\">";
    const size_t tag = set.find(openingTag);
    if (tag == wstring::npos) return false;
    const size_t valueStart = tag + openingTag.size();
    const size_t end = set.find(kPropertyEnd);
    if (end == wstring::npos) return false;
    // An end before the value (the first property's end, when this is a later one) makes the
    // length wrap round: the value then runs to the end of the set, which the value parser,
    // reading only its front, doesn't mind.
    return ParsePropertyValue(set.substr(valueStart, end - valueStart), value);
}

bool ParsePropertyValue(const wstring& text, PropertyValue& value) {
    if (text.empty() || text[0] != u'<') return false;
    const size_t close = text.find(u'>');
    if (close == wstring::npos) return false;
    const wstring name = text.substr(1, close - 1);
    static const wstring kNames[] = {u"string", u"double",   u"int",
                                     u"uint",   u"datetime", u"boolval"};
    bool known = false;
    for (const wstring& candidate : kNames) known = known || name == candidate;
    if (!known) return false;
    const size_t closingTag = text.find(u"</" + name + u">");
    if (closingTag == wstring::npos) return false;
    const size_t start = close + 1;
    const wstring content =
        closingTag >= start ? text.substr(start, closingTag - start) : wstring();
    const std::string narrow = Narrow(content);
    if (name == u"string") {
        value.SetText(content);
    } else if (name == u"double") {
        double number = 0;
        std::sscanf(narrow.c_str(), "%lf", &number);
        value.SetDouble(number);
    } else if (name == u"int") {
        int number = 0;
        std::sscanf(narrow.c_str(), "%i", &number);
        value.SetInt(number);
    } else if (name == u"uint") {
        unsigned int number = 0;
        std::sscanf(narrow.c_str(), "%u", &number);
        value.SetUInt(number);
    } else if (name == u"boolval") {
        value.SetBool(content == u"true");
    } else {
        int year = -1, month = -1, day = -1, hour = -1, minute = -1, second = -1;
        if (std::sscanf(narrow.c_str(), "%d-%d-%dT%d:%d:%d", &year, &month, &day, &hour, &minute,
                        &second) != 6)
            return false;
        if (year < 1900 || month < 1 || month > 12 || day < 0 || day > 31 || hour < 0 ||
            hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59)
            return false;
        // The year and month go to mktime as they were written, not counted from 1900 and
        // from 0 as it counts them: the seconds are far off the calendar, and kept so.
        std::tm broken{};
        broken.tm_year = year;
        broken.tm_mon = month;
        broken.tm_mday = day;
        broken.tm_hour = hour;
        broken.tm_min = minute;
        broken.tm_sec = second;
        broken.tm_isdst = -1;
        value.SetTime(static_cast<int64_t>(std::mktime(&broken)));
    }
    return true;
}

bool GetAppInfoProperty(const AppInfoMap& entries, const Guid& formatId, const PropertyKey& key,
                        PropertyValue& value) {
    wstring set;
    if (!GetAppInfoText(entries, formatId, set)) return false;
    return ReadPropertySetProperty(formatId, set, key, value);
}

bool GetOwnerGuid(const AppInfoMap& entries, Guid& owner) {
    wstring text;
    return GetAppInfoText(entries, kOwnerGuidKey, text) && !text.empty() &&
           ParseGuidText(text, owner);
}

}  // namespace LodeQDBUtil
