// LodeUtil::BStr, a counted UTF-16 string of the kind that interfaces built on COM pass
// around, and ToBstr, which makes one.
//
//   LodeUtil::BStr counted = LodeUtil::ToBstr(name);
//   const char16_t* text = counted;    // null when the text is empty
//
// The length is stored in front of the text, so a BStr may hold U+0000 inside its text; the
// text is always followed by a terminating zero. An empty BStr holds no block at all, and its
// text pointer is null: that is how "no text" reaches such interfaces.
#pragma once

#include <cstddef>
#include <cstdint>

#include <lodeqdb/lodeutil/WideString.h>

namespace LodeUtil {

class BStr {
  public:
    BStr() = default;
    /// A copy of `count` units at `text`; a null `text` or a count of 0 makes an empty BStr.
    BStr(const char16_t* text, size_t count);
    explicit BStr(const wstring& text) : BStr(text.data(), text.size()) {}
    BStr(const BStr& other);
    BStr(BStr&& other) noexcept;
    BStr& operator=(BStr other) noexcept;
    ~BStr();

    /// The text, zero-terminated; null for an empty BStr.
    const char16_t* c_str() const { return m_block ? TextOf(m_block) : nullptr; }
    operator const char16_t*() const { return c_str(); }
    /// The number of UTF-16 units, not counting the terminating zero.
    size_t length() const { return m_block ? m_block->length : 0; }
    bool empty() const { return m_block == nullptr; }
    wstring toWString() const { return wstring(c_str() ? c_str() : u"", length()); }

  private:
    // The text follows the block header directly.
    struct Block {
        size_t length;
    };
    static char16_t* TextOf(Block* block) { return reinterpret_cast<char16_t*>(block + 1); }
    static Block* Allocate(const char16_t* text, size_t count);

    Block* m_block = nullptr;
};

/// A counted copy of `text`; an empty text gives an empty BStr whose pointer is null.
BStr ToBstr(const wstring& text);

}  // namespace LodeUtil
