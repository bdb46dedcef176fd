#include "keelworks/text_parser.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../platform/temp_roots.h"

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
    const struct {
        std::string text;
        Texts tokens; ///< up to and with the first failure
    } cases[] = {
        {"a \"b c\"\"\"d", {"a", "b c", "", "d", "FAIL"}},
        {"a,\"b\" , c", {"a", "b", "c", "FAIL"}},
        {"a,,b", {"a", "FAIL"}},
        {"a{b", {"a", "FAIL"}},
        {"x=y", {"x", "FAIL"}},
        {"a;note\nb//note\nc // \"note\"\rd;", {"a", "b//note", "c", "d", "FAIL"}},
        {"\"; // not a note\" \"a\\\" b", {"; // not a note", "a\\", "b", "FAIL"}},
        {"\"open\nb", {"FAIL"}},
        {"\"open", {"FAIL"}},
        {"pic\\a/b.tga\t\x1a\f'q'", {"pic\\a/b.tga", "'q'", "FAIL"}},
        {"\xef\xbb\xbf a \xef\xbb\xbf", {"a", "\xef\xbb\xbf", "FAIL"}},
        {"\xe4\xa0\xff \xa0", {"\xe4\xa0\xff", "\xa0", "FAIL"}},
        {std::string("a\0b \"c\0d\"", 9), {"a", "b", "FAIL"}},
        {"/ a", {"/", "a", "FAIL"}},
        {"", {"FAIL"}},
    };
    for (const auto& c : cases) {
        Source source(c.text);
        Texts tokens;
        do {
            tokens.push_back(source.Text());
        } while (tokens.back() != "FAIL" && tokens.size() < 20);
        EXPECT_EQ(tokens, c.tokens) << c.text;
    }
}

TEST(TextParser, AStringMustFitWithItsZeroAndStaysWhenItDoesNot)
{
    Source source("abcd \"abcd\" \"\"");
    for (const bool quoted : {false, true}) {
        EXPECT_EQ(source.Text(4), "FAIL") << quoted;
        EXPECT_FALSE(source.parser.ReadFileName(nullptr, 5));
        EXPECT_EQ(source.Text(5), "abcd") << quoted;
    }
    EXPECT_EQ(source.Text(0), "FAIL");
    EXPECT_EQ(source.Text(1), "");
}

TEST(TextParser, Integers)
{
    const struct {
        std::string text;
        bool hex;
        std::string result; ///< value, `,` or `}`; or FAIL
        std::string rest;
    } cases[] = {
        {"12,3", false, "12,", "3"},
        {" -7 // note\n }x", false, "-7}", "x"},
        {"+5;a\n,", false, "5,", ""},
        {"2147483647,", false, "2147483647,", ""},
        {"-2147483648,", false, "-2147483648,", ""},
        {"2147483648,", false, "FAIL", "2147483648,"},
        {"-99999999999999999999999,", false, "FAIL", "-99999999999999999999999,"},
        {"000000000000000000007,", false, "7,", ""},
        {"0x1F,", false, "31,", ""},
        {"0XFFFFFFFF}", false, "-1}", ""},
        {"0x00000000080000000,", false, "-2147483648,", ""},
        {"0x100000000,", false, "FAIL", "0x100000000,"},
        {"0x,", false, "FAIL", "0x,"},
        {"ff}", true, "255}", ""},
        {"0x10,", true, "16,", ""},
        {"-1,", true, "FAIL", "-1,"},
        {"12a,", false, "FAIL", "12a,"},
        {"1.5,", false, "FAIL", "1.5,"},
        {"12", false, "FAIL", "12"},
        {"12 13,", false, "FAIL", "12 13,"},
        {"+-1,", false, "FAIL", "+-1,"},
        {"- 1,", false, "FAIL", "- 1,"},
        {"\"1\",", false, "FAIL", "\"1\","},
        {" ;n\n ,", false, "FAIL", ","},
        {"", false, "FAIL", ""},
    };
    for (const auto& c : cases) {
        Source source(c.text);
        int value = 4711;
        bool ended = true;
        const bool read = source.parser.ReadIntElem(',', '}', value, ended, c.hex);
        EXPECT_EQ(read ? std::to_string(value) + (ended ? "}" : ",") : "FAIL", c.result) << c.text;
        EXPECT_EQ(source.Rest(), c.rest) << c.text;
        if (!read) {
            EXPECT_TRUE(value == 4711 && ended) << "the caller's variables stay: " << c.text;
        }
    }
    Source source("1; 2 } 3,");
    int value = 0;
    EXPECT_TRUE(source.parser.ReadIntElem(';', value)) << "a separator wins over a comment";
    EXPECT_FALSE(source.parser.ReadIntElem(',', value)) << "without an end character";
    EXPECT_EQ(value, 1);
}

TEST(TextParser, Floats)
{
    const struct {
        std::string text;
        bool read;
        float value;
    } cases[] = {
        {"1.5,", true, 1.5f},   {"-.25 }", true, -0.25f}, {"+2e2,", true, 200.0f}, {"3.,", true, 3.0f},
        {"7,", true, 7.0f},     {"1e99,", false, 0.0f},   {"inf,", false, 0.0f},   {"-nan,", false, 0.0f},
        {"1,5.0,", true, 1.0f}, {"+-1,", false, 0.0f},    {".,", false, 0.0f},     {"1.5", false, 0.0f},
        {"1.5f,", false, 0.0f}, {"0x10,", false, 0.0f},
    };
    for (const auto& c : cases) {
        Source source(c.text);
        float value = 0;
        bool ended = false;
        EXPECT_EQ(source.parser.ReadFloatElem(',', '}', value, ended), c.read) << c.text;
        EXPECT_EQ(value, c.value) << c.text;
        EXPECT_EQ(ended, c.text.ends_with('}')) << c.text;
    }
}

TEST(TextParser, SeekingPassesQuotedTextsCommentsAndLongerNames)
{
    const std::string text =
        "MainDlgX \"MainDlg\" ; MainDlg\n// MainDlg\n\"open MainDlg\n\"\"\" MainDlg\nmAINdLG{1}";
    Source source(text);
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
    EXPECT_FALSE(names.parser.SeekToToken(nullptr));
}

TEST(TextParser, SkippingToACharacter)
{
    const struct {
        std::string text;
        char c;
        std::string rest; ///< "FAIL" when there is none
    } cases[] = {
        {"a ; {\n// {\n\"{\" b{c", '{', "c"},
        {"\"a\" , 1", ',', " 1"},
        {"x \"y", '"', "y"},
        {"; \"\n\"z", '"', "z"},
        {"a//b,c", ',', "c"},
        {"\"open {\n{x", '{', "x"},
        {"ab;c", ';', "c"},
        {"a ,", '}', "FAIL"},
        {"", ',', "FAIL"},
    };
    for (const auto& c : cases) {
        Source source(c.text);
        EXPECT_EQ(source.parser.SkipTillChar(c.c) ? source.Rest() : "FAIL", c.rest) << c.text;
    }
    Source source(" ; note\n ,}");
    EXPECT_EQ(source.parser.SkipSpace(false), ',');
    EXPECT_EQ(source.parser.SkipSpace(true), ',');
    EXPECT_EQ(source.parser.SkipSpace(true), '}');
    EXPECT_EQ(source.parser.SkipSpace(true), '\0');
}

TEST(TextParser, GlyphLinesWithRawBytesBetween)
{
    const std::string glyphs = "\";/{}, a\n\x80";
    std::string text = "texture \"f.tga\"\nsymbols { // glyphs, one \"a line\n";
    for (char glyph : glyphs) {
        text += std::string("\"") + glyph + "\", 1, 2, 3, 4, -1, 5" +
                (glyph == glyphs.back() ? " }" : ", ; \"note\"\n");
    }
    Source source(text);
    ASSERT_TRUE(source.parser.SeekToToken("symbols"));
    ASSERT_TRUE(source.parser.SkipTillChar('{'));
    std::string read;
    bool ended = false;
    while (!ended && read.size() < glyphs.size()) {
        char glyph = 0;
        int value = 0;
        ASSERT_TRUE(source.parser.SkipTillChar('"'));
        ASSERT_EQ(source.file.read(&glyph, 1), 1u);
        ASSERT_TRUE(source.parser.SkipTillChar('"'));
        ASSERT_TRUE(source.parser.SkipTillChar(','));
        for (int i = 0; i < 5; ++i) {
            ASSERT_TRUE(source.parser.ReadIntElem(',', value)) << source.parser.DescribeError();
        }
        ASSERT_TRUE(source.parser.ReadIntElem(',', '}', value, ended)) << source.parser.DescribeError();
        EXPECT_EQ(value, 5);
        read += glyph;
    }
    EXPECT_TRUE(ended);
    EXPECT_EQ(read, glyphs);
}

TEST(TextParser, ErrorsNameLineTokenAndWhatWasExpected)
{
    const struct {
        std::string text;
        std::string error; ///< of an integer read up to , or }
    } cases[] = {
        {"\n\r\n\r abc,", "a.ini(4): expected a number, found \"abc\""},
        {"12\r\n\r\nx", "a.ini(3): expected \",\" or \"}\" behind the number, found \"x\""},
        {"\n7 ;\n", "a.ini(3): expected \",\" or \"}\" behind the number, found the end of the file"},
        {"\"a b\"", "a.ini(1): expected a number, found the text \"a b\""},
        {"\r\"a b\n\"", "a.ini(2): expected a number, found a text without its closing quote: \"a b\""},
        {"9999999999", "a.ini(1): expected a number from -2147483648 to 2147483647, found \"9999999999\""},
        {std::string(50, 'x'), "a.ini(1): expected a number, found \"" + std::string(40, 'x') + "...\""},
        {"}", "a.ini(1): expected a number, found \"}\""},
    };
    for (const auto& c : cases) {
        Source source(c.text);
        EXPECT_EQ(source.parser.DescribeError(), "");
        int value = 0;
        bool ended = false;
        EXPECT_FALSE(source.parser.ReadIntElem(',', '}', value, ended));
        source.file.close();
        EXPECT_EQ(source.parser.DescribeError(), c.error);
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
    for (std::size_t i : {2999u, 0u, 1500u, 1499u, 777u, 2u, 1u}) {
        ASSERT_TRUE(source.file.set_pos(begins[i]));
        EXPECT_EQ(source.Text(), "t" + std::to_string(i));
        EXPECT_EQ(source.parser.GetLine(), static_cast<int>(i) + 1);
    }
    char raw[9000];
    ASSERT_EQ(source.file.read(raw, sizeof raw), sizeof raw);
    const std::string next = source.Text();
    EXPECT_EQ(source.parser.GetLine(), std::stoi(next.substr(next.find('t') + 1)) + 1);

    source.file.open_memory("b.ini", {'\n', 'z'});
    EXPECT_EQ(source.Text(), "z");
    EXPECT_EQ(source.parser.GetLine(), 2) << "another file";
}

TEST(TextParser, APlainFileSharesItsPositionToo)
{
    TempRoots roots;
    roots.Put("game/models.ini", "ModelList {\n\"a\" one, 1\n?\"b\" two, 2 }");
    ds_file file("models.ini", ds_file::MODE_READ);
    CTextParser parser(&file, false);
    char name[16];
    int value = 0;
    bool ended = false;
    ASSERT_TRUE(parser.SeekToToken("modellist") && parser.SkipTillChar('{'));
    ASSERT_TRUE(parser.ReadFileName(name, sizeof name) && parser.ReadFileName(name, sizeof name));
    EXPECT_STREQ(name, "one");
    EXPECT_TRUE(parser.SkipTillChar(','));
    EXPECT_FALSE(parser.ReadIntElem(',', '}', value, ended));
    EXPECT_EQ(parser.DescribeError(),
              "models.ini(3): expected \",\" or \"}\" behind the number, found \"?\"");
    EXPECT_EQ(parser.SkipSpace(true), '1');
    char raw[2] = {};
    EXPECT_EQ(file.read(raw, 2), 2u);
    EXPECT_EQ(raw[1], '?');
    EXPECT_TRUE(parser.ReadFileName(name, sizeof name));
    EXPECT_STREQ(name, "b");
    EXPECT_EQ(parser.GetLine(), 3);
    file.close();
    EXPECT_FALSE(parser.ReadFileName(name, sizeof name));
    CTextParser none(nullptr, false);
    EXPECT_FALSE(none.SkipTillChar('x'));
    EXPECT_EQ(none.SkipSpace(true), '\0');
}

} // namespace
