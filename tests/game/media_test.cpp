// Clips, their player, and the mixer.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/temp_roots.h"
#include "render/picture.h"
#include "sound/mixer.h"
#include "support/fakes.h"
#include "support/rows.h"
#include "video/blend.h"
#include "video/clip.h"
#include "video/video.h"

namespace
{

using seawarden_test::FakeHost;
using seawarden_test::FakeSound;

TEST(ClipTest, AWrongClipIsToldWithFileAndLine)
{
    const TempRoots roots;
    const Rows<std::string, const char*> cases = {
        {"size, 8, 8 }", "expected a size and a still"},
        {"size, 8, 8,\n still, \"a\", 0, 0 }", "expected a size and a still"},
        {"size, 0, 8 }", "expected a number from 1 to 2048"},
        {"size, 8, 8,\n still, \"a\", -1, 5 }", "expected a number from 0 to 600000"},
        {"size, 8, 8, picture, \"a\", 5, 5 }", "expected size, still or sound, found \"picture\""},
        {"size, 8, 8, still, \"a\", 5, 5", "expected"},
    };
    for (const auto& [text, reason] : cases) {
        roots.Put("game/x.ani", "clip {\n" + text);
        CClip clip;
        std::string error;
        EXPECT_FALSE(clip.Load("x.ani", error)) << text;
        EXPECT_TRUE(error.starts_with("x.ani(")) << error;
        EXPECT_NE(error.find(reason), std::string::npos) << text << ": " << error;
    }
}

TEST(ClipTest, EachMomentHasItsStills)
{
    const TempRoots roots;
    roots.Put("game/x.ani", "clip { size, 8, 8, still, \"a\", 100, 50, still, \"b\", 0, 100 }");
    CClip clip;
    std::string error;
    ASSERT_TRUE(clip.Load("x.ani", error)) << error;
    EXPECT_EQ(clip.Duration(), 250);
    const Rows<int, std::vector<int>, int> cases = {
        {0, {0, 1, 0}, 1},      {100, {0, 1, 0}, 1},    {125, {0, 1, 128}, 1},  {150, {1, -1, 0}, 0},
        {200, {1, -1, 128}, 0}, {250, {1, -1, 256}, 0}, {9999, {1, -1, 256}, 0}};
    for (const auto& [time, expected, nextInLoop] : cases) {
        const ClipMoment moment = clip.At(time, false);
        EXPECT_EQ((std::vector<int>{moment.nStill, moment.nNext, moment.nWeight}), expected) << time;
        EXPECT_EQ(clip.At(time, true).nNext, nextInLoop) << time;
    }
}

TEST(BlendTest, WeightsRunFromOnePictureToTheOther)
{
    for (const int weight : {0, 64, 128, 256}) {
        std::uint16_t target[] = {0x0000, 0xffff, 0xf800};
        const std::uint16_t source[] = {0xffff, 0x0000, 0x001f};
        BlendPixels(target, source, 3, weight);
        const int green = (target[0] >> 5) & 0x3f;
        EXPECT_NEAR(green, 63 * weight / 256, 1);
        EXPECT_NEAR((target[1] >> 5) & 0x3f, 63 - 63 * weight / 256, 1);
        EXPECT_NEAR(target[2] & 0x1f, 31 * weight / 256, 1) << "channels don't run into each other";
        EXPECT_EQ((target[2] >> 5) & 0x3f, 0);
    }
}

class Pump : public IFramePump
{
  public:
    Frame PumpFrame() override
    {
        ++frames;
        return {20, frames == interruptAt, frames == endAt};
    }
    int frames = 0;
    int interruptAt = -1;
    int endAt = -1;
};

class VideoTest : public ::testing::Test
{
  protected:
    VideoTest()
    {
        roots.Put("game/resource/images/red.png");
        const std::vector<std::uint16_t> red(64, 0xf800);
        SavePng((roots.folder / "game/resource/images/red.png").string(), red.data(), 8, 8);
        roots.Put("game/resource/video/x.ani",
                  "clip { size, 8, 8, still, \"red.png\", 100, 0, sound, \"boom\", 50 }");
    }

    TempRoots roots;
    FakeHost host;
    CRender2D render;
    FakeSound sound;
    Pump pump;
    CVideo video{render, sound, pump};
    const RECT whole = {0, 0, 800, 600};
};

TEST_F(VideoTest, AClipIsPlayedToItsEndOverTheWholeDisplay)
{
    int shown = 0;
    render.SetOnPresentNow([&] { ++shown; });
    const int clip = video.OpenVideo("video\\x.ani", VIDEO_FULLSCREEN);
    ASSERT_GT(clip, 0);
    video.SetVideoTarget(clip, DISPLAY_NOW, &whole);
    video.PlayVideo(clip, 0);
    EXPECT_EQ(pump.frames, 5);
    EXPECT_EQ(shown, 6);
    EXPECT_EQ(render.DisplayPixels()[800 * 599 + 799], 0xf800);
    EXPECT_EQ(sound.played, std::vector<std::string>{"boom"});
    EXPECT_FALSE(video.IsVideoRunning(clip));
    EXPECT_TRUE(host.debug.empty());
}

TEST_F(VideoTest, AKeyOrTheProgramsEndStopsItButNotWhatBeganIt)
{
    for (const auto& [interruptAt, endAt, frames] :
         Rows<int, int, int>{{17, -1, 17}, {-1, 17, 17}, {15, 40, 40}}) {
        pump = Pump();
        pump.interruptAt = interruptAt; // 15: within 300 ms
        pump.endAt = endAt;
        const int clip = video.OpenVideo("video\\x.ani", VIDEO_FULLSCREEN | VIDEO_LOOP);
        video.SetVideoTarget(clip, DISPLAY_NOW, &whole);
        video.PlayVideo(clip, 0);
        EXPECT_EQ(pump.frames, frames);
        video.CloseVideo(clip);
    }
}

// In a dialog it goes on only as long as its box asks after it.
TEST_F(VideoTest, InTheBackgroundItPlaysFromFrameToFrame)
{
    const RECT size = {0, 0, 20, 20};
    const RECT place = {4, 4, 12, 12};
    const int surface = render.CreateSurface(&size);
    const std::uint16_t* pixels = render.LockSurface(surface);
    const int clip = video.OpenVideo("video\\x.ani", VIDEO_IN_DIALOG);
    video.SetVideoTarget(clip, surface, &place);
    video.PlayVideo(clip, 1);
    for (int time = 20; time <= 100; time += 20) {
        EXPECT_TRUE(video.IsVideoRunning(clip));
        video.Update(20);
        render.FillSurface(surface, 0);
        video.Update(1000);
    }
    EXPECT_EQ(sound.played, std::vector<std::string>{"boom"});
    EXPECT_EQ(pixels[4 * 20 + 4], 0) << "drawn only when asked";
    EXPECT_FALSE(video.IsVideoRunning(clip));
    EXPECT_EQ(pixels[4 * 20 + 4], 0xf800);
    EXPECT_EQ(pixels[3 * 20 + 4], 0);
    EXPECT_EQ(pixels[12 * 20 + 12], 0);
    video.RewindVideo(clip, 0);
    video.PlayVideo(clip, 1);
    EXPECT_TRUE(video.IsVideoRunning(clip));
    video.CloseVideo(clip);
    video.PlayVideo(clip, 0);
    video.TickAnimation(clip, 20);
    video.SetVideoTarget(clip, DISPLAY_NOW, &whole);
    video.CloseVideo(clip);
    EXPECT_FALSE(video.IsVideoRunning(clip)) << "a closed handle does nothing";
    EXPECT_EQ(pump.frames, 0);
}

TEST_F(VideoTest, AnAnimationIsDrawnByItsTicksAndGoesRound)
{
    const RECT place = {40, 30, 56, 46};
    const int clip = video.OpenAnimation("video\\x.ani");
    video.SetAnimationTarget(clip, DISPLAY_FRAME, &place);
    video.StartAnimation(clip);
    video.Update(20);
    EXPECT_EQ(render.DisplayPixels()[800 * 30 + 40], 0) << "its dialog may not be on the screen yet";
    for (int tick = 0; tick < 15; ++tick)
        video.TickAnimation(clip, 20);
    EXPECT_EQ(render.DisplayPixels()[800 * 30 + 40], 0xf800);
    EXPECT_EQ(render.DisplayPixels()[800 * 46 + 56], 0);
    EXPECT_EQ(sound.played.size(), 3U) << "once a round";
}

class MixerTest : public ::testing::Test
{
  protected:
    using Samples = std::vector<std::int16_t>;
    void Start(const Samples& samples, CMixer::Group group, bool loop, std::size_t from = 0)
    {
        mixer.Start(std::make_shared<const SoundSamples>(samples.begin(), samples.end()), group, loop, from);
    }
    Samples Mixed(std::size_t frames)
    {
        Samples out(frames * CMixer::CHANNELS);
        mixer.Mix(out.data(), frames);
        return out;
    }
    CMixer mixer;
};

TEST_F(MixerTest, VoicesAddUpLoopEndAndClip)
{
    Start({30000, -30000, 30000, -30000}, CMixer::GROUP_EFFECTS, false);
    Start({30000, -30000, 30000, -30000}, CMixer::GROUP_MUSIC, true);
    EXPECT_EQ(Mixed(4), (Samples{32767, -32768, 32767, -32768, 30000, -30000, 30000, -30000}));
    EXPECT_FALSE(mixer.IsPlaying(CMixer::GROUP_EFFECTS));
    EXPECT_TRUE(mixer.IsPlaying(CMixer::GROUP_MUSIC));
    mixer.SetLevel(CMixer::GROUP_MUSIC, 0.5F);
    EXPECT_EQ(Mixed(1), (Samples{15000, -15000}));
    // Too many voices drop the oldest of their group.
    for (std::size_t i = 0; i < 100; ++i)
        Start({1, 1}, CMixer::GROUP_EFFECTS, true);
    EXPECT_EQ(Mixed(1)[0], 15000 + static_cast<int>(CMixer::MAX_VOICES) - 1);
}

TEST_F(MixerTest, MusicGoesOnWhereItWasStopped)
{
    const Samples music = {1, 1, 2, 2, 3, 3};
    Start(music, CMixer::GROUP_MUSIC, true);
    Mixed(4);
    const std::size_t position = mixer.Position(CMixer::GROUP_MUSIC);
    mixer.Stop(CMixer::GROUP_MUSIC, 0);
    EXPECT_EQ(Mixed(1), (Samples{0, 0}));
    Start(music, CMixer::GROUP_MUSIC, true, position);
    EXPECT_EQ(Mixed(2), (Samples{2, 2, 3, 3}));
    mixer.Stop(CMixer::GROUP_MUSIC, 0);
    Start(music, CMixer::GROUP_MUSIC, true, 600);
    EXPECT_EQ(Mixed(1), (Samples{1, 1})) << "beyond the end";
}

TEST_F(MixerTest, AFadeFallsToSilenceInItsTime)
{
    Start({10000, 10000}, CMixer::GROUP_MUSIC, true);
    mixer.Stop(CMixer::GROUP_MUSIC, 100);
    EXPECT_FALSE(mixer.IsPlaying(CMixer::GROUP_MUSIC)) << "what fades counts as stopped";
    const Samples out = Mixed(5000);
    EXPECT_EQ(out[0], 10000);
    EXPECT_NEAR(out[4410], 5000, 10);
    EXPECT_EQ(out[2 * 4412], 0);
}

} // namespace
