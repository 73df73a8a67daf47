// A block table as a container: begin() and end() give iterators that open each block table
// record in turn, for read (ConstBlockTableIterator) or for write (MutableBlockTableIterator).
//
//   pwdb::ConstBlockTableIterator blocks(*table, true, false);
//   for (auto it = blocks.begin(); it != blocks.end(); ++it) {
//       if (it.errorStatus() != Plotwright::StatusOk) continue;   // a record that didn't open
//       use(it->pathName());
//   }
//
// The rules of these iterators, which callers rely on:
//   - A container makes its begin and end iterators at their first use and gives the same
//     objects ever after: it is good for one walk.
//   - The first end() really walks the whole table, opening and closing every record.
//   - Copies of an iterator share its toolkit position and its open record; the record at the
//     current position stays open until the iterator moves.
//   - A record that fails to open leaves the iterator on it with a non-zero errorStatus() and
//     no record; ++ goes on to the next. Dereferencing there is not allowed.
//   - Iterators compare equal when both have no toolkit iterator, when both are done, when
//     both failed on a record, or when their open records are the same object.
//   - Only forward steps: decrement does nothing.
// A table and its container must outlive every iterator taken from them.
#pragma once

#include <boost/iterator/iterator_facade.hpp>
#include <boost/shared_ptr.hpp>
#include <cstdint>

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

namespace pwdb {

namespace detail {

/// What both containers are: a table, the walk's settings, and the begin and end iterators
/// made at their first use.
template <class Iterator>
class BlockTableRange {
  public:
    BlockTableRange(const PwDbBlockTable& table, bool skipErased, bool openErased) {
        data_.table = &table;
        data_.skipErased = skipErased;
        data_.openErased = openErased;
    }

    Iterator& begin() const {
        if (!begin_) begin_.reset(Iterator::make(data_, false));
        return *begin_;
    }
    const Iterator& end() const {
        if (!end_) end_.reset(Iterator::make(data_, true));
        return *end_;
    }

  private:
    mutable boost::shared_ptr<Iterator> begin_;
    mutable boost::shared_ptr<Iterator> end_;
    typename Iterator::Data data_;
};

}  // namespace detail

class ConstBlockTableIterator {
  public:
    class iterator
        : public boost::iterators::iterator_facade<iterator, const PwDbBlockTableRecord,
                                                   boost::iterators::incrementable_traversal_tag,
                                                   const PwDbBlockTableRecord&, int64_t> {
      public:
        /// What all iterators of one container share.
        struct Data {
            const PwDbBlockTable* table = nullptr;
            bool skipErased = true;
            bool openErased = false;
        };

        iterator(const iterator& other) = default;
        iterator(iterator&& other) noexcept = default;
        iterator& operator=(const iterator& other) = default;
        iterator& operator=(iterator&& other) noexcept = default;
        ~iterator();

        /// The outcome of the last toolkit step.
        Plotwright::ErrorStatus errorStatus() const { return status_; }

      protected:
        iterator(const Data& data, PwDb::OpenMode mode, bool toEnd);
        PwDbBlockTableRecord& record() const { return *record_->object(); }

      private:
        friend class boost::iterators::iterator_core_access;
        friend class detail::BlockTableRange<iterator>;
        static iterator* make(const Data& data, bool toEnd) {
            return new iterator(data, PwDb::OpenForRead, toEnd);
        }

        void increment();
        bool equal(const iterator& other) const;
        const PwDbBlockTableRecord& dereference() const { return record(); }
        void decrement() {}
        void advance(int64_t count);
        void openRecord();

        boost::shared_ptr<PwDbSymbolTableRecordPointer<PwDbBlockTableRecord>> record_;
        boost::shared_ptr<PwDbBlockTableIterator> tableIterator_;
        const Data* data_ = nullptr;
        PwDb::OpenMode openMode_ = PwDb::OpenForRead;
        Plotwright::ErrorStatus status_ = Plotwright::StatusOk;
    };

    /// Makes no toolkit call.
    ConstBlockTableIterator(const PwDbBlockTable& table, bool skipErased, bool openErased)
        : range_(table, skipErased, openErased) {}

    iterator& begin() const { return range_.begin(); }
    const iterator& end() const { return range_.end(); }

  private:
    detail::BlockTableRange<iterator> range_;
};

class MutableBlockTableIterator {
  public:
    class iterator : public ConstBlockTableIterator::iterator {
      public:
        iterator(const iterator& other) = default;
        iterator(iterator&& other) noexcept = default;
        iterator& operator=(const iterator& other) = default;
        iterator& operator=(iterator&& other) noexcept = default;
        ~iterator();

        /// The record, open for write.
        PwDbBlockTableRecord& operator*() const { return record(); }

      private:
        friend class detail::BlockTableRange<iterator>;
        iterator(const Data& data, bool toEnd);
        static iterator* make(const Data& data, bool toEnd) { return new iterator(data, toEnd); }
    };

    MutableBlockTableIterator(const PwDbBlockTable& table, bool skipErased, bool openErased)
        : range_(table, skipErased, openErased) {}

    iterator& begin() const { return range_.begin(); }
    const iterator& end() const { return range_.end(); }

  private:
    detail::BlockTableRange<iterator> range_;
};

}  // namespace pwdb
