// Adds up the pages of jobs. External interface: JobSummer.
#include "host/input/JobSummer.h"

#include <limits>
#include <utility>

namespace tallyquist {

bool JobSummer::Add(const std::string& key, Row row, size_t pagesColumn, int64_t pages,
                    std::deque<Row>& finished) {
    const auto known = m_byKey.find(key);
    if (known != m_byKey.end()) {
        Job& job = *known->second;
        if (pages > std::numeric_limits<int64_t>::max() - job.pages) {
            return false;
        }
        job.pages += pages;
        job.row = std::move(row);
        m_jobs.splice(m_jobs.end(), m_jobs, known->second);
        return true;
    }
    if (m_jobs.size() >= m_limit) {
        m_byKey.erase(m_jobs.front().key);
        Finish(m_jobs.front(), finished);
        m_jobs.pop_front();
    }
    m_jobs.push_back(
        {.key = key, .row = std::move(row), .pagesColumn = pagesColumn, .pages = pages});
    m_byKey[key] = std::prev(m_jobs.end());
    return true;
}

void JobSummer::Flush(std::deque<Row>& finished) {
    for (Job& job : m_jobs) {
        Finish(job, finished);
    }
    m_jobs.clear();
    m_byKey.clear();
}

void JobSummer::Finish(Job& job, std::deque<Row>& finished) {
    job.row[job.pagesColumn] = std::to_string(job.pages);
    finished.push_back(std::move(job.row));
}

}  // namespace tallyquist
