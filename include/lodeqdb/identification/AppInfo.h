// The application information section of a native drawing file: GUID keys with text values
// that the authoring application left there, found behind the scan start by their marker.
//
//   LodeQDBUtil::AppInfoMap entries;
//   if (LodeQDBUtil::ReadAppInfoMap(path, entries)) {
//       wstring owner;
//       LodeQDBUtil::GetAppInfoText(entries, ownerKey, owner);
//   }
//
// The section: the 32 marker bytes; a 32-bit field and a string, both passed over; a 32-bit
// count; that many entries of a 16-byte key and a string. A string is a 16-bit length of
// units, the terminator's place included, then the units (UTF-16, little-endian); its text is
// the units but the last. Nothing ends the section but the count.
#pragma once

#include <cstdint>
#include <map>

#include <lodeqdb/identification/Guid.h>
#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/file/PwDbAppInfoMarker.h>

namespace LodeQDBUtil {

struct BufferedFile;

/// The 32 bytes that open the section.
inline constexpr const auto& kAppInfoMarker = kPwDbAppInfoMarker;

/// Receives the section's entries as they are read. No virtual destructor: a notifier is
/// never deleted through this interface.
class PwHsAppInfoNotifier {
  public:
    /// Once, as soon as the count is read.
    virtual void OnEntryCount(uint32_t count) = 0;
    /// Once for each entry read whole, in file order.
    virtual void OnEntry(const Guid& key, const wstring& text) = 0;

  protected:
    ~PwHsAppInfoNotifier() = default;
};

/// The entries by key, in the order of the keys' bytes; the first entry of a key stays.
using AppInfoMap = std::map<Guid, wstring, GuidByteOrder>;

/// Fills a map, keeping the first text of each key.
class AppInfoNotifier final : public PwHsAppInfoNotifier {
  public:
    explicit AppInfoNotifier(AppInfoMap* entries) : entries_(entries) {}
    void OnEntryCount(uint32_t /*count*/) override {}
    void OnEntry(const Guid& key, const wstring& text) override { entries_->emplace(key, text); }

  private:
    AppInfoMap* entries_;
};

/// Reads one string into `text` (empty on entry). False when the file ends first.
bool ReadAppInfoString(BufferedFile& file, wstring& text);

/// Reads the section of `path` and tells `notifier` its entries. True when the whole section
/// was read; false for a file of a signature before "PW1018", one that can't be read, one
/// without the marker within 4096 bytes of the scan start, or one that ends inside the
/// section (the entries read whole before the end were told all the same).
bool ReadAppInfo(const char16_t* path, PwHsAppInfoNotifier& notifier);

/// ReadAppInfo into `entries`.
bool ReadAppInfoMap(const char16_t* path, AppInfoMap& entries);

/// The text of `key`; false, and `text` untouched, when the map has no such entry.
bool GetAppInfoText(const AppInfoMap& entries, const Guid& key, wstring& text);

}  // namespace LodeQDBUtil
