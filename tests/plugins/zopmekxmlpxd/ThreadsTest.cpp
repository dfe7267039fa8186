// Documents of different threads do not meet.
#include <thread>

#include "tests/plugins/zopmekxmlpxd/XmlFixture.h"
#include "tests/support/TempFolder.h"

namespace {

TEST(ParserThreads, EachItsOwnDocuments) {
    const TempFolder folder;
    const auto work = [&folder](const std::string& name) {
        XmlParser parser;
        const std::string path = folder.Path(name);
        for (int turn = 0; turn < 50; ++turn) {
            const Handle document = parser.Document(parser.entries.CreateNewDoc("r", &parser.err));
            const Handle root = parser.Root(document);
            for (int count = 0; count < 20; ++count) {
                const Handle element = parser.Node(parser.entries.CreateElementWithValue(
                    root.get(), "v", name.c_str(), nullptr, 0, &parser.err));
                parser.entries.SetAttribute(element.get(), name.c_str(), "");
                parser.entries.SetAttribute(element.get(), "second", "");
            }
            ASSERT_EQ(0U, parser.entries.Save(document.get(), path.c_str()));
            const Handle read =
                parser.Document(parser.entries.CreateDocByFile(path.c_str(), &parser.err));
            const std::string all = "v[.='" + name + "' and @" + name + "]";
            ASSERT_EQ(20U, parser.entries.SelectNodesInElement(parser.Root(read).get(), all.c_str(),
                                                               nullptr, 0, nullptr, &parser.err));
        }
    };
    std::thread other(work, "one");
    work("two");
    other.join();
}

}  // namespace
