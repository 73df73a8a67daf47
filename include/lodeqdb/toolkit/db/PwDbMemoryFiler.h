// PwDbMemoryFiler: a filer that keeps its items in memory, for copying objects and for
// keeping the data of objects whose class this process doesn't have.
//
//   PwDbMemoryFiler filer(database);
//   circle->plwOutFields(&filer);
//   filer.rewind();
//   copy->plwInFields(&filer);
#pragma once

#include <string>
#include <variant>
#include <vector>

#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>

class PwDbMemoryFiler : public PwDbPlwFiler {
  public:
    /// One item as written. Ids are kept as handles.
    struct Handle {
        PwDbHandle value = 0;
        bool operator==(const Handle&) const = default;
    };
    using Item = std::variant<wstring, int32_t, int64_t, double, bool, std::string, Handle>;

    /// A filer whose ids are resolved in `database` (may be null: ids then read as null).
    explicit PwDbMemoryFiler(PwDbDatabase* database = nullptr);
    PwDbMemoryFiler(const PwDbMemoryFiler&) = default;
    PwDbMemoryFiler(PwDbMemoryFiler&&) noexcept = default;
    PwDbMemoryFiler& operator=(const PwDbMemoryFiler&) = default;
    PwDbMemoryFiler& operator=(PwDbMemoryFiler&&) noexcept = default;
    ~PwDbMemoryFiler() override;

    Plotwright::ErrorStatus readString(char16_t*& text) override;
    Plotwright::ErrorStatus writeString(const char16_t* text) override;
    Plotwright::ErrorStatus readInt32(int32_t& value) override;
    Plotwright::ErrorStatus writeInt32(int32_t value) override;
    Plotwright::ErrorStatus readInt64(int64_t& value) override;
    Plotwright::ErrorStatus writeInt64(int64_t value) override;
    Plotwright::ErrorStatus readDouble(double& value) override;
    Plotwright::ErrorStatus writeDouble(double value) override;
    Plotwright::ErrorStatus readBool(bool& value) override;
    Plotwright::ErrorStatus writeBool(bool value) override;
    Plotwright::ErrorStatus readBytes(void* bytes, size_t size) override;
    Plotwright::ErrorStatus writeBytes(const void* bytes, size_t size) override;
    Plotwright::ErrorStatus readObjectId(PwDbObjectId& id) override;
    Plotwright::ErrorStatus writeObjectId(PwDbObjectId id) override;
    Plotwright::ErrorStatus filerStatus() const override { return m_status; }
    PwDbDatabase* database() const override { return m_database; }

    using PwDbPlwFiler::readString;
    using PwDbPlwFiler::writeString;

    /// Reading starts again at the first item; the failure status is cleared.
    void rewind();
    /// Every item, written or appended.
    const std::vector<Item>& items() const { return m_items; }
    /// The number of items not read yet.
    size_t remaining() const { return m_items.size() - m_position; }
    /// Moves every item not read yet from `source` to the end of this filer.
    void takeRemaining(PwDbMemoryFiler& source);
    /// Writes every item of this filer, in order, to `target`; ids are resolved in this
    /// filer's database.
    Plotwright::ErrorStatus copyTo(PwDbPlwFiler& target) const;
    /// The same, with ids resolved in `handlesIn` (may be null: ids are then written null);
    /// a memory filer takes every item as it is, handles included.
    Plotwright::ErrorStatus copyTo(PwDbPlwFiler& target, PwDbDatabase* handlesIn) const;
    /// Appends one item as it is.
    void append(Item item) { m_items.push_back(std::move(item)); }

  private:
    template <class T>
    const T* next();
    Plotwright::ErrorStatus fail();

    PwDbDatabase* m_database;
    std::vector<Item> m_items;
    size_t m_position = 0;
    Plotwright::ErrorStatus m_status = Plotwright::StatusOk;
};
