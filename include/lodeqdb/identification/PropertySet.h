// Property sets: the small mark-up in which drawings keep typed properties in their
// application information, and GUIDs in their text form.
//
//   LodeQDBUtil::PropertyKey key;
//   key.SetNumber(258);
//   LodeQDBUtil::PropertyValue value;
//   if (LodeQDBUtil::GetAppInfoProperty(entries, summaryFormatId, key, value))
//       creator = value.Text();
//
// A set reads: <prop_set fmt_id="{GUID}"> ... <prop id="258"><string>text</string></prop> ...
// The reader searches for exact substrings, case counting, with no room for white space,
// other attribute orders or escapes. A property's value element stands directly behind its
// opening tag: "string", "double", "int", "uint", "datetime" or "boolval".
#pragma once

#include <cstdint>

#include <lodeqdb/identification/AppInfo.h>
#include <lodeqdb/identification/Guid.h>
#include <lodeqdb/lodeutil/WideString.h>

namespace LodeQDBUtil {

/// The key of the entry that holds the owner's GUID: {E006715E-1EB4-4AE0-BC05-4BC5EFDDB41E}.
extern const Guid kOwnerGuidKey;

/// Reads "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}" (as the standard scanning
/// functions read it: hexadecimal digits of either case; the closing brace isn't checked).
/// True when all eleven numbers were read; `guid` is written only then.
bool ParseGuidText(const wstring& text, Guid& guid);

/// A property's key: a name (kind 0) or a number (kind 1). A new key is a name without text.
class PropertyKey {
  public:
    enum Kind : uint32_t { KeyKindText = 0, KeyKindNumber = 1 };

    Kind GetKind() const { return kind_; }
    void SetText(const wstring& name);
    void SetNumber(uint32_t number);
    /// The name; null for a key that was never given one. Ends the process for a number key.
    const char16_t* Text() const;
    /// The number. Ends the process for a name key.
    uint32_t Number() const;

  private:
    Kind kind_ = KeyKindText;
    bool hasText_ = false;
    wstring text_;
    uint32_t number_ = 0;
};

/// A property's value, tagged with its type.
class PropertyValue {
  public:
    enum Tag : uint32_t {
        ValueEmpty = 0,
        ValueDouble = 5,
        ValueBool = 11,
        ValueInt = 22,
        ValueUInt = 23,
        ValueText = 31,
        ValueTime = 64,
    };

    Tag GetTag() const { return tag_; }
    void SetDouble(double value);
    void SetBool(bool value);
    void SetInt(int32_t value);
    void SetUInt(uint32_t value);
    void SetText(const wstring& value);
    /// Seconds as the C library's mktime gave them for the scanned date.
    void SetTime(int64_t seconds);

    double Double() const { return double_; }
    bool Bool() const { return bool_; }
    int32_t Int() const { return int_; }
    uint32_t UInt() const { return uint_; }
    int64_t Time() const { return time_; }
    /// The text. Ends the process for a value of another type.
    const wstring& Text() const;

  private:
    void Reset(Tag tag);

    Tag tag_ = ValueEmpty;
    double double_ = 0;
    bool bool_ = false;
    int32_t int_ = 0;
    uint32_t uint_ = 0;
    int64_t time_ = 0;
    wstring text_;
};

/// The GUID of the set's head, <prop_set fmt_id="...">; false without a head or with a GUID
/// that doesn't read.
bool PropertySetFormatId(const wstring& set, Guid& formatId);

/// The value of the property `key` in `set`, when the set's format id is `formatId`.
bool ReadPropertySetProperty(const Guid& formatId, const wstring& set, const PropertyKey& key,
                             PropertyValue& value);

/// Reads the value element at the very front of `text` into `value`.
bool ParsePropertyValue(const wstring& text, PropertyValue& value);

/// The property `key` of the set kept in `entries` under the key `formatId`.
bool GetAppInfoProperty(const AppInfoMap& entries, const Guid& formatId, const PropertyKey& key,
                        PropertyValue& value);

/// The owner's GUID from its entry; false when the entry is missing, empty or no GUID.
bool GetOwnerGuid(const AppInfoMap& entries, Guid& owner);

}  // namespace LodeQDBUtil
