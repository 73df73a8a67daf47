// The counted UTF-16 string: one block holding the length, the text and a terminating zero.
#include <lodeqdb/lodeutil/BStr.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace LodeUtil {

BStr::Block* BStr::Allocate(const char16_t* text, size_t count) {
    if (text == nullptr || count == 0) return nullptr;
    constexpr size_t kMaxUnits = (SIZE_MAX - sizeof(Block)) / sizeof(char16_t) - 1;
    if (count > kMaxUnits) throw std::bad_alloc();
    void* memory = std::malloc(sizeof(Block) + (count + 1) * sizeof(char16_t));
    if (memory == nullptr) throw std::bad_alloc();
    auto* block = static_cast<Block*>(memory);
    block->length = count;
    std::memcpy(TextOf(block), text, count * sizeof(char16_t));
    TextOf(block)[count] = u'\0';
    return block;
}

BStr::BStr(const char16_t* text, size_t count) : m_block(Allocate(text, count)) {}

BStr::BStr(const BStr& other)
    : m_block(other.m_block ? Allocate(TextOf(other.m_block), other.m_block->length) : nullptr) {}

BStr::BStr(BStr&& other) noexcept : m_block(std::exchange(other.m_block, nullptr)) {}

BStr& BStr::operator=(BStr other) noexcept {
    std::swap(m_block, other.m_block);
    return *this;
}

BStr::~BStr() {
    std::free(m_block);
}

BStr ToBstr(const wstring& text) {
    return BStr(text);
}

}  // namespace LodeUtil
