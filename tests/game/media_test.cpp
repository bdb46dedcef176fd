// Clips, their player, and the mixer.
#include <gtest/gtest.h>

#include <SDL.h>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/temp_roots.h"
#include "render/picture.h"
#include "sound/mixer.h"
#include "sound/sound.h"
#include "support/fakes.h"
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
    const std::pair<const char*, const char*> cases[] = {
        {"size, 8, 8 }", "expected a size and a still"},
        {"still, \"a\", 5, 5 }", "expected a size and a still"},
        {"size, 8, 8,\n still, \"a\", 0, 0 }", "expected a size and a still"},
        {"size, 0, 8 }", "expected a number from 1 to 2048"},
        {"size, 8, 8,\n still, \"a\", -1, 5 }", "expected a number from 0 to 600000"},
        {"size, 8, 8, picture, \"a\", 5, 5 }", "expected size, still or sound, found \"picture\""},
        {"size, 8, 8, still, \"a\", 5 }", "expected"},
        {"size, 8, 8, still, \"a\", 5, 5, }", "expected"},
        {"size, 8, 8, still, \"a\", 5, 5", "expected"},
    };
    for (const auto& [text, reason] : cases) {
        roots.Put("game/x.ani", std::string("clip {\n") + text);
        CClip clip;
        std::string error;
        EXPECT_FALSE(clip.Load("x.ani", error)) << text;
        EXPECT_TRUE(error.starts_with("x.ani(")) << error;
        EXPECT_NE(error.find(reason), std::string::npos) << text << ": " << error;
    }
    CClip clip;
    std::string error;
    EXPECT_FALSE(clip.Load("none.ani", error));
    EXPECT_FALSE(error.empty());
}

TEST(ClipTest, EachMomentHasItsStills)
{
    const TempRoots roots;
    roots.Put("game/x.ani", "clip { size, 8, 8, still, \"a\", 100, 50, still, \"b\", 0, 100 }");
    CClip clip;
    std::string error;
    ASSERT_TRUE(clip.Load("x.ani", error)) << error;
    EXPECT_EQ(clip.Duration(), 250);
    const struct {
        int time, still, next, weight, nextInLoop;
    } cases[] = {{0, 0, 1, 0, 1},    {99, 0, 1, 0, 1},     {100, 0, 1, 0, 1},    {125, 0, 1, 128, 1},
                 {150, 1, -1, 0, 0}, {200, 1, -1, 128, 0}, {250, 1, -1, 256, 0}, {9999, 1, -1, 256, 0}};
    for (const auto& test : cases) {
        const ClipMoment moment = clip.At(test.time, false);
        EXPECT_EQ(moment.nStill, test.still) << test.time;
        EXPECT_EQ(moment.nNext, test.next) << test.time;
        EXPECT_EQ(moment.nWeight, test.weight) << test.time;
        EXPECT_EQ(clip.At(test.time, true).nNext, test.nextInLoop) << test.time;
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
        const std::vector<std::uint16_t> red(64, 0xf800);
        std::filesystem::create_directories(roots.folder / "game/resource/images");
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

TEST_F(VideoTest, AKeyOrTheProgramsEndStopsIt)
{
    for (const bool interrupt : {true, false}) {
        pump = Pump();
        (interrupt ? pump.interruptAt : pump.endAt) = 17;
        const int clip = video.OpenVideo("video\\x.ani", VIDEO_FULLSCREEN | VIDEO_LOOP);
        video.SetVideoTarget(clip, DISPLAY_NOW, &whole);
        video.PlayVideo(clip, 0);
        EXPECT_EQ(pump.frames, 17);
        video.CloseVideo(clip);
    }
}

TEST_F(VideoTest, WhatBeganTheClipDoesNotEndIt)
{
    pump.interruptAt = 15; // 300 ms
    const int clip = video.OpenVideo("video\\x.ani", VIDEO_FULLSCREEN | VIDEO_LOOP);
    pump.endAt = 40;
    video.PlayVideo(clip, 0);
    EXPECT_EQ(pump.frames, 40);
}

// In a dialog it goes on only as long as its box asks after it.
TEST_F(VideoTest, InTheBackgroundItPlaysFromFrameToFrame)
{
    const RECT size = {0, 0, 20, 20};
    const RECT place = {4, 4, 12, 12};
    const int surface = render.CreateSurface(&size);
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
    EXPECT_EQ(render.LockSurface(surface)[4 * 20 + 4], 0) << "drawn only when asked";
    render.UnlockSurface(surface, 0);
    EXPECT_FALSE(video.IsVideoRunning(clip));
    const std::uint16_t* pixels = render.LockSurface(surface);
    EXPECT_EQ(pixels[4 * 20 + 4], 0xf800);
    EXPECT_EQ(pixels[3 * 20 + 4], 0);
    EXPECT_EQ(pixels[12 * 20 + 12], 0);
    render.UnlockSurface(surface, 0);
    video.RewindVideo(clip, 0);
    video.PlayVideo(clip, 1);
    EXPECT_TRUE(video.IsVideoRunning(clip));
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
    EXPECT_EQ(render.DisplayPixels()[800 * 45 + 55], 0xf800);
    EXPECT_EQ(render.DisplayPixels()[800 * 46 + 56], 0);
    EXPECT_EQ(sound.played.size(), 3U) << "once a round";
}

TEST_F(VideoTest, WhatIsMissingIsToldAndClosedHandlesDoNothing)
{
    EXPECT_LT(video.OpenVideo("video\\none.ani", 6), 0);
    EXPECT_LT(video.OpenAnimation(""), 0);
    EXPECT_LT(video.OpenVideo(nullptr, 6), 0);
    EXPECT_EQ(host.debug.size(), 3U);
    const int clip = video.OpenVideo("video\\x.ani", 6);
    video.CloseVideo(clip);
    video.PlayVideo(clip, 0);
    video.TickAnimation(clip, 20);
    video.SetVideoTarget(clip, DISPLAY_NOW, &whole);
    video.CloseVideo(clip);
    EXPECT_FALSE(video.IsVideoRunning(clip));
    EXPECT_EQ(pump.frames, 0);
}

std::vector<std::int16_t> Mixed(CMixer& mixer, std::size_t frames)
{
    std::vector<std::int16_t> out(frames * CMixer::CHANNELS);
    mixer.Mix(out.data(), frames);
    return out;
}

TEST(MixerTest, VoicesAddUpLoopEndAndClip)
{
    CMixer mixer;
    const auto loud = std::make_shared<const SoundSamples>(SoundSamples{30000, -30000, 30000, -30000});
    mixer.Start(loud, CMixer::GROUP_EFFECTS, false);
    mixer.Start(loud, CMixer::GROUP_MUSIC, true);
    EXPECT_EQ(Mixed(mixer, 4),
              (std::vector<std::int16_t>{32767, -32768, 32767, -32768, 30000, -30000, 30000, -30000}));
    EXPECT_FALSE(mixer.IsPlaying(CMixer::GROUP_EFFECTS));
    EXPECT_TRUE(mixer.IsPlaying(CMixer::GROUP_MUSIC));
    mixer.SetLevel(CMixer::GROUP_MUSIC, 0.5F);
    EXPECT_EQ(Mixed(mixer, 1), (std::vector<std::int16_t>{15000, -15000}));
    mixer.Stop(CMixer::GROUP_MUSIC, 0);
    EXPECT_EQ(Mixed(mixer, 1), (std::vector<std::int16_t>{0, 0}));
}

TEST(MixerTest, MusicGoesOnWhereItWasStopped)
{
    CMixer mixer;
    const auto music = std::make_shared<const SoundSamples>(SoundSamples{1, 1, 2, 2, 3, 3});
    mixer.Start(music, CMixer::GROUP_MUSIC, true);
    Mixed(mixer, 4);
    const std::size_t position = mixer.Position(CMixer::GROUP_MUSIC);
    mixer.Stop(CMixer::GROUP_MUSIC, 100);
    EXPECT_EQ(mixer.Position(CMixer::GROUP_MUSIC), 0U);
    mixer.Stop(CMixer::GROUP_MUSIC, 0);
    mixer.Start(music, CMixer::GROUP_MUSIC, true, position);
    EXPECT_EQ(Mixed(mixer, 2), (std::vector<std::int16_t>{2, 2, 3, 3}));
    mixer.Stop(CMixer::GROUP_MUSIC, 0);
    mixer.Start(music, CMixer::GROUP_MUSIC, true, 600);
    EXPECT_EQ(Mixed(mixer, 1), (std::vector<std::int16_t>{1, 1})) << "beyond the end";
}

/// A WAV of silence: one channel of 8 bits.
std::string SilentWav(std::uint32_t rate, std::uint32_t frames)
{
    const auto number = [](std::uint32_t value, int bytes) {
        std::string out;
        for (int i = 0; i < bytes; ++i)
            out += static_cast<char>(value >> (8 * i));
        return out;
    };
    return "RIFF" + number(36 + frames, 4) + "WAVEfmt " + number(16, 4) + number(1, 2) + number(1, 2) +
           number(rate, 4) + number(rate, 4) + number(1, 2) + number(8, 2) + "data" + number(frames, 4) +
           std::string(frames, '\x80');
}

TEST(SoundTest, AHostileRateOrLengthIsRefused)
{
    const TempRoots roots;
    const FakeHost host;
    SDL_setenv("SDL_AUDIODRIVER", "dummy", 1);
    CSound sound;
    ASSERT_TRUE(sound.OpenDevice());
    const struct {
        std::uint32_t rate, frames;
        const char* reason; // null: it is played
    } cases[] = {
        {1, 100, "a rate of 1 frames"}, {3999, 100, "a rate of"}, {200000, 100, "a rate of"},
        {4000, 100, nullptr},           {192000, 100, nullptr},   {0xffffffff, 100, "rate"},
        {4000, 30U << 20, "too long"},
    };
    for (const auto& test : cases) {
        const std::string name = std::to_string(test.rate) + "-" + std::to_string(test.frames) + ".wav";
        roots.Put("game/" + name, SilentWav(test.rate, test.frames));
        ::testing::internal::CaptureStderr();
        EXPECT_EQ(sound.PlayMusic(name, false), test.reason == nullptr) << name;
        const std::string told = ::testing::internal::GetCapturedStderr();
        const bool named = test.reason == nullptr || told.find(test.reason) != std::string::npos;
        EXPECT_TRUE(named) << name << ": " << told;
    }
}

TEST(MixerTest, AFadeFallsToSilenceInItsTime)
{
    CMixer mixer;
    mixer.Start(std::make_shared<const SoundSamples>(SoundSamples(2, 10000)), CMixer::GROUP_MUSIC, true);
    mixer.Stop(CMixer::GROUP_MUSIC, 100);
    EXPECT_FALSE(mixer.IsPlaying(CMixer::GROUP_MUSIC)) << "what fades counts as stopped";
    const auto out = Mixed(mixer, 5000);
    EXPECT_EQ(out[0], 10000);
    EXPECT_NEAR(out[4410], 5000, 10);
    EXPECT_EQ(out[2 * 4412], 0);
}

TEST(MixerTest, TooManyVoicesDropTheOldestOfTheGroup)
{
    CMixer mixer;
    const auto music = std::make_shared<const SoundSamples>(SoundSamples{1000, 1000});
    const auto effect = std::make_shared<const SoundSamples>(SoundSamples{1, 1});
    mixer.Start(music, CMixer::GROUP_MUSIC, true);
    for (std::size_t i = 0; i < 100; ++i)
        mixer.Start(effect, CMixer::GROUP_EFFECTS, true);
    EXPECT_EQ(Mixed(mixer, 1)[0], 1000 + static_cast<int>(CMixer::MAX_VOICES) - 1);
}

} // namespace
