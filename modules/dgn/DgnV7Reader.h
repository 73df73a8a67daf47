// The element structure of a DGN V7 design file: a run of elements, each a header word (type,
// level, complex and deleted bits) and a count of the words that follow, up to the end-of-design
// word 0xFFFF. Complex elements (cells, chains, shapes, text nodes, surfaces, solids) are a
// header followed by components that carry the complex bit.
//
//   DgnV7ElementStream stream(bytes);
//   DgnV7RawElement element;
//   while (stream.next(element)) {
//       size_t words = 0, count = 0;
//       if (dgnComplexExtent(element, words, count)) {
//           DgnV7Components components(stream, words, count);
//           DgnV7RawElement component;
//           while (components.next(component)) { ... }
//       }
//   }
//   if (stream.end() == DgnV7StreamEnd::Truncated) { ... stream.unreadBytes() ... }
//
// Everything is bounded by the bytes themselves: an element whose words to follow run past the
// end stops the stream, and a header's component length or count, however large, only limits
// how far components are taken from what follows. Nothing is allocated by a count from the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// Element types that matter to the structure or to translation.
enum DgnV7ElementType : uint8_t {
    kDgnCellLibraryHeader = 1,
    kDgnCellHeader = 2,
    kDgnLine = 3,
    kDgnLineString = 4,
    kDgnGroupData = 5,
    kDgnShape = 6,
    kDgnTextNode = 7,
    kDgnDigitizerSetup = 8,
    kDgnControlBlock = 9,
    kDgnLevelSymbology = 10,
    kDgnCurve = 11,
    kDgnComplexChain = 12,
    kDgnComplexShape = 14,
    kDgnEllipse = 15,
    kDgnArc = 16,
    kDgnText = 17,
    kDgnSurfaceHeader = 18,
    kDgnSolidHeader = 19,
    kDgnSharedCellDefinition = 34,
    kDgnApplication = 66,
};

/// One element as stored: a view into the file's bytes, valid while they are.
struct DgnV7RawElement {
    /// Where the element starts, in bytes from the start of the file.
    size_t byteOffset = 0;
    uint8_t type = 0;
    uint8_t level = 0;
    bool complex = false;
    bool deleted = false;
    uint16_t wordsToFollow = 0;
    /// The whole element: (wordsToFollow + 2) words.
    std::span<const uint8_t> bytes;

    /// Where the element starts in 16-bit words, which is how DGN files count.
    uint64_t wordOffset() const { return byteOffset / 2; }
};

/// Why a stream stopped.
enum class DgnV7StreamEnd {
    /// It hasn't.
    Running,
    /// At the end-of-design word.
    EndMarker,
    /// Exactly at the last byte, without an end-of-design word.
    EndOfBytes,
    /// Inside an element: the bytes ran out before its words to follow did.
    Truncated,
};

class DgnV7ElementStream {
  public:
    /// Reads `file` from `start` (a byte offset; an odd one or one past the end gives an empty
    /// stream that ends Truncated or EndOfBytes).
    explicit DgnV7ElementStream(std::span<const uint8_t> file, size_t start = 0);

    /// The next element, deleted or not; false once the stream has ended.
    bool next(DgnV7RawElement& element);
    /// What next() would give, without moving; false when it would give nothing.
    bool peek(DgnV7RawElement& element) const;
    /// The byte offset of the next element.
    size_t position() const { return m_position; }
    DgnV7StreamEnd end() const { return m_end; }
    /// After a Truncated end: the bytes from the cut element to the end of the file.
    size_t unreadBytes() const {
        return m_end == DgnV7StreamEnd::Truncated ? m_file.size() - m_position : 0;
    }

  private:
    // Reads the element at m_position into `element`; sets `end` when there is none.
    bool decodeAt(DgnV7RawElement& element, DgnV7StreamEnd& end) const;

    std::span<const uint8_t> m_file;
    size_t m_position;
    DgnV7StreamEnd m_end = DgnV7StreamEnd::Running;
};

/// For a complex header: the words its header says its components occupy and the most direct
/// components it may have (SIZE_MAX when the header states no count). False for an element
/// that is no complex header of a kind read here, or whose header is too short to tell.
bool dgnComplexExtent(const DgnV7RawElement& header, size_t& componentWords, size_t& maxComponents);

/// The direct components of the complex element a stream returned last: the elements after it
/// that carry the complex bit and fit in its stated component length and count. A component
/// that is itself complex has its own components skipped by the next call to next(), unless
/// they were read first through another DgnV7Components.
class DgnV7Components {
  public:
    /// `limit` is a byte offset no component may reach past: the end of an enclosing complex
    /// element's components.
    DgnV7Components(DgnV7ElementStream& stream, size_t componentWords, size_t maxComponents,
                    size_t limit = SIZE_MAX);

    bool next(DgnV7RawElement& component);
    /// Skips the components not read yet.
    void skipRest();
    /// Direct components returned so far.
    size_t count() const { return m_count; }
    /// The byte offset components end at, at the latest: the limit for nested ones.
    size_t end() const { return m_end; }

  private:
    void skipUnreadComponentsOfPrevious();

    DgnV7ElementStream& m_stream;
    size_t m_end;
    size_t m_maxComponents;
    size_t m_count = 0;
    bool m_hasPrevious = false;
    DgnV7RawElement m_previous;
    size_t m_afterPrevious = 0;
};

/// Skips, from `stream`, the elements that carry the complex bit and lie within `words` words.
void dgnSkipComponentWords(DgnV7ElementStream& stream, size_t words);
