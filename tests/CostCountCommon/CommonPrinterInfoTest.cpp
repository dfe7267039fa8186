#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/support/PrinterRecords.h"

namespace {

TEST(PrinterInfo, KeepsEachFieldApart) {
    CCommonPrinterInfo printer = FilledPrinter("f");
    const std::vector<std::string> fields = PrinterFields(printer);
    EXPECT_EQ(36U, std::set<std::string>(fields.begin(), fields.end()).size());
    EXPECT_EQ(0, std::count(fields.begin(), fields.end(), ""));
    std::string name = "earlier";
    printer.SetPrinterName("x", 10);
    printer.SetLanguage("x", 10);
    printer.GetPrinterName(&name, 10);
    printer.GetPrinterName(nullptr, 0);
    EXPECT_EQ("", name);
    EXPECT_EQ(fields, PrinterFields(printer));
}

TEST(PrinterInfo, IsDueForSending) {
    const struct {
        time_t sent;  // seconds from now
        unsigned int interval;
        bool isDue;
    } rows[] = {{-30, 60, false}, {-60, 60, true}, {60, 600, true}, {0, 60, false}};
    EXPECT_TRUE(CCommonPrinterInfo().CheckSendTime(86400)) << "never sent";
    for (const auto& row : rows) {
        CCommonPrinterInfo printer;
        printer.SetSendTimeNow();
        printer.SetSendTime(printer.GetSendTime() + row.sent);
        EXPECT_EQ(row.isDue, printer.CheckSendTime(row.interval)) << row.sent;
    }
}

}  // namespace
