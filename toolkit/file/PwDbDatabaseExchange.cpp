// Reading and saving exchange files: each object reads itself from its item lines and writes
// itself as them, with no list of items in between; a class is looked up once per chain.
#include <algorithm>
#include <memory>
#include <new>
#include <stdexcept>
#include <unordered_map>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbProxyObject.h>
#include "toolkit/db/PwDbObjectMaking.h"
#include "toolkit/file/PwDbDatabaseFileState.h"
#include "toolkit/file/PwDbPlxCodec.h"
#include "toolkit/file/PwDbPlxText.h"

namespace FileIO = Morvane::Plotwright::PAL::FileIO;
using Plotwright::ErrorStatus;
using Plotwright::StatusOk;

namespace {

bool IsProxy(const PwDbObject& object) {
    return PwDbProxyObject::cast(&object) != nullptr || PwDbProxyEntity::cast(&object) != nullptr;
}

// One class chain of the text: its names, and what was learnt of its class.
struct ChainClass {
    std::vector<wstring> names;
    PwDbChainClass learnt;
};

// Reads one object's fields from its lines. A proxy keeps the items its class's bases don't
// read, which only a memory filer can hand over.
bool ReadFields(PwDbObject& object, bool proxy, PwDbDatabase& database, PwDbPlxItemLines& lines) {
    if (!proxy) {
        PwDbPlxReadingFiler filer(&database, lines);
        return object.plwInFields(&filer) == StatusOk;
    }
    PwDbMemoryFiler filer(&database);
    std::string_view line;
    while (lines.next(line)) {
        PwDbMemoryFiler::Item item;
        if (!pwdbPlxReadItem(line, item)) return false;
        filer.append(std::move(item));
    }
    return object.plwInFields(&filer) == StatusOk && filer.remaining() == 0;
}

}  // namespace

ErrorStatus PwDbDatabase::readExchange(std::string_view text, const char16_t* path) {
    PwDbPlxReader reader(text);
    PwDbDrawingImage head;
    if (!reader.readHead(head)) return Plotwright::StatusBadFileFormat;
    PwDbDatabase scratch{EmptyTag{}};
    // Keyed by the chain as the text spells it, so that a record's chain is looked up, not read.
    std::unordered_map<std::string_view, ChainClass> chains;
    for (uint64_t n = 0; n < reader.objectCount(); ++n) {
        PwDbPlxObjectLine line;
        if (!reader.readObjectLine(line)) return Plotwright::StatusBadFileFormat;
        const auto [entry, first] = chains.try_emplace(line.quotedChain);
        ChainClass& chain = entry->second;
        if (first && (!pwdbPlxReadChain(line.quotedChain, chain.names) ||
                      std::find(chain.names.begin(), chain.names.end(), u"PwDbObject") ==
                          chain.names.end())) {
            return Plotwright::StatusBadFileFormat;
        }
        std::unique_ptr<PwDbObject> made(pwdbMakeObjectLearning(chain.names, chain.learnt));
        PwDbPlxItemLines lines = reader.items(line);
        // Items left over mean the record and the class disagree on the layout.
        if (made == nullptr || !ReadFields(*made, chain.learnt.proxies, scratch, lines) ||
            !reader.readObjectEnd(lines) ||
            scratch.addPwDbObjectWithHandle(made.get(), line.handle) != StatusOk) {
            return Plotwright::StatusBadFileFormat;
        }
        PwDbObject* object = made.release();
        if (line.erased) object->erase();
        object->close();
    }
    if (!reader.readEnd()) return Plotwright::StatusBadFileFormat;
    if (auto status = takeLoaded(scratch, head)) return status;
    noteRead(head, path, head.version);
    return StatusOk;
}

ErrorStatus PwDbDatabase::encodeExchange(int32_t version, int precision, bool withPreview,
                                         std::string& text) const {
    if (auto status = decodeAllPending()) return status;
    PwDbDrawingImage head;
    captureHead(head, version);
    if (!withPreview) head.preview.reset();
    const std::vector<const PwDbObject*> objects = objectsByHandle();
    std::string out;
    // Most records take less: pages reserved and never written cost nothing.
    out.reserve(objects.size() * 256 + 4096);
    PwDbPlxWriter writer(out, precision);
    if (auto status = writer.writeHead(head, objects.size())) return status;
    // Each class's chain is spelt once; a proxy's is its own.
    std::unordered_map<const PwRxClass*, std::string> chains;
    std::string proxyChain;
    std::string lines;
    auto* database = const_cast<PwDbDatabase*>(this);
    for (const PwDbObject* object : objects) {
        lines.clear();
        PwDbPlxWritingFiler filer(database, lines, precision);
        if (auto status = object->plwOutFields(&filer)) return status;
        const std::string* chain = &proxyChain;
        if (IsProxy(*object)) {
            proxyChain = pwdbPlxQuotedChain(pwdbClassChainOf(*object));
        } else {
            auto [entry, first] = chains.try_emplace(object->runtimeClass());
            if (first) entry->second = pwdbPlxQuotedChain(pwdbClassChainOf(*object));
            chain = &entry->second;
        }
        writer.writeObject(object->handle(), object->isErased(), *chain, filer.count(), lines);
    }
    writer.writeEnd();
    text = std::move(out);
    return StatusOk;
}

ErrorStatus PwDbDatabase::plxIn(const char16_t* path, const char16_t* /*logFile*/) {
    if (path == nullptr) return Plotwright::StatusInvalidInput;
    std::string text;
    if (auto status = FileIO::ReadWholeFileIfItStartsWell(
            path, FileIO::kShareRead, kPwDbPlxStartBytes, pwdbPlxStartFits, text)) {
        return status;
    }
    if (!pwdbPlxIsValidUtf8(text)) return Plotwright::StatusBadFileFormat;
    try {
        if (auto status = readExchange(text, path)) return status;
    } catch (const std::bad_alloc&) {
        return Plotwright::StatusOutOfMemory;
    } catch (const std::length_error&) {
        return Plotwright::StatusOutOfMemory;
    }
    auto& state = pwdbExtension<PwDbDatabaseFileState>(*this);
    state.input.reset();
    state.wholeRecordsLayout = true;
    return StatusOk;
}

ErrorStatus PwDbDatabase::plxOut(const char16_t* path, int precision, PwDb::PwDbPlwVersion version,
                                 bool withPreview) {
    if (path == nullptr) return Plotwright::StatusInvalidInput;
    if (!pwdbIsWritableVersion(version)) return Plotwright::StatusNoSuchVersion;
    if (inputForbidsSaving(path)) return Plotwright::StatusFileInUse;
    std::string text;
    try {
        if (auto status = encodeExchange(version, precision, withPreview, text)) return status;
    } catch (const std::bad_alloc&) {
        return Plotwright::StatusOutOfMemory;
    } catch (const std::length_error&) {
        return Plotwright::StatusOutOfMemory;
    }
    return FileIO::ReplaceFileAtomically(path, text);
}
