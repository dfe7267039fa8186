// Remembers the numbers that were seen last.
#pragma once

#include <cstdint>
#include <unordered_set>
#include <utility>
#include <vector>

namespace tallyquist {

// Takes memory that does not grow with the count of the numbers.
class RecentNumbers {
public:
    static constexpr size_t LIMIT = 4096;

    // False when the number is among the last LIMIT different ones.
    bool Add(uint64_t number) {
        if (m_known.contains(number)) {
            return false;
        }
        if (m_ring.size() < LIMIT) {
            m_ring.push_back(number);
            m_known.insert(number);
            return true;
        }
        // The node of the oldest number is used again, for this runs once per record.
        auto node = m_known.extract(m_ring[m_oldest]);
        node.value() = number;
        m_known.insert(std::move(node));
        m_ring[m_oldest] = number;
        m_oldest = (m_oldest + 1) % LIMIT;
        return true;
    }

private:
    std::vector<uint64_t> m_ring;
    size_t m_oldest = 0;
    std::unordered_set<uint64_t> m_known;
};

}  // namespace tallyquist
