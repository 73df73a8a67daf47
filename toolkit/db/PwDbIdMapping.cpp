// The pairs of source and clone, kept in order and found by source.
#include <lodeqdb/toolkit/db/PwDbIdMapping.h>

PwDbIdMapping::PwDbIdMapping() = default;

PwDbIdMapping::~PwDbIdMapping() = default;

void PwDbIdMapping::assign(const PwDbIdPair& pair) {
    const auto [found, added] = m_index.emplace(pair.key, m_pairs.size());
    if (added) {
        m_pairs.push_back(pair);
    } else {
        m_pairs[found->second] = pair;
    }
}

bool PwDbIdMapping::compute(PwDbIdPair& pair) const {
    const auto found = m_index.find(pair.key);
    if (found == m_index.end()) return false;
    pair = m_pairs[found->second];
    return true;
}

void PwDbIdMapping::clear() {
    m_pairs.clear();
    m_index.clear();
    m_source = nullptr;
    m_target = nullptr;
}

void PwDbIdMapping::setDatabases(PwDbDatabase* source, PwDbDatabase* target) {
    m_source = source;
    m_target = target;
}
