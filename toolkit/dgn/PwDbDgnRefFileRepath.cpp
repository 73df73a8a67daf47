// A design file's attachments held for inspection by index.
#include <lodeqdb/toolkit/dgn/PwDbDgnRefFileRepath.h>

#include <lodeqdb/toolkit/dgn/PwDbDgnReferences.h>

PwDbDgnRefFileRepath::PwDbDgnRefFileRepath() = default;

PwDbDgnRefFileRepath::~PwDbDgnRefFileRepath() {
    detach();
}

Plotwright::ErrorStatus PwDbDgnRefFileRepath::setFile(const PwString& path,
                                                      const char16_t* /*password*/) {
    detach();
    PwArray<PwDbDgnRefFileData*> read;
    const Plotwright::ErrorStatus status = pwdbGetDgnFileReferences(path.kwszPtr(), nullptr, read);
    if (status != Plotwright::StatusOk) {
        pwdbDeleteDgnFileReferences(read);
        return status;
    }
    if (Plotwright::ErrorStatus copied = m_file.assign(path.kwszPtr(), path.length())) {
        pwdbDeleteDgnFileReferences(read);
        return copied;
    }
    m_references = std::move(read);
    return Plotwright::StatusOk;
}

void PwDbDgnRefFileRepath::detach() {
    pwdbDeleteDgnFileReferences(m_references);
    m_file = PwString();
}

const PwDbDgnRefFileData* PwDbDgnRefFileRepath::reference(size_t index) const {
    return index < m_references.length() ? m_references[index] : nullptr;
}

Plotwright::ErrorStatus PwDbDgnRefFileRepath::findReference(uint64_t refId, size_t& index) const {
    for (size_t i = 0; i < m_references.length(); ++i) {
        if (m_references[i]->refId == refId) {
            index = i;
            return Plotwright::StatusOk;
        }
    }
    return Plotwright::StatusKeyNotFound;
}
