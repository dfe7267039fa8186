// An exporter of the plug-in as a host loads it, and a file for it.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/ExporterModule.h"
#include "tests/support/TempFolder.h"

class CsvFixture : public testing::Test {
protected:
    CsvFixture() { m_exporter.create(&m_handle); }
    ~CsvFixture() override { m_exporter.dispose(m_handle); }

    int Open() { return m_exporter.open(m_handle, m_path.c_str()); }

    int WriteRow(std::vector<const char*> values, std::vector<const char*> types = {}) {
        types.resize(values.size());
        return m_exporter.writeValues(m_handle, static_cast<int>(values.size()), values.data(),
                                      nullptr, types.data());
    }

    const TempFolder m_folder;
    const std::string m_path = m_folder.Path("out.csv");
    const ExporterModule m_exporter;
    void* m_handle = nullptr;
};
