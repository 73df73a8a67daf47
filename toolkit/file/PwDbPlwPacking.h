// PwDbPlwPacking: an object's data as layout revision 2 of the native file packs it. The
// tags of the items (one byte each, the numbers of the item table in PwDbPlwCodec.h) are
// kept apart from their values, so that a file keeps each sequence of tags once, and the
// values are packed: counts, whole numbers and handles as varints, doubles as their 8 bytes.
//
//   PwDbPlwPackingFiler out(&database);
//   line->plwOutFields(&out);                          // out.tags(), out.values()
//   PwDbPlwUnpackingFiler in(&database, out.tags(), out.values());
//   copy->plwInFields(&in);                            // in.atEnd() when all was read
//
// Values, by tag: text a varint count of UTF-16LE units then the units; int32 and int64 the
// zigzag varint of the number (0, -1, 1, -2 ... as 0, 1, 2, 3 ...); double the 8 bytes of its
// IEEE 754 bits; bool one byte, 0 or 1; bytes a varint count then the bytes; handle a varint.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include "toolkit/file/PwDbOneWayFilers.h"

enum PwDbPlwItemTag : uint8_t {
    kPwDbPlwTagText = 1,
    kPwDbPlwTagInt32 = 2,
    kPwDbPlwTagInt64 = 3,
    kPwDbPlwTagDouble = 4,
    kPwDbPlwTagBool = 5,
    kPwDbPlwTagBytes = 6,
    kPwDbPlwTagHandle = 7,
};

/// Appends `item`: its tag to `tags`, its value to `values`.
void pwdbPlwPackItem(const PwDbMemoryFiler::Item& item, std::string& tags, std::string& values);

/// The items whose tags are `tags` and whose packed values are `values`, appended to `items`;
/// false unless every tag is known and the values are used to their last byte.
bool pwdbPlwUnpackItems(std::string_view tags, std::string_view values,
                        std::vector<PwDbMemoryFiler::Item>& items);

/// A filer that packs what an object writes.
class PwDbPlwPackingFiler : public PwDbWriteOnlyFiler {
  public:
    explicit PwDbPlwPackingFiler(PwDbDatabase* database) : m_database(database) {}
    /// Empties the tags and values, for the next object.
    void clear();
    const std::string& tags() const { return m_tags; }
    const std::string& values() const { return m_values; }

    Plotwright::ErrorStatus writeString(const char16_t* text) override;
    Plotwright::ErrorStatus writeInt32(int32_t value) override;
    Plotwright::ErrorStatus writeInt64(int64_t value) override;
    Plotwright::ErrorStatus writeDouble(double value) override;
    Plotwright::ErrorStatus writeBool(bool value) override;
    Plotwright::ErrorStatus writeBytes(const void* bytes, size_t size) override;
    Plotwright::ErrorStatus writeObjectId(PwDbObjectId id) override;
    PwDbDatabase* database() const override { return m_database; }

    using PwDbPlwFiler::readString;
    using PwDbPlwFiler::writeString;

  private:
    PwDbDatabase* m_database;
    std::string m_tags;
    std::string m_values;
};

/// A filer that reads one packed record straight from its bytes, into an object of
/// `database`: ids are resolved there (made there when the drawing doesn't hold the handle
/// yet), or kept as handles by objects that resolve them later. A read whose tag isn't the next
/// one, or whose value runs short, fails and the filer stays failed.
class PwDbPlwUnpackingFiler : public PwDbReadOnlyFiler {
  public:
    PwDbPlwUnpackingFiler(PwDbDatabase* database, std::string_view tags, std::string_view values)
        : m_database(database), m_tags(tags), m_values(values) {}
    /// True when every item was read and nothing is left over.
    bool atEnd() const { return m_status == Plotwright::StatusOk && m_tags.empty() && m_values.empty(); }

    Plotwright::ErrorStatus readString(char16_t*& text) override;
    Plotwright::ErrorStatus readInt32(int32_t& value) override;
    Plotwright::ErrorStatus readInt64(int64_t& value) override;
    Plotwright::ErrorStatus readDouble(double& value) override;
    Plotwright::ErrorStatus readBool(bool& value) override;
    Plotwright::ErrorStatus readBytes(void* bytes, size_t size) override;
    Plotwright::ErrorStatus readObjectId(PwDbObjectId& id) override;
    Plotwright::ErrorStatus filerStatus() const override { return m_status; }
    PwDbDatabase* database() const override { return m_database; }
    Plotwright::ErrorStatus readHandle(PwDbHandle& handle) override;
    Plotwright::ErrorStatus readPackedHandles(size_t count, std::string& packed,
                                              size_t& named) override;
    bool keepsIdsAsHandles() const override { return m_database != nullptr; }

    using PwDbPlwFiler::readString;
    using PwDbPlwFiler::writeString;

  private:
    bool take(PwDbPlwItemTag tag);
    bool varint(uint64_t& value);
    Plotwright::ErrorStatus fail();

    PwDbDatabase* m_database;
    std::string_view m_tags;
    std::string_view m_values;
    Plotwright::ErrorStatus m_status = Plotwright::StatusOk;
};
