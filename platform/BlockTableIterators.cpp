// Opening the block table for the iterators, and the iterators' steps.
#include <lodeqdb/platform/BlockTableIterators.h>

#include <climits>

namespace pwdb {

namespace {

using RecordPointer = PwDbSymbolTableRecordPointer<PwDbBlockTableRecord>;

// The deleter of the toolkit iterator: a null one (a failed newIterator) is never deleted.
void DeleteTableIterator(PwDbBlockTableIterator* iterator) {
    if (iterator != nullptr) delete iterator;
}

}  // namespace

ConstBlockTableIterator::iterator::iterator(const Data& data, PwDb::OpenMode mode, bool toEnd)
    : data_(&data), openMode_(mode) {
    PwDbBlockTableIterator* tableIterator = nullptr;
    status_ = data.table->newIterator(tableIterator, true, true);
    if (status_ == Plotwright::StatusOk)
        tableIterator->start(true, data.skipErased);
    else
        tableIterator = nullptr;
    tableIterator_ = boost::shared_ptr<PwDbBlockTableIterator>(tableIterator, &DeleteTableIterator);
    if (tableIterator == nullptr) return;
    // There is no short way to the end: the end iterator steps through the whole table.
    if (toEnd)
        advance(INT_MAX);
    else
        openRecord();
}

ConstBlockTableIterator::iterator::~iterator() {
    // The toolkit iterator goes before the record, as the members' order would not have it.
    tableIterator_.reset();
    record_.reset();
}

void ConstBlockTableIterator::iterator::openRecord() {
    record_.reset();
    PwDbObjectId id;
    status_ = tableIterator_->getRecordId(id);
    if (status_ != Plotwright::StatusOk) return;
    PwDbBlockTableRecord* opened = nullptr;
    status_ = pwdbOpenObject<PwDbBlockTableRecord>(opened, id, &PwDbBlockTableRecord::desc,
                                                   openMode_, data_->openErased);
    if (status_ == Plotwright::StatusOk && opened != nullptr)
        record_ = boost::shared_ptr<RecordPointer>(new RecordPointer(opened));
}

void ConstBlockTableIterator::iterator::increment() {
    record_.reset();
    tableIterator_->step(true, data_->skipErased);
    openRecord();
}

void ConstBlockTableIterator::iterator::advance(int64_t count) {
    if (tableIterator_->done()) return;
    for (; count >= 1; --count) {
        record_.reset();
        tableIterator_->step(true, data_->skipErased);
        openRecord();
        if (tableIterator_->done()) return;
    }
}

bool ConstBlockTableIterator::iterator::equal(const iterator& other) const {
    if (tableIterator_.get() == nullptr) return other.tableIterator_.get() == nullptr;
    if (other.tableIterator_.get() == nullptr) return false;
    const bool done = tableIterator_->done();
    const bool otherDone = other.tableIterator_->done();
    if (done && otherDone) return true;
    if (done != otherDone) return false;
    const bool failed = status_ != Plotwright::StatusOk;
    const bool otherFailed = other.status_ != Plotwright::StatusOk;
    if (failed && otherFailed) return true;
    if (failed != otherFailed) return false;
    return record_->object()->objectId() == other.record_->object()->objectId();
}

MutableBlockTableIterator::iterator::iterator(const Data& data, bool toEnd)
    : ConstBlockTableIterator::iterator(data, PwDb::OpenForWrite, toEnd) {}

MutableBlockTableIterator::iterator::~iterator() = default;

}  // namespace pwdb
