#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <random>
#include <vector>

#include "CostCountCommon/include/CBntMessageReader.h"
#include "tests/support/Processes.h"
#include "tests/support/TempFolder.h"

namespace {

// What the reader gives, 0 for a message.
std::string Next(CBntMessageReader& reader, int pipe, unsigned int milliseconds = 0xFFFFFFFF) {
    std::string message;
    const BntRead read = reader.Read(pipe, milliseconds, &message);
    return read == BntRead::MESSAGE ? message : std::to_string(static_cast<int>(read));
}
const std::string BROKEN = "1", END = "2", TIMED_OUT = "3", FAILURE = "4";

TEST(BntExchange, WhateverAPeerSendsTheNextMessageIsFound) {
    const std::string start = "<?xml version='1.0'?>";
    const std::string whole = start + "<a><b>1</b></a>";
    // What looks like an end and is none.
    const std::string tricky =
        start + "<!--> </a> --><a b='/>' c=\">'\"><d/><?e ></a>?><![CDATA[]></a>]]></a >";
    std::minstd_rand random;
    std::string noise(5000, ' ');
    std::generate(noise.begin(), noise.end(), [&] { return static_cast<char>(random() >> 8); });
    std::string largest = start + "<a>" + std::string(2 * CBntMessageReader::MAX_SIZE, 'x');
    const std::string endless = largest;
    largest.replace(CBntMessageReader::MAX_SIZE - 4, std::string::npos, "</a>");
    using Texts = std::vector<std::string>;
    std::vector<std::pair<std::string, Texts>> rows = {
        {tricky + "\r\n" + start + "<a/>" + whole, {tricky, start + "<a/>", whole}},
        {largest + whole, {largest, whole}},
        {whole + "x" + whole + "<", {whole, BROKEN, whole, BROKEN}},
        {"<b/>", {"<b/>"}},  // of the next peer
    };
    const std::string oneTooLarge = std::string(largest).insert(largest.find('x'), "x");
    for (const std::string& broken :
         {noise, endless, oneTooLarge, std::string("<<<"), std::string("</a>"),
          std::string("x<?xmlo?>"), std::string("<!DOCTYPE a>")}) {
        rows.emplace_back(broken + whole, Texts{BROKEN, whole});
    }
    for (size_t size = 1; size < whole.size(); ++size) {
        rows.emplace_back(whole.substr(0, size), Texts{BROKEN});
        rows.emplace_back(whole.substr(0, size) + tricky, Texts{BROKEN, tricky});
    }
    const TempFolder folder;
    const std::string name = folder.Path("pipe");
    ASSERT_EQ(0, mkfifo(name.c_str(), 0600));
    CBntMessageReader reader;
    for (auto& [bytes, expected] : rows) {
        const ChildProcess peer([&, sent = &bytes] {
            std::ofstream(name) << *sent << std::flush;
            return raise(SIGKILL);
        });
        const int pipe = open(name.c_str(), O_RDONLY);
        for (const std::string& message : expected) {
            EXPECT_EQ(message, Next(reader, pipe)) << bytes.substr(0, 100);
        }
        EXPECT_EQ(END, Next(reader, pipe));
        close(pipe);
    }
    const int pipe = open(name.c_str(), O_RDWR);
    for (size_t size = 1; size < tricky.size(); ++size) {
        const std::string first = whole + tricky.substr(0, size);
        const std::string rest = tricky.substr(size);
        EXPECT_EQ(static_cast<ssize_t>(first.size()), write(pipe, first.data(), first.size()));
        EXPECT_EQ(whole, Next(reader, pipe, 0));
        EXPECT_EQ(TIMED_OUT, Next(reader, pipe, 0));
        EXPECT_EQ(static_cast<ssize_t>(rest.size()), write(pipe, rest.data(), rest.size()));
        EXPECT_EQ(tricky, Next(reader, pipe, 0)) << size;
    }
    close(pipe);
    EXPECT_EQ(FAILURE, Next(reader, pipe));
}

}  // namespace
