#include "keelworks/text_parser.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../platform/temp_roots.h"
#include "../support/rows.h"

namespace
{

/// A parser over a text in memory.
struct Source {
    explicit Source(const std::string& text) { file.open_memory("a.ini", {text.begin(), text.end()}); }

    /// What the next string read gives; "FAIL" when it fails.
    std::string Text(std::size_t size = 260)
    {
        std::vector<char> buffer(size + 1, 'Z');
        const bool read = parser.ReadFileName(buffer.data(), size);
        EXPECT_EQ(buffer[size], 'Z');
        return read ? std::string(buffer.data()) : "FAIL";
    }

    std::string Rest() const { return {file.data() + file.get_cur_pos(), file.data() + file.get_size()}; }

    ds_file_buffered file;
    CTextParser parser{&file, false};
};

using Texts = std::vector<std::string>;

TEST(TextParser, StringTokens)
{
    // The tokens up to and with the first failure.
    const Rows<std::string, Texts> rows = {
        {"a \"b c\"\"\"d", {"a", "b c", "", "d", "FAIL"}},
        {"a,\"b\" , c", {"a", "b", "c", "FAIL"}},
        {"a,,b", {"a", "FAIL"}},
        {"x=y", {"x", "FAIL"}},
        {"a;note\nb//note\nc // \"note\"\rd;", {"a", "b//note", "c", "d", "FAIL"}},
        {"\"; // not a note\" \"a\\\" b", {"; // not a note", "a\\", "b", "FAIL"}},
        {"\"open\nb", {"FAIL"}},
        {"pic\\a/b.tga\t\x1a\f'q'", {"pic\\a/b.tga", "'q'", "FAIL"}},
        {"\xef\xbb\xbf a \xef\xbb\xbf", {"a", "\xef\xbb\xbf", "FAIL"}},
        {"\xe4\xa0\xff \xa0", {"\xe4\xa0\xff", "\xa0", "FAIL"}},
        {std::string("a\0b \"c\0d\"", 9), {"a", "b", "FAIL"}},
        {"/ a", {"/", "a", "FAIL"}},
    };
    for (const auto& [text, expected] : rows) {
        Source source(text);
        Texts tokens;
        do {
            tokens.push_back(source.Text());
        } while (tokens.back() != "FAIL" && tokens.size() < 20);
        EXPECT_EQ(tokens, expected) << text;
    }
    Source source("abcd \"abcd\" \"\"");
    for (const bool quoted : {false, true}) {
        EXPECT_EQ(source.Text(4), "FAIL") << "no room for its zero: it stays";
        EXPECT_FALSE(source.parser.ReadFileName(nullptr, 5));
        EXPECT_EQ(source.Text(5), "abcd") << quoted;
    }
    EXPECT_EQ(source.Text(0), "FAIL");
    EXPECT_EQ(source.Text(1), "");
}

TEST(TextParser, Integers)
{
    // The value with `,` or `}`, and what is left.
    const Rows<std::string, bool, std::string, std::string> rows = {
        {"12,3", false, "12,", "3"},
        {" -7 // note\n }x", false, "-7}", "x"},
        {"+5;a\n,", false, "5,", ""},
        {"2147483647,", false, "2147483647,", ""},
        {"-2147483648,", false, "-2147483648,", ""},
        {"000000000000000000007,", false, "7,", ""},
        {"0x1F,", false, "31,", ""},
        {"0XFFFFFFFF}", false, "-1}", ""},
        {"ff}", true, "255}", ""},
        {"0x10,", true, "16,", ""},
    };
    int value = 4711;
    bool ended = true;
    for (const auto& [text, hex, result, rest] : rows) {
        Source source(text);
        EXPECT_TRUE(source.parser.ReadIntElem(',', '}', value, ended, hex)) << text;
        EXPECT_EQ(std::to_string(value) + (ended ? "}" : ","), result) << text;
        EXPECT_EQ(source.Rest(), rest) << text;
    }
    for (const char* text : {"2147483648,", "-99999999999999999999999,", "0x100000000,", "0x,", "12a,",
                             "1.5,", "12", "12 13,", "+-1,", "\"1\",", ","}) {
        Source source(text);
        value = 4711;
        EXPECT_FALSE(source.parser.ReadIntElem(',', '}', value, ended)) << text;
        EXPECT_EQ(value, 4711) << "the caller's variable stays: " << text;
        EXPECT_EQ(source.Rest(), text);
    }
    Source source("1; 2 } 3,");
    EXPECT_TRUE(source.parser.ReadIntElem(';', value)) << "a separator wins over a comment";
    EXPECT_FALSE(source.parser.ReadIntElem(',', value)) << "without an end character";
    EXPECT_EQ(value, 1);
}

TEST(TextParser, Floats)
{
    float value = 0;
    bool ended = false;
    for (const auto& [text, expected] :
         {std::pair("1.5,", 1.5F), {"-.25 }", -0.25F}, {"+2e2,", 200.0F}, {"3.,", 3.0F}, {"1,5.0,", 1.0F}}) {
        EXPECT_TRUE(Source(text).parser.ReadFloatElem(',', '}', value, ended)) << text;
        EXPECT_EQ(value, expected) << text;
        EXPECT_EQ(ended, std::string(text).ends_with('}')) << text;
    }
    for (const char* text : {"1e99,", "inf,", "-nan,", "+-1,", ".,", "1.5", "1.5f,", "0x10,"})
        EXPECT_FALSE(Source(text).parser.ReadFloatElem(',', '}', value, ended)) << text;
    EXPECT_EQ(value, 1.0F);
}

TEST(TextParser, SeekingPassesQuotedTextsCommentsAndLongerNames)
{
    Source source("MainDlgX \"MainDlg\" ; MainDlg\n// MainDlg\n\"open MainDlg\n\"\"\" MainDlg\nmAINdLG{1}");
    EXPECT_TRUE(source.parser.SeekToToken("MainDlg"));
    EXPECT_EQ(source.Rest(), "{1}");
    EXPECT_EQ(source.parser.GetLine(), 5);
    EXPECT_FALSE(source.parser.SeekToToken("MainDlg"));
    EXPECT_EQ(source.Rest(), "");
    EXPECT_EQ(source.Text(), "FAIL") << "no way back";

    Source names("title \"texture\"; x\ntexture = \"a b.tga\" texture c.tga texture, d.tga height=");
    char buffer[260];
    for (const char* value : {"a b.tga", "c.tga", "d.tga"}) {
        ASSERT_TRUE(names.parser.ReadNamedVal("TEXTURE", buffer, sizeof buffer, false));
        EXPECT_STREQ(buffer, value);
    }
    EXPECT_FALSE(names.parser.ReadNamedVal("height", buffer, sizeof buffer, true));
    EXPECT_FALSE(names.parser.ReadNamedVal("height", buffer, sizeof buffer, false));
    EXPECT_TRUE(names.parser.ReadNamedVal("title", buffer, sizeof buffer, true));
    EXPECT_STREQ(buffer, "texture");
}

TEST(TextParser, SkippingToACharacter)
{
    const Rows<std::string, char, std::string> rows = {{"a ; {\n// {\n\"{\" b{c", '{', "c"},
                                                       {"\"a\" , 1", ',', " 1"},
                                                       {"x \"y", '"', "y"},
                                                       {"; \"\n\"z", '"', "z"},
                                                       {"\"open {\n{x", '{', "x"},
                                                       {"ab;c", ';', "c"},
                                                       {"a//b,c", ',', "c"},
                                                       {"a ,", '}', "FAIL"}};
    for (const auto& [text, c, rest] : rows) {
        Source source(text);
        EXPECT_EQ(source.parser.SkipTillChar(c) ? source.Rest() : "FAIL", rest) << text;
    }
    Source source(" ; note\n ,}");
    EXPECT_EQ(source.parser.SkipSpace(false), ',');
    EXPECT_EQ(source.parser.SkipSpace(true), ',');
    EXPECT_EQ(source.parser.SkipSpace(true), '}');
    EXPECT_EQ(source.parser.SkipSpace(true), '\0');
}

TEST(TextParser, ErrorsNameLineTokenAndWhatWasExpected)
{
    // Of an integer read up to , or }.
    const Rows<std::string, std::string> rows = {
        {"\n\r\n\r abc,", "a.ini(4): expected a number, found \"abc\""},
        {"12\r\n\r\nx", "a.ini(3): expected \",\" or \"}\" behind the number, found \"x\""},
        {"\n7 ;\n", "a.ini(3): expected \",\" or \"}\" behind the number, found the end of the file"},
        {"\"a b\"", "a.ini(1): expected a number, found the text \"a b\""},
        {"\r\"a b\n\"", "a.ini(2): expected a number, found a text without its closing quote: \"a b\""},
        {"9999999999", "a.ini(1): expected a number from -2147483648 to 2147483647, found \"9999999999\""},
        {std::string(50, 'x'), "a.ini(1): expected a number, found \"" + std::string(40, 'x') + "...\""},
    };
    for (const auto& [text, error] : rows) {
        Source source(text);
        EXPECT_EQ(source.parser.DescribeError(), "");
        int value = 0;
        bool ended = false;
        EXPECT_FALSE(source.parser.ReadIntElem(',', '}', value, ended));
        source.file.close();
        EXPECT_EQ(source.parser.DescribeError(), error);
    }
    Source source("a");
    EXPECT_FALSE(source.parser.SeekToToken("MainDlg"));
    EXPECT_EQ(source.parser.GetError(), "expected the token \"MainDlg\", found the end of the file");
    EXPECT_TRUE(source.file.set_pos(0));
    EXPECT_EQ(source.Text(1), "FAIL");
    EXPECT_EQ(source.parser.GetError(), "expected a text of at most 0 characters, found \"a\"");
}

TEST(TextParser, LinesStayRightWhenOthersMoveTheFile)
{
    std::string text;
    std::vector<std::size_t> begins;
    for (int i = 0; i < 3000; ++i) {
        begins.push_back(text.size());
        text += "t" + std::to_string(i) + (i % 3 == 0 ? "\n" : i % 3 == 1 ? "\r\n" : "\r");
    }
    Source source(text);
    for (std::size_t i : {2999u, 0u, 1500u, 777u, 2u}) {
        ASSERT_TRUE(source.file.set_pos(begins[i]));
        EXPECT_EQ(source.Text(), "t" + std::to_string(i));
        EXPECT_EQ(source.parser.GetLine(), static_cast<int>(i) + 1);
    }
    source.file.open_memory("b.ini", {'\n', 'z'});
    EXPECT_EQ(source.Text(), "z");
    EXPECT_EQ(source.parser.GetLine(), 2) << "another file";

    TempRoots roots;
    roots.Put("game/models.ini", "ModelList {\n?\"b\" two");
    ds_file plain("models.ini", ds_file::MODE_READ);
    CTextParser parser(&plain, false);
    ASSERT_TRUE(parser.SeekToToken("modellist") && parser.SkipTillChar('{'));
    char bytes[3] = {};
    EXPECT_EQ(plain.read(bytes, 2), 2u);
    EXPECT_STREQ(bytes, "\n?") << "a file that isn't buffered shares its position too";
    EXPECT_TRUE(parser.ReadFileName(bytes, sizeof bytes));
    EXPECT_STREQ(bytes, "b");
    EXPECT_EQ(parser.GetLine(), 2);
    plain.close();
    EXPECT_FALSE(parser.ReadFileName(bytes, sizeof bytes));
}

} // namespace
