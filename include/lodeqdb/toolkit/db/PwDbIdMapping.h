// PwDbIdMapping: the pairs of source object and clone that cloning between drawings leaves
// behind, for a caller that wants to find the copy of something it cloned.
//
//   PwDbIdMapping mapping;
//   target.wblockCloneObjects(ids, target.blockTableId(), mapping,
//                             PwDb::DuplicateRecordKeepTarget);
//   for (const PwDbIdPair& pair : mapping) { ... pair.key in the source, pair.value here ... }
//   PwDbIdPair found(blockInSource);
//   if (mapping.compute(found)) use(found.value);
#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include <lodeqdb/toolkit/db/PwDbObjectId.h>

class PwDbDatabase;

/// One source object and what stands for it in the target drawing.
struct PwDbIdPair {
    PwDbIdPair() = default;
    explicit PwDbIdPair(PwDbObjectId source) : key(source) {}
    PwDbIdPair(PwDbObjectId source, PwDbObjectId target, bool cloned, bool primary)
        : key(source), value(target), isCloned(cloned), isPrimary(primary) {}

    /// The object in the source drawing.
    PwDbObjectId key;
    /// Its clone, or the target's record that stands in for it.
    PwDbObjectId value;
    /// True for a new copy, false when a record the target had already stands in for it.
    bool isCloned = false;
    /// True for the objects named in the call, false for those cloned along with them.
    bool isPrimary = false;
};

class PwDbIdMapping {
  public:
    using const_iterator = std::vector<PwDbIdPair>::const_iterator;

    PwDbIdMapping();
    ~PwDbIdMapping();
    PwDbIdMapping(const PwDbIdMapping&) = default;
    PwDbIdMapping& operator=(const PwDbIdMapping&) = default;

    /// Adds the pair, or replaces the one with the same key.
    void assign(const PwDbIdPair& pair);
    /// Fills in `pair` for its key; false (the pair unchanged) when the mapping has none.
    bool compute(PwDbIdPair& pair) const;
    /// Forgets every pair and both drawings.
    void clear();

    size_t size() const { return m_pairs.size(); }
    bool empty() const { return m_pairs.empty(); }
    /// The pairs in the order they were made.
    const_iterator begin() const { return m_pairs.begin(); }
    const_iterator end() const { return m_pairs.end(); }

    /// The drawing cloned from and the one cloned into; null until a clone filled the mapping.
    PwDbDatabase* origDb() const { return m_source; }
    PwDbDatabase* destDb() const { return m_target; }
    void setDatabases(PwDbDatabase* source, PwDbDatabase* target);

  private:
    std::vector<PwDbIdPair> m_pairs;
    std::unordered_map<PwDbObjectId, size_t> m_index;
    PwDbDatabase* m_source = nullptr;
    PwDbDatabase* m_target = nullptr;
};
