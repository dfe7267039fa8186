// Adds up the pages of jobs that the log has one line per page for.
#pragma once

#include <cstdint>
#include <deque>
#include <list>
#include <string>
#include <unordered_map>

#include "host/input/RowSource.h"

namespace tallyquist {

// Jobs of several printers print at the same time, so their lines interleave, and nothing marks a
// job's last page. A job stays open until `limit` others were seen after it or all are flushed.
class JobSummer {
public:
    explicit JobSummer(size_t limit = 1024) : m_limit(limit) {}

    // Adds one page line. `key` is the same for all lines of a job. The values of the row, other
    // than its pages, replace those of the job's lines before. False when the sum does not fit 64
    // bits; the line is then left out. A job that gives way goes to `finished`.
    bool Add(const std::string& key, Row row, size_t pagesColumn, int64_t pages,
             std::deque<Row>& finished);

    // The job whose last line is the oldest comes first.
    void Flush(std::deque<Row>& finished);

private:
    struct Job {
        std::string key;
        Row row;
        size_t pagesColumn;
        int64_t pages;
    };

    static void Finish(Job& job, std::deque<Row>& finished);

    size_t m_limit;
    std::list<Job> m_jobs;  // the least recently seen first
    std::unordered_map<std::string, std::list<Job>::iterator> m_byKey;
};

}  // namespace tallyquist
