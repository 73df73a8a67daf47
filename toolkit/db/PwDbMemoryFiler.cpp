// The in-memory filer: typed items in a vector, read back in order.
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>

#include <cstring>

#include <lodeqdb/toolkit/core/PwStringBuffer.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

PwDbMemoryFiler::PwDbMemoryFiler(PwDbDatabase* database) : m_database(database) {}

PwDbMemoryFiler::~PwDbMemoryFiler() = default;

template <class T>
const T* PwDbMemoryFiler::next() {
    if (m_status != Plotwright::StatusOk || m_position >= m_items.size()) return nullptr;
    const T* value = std::get_if<T>(&m_items[m_position]);
    if (value != nullptr) ++m_position;
    return value;
}

Plotwright::ErrorStatus PwDbMemoryFiler::fail() {
    if (m_status == Plotwright::StatusOk) m_status = Plotwright::StatusFilerError;
    return m_status;
}

void PwDbMemoryFiler::rewind() {
    m_position = 0;
    m_status = Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbMemoryFiler::readString(char16_t*& text) {
    text = nullptr;
    const wstring* value = next<wstring>();
    if (value == nullptr) return fail();
    return pwutNewString(value->c_str(), text);
}

Plotwright::ErrorStatus PwDbMemoryFiler::writeString(const char16_t* text) {
    m_items.emplace_back(wstring(text ? text : u""));
    return Plotwright::StatusOk;
}

#define PWDB_MEMORY_FILER_SCALAR(NAME, TYPE)                           \
    Plotwright::ErrorStatus PwDbMemoryFiler::read##NAME(TYPE& value) { \
        const TYPE* item = next<TYPE>();                               \
        if (item == nullptr) return fail();                            \
        value = *item;                                                 \
        return Plotwright::StatusOk;                                   \
    }                                                                  \
    Plotwright::ErrorStatus PwDbMemoryFiler::write##NAME(TYPE value) { \
        m_items.emplace_back(value);                                   \
        return Plotwright::StatusOk;                                   \
    }

PWDB_MEMORY_FILER_SCALAR(Int32, int32_t)
PWDB_MEMORY_FILER_SCALAR(Int64, int64_t)
PWDB_MEMORY_FILER_SCALAR(Double, double)
PWDB_MEMORY_FILER_SCALAR(Bool, bool)

#undef PWDB_MEMORY_FILER_SCALAR

Plotwright::ErrorStatus PwDbMemoryFiler::readBytes(void* bytes, size_t size) {
    const std::string* item = next<std::string>();
    if (item == nullptr) return fail();
    if (item->size() != size || (size > 0 && bytes == nullptr)) {
        --m_position;
        return fail();
    }
    if (size > 0) std::memcpy(bytes, item->data(), size);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbMemoryFiler::writeBytes(const void* bytes, size_t size) {
    if (size > 0 && bytes == nullptr) return Plotwright::StatusInvalidInput;
    m_items.emplace_back(std::string(static_cast<const char*>(bytes), size));
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbMemoryFiler::readObjectId(PwDbObjectId& id) {
    const Handle* item = next<Handle>();
    if (item == nullptr) return fail();
    id = m_database ? m_database->getPwDbObjectId(item->value, true) : PwDbObjectId();
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbMemoryFiler::writeObjectId(PwDbObjectId id) {
    m_items.emplace_back(Handle{id.handle()});
    return Plotwright::StatusOk;
}

void PwDbMemoryFiler::takeRemaining(PwDbMemoryFiler& source) {
    for (size_t i = source.m_position; i < source.m_items.size(); ++i) {
        m_items.push_back(std::move(source.m_items[i]));
    }
    source.m_items.resize(source.m_position);
}

Plotwright::ErrorStatus PwDbMemoryFiler::copyTo(PwDbPlwFiler& target) const {
    return copyTo(target, m_database);
}

Plotwright::ErrorStatus PwDbMemoryFiler::copyTo(PwDbPlwFiler& target,
                                                PwDbDatabase* handlesIn) const {
    // Between memory filers items travel as they are: a handle needs no database then.
    if (auto* memory = dynamic_cast<PwDbMemoryFiler*>(&target)) {
        for (const Item& item : m_items) memory->append(item);
        return Plotwright::StatusOk;
    }
    for (const Item& item : m_items) {
        Plotwright::ErrorStatus status = Plotwright::StatusOk;
        if (const auto* text = std::get_if<wstring>(&item)) {
            status = target.writeString(text->c_str());
        } else if (const auto* i32 = std::get_if<int32_t>(&item)) {
            status = target.writeInt32(*i32);
        } else if (const auto* i64 = std::get_if<int64_t>(&item)) {
            status = target.writeInt64(*i64);
        } else if (const auto* real = std::get_if<double>(&item)) {
            status = target.writeDouble(*real);
        } else if (const auto* flag = std::get_if<bool>(&item)) {
            status = target.writeBool(*flag);
        } else if (const auto* bytes = std::get_if<std::string>(&item)) {
            status = target.writeBytes(bytes->data(), bytes->size());
        } else if (const auto* handle = std::get_if<Handle>(&item)) {
            PwDbObjectId id =
                handlesIn ? handlesIn->getPwDbObjectId(handle->value, true) : PwDbObjectId();
            status = target.writeObjectId(id);
        }
        if (status != Plotwright::StatusOk) return status;
    }
    return Plotwright::StatusOk;
}
