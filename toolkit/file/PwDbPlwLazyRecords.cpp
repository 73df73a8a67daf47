// Records of an indexed native file decoded on first use, from memory or from disk.
#include "toolkit/file/PwDbPlwLazyRecords.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include <lodeqdb/toolkit/db/PwDbObject.h>
#include <lodeqdb/toolkit/db/PwDbProxyObject.h>
#include "toolkit/db/PwDbObjectMaking.h"
#include "toolkit/file/PwDbPlwPacking.h"

namespace FileIO = Morvane::Plotwright::PAL::FileIO;

namespace {

// The least a read from disk takes: a few pages, or the index of a few thousand records.
constexpr uint64_t kWindowBytes = 64 * 1024;

}  // namespace

PwDbPlwLazyRecords::PwDbPlwLazyRecords(PwDbPlwIndexedFront&& front, std::string&& wholeFile,
                                       wstring path)
    : m_front(std::move(front)),
      m_described(m_front.pages.size()),
      m_classes(m_front.classes.size()),
      m_path(std::move(path)),
      m_whole(std::move(wholeFile)),
      m_inMemory(true),
      m_pageChecked(m_front.pages.size(), 0) {}

PwDbPlwLazyRecords::PwDbPlwLazyRecords(PwDbPlwIndexedFront&& front, File held, wstring path,
                                       File::Identity identity, std::string&& firstBytes)
    : m_front(std::move(front)),
      m_described(m_front.pages.size()),
      m_classes(m_front.classes.size()),
      m_path(std::move(path)),
      m_held(held),
      m_identity(identity),
      m_pageChecked(m_front.pages.size(), 0) {
    Window& first = m_windows[0];
    first.first = std::move(firstBytes);
    first.bytes = first.first.data();
    first.size = first.first.size();
    first.lastUse = ++m_uses;
}

bool PwDbPlwLazyRecords::readFromDisk(uint64_t offset, size_t count, char* into) {
    File file = m_held;
    if (file.openStatus() != Plotwright::StatusOk) {
        file = File::openFile(m_path.c_str(), FileIO::kWideChars, FileIO::kOpenForRead,
                              FileIO::kShareRead, FileIO::kOpenExisting);
        if (file.openStatus() != Plotwright::StatusOk) return false;
    }
    File::Identity now;
    if (!file.identity(now) || now != m_identity) return false;
    return file.readAt(offset, into, count);
}

const char* PwDbPlwLazyRecords::fileBytes(uint64_t offset, size_t count) {
    ++m_uses;
    for (Window& window : m_windows) {
        if (window.size != 0 && offset >= window.offset && offset - window.offset <= window.size &&
            count <= window.size - (offset - window.offset)) {
            window.lastUse = m_uses;
            return window.bytes + (offset - window.offset);
        }
    }
    const auto size = static_cast<uint64_t>(m_identity.size);
    if (offset > size || count > size - offset) return nullptr;
    // A window that would run past the end ends there instead: the record index stands at the
    // end, and one window then takes most or all of it, with the last pages.
    const uint64_t length = std::min(size, std::max<uint64_t>(count, kWindowBytes));
    const uint64_t start = std::min(offset, size - length);
    auto read = std::make_unique_for_overwrite<char[]>(static_cast<size_t>(length));
    if (!readFromDisk(start, static_cast<size_t>(length), read.get())) return nullptr;
    // An empty window first, else the one used longest ago.
    Window& oldest =
        *std::min_element(m_windows.begin(), m_windows.end(), [](const Window& a, const Window& b) {
            return (a.size != 0) != (b.size != 0) ? a.size == 0 : a.lastUse < b.lastUse;
        });
    if (m_decoding > 0 && oldest.size != 0) m_retired.push_back(std::move(oldest));
    oldest = Window{};
    oldest.offset = start;
    oldest.read = std::move(read);
    oldest.bytes = oldest.read.get();
    oldest.size = static_cast<size_t>(length);
    oldest.lastUse = m_uses;
    m_checkedPage = SIZE_MAX;
    return oldest.bytes + (offset - start);
}

bool PwDbPlwLazyRecords::readPageRecords(size_t page, PwDbPlwPageRecords& records) {
    const PwDbPlwPage& described = m_front.pages[page];
    std::string_view run;
    if (m_inMemory) {
        run = std::string_view(m_whole).substr(described.runOffset, described.runLength);
    } else if (const char* at = fileBytes(described.runOffset, described.runLength)) {
        run = std::string_view(at, described.runLength);
    } else {
        return false;
    }
    return pwdbPlwReadPageRecords(m_front, page, run, records);
}

const PwDbPlwPageRecords* PwDbPlwLazyRecords::described(size_t page) {
    if (!m_described[page]) {
        auto records = std::make_unique<PwDbPlwPageRecords>();
        if (!readPageRecords(page, *records)) return nullptr;
        // The handles go to the database's records; the places and flags stay here.
        records->handles = {};
        m_described[page] = std::move(records);
    }
    return m_described[page].get();
}

bool PwDbPlwLazyRecords::pageRecords(size_t page, std::vector<PwDbHandle>& handles,
                                     std::vector<uint8_t>& erased) {
    PwDbPlwPageRecords records;
    if (m_described[page] == nullptr && !readPageRecords(page, records)) return false;
    if (m_described[page] == nullptr) {
        handles = std::move(records.handles);
        erased = records.erased;
        m_described[page] = std::make_unique<PwDbPlwPageRecords>(std::move(records));
        return true;
    }
    // Described before: read the handles again.
    if (!readPageRecords(page, records)) return false;
    handles = std::move(records.handles);
    erased = std::move(records.erased);
    return true;
}

bool PwDbPlwLazyRecords::pageBytes(size_t index, std::string_view& bytes) {
    const PwDbPlwPage& page = m_front.pages[index];
    const size_t withCheck = size_t{page.length} + 4;
    if (m_inMemory) {
        const std::string_view stored = std::string_view(m_whole).substr(page.offset, withCheck);
        if (!m_pageChecked[index]) {
            if (!pwdbPlwPageSound(stored)) return false;
            m_pageChecked[index] = 1;
        }
        bytes = stored.substr(0, page.length);
        return true;
    }
    const char* at = fileBytes(page.offset, withCheck);
    if (at == nullptr) return false;
    const std::string_view stored(at, withCheck);
    if (m_checkedPage != index) {
        if (!pwdbPlwPageSound(stored)) return false;
        m_checkedPage = index;
    }
    bytes = stored.substr(0, page.length);
    return true;
}

Plotwright::ErrorStatus PwDbPlwLazyRecords::stored(size_t page, size_t slot,
                                                   const std::vector<wstring>*& chain,
                                                   std::string_view& tags,
                                                   std::string_view& values) {
    const PwDbPlwPageRecords* records = described(page);
    std::string_view bytes;
    if (records == nullptr || !pageBytes(page, bytes)) return Plotwright::StatusBadFileFormat;
    const PwDbPlwRecordPlace& place = records->places[slot];
    const PwDbPlwShape& shape = m_front.shapes[place.shape];
    chain = &m_front.classes[shape.classIndex];
    tags = shape.tags;
    values = bytes.substr(place.offset, place.length);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwLazyRecords::storedPage(size_t page, std::string_view& pageAndCheck,
                                                       std::string_view& run,
                                                       const PwDbPlwPageRecords*& records) {
    // The handles are read again: the description kept for decoding holds none.
    if (!readPageRecords(page, m_copied)) return Plotwright::StatusBadFileFormat;
    const PwDbPlwPage& described = m_front.pages[page];
    if (m_inMemory) {
        run = std::string_view(m_whole).substr(described.runOffset, described.runLength);
    } else {
        // Kept apart, so that reading the page can't take the window it stands in.
        const char* at = fileBytes(described.runOffset, described.runLength);
        if (at == nullptr) return Plotwright::StatusBadFileFormat;
        m_run.assign(at, described.runLength);
        run = m_run;
    }
    std::string_view bytes;
    if (!pageBytes(page, bytes)) return Plotwright::StatusBadFileFormat;
    // The check follows the page's bytes wherever they are kept, and was verified with them.
    pageAndCheck = std::string_view(bytes.data(), bytes.size() + 4);
    records = &m_copied;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwLazyRecords::decode(PwDbDatabase& database, size_t page, size_t slot,
                                                   PwDbObject*& object) {
    object = nullptr;
    const std::vector<wstring>* chain = nullptr;
    std::string_view tags;
    std::string_view values;
    if (auto status = stored(page, slot, chain, tags, values)) return status;
    // The record is read where it stands: windows given up meanwhile wait for the end of
    // the outermost decode.
    ++m_decoding;
    struct Finish {
        PwDbPlwLazyRecords& records;
        ~Finish() {
            if (--records.m_decoding == 0) records.m_retired.clear();
        }
    } finish{*this};
    const uint32_t classIndex = m_front.shapes[m_described[page]->places[slot].shape].classIndex;
    PwDbChainClass& learnt = m_classes[classIndex];
    std::unique_ptr<PwDbObject> made(pwdbMakeObjectLearning(*chain, learnt));
    if (made == nullptr) return Plotwright::StatusBadFileFormat;
    if (learnt.proxies) {
        // A proxy keeps the items its class's bases don't read, which only a memory filer
        // can hand over.
        std::vector<PwDbMemoryFiler::Item> items;
        if (!pwdbPlwUnpackItems(tags, values, items)) return Plotwright::StatusBadFileFormat;
        PwDbMemoryFiler filer(&database);
        for (auto& item : items) filer.append(std::move(item));
        if (made->plwInFields(&filer) != Plotwright::StatusOk || filer.remaining() != 0) {
            return Plotwright::StatusBadFileFormat;
        }
    } else {
        PwDbPlwUnpackingFiler filer(&database, tags, values);
        if (made->plwInFields(&filer) != Plotwright::StatusOk || !filer.atEnd()) {
            return Plotwright::StatusBadFileFormat;
        }
    }
    object = made.release();
    return Plotwright::StatusOk;
}

bool PwDbPlwLazyRecords::classNames(uint32_t classIndex, const char16_t* className) {
    // Asked of record after record with one name: the answer is worked out once per class
    // of the file for the last name asked.
    if (m_namesAskedFor != className) {
        m_namesAnswer.assign(m_front.classes.size(), 0);
        for (size_t i = 0; i < m_front.classes.size(); ++i) {
            const auto& chain = m_front.classes[i];
            m_namesAnswer[i] = std::find(chain.begin(), chain.end(), className) != chain.end();
        }
        m_namesAskedFor = className;
    }
    return m_namesAnswer[classIndex] != 0;
}

bool PwDbPlwLazyRecords::namesClass(size_t page, size_t slot, const char16_t* className) {
    const PwDbPlwPageRecords* records = described(page);
    return records != nullptr &&
           classNames(m_front.shapes[records->places[slot].shape].classIndex, className);
}

void PwDbPlwLazyRecords::handlesNaming(const char16_t* className,
                                       std::vector<PwDbHandle>& handles) {
    handles.clear();
    // The index counts each class's records: pages are read only until all are found.
    uint64_t wanted = 0;
    for (uint32_t i = 0; i < m_front.classes.size(); ++i) {
        if (classNames(i, className)) wanted += m_front.classRecords[i];
    }
    PwDbPlwPageRecords records;
    for (size_t page = 0; page < m_front.pages.size() && handles.size() < wanted; ++page) {
        if (!readPageRecords(page, records)) continue;
        for (size_t i = 0; i < records.handles.size(); ++i) {
            if (classNames(m_front.shapes[records.places[i].shape].classIndex, className)) {
                handles.push_back(records.handles[i]);
            }
        }
    }
}

Plotwright::ErrorStatus PwDbPlwLazyRecords::keepEverything() {
    if (m_inMemory) return Plotwright::StatusOk;
    // The pages follow one another from the first to the end of the last.
    if (m_front.pages.empty()) {
        m_inMemory = true;
        return Plotwright::StatusOk;
    }
    // The pages and the record index behind them, in one read: their offsets now count from
    // the first page.
    const uint64_t first = m_front.pages.front().offset;
    const uint64_t end = m_front.runsOffset + m_front.runsLength;
    std::string pages(static_cast<size_t>(end - first), '\0');
    if (!readFromDisk(first, pages.size(), pages.data())) {
        return Plotwright::StatusBadFileFormat;
    }
    for (PwDbPlwPage& page : m_front.pages) {
        page.offset -= first;
        page.runOffset -= first;
    }
    m_front.runsOffset -= first;
    m_whole = std::move(pages);
    m_inMemory = true;
    m_held = File();
    for (Window& window : m_windows) {
        if (m_decoding > 0 && window.size != 0) m_retired.push_back(std::move(window));
        window = Window{};
    }
    m_checkedPage = SIZE_MAX;
    std::fill(m_pageChecked.begin(), m_pageChecked.end(), 0);
    return Plotwright::StatusOk;
}
