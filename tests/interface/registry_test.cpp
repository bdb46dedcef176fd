// The sprite and font tables, and the file that names their entries.

#include "keelworks/ds_file.h"
#include "kernel/nameloader.h"
#include "support/toolkit_fixture.h"

using namespace seawarden_test;

namespace
{

class RegistryTest : public ToolkitTest
{
  protected:
    void SetUp() override
    {
        const RECT rect = {10, 10, 110, 110};
        ASSERT_TRUE(wnd.Create(nullptr, nullptr, &rect, nullptr, 0, 0, &engine));
        wnd.Show(true);
        CItfWnd::SetDrawing(true);
    }
    void TearDown() override
    {
        wnd.Destroy();
        ToolkitTest::TearDown();
    }
    CItfWnd wnd;
};

TEST_F(RegistryTest, SpritesAreCountedAndFoundByNameIgnoringCase)
{
    AddSprite("itfOne", 4, 5);
    const int one = wnd.AcquireSprite("itfOne");
    ASSERT_GE(one, 0);
    EXPECT_EQ(wnd.AcquireSprite("ITFONE"), one);
    RECT rect;
    wnd.GetSpriteRect(one, &rect);
    EXPECT_EQ(rect, (RECT{0, 0, 4, 5}));
    const int surface = wnd.GetSpriteSurface(one);
    wnd.ReleaseSprite(one);
    EXPECT_EQ(wnd.GetSpriteSurface(one), surface);
    wnd.ReleaseSprite(one);
    EXPECT_EQ(wnd.GetSpriteSurface(one), -1);
    engine.render.GetSurfaceRect(surface, &rect);
    EXPECT_EQ(rect, RECT()) << "the surface is freed with the last reference";
    wnd.ReleaseSprite(one); // invalid by now
    wnd.AddSpriteRef(99);
    EXPECT_FALSE(wnd.SetSpriteIndex(one));
}

TEST_F(RegistryTest, ANamedSpriteTakesTheLastFreeEntryAndANamelessOneTheFirst)
{
    const RECT size = {0, 0, 3, 3};
    std::vector<int> entries;
    for (int i = 0; i < 5; ++i)
        entries.push_back(wnd.CreateSprite(&size));
    wnd.ReleaseSprite(entries[1]);
    wnd.ReleaseSprite(entries[3]);
    EXPECT_EQ(wnd.CreateSprite(&size), entries[1]);
    wnd.ReleaseSprite(entries[1]);
    AddSprite("itfOne", 4, 5);
    EXPECT_EQ(wnd.AcquireSprite("itfOne"), entries[3]);
}

TEST_F(RegistryTest, NamelessSpritesAndBackgrounds)
{
    AddSprite("itfOne", 4, 5, 0x1234);
    EXPECT_EQ(wnd.LoadSpriteFile("missing.png"), -1);
    EXPECT_EQ(TakeDebug().size(), 1u) << "the 2-D layer tells which picture is missing";
    const int file = wnd.LoadSpriteFile("test_itfOne.png");
    ASSERT_GE(file, 0);
    EXPECT_NE(wnd.AcquireSprite("itfOne"), file) << "a nameless sprite isn't found by name";
    for (int time = 0; time < 2; ++time)
        EXPECT_TRUE(wnd.SetSpriteIndex(file)) << "also the one it has";
    EXPECT_EQ(Toolkit().sprites[static_cast<std::size_t>(file)].refs, 2);
    EXPECT_TRUE(wnd.SetSprite(""));
    EXPECT_FALSE(wnd.SetSprite("nobody")) << "the old one is gone and there is no new one";
    EXPECT_EQ(wnd.GetSprite(), -1);
}

TEST_F(RegistryTest, DrawingIsClippedByTheWindow)
{
    AddSprite("red", 10, 10, 0xf800);
    const int red = wnd.AcquireSprite("red");
    const RECT overlap = {90, 90, 120, 120};
    wnd.DrawSprite(red, &overlap, false);
    EXPECT_EQ(Pixel(109, 109), 0xf800);
    EXPECT_EQ(Pixel(110, 110), 0) << "outside the window";
    const RECT screen = {200, 200, 210, 210};
    wnd.DrawSpriteStretched(red, &screen, false);
    EXPECT_EQ(Pixel(209, 209), 0xf800) << "a stretched one isn't clipped";
    const RECT frame = {20, 20, 40, 40};
    wnd.FrameRectGdi(&frame, 1, RGB(0, 255, 0), RGB(255, 0, 0));
    EXPECT_EQ(Pixel(30, 30), 0xf800);
    EXPECT_EQ(Pixel(35, 35), 0x07e0);
    EXPECT_EQ(Pixel(49, 49), 0xf800) << "right and bottom are outside";
    EXPECT_EQ(Pixel(50, 50), 0);
}

NameMaps ParseNames(const std::string& text)
{
    ds_file_buffered file;
    file.open_memory("names.ini", {text.begin(), text.end()});
    return ReadNameMaps(&file);
}

TEST_F(RegistryTest, NameFileGrammar)
{
    const std::string longName(40, 'n');
    const NameMaps maps =
        ParseNames("; a comment\nSpriteMap\n{\n  itfA \"a.png\",\n \"itf B\" b.png  itfA c.png\n" + longName +
                   " d.png }\nFontMap { itfF, f.fnt, }");
    ASSERT_EQ(maps.sprites.size(), 4u);
    EXPECT_EQ(maps.sprites[0].file, "a.png");
    EXPECT_EQ(maps.sprites[1].name, "itf B");
    EXPECT_EQ(maps.sprites[3].name, longName.substr(0, 31));
    ASSERT_EQ(maps.fonts.size(), 1u);
    EXPECT_EQ(maps.fonts[0].file, "f.fnt");

    // Of two rows with one name the first wins.
    AddSprite("itfA", 2, 2);
    Toolkit().spriteMap.push_back({"itfA", "missing.png"});
    EXPECT_GE(wnd.AcquireSprite("itfA"), 0);
}

TEST_F(RegistryTest, NameFileErrorsTellFileAndLine)
{
    const std::pair<const char*, const char*> cases[] = {
        {"", "names.ini(1): "},
        {"SpriteMap\n{\n}\n", "names.ini(3): "},
        {"SpriteMap\n{\n itfA \"a.png\n}\nFontMap { f f }", "names.ini(3): "},
        {"SpriteMap\n{\n itfA a.png\n", "names.ini("},
        {"SpriteMap { a a }\nFontMap\n\n{ f f, f", "names.ini(4): "},
    };
    for (const auto& [text, line] : cases) {
        SCOPED_TRACE(text);
        EXPECT_THROW(ParseNames(text), int);
        const std::vector<std::string> debug = TakeDebug();
        ASSERT_EQ(debug.size(), 1u);
        EXPECT_TRUE(debug[0].starts_with(line) && debug[0].ends_with("\r\n")) << debug[0];
    }
}

} // namespace
