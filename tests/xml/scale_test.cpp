// Documents of hostile size and depth. Each runs on a small stack, so that a recursion would end it; and a
// step that is not linear would take hours.

#include <functional>

#include <pthread.h>

#include "tests/xml/xml_test.h"

namespace {

constexpr int MANY = 1000000;

#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t SMALL_STACK = 512 * 1024;
#else
constexpr std::size_t SMALL_STACK = 128 * 1024;
#endif

void run_on_small_stack(std::function<void()> work) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, SMALL_STACK), 0);
    pthread_t thread;
    auto start = [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, start, &work), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

std::string repeated(const std::string& piece, int count) {
    std::string text;
    text.reserve(piece.size() * static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        text += piece;
    return text;
}

TEST_F(XmlTest, AMillionNestedElementsAreReadWrittenAndReleased) {
    run_on_small_stack([] {
        const std::string text = repeated("<a>", MANY) + "x" + repeated("</a>", MANY);
        const XmlNode top = XmlNode::parse_string(text.c_str());
        ASSERT_FALSE(top.is_empty());
        EXPECT_EQ(top.create_string(-1), text);
        XmlNode deepest = top;
        for (int depth = 1; depth < MANY; ++depth)
            deepest = deepest.get_child(0);
        EXPECT_STREQ(deepest.get_text(0), "x");
    });
}

// The size of the text is quadratic in the depth: one tab per level.
TEST_F(XmlTest, FiveThousandNestedElementsAreWrittenWithLayout) {
    run_on_small_stack([] {
        constexpr int DEPTH = 5000;
        const std::string text = repeated("<a>", DEPTH) + "<b/>" + repeated("</a>", DEPTH);
        const XmlNode top = XmlNode::parse_string(text.c_str());
        const std::string written = top.create_string(0);
        EXPECT_EQ(written.size(), std::size_t{DEPTH} * (DEPTH - 1) + DEPTH * 9u + DEPTH + 5u);
        EXPECT_EQ(XmlNode::parse_string(written.c_str()).create_string(-1), top.create_string(-1));
    });
}

TEST_F(XmlTest, AMillionElementsLeftOpenAreTheWarning) {
    run_on_small_stack([] { EXPECT_EQ(fault(repeated("<a>", MANY).c_str()), "1 at 1:3000001"); });
}

TEST_F(XmlTest, AMillionElementsAreClosedByOneEndTag) {
    run_on_small_stack([] {
        XmlResults results;
        const XmlNode top =
            XmlNode::parse_string(("<top>" + repeated("<a>", MANY) + "</top>").c_str(), nullptr, &results);
        EXPECT_EQ(outcome(results), "1 at 1:3000006");
        EXPECT_STREQ(top.get_name(), "top");
    });
}

TEST_F(XmlTest, AMillionInstructionsNestWithoutHarm) {
    run_on_small_stack([] {
        const XmlNode top = XmlNode::parse_string(("<a>" + repeated("<?p?>", MANY) + "</a>").c_str());
        EXPECT_EQ(top.create_string(-1), "<a>" + repeated("<?p?>", MANY) + "</a>");
    });
}

TEST_F(XmlTest, ATextRunOf64MegabytesIsRead) {
    run_on_small_stack([] {
        const std::string run(64 << 20, 'x');
        const XmlNode top = XmlNode::parse_string(("<a>" + run + "</a>").c_str());
        EXPECT_EQ(top.get_text(0), run);
    });
}

TEST_F(XmlTest, ACommentOf64MegabytesIsRead) {
    const std::string comment = repeated(" -", 32 << 20);
    const XmlNode top = XmlNode::parse_string(("<a><!--" + comment + " --></a>").c_str());
    EXPECT_EQ(top.get_clear(0).value, comment + " ");
}

TEST_F(XmlTest, AMillionReferencesAreDecoded) {
    const XmlNode top = XmlNode::parse_string(("<a>" + repeated("&amp;\r\n", MANY) + "x</a>").c_str());
    EXPECT_EQ(top.get_text(0), repeated("&\n", MANY) + "x");
}

TEST_F(XmlTest, TenMillionBytesOfAttributesAreRead) {
    std::string text = "<a";
    int count = 0;
    for (; text.size() < 10000000; ++count)
        text += " n" + std::to_string(count) + "='v'";
    const XmlNode top = XmlNode::parse_string((text + "/>").c_str());
    EXPECT_EQ(top.count_attributes(), count);
    EXPECT_EQ(top.get_attribute_name(count - 1), "n" + std::to_string(count - 1));
    EXPECT_EQ(fault((text + " n0=''/>").c_str()), "8 at 1:" + std::to_string(text.size() + 2));
}

TEST_F(XmlTest, AMillionRunsAreJoinedAroundTheirComments) {
    const XmlNode top = XmlNode::parse_string(("<a>" + repeated("x<!--c-->", MANY) + "</a>").c_str());
    EXPECT_EQ(top.count_texts(), 1);
    EXPECT_EQ(top.get_text(0), std::string(MANY, 'x'));
    EXPECT_EQ(top.count_clears(), 1);
}

TEST_F(XmlTest, AMillionBrokenEndsOfASectionAreReadOnce) {
    EXPECT_EQ(fault(("<a><![CDATA[" + repeated("]] ", MANY)).c_str()), "7 at 1:4");
    EXPECT_EQ(fault(("<a><PRE>" + repeated("</PRE ", MANY)).c_str()), "7 at 1:4");
    EXPECT_EQ(fault(("<a><?p " + repeated("? > ", MANY)).c_str()), "8 at 1:4");
}

TEST_F(XmlTest, AMillionWordsOfAnInstructionAreRead) {
    // The first quote closes at the second: that value takes one word more, and what is left of it is a word.
    const std::string quotes = "<?p " + repeated("w='x\" ", MANY) + "?><a/>";
    EXPECT_EQ(XmlNode::parse_string(quotes.c_str()).count_attributes(), MANY);
    EXPECT_EQ(XmlNode::parse_string(("<?p " + repeated("w ", MANY) + "?><a/>").c_str()).count_attributes(),
              MANY);
}

TEST_F(XmlTest, AMillionAdditionsOfEachKindAreLinear) {
    XmlNode top = XmlNode::create_top_node("a");
    for (int i = 0; i < MANY; ++i) {
        top.add_attribute("b", "1");
        top.add_text("x");
        top.add_child("c");
    }
    EXPECT_EQ(top.count_attributes(), MANY);
    EXPECT_EQ(top.count_contents(), 2 * MANY);
    EXPECT_STREQ(top.get_child(MANY - 1).get_name(), "c");
    int index = 0;
    int found = 0;
    while (!top.get_child("C", &index).is_empty())
        ++found;
    EXPECT_EQ(found, MANY);
}

TEST_F(XmlTest, ATreeBuiltAMillionDeepIsWrittenAndReleased) {
    run_on_small_stack([] {
        const XmlNode top = XmlNode::create_top_node("a");
        XmlNode deepest = top;
        for (int i = 0; i < MANY; ++i)
            deepest = deepest.add_child("a");
        EXPECT_EQ(top.create_string(nullptr, -1), (MANY * 7u) + 4u);
    });
}

} // namespace
