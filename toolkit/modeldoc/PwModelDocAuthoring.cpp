// Adding model document views and product drawing files to a drawing.
#include <lodeqdb/toolkit/modeldoc/PwModelDocAuthoring.h>

#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/modeldoc/PwModelDocObjects.h>

namespace PwDbAuthoring {

namespace {

// The id under `key` in the root dictionary; StatusKeyNotFound when there is none.
Plotwright::ErrorStatus RootEntry(PwDbDatabase& drawing, const char16_t* key, PwDbObjectId& id) {
    PwDbObjectPointer<PwDbDictionary> root(drawing.namedObjectsDictionaryId(), PwDb::OpenForRead);
    if (root.openStatus() != Plotwright::StatusOk) return root.openStatus();
    return root->getAt(key, id);
}

Plotwright::ErrorStatus ViewsDictionary(PwDbDatabase& drawing, PwDbObjectId& id) {
    const Plotwright::ErrorStatus found = RootEntry(drawing, PwModelDocKeys::kViews, id);
    if (found != Plotwright::StatusKeyNotFound) return found;
    return addDictionaryEntry(drawing, drawing.namedObjectsDictionaryId(), PwModelDocKeys::kViews,
                              new PwDbDictionary, &id);
}

}  // namespace

Plotwright::ErrorStatus addModelDocView(PwDbDatabase& drawing, const wstring& name,
                                        const wstring& product, const wstring& documentPath,
                                        PwDbObjectId* id) {
    if (name.empty()) return Plotwright::StatusInvalidKey;
    auto* view = new PwDbModelDocView;
    Plotwright::ErrorStatus status = view->setProduct(product.c_str());
    if (status == Plotwright::StatusOk) status = view->setDocumentPath(documentPath.c_str());
    if (status == Plotwright::StatusOk) status = view->setViewName(name.c_str());
    PwDbObjectId views;
    if (status == Plotwright::StatusOk) status = ViewsDictionary(drawing, views);
    if (status != Plotwright::StatusOk) {
        delete view;
        return status;
    }
    return addDictionaryEntry(drawing, views, name, view, id);
}

Plotwright::ErrorStatus embedModelDocFile(PwDbDatabase& drawing, const wstring& fileName,
                                          std::string bytes, PwDbObjectId* id) {
    if (!PwDbModelDocPackage::isPlainFileName(fileName) ||
        bytes.size() > PwDbModelDocPackage::kMaxBytes)
        return Plotwright::StatusInvalidInput;
    PwDbObjectId existing;
    const Plotwright::ErrorStatus found = RootEntry(drawing, PwModelDocKeys::kPackage, existing);
    if (found == Plotwright::StatusOk) {
        PwDbObjectPointer<PwDbModelDocPackage> package(existing, PwDb::OpenForWrite);
        if (package.openStatus() != Plotwright::StatusOk) return package.openStatus();
        if (auto status = package->setFileName(fileName.c_str())) return status;
        if (auto status = package->setBytes(std::move(bytes))) return status;
        if (id != nullptr) *id = existing;
        return Plotwright::StatusOk;
    }
    if (found != Plotwright::StatusKeyNotFound) return found;
    auto* package = new PwDbModelDocPackage;
    Plotwright::ErrorStatus status = package->setFileName(fileName.c_str());
    if (status == Plotwright::StatusOk) status = package->setBytes(std::move(bytes));
    if (status != Plotwright::StatusOk) {
        delete package;
        return status;
    }
    return addDictionaryEntry(drawing, drawing.namedObjectsDictionaryId(), PwModelDocKeys::kPackage,
                              package, id);
}

}  // namespace PwDbAuthoring
