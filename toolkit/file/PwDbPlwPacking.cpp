// Packing and unpacking the items of an object's record, as revision 2 of the native file
// keeps them.
#include "toolkit/file/PwDbPlwPacking.h"

#include <bit>
#include <cstring>
#include <limits>

#include <lodeqdb/toolkit/core/PwStringBuffer.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

#include "toolkit/file/PwDbPlwBytes.h"

namespace {

using Item = PwDbMemoryFiler::Item;

// Whether every byte of `tags` is `tag`: a long list of ids is checked eight tags at a time.
bool AllTagged(std::string_view tags, uint8_t tag) {
    const uint64_t pattern = 0x0101010101010101ULL * tag;
    size_t i = 0;
    for (; tags.size() - i >= 8; i += 8) {
        uint64_t word = 0;
        std::memcpy(&word, tags.data() + i, 8);
        if (word != pattern) return false;
    }
    for (; i < tags.size(); ++i) {
        if (static_cast<uint8_t>(tags[i]) != tag) return false;
    }
    return true;
}

uint64_t Zigzag(int64_t value) {
    return (static_cast<uint64_t>(value) << 1) ^ static_cast<uint64_t>(value >> 63);
}

int64_t Unzigzag(uint64_t value) {
    return static_cast<int64_t>(value >> 1) ^ -static_cast<int64_t>(value & 1);
}

void PutUnits(PwDbPlwWriter& out, std::u16string_view text) {
    out.varint(text.size());
    out.units(wstring(text));
}

void PutDouble(PwDbPlwWriter& out, double value) {
    out.u64(std::bit_cast<uint64_t>(value));
}

bool TakeItem(PwDbPlwReader& in, uint8_t tag, std::vector<Item>& items) {
    uint64_t value = 0;
    switch (tag) {
        case kPwDbPlwTagText: {
            if (!in.varint(value) || value > in.left() / 2) return false;
            auto& text = std::get<wstring>(items.emplace_back(std::in_place_type<wstring>));
            return in.units(value, text);
        }
        case kPwDbPlwTagInt32: {
            if (!in.varint(value)) return false;
            const int64_t number = Unzigzag(value);
            if (number < std::numeric_limits<int32_t>::min() ||
                number > std::numeric_limits<int32_t>::max()) {
                return false;
            }
            items.emplace_back(std::in_place_type<int32_t>, static_cast<int32_t>(number));
            return true;
        }
        case kPwDbPlwTagInt64:
            if (!in.varint(value)) return false;
            items.emplace_back(std::in_place_type<int64_t>, Unzigzag(value));
            return true;
        case kPwDbPlwTagDouble:
            if (!in.u64(value)) return false;
            items.emplace_back(std::in_place_type<double>, std::bit_cast<double>(value));
            return true;
        case kPwDbPlwTagBool: {
            uint8_t flag = 0;
            if (!in.u8(flag) || flag > 1) return false;
            items.emplace_back(std::in_place_type<bool>, flag == 1);
            return true;
        }
        case kPwDbPlwTagBytes: {
            std::string_view bytes;
            if (!in.varint(value) || !in.view(value, bytes)) return false;
            items.emplace_back(std::in_place_type<std::string>, bytes);
            return true;
        }
        case kPwDbPlwTagHandle:
            if (!in.varint(value)) return false;
            items.emplace_back(std::in_place_type<PwDbMemoryFiler::Handle>,
                               PwDbMemoryFiler::Handle{value});
            return true;
        default:
            return false;
    }
}

}  // namespace

void pwdbPlwPackItem(const Item& item, std::string& tags, std::string& values) {
    PwDbPlwWriter out(values);
    if (const auto* text = std::get_if<wstring>(&item)) {
        tags.push_back(kPwDbPlwTagText);
        PutUnits(out, *text);
    } else if (const auto* value32 = std::get_if<int32_t>(&item)) {
        tags.push_back(kPwDbPlwTagInt32);
        out.varint(Zigzag(*value32));
    } else if (const auto* value64 = std::get_if<int64_t>(&item)) {
        tags.push_back(kPwDbPlwTagInt64);
        out.varint(Zigzag(*value64));
    } else if (const auto* real = std::get_if<double>(&item)) {
        tags.push_back(kPwDbPlwTagDouble);
        PutDouble(out, *real);
    } else if (const auto* flag = std::get_if<bool>(&item)) {
        tags.push_back(kPwDbPlwTagBool);
        out.u8(*flag ? 1 : 0);
    } else if (const auto* bytes = std::get_if<std::string>(&item)) {
        tags.push_back(kPwDbPlwTagBytes);
        out.varint(bytes->size());
        out.raw(*bytes);
    } else {
        tags.push_back(kPwDbPlwTagHandle);
        out.varint(std::get<PwDbMemoryFiler::Handle>(item).value);
    }
}

bool pwdbPlwUnpackItems(std::string_view tags, std::string_view values, std::vector<Item>& items) {
    PwDbPlwReader in(values);
    items.reserve(items.size() + tags.size());
    for (const char tag : tags) {
        if (!TakeItem(in, static_cast<uint8_t>(tag), items)) return false;
    }
    return in.left() == 0;
}

// ---- packing ----

void PwDbPlwPackingFiler::clear() {
    m_tags.clear();
    m_values.clear();
}

Plotwright::ErrorStatus PwDbPlwPackingFiler::writeString(const char16_t* text) {
    m_tags.push_back(kPwDbPlwTagText);
    PwDbPlwWriter out(m_values);
    PutUnits(out, text ? std::u16string_view(text) : std::u16string_view());
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwPackingFiler::writeInt32(int32_t value) {
    m_tags.push_back(kPwDbPlwTagInt32);
    PwDbPlwWriter(m_values).varint(Zigzag(value));
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwPackingFiler::writeInt64(int64_t value) {
    m_tags.push_back(kPwDbPlwTagInt64);
    PwDbPlwWriter(m_values).varint(Zigzag(value));
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwPackingFiler::writeDouble(double value) {
    m_tags.push_back(kPwDbPlwTagDouble);
    PwDbPlwWriter out(m_values);
    PutDouble(out, value);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwPackingFiler::writeBool(bool value) {
    m_tags.push_back(kPwDbPlwTagBool);
    m_values.push_back(value ? 1 : 0);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwPackingFiler::writeBytes(const void* bytes, size_t size) {
    if (size > 0 && bytes == nullptr) return Plotwright::StatusInvalidInput;
    m_tags.push_back(kPwDbPlwTagBytes);
    PwDbPlwWriter out(m_values);
    out.varint(size);
    if (size > 0) out.raw(std::string_view(static_cast<const char*>(bytes), size));
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwPackingFiler::writeObjectId(PwDbObjectId id) {
    m_tags.push_back(kPwDbPlwTagHandle);
    PwDbPlwWriter(m_values).varint(id.handle());
    return Plotwright::StatusOk;
}


// ---- unpacking ----

Plotwright::ErrorStatus PwDbPlwUnpackingFiler::fail() {
    m_status = Plotwright::StatusFilerError;
    return m_status;
}

bool PwDbPlwUnpackingFiler::take(PwDbPlwItemTag tag) {
    if (m_status != Plotwright::StatusOk || m_tags.empty() ||
        static_cast<uint8_t>(m_tags.front()) != tag) {
        return false;
    }
    m_tags.remove_prefix(1);
    return true;
}

bool PwDbPlwUnpackingFiler::varint(uint64_t& value) {
    PwDbPlwReader in(m_values);
    if (!in.varint(value)) return false;
    m_values.remove_prefix(m_values.size() - in.left());
    return true;
}

Plotwright::ErrorStatus PwDbPlwUnpackingFiler::readString(char16_t*& text) {
    text = nullptr;
    uint64_t count = 0;
    if (!take(kPwDbPlwTagText) || !varint(count) || count > m_values.size() / 2) return fail();
    wstring read;
    PwDbPlwReader in(m_values);
    in.units(count, read);
    m_values.remove_prefix(static_cast<size_t>(count) * 2);
    return pwutNewString(read.c_str(), text);
}

Plotwright::ErrorStatus PwDbPlwUnpackingFiler::readInt32(int32_t& value) {
    uint64_t packed = 0;
    if (!take(kPwDbPlwTagInt32) || !varint(packed)) return fail();
    const int64_t number = Unzigzag(packed);
    if (number < std::numeric_limits<int32_t>::min() ||
        number > std::numeric_limits<int32_t>::max()) {
        return fail();
    }
    value = static_cast<int32_t>(number);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwUnpackingFiler::readInt64(int64_t& value) {
    uint64_t packed = 0;
    if (!take(kPwDbPlwTagInt64) || !varint(packed)) return fail();
    value = Unzigzag(packed);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwUnpackingFiler::readDouble(double& value) {
    if (!take(kPwDbPlwTagDouble) || m_values.size() < 8) return fail();
    uint64_t bits = 0;
    PwDbPlwReader(m_values).u64(bits);
    m_values.remove_prefix(8);
    value = std::bit_cast<double>(bits);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwUnpackingFiler::readBool(bool& value) {
    if (!take(kPwDbPlwTagBool) || m_values.empty() || static_cast<uint8_t>(m_values[0]) > 1) {
        return fail();
    }
    value = m_values[0] == 1;
    m_values.remove_prefix(1);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwUnpackingFiler::readBytes(void* bytes, size_t size) {
    uint64_t count = 0;
    if (!take(kPwDbPlwTagBytes) || !varint(count) || count != size || count > m_values.size() ||
        (size > 0 && bytes == nullptr)) {
        return fail();
    }
    if (size > 0) std::memcpy(bytes, m_values.data(), size);
    m_values.remove_prefix(size);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwUnpackingFiler::readObjectId(PwDbObjectId& id) {
    uint64_t handle = 0;
    if (!take(kPwDbPlwTagHandle) || !varint(handle)) return fail();
    id = m_database ? m_database->getPwDbObjectId(handle, true) : PwDbObjectId();
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwUnpackingFiler::readHandle(PwDbHandle& handle) {
    uint64_t value = 0;
    if (!take(kPwDbPlwTagHandle) || !varint(value)) return fail();
    handle = value;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwUnpackingFiler::readPackedHandles(size_t count,
                                                            std::string& packed,
                                                            size_t& named) {
    // A block's list of a million entities is taken here as its bytes: the tags checked in one
    // pass, the values only measured (and checked) before they are copied.
    if (m_status != Plotwright::StatusOk || count > m_tags.size() || count > m_values.size() ||
        !AllTagged(m_tags.substr(0, count), kPwDbPlwTagHandle)) {
        return fail();
    }
    size_t at = 0;
    if (!LodeUtil::MeasureVarints(m_values, count, at, named)) return fail();
    m_tags.remove_prefix(count);
    packed.assign(m_values.substr(0, at));
    m_values.remove_prefix(at);
    return Plotwright::StatusOk;
}

