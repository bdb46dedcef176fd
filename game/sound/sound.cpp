#include "sound/sound.h"

#include <SDL.h>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <utility>

#include "engine/game_files.h"
#include "engine/names.h"
#include "keelworks/text_parser.h"
#include "platform/files.h"
#include "platform/system.h"

namespace
{

constexpr int DEVICE_BUFFER_FRAMES = 1024;

/// Keeps the device's callback away while it lives.
class CDeviceLock
{
  public:
    explicit CDeviceLock(SDL_AudioDeviceID device) : m_nDevice(device)
    {
        if (m_nDevice != 0)
            SDL_LockAudioDevice(m_nDevice);
    }
    ~CDeviceLock()
    {
        if (m_nDevice != 0)
            SDL_UnlockAudioDevice(m_nDevice);
    }
    CDeviceLock(const CDeviceLock&) = delete;
    CDeviceLock& operator=(const CDeviceLock&) = delete;

  private:
    SDL_AudioDeviceID m_nDevice;
};

void IgnoreSoundSystemError(const char* /*file*/, int /*line*/, const char* /*function*/, int /*error*/,
                            const char* /*format*/, ...)
{
}

/// The system's sound library prints every device that it fails to open, however the search ends. The library
/// stays loaded, since it keeps the function.
void QuietSoundSystem()
{
    using Handler = decltype(&IgnoreSoundSystemError);
    using SetHandler = int (*)(Handler);
    void* const library = dlopen("libasound.so.2", RTLD_LAZY);
    void* const set = library == nullptr ? nullptr : dlsym(library, "snd_lib_error_set_handler");
    if (set != nullptr)
        reinterpret_cast<SetHandler>(set)(&IgnoreSoundSystemError);
}

void DebugLine(const std::string& text)
{
    OutputDebugStringA((text + "\r\n").c_str());
}

/// Converts to the mixer's form. Null, with SDL's error set, when that can't be done.
std::shared_ptr<const SoundSamples> Convert(const SDL_AudioSpec& from, const Uint8* data, Uint32 size)
{
    if (from.freq < CSound::MIN_RATE || from.freq > CSound::MAX_RATE) {
        SDL_SetError("a rate of %d frames a second", from.freq);
        return nullptr;
    }
    SDL_AudioCVT conversion;
    if (SDL_BuildAudioCVT(&conversion, from.format, from.channels, from.freq, AUDIO_S16SYS, CMixer::CHANNELS,
                          CMixer::RATE) < 0)
        return nullptr;
    const std::uint64_t needed =
        std::uint64_t{size} * static_cast<std::uint64_t>(std::max(conversion.len_mult, 1));
    if (needed > CSound::MAX_SOUND_BYTES) {
        SDL_SetError("the sound is too long");
        return nullptr;
    }
    std::vector<Uint8> buffer(needed);
    std::copy_n(data, size, buffer.begin());
    conversion.len = static_cast<int>(size);
    conversion.buf = buffer.data();
    if (SDL_ConvertAudio(&conversion) != 0)
        return nullptr;
    const std::size_t bytes =
        conversion.needed ? static_cast<std::size_t>(conversion.len_cvt) : static_cast<std::size_t>(size);
    auto samples = std::make_shared<SoundSamples>(bytes / sizeof(std::int16_t));
    std::memcpy(samples->data(), buffer.data(), samples->size() * sizeof(std::int16_t));
    return samples;
}

} // namespace

CSound::~CSound()
{
    if (m_nDevice != 0)
        SDL_CloseAudioDevice(m_nDevice);
}

void CSound::LoadNames(const char* path)
{
    ds_file_buffered file;
    try {
        file.open(path, false);
    } catch (const fopen_exception& exception) {
        DebugLine(std::string("Sounds: ") + exception.what());
        return;
    }
    CTextParser parser(&file, false);
    bool good = parser.SeekToToken("SoundMap") && parser.SkipTillChar('{');
    while (good && parser.SkipSpace(false) != '}') {
        char name[MAX_PATH];
        char sound[MAX_PATH];
        good = parser.ReadFileName(name, sizeof(name)) && parser.ReadFileName(sound, sizeof(sound));
        if (good)
            m_Names.try_emplace(LowerCase(name), sound);
        if (good && parser.SkipSpace(false) == ',')
            parser.SkipSpace(true);
    }
    if (!good)
        DebugLine(parser.DescribeError());
}

bool CSound::OpenDevice()
{
    QuietSoundSystem();
    if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0)
        return false;
    SDL_AudioSpec wanted = {};
    wanted.freq = CMixer::RATE;
    wanted.format = AUDIO_S16SYS;
    wanted.channels = CMixer::CHANNELS;
    wanted.samples = DEVICE_BUFFER_FRAMES;
    wanted.callback = &CSound::Callback;
    wanted.userdata = this;
    m_nDevice = SDL_OpenAudioDevice(nullptr, 0, &wanted, nullptr, 0);
    if (m_nDevice != 0)
        SDL_PauseAudioDevice(m_nDevice, 0);
    return m_nDevice != 0;
}

void CSound::Callback(void* self, std::uint8_t* out, int bytes)
{
    constexpr std::size_t FRAME_BYTES = CMixer::CHANNELS * sizeof(std::int16_t);
    static_cast<CSound*>(self)->m_Mixer.Mix(reinterpret_cast<std::int16_t*>(out),
                                            static_cast<std::size_t>(bytes) / FRAME_BYTES);
}

void CSound::SetLevels(bool muteEffects, float effects, bool muteMusic, float music)
{
    const CDeviceLock lock(m_nDevice);
    m_Mixer.SetLevel(CMixer::GROUP_EFFECTS, muteEffects ? 0.0F : effects);
    m_Mixer.SetLevel(CMixer::GROUP_MUSIC, muteMusic ? 0.0F : music);
}

std::shared_ptr<const SoundSamples> CSound::Load(const std::string& file)
{
    if (const auto found = m_Loaded.find(file); found != m_Loaded.end())
        return found->second;
    auto& samples = m_Loaded[file];
    const std::string path = PlatformResolveRead(file.c_str());
    SDL_RWops* stream = SDL_RWFromFile(path.c_str(), "rb");
    const Sint64 bytes = stream == nullptr ? -1 : SDL_RWsize(stream);
    if (bytes < 0 || bytes > static_cast<Sint64>(MAX_FILE_BYTES)) {
        if (stream != nullptr)
            SDL_RWclose(stream);
        std::fprintf(stderr, "seawarden: sound %s can't be read or is too large\n", path.c_str());
        return samples;
    }
    SDL_AudioSpec format;
    Uint8* data = nullptr;
    Uint32 size = 0;
    if (SDL_LoadWAV_RW(stream, 1, &format, &data, &size) != nullptr) {
        samples = Convert(format, data, size);
        SDL_FreeWAV(data);
    }
    if (samples == nullptr)
        std::fprintf(stderr, "seawarden: sound %s: %s\n", path.c_str(), SDL_GetError());
    return samples;
}

bool CSound::Start(const std::string& file, CMixer::Group group, bool loop, std::size_t position)
{
    // Told with and without a device, so that both runs have the same debug output.
    const std::string found = FindGameFile(file);
    if (found.empty())
        DebugLine("Sounds: there is no file " + file);
    if (found.empty() || m_nDevice == 0)
        return !found.empty();
    auto samples = Load(found);
    if (samples == nullptr)
        return false;
    const CDeviceLock lock(m_nDevice);
    m_Mixer.Start(std::move(samples), group, loop, position);
    return true;
}

void CSound::Play(const char* name, int, int)
{
    if (name == nullptr)
        return;
    if (onPlay)
        onPlay(name);
    const auto found = m_Names.find(LowerCase(name));
    if (found != m_Names.end())
        Start(found->second, CMixer::GROUP_EFFECTS, false);
}

void CSound::Stop(int fade)
{
    const CDeviceLock lock(m_nDevice);
    m_Mixer.Stop(CMixer::GROUP_EFFECTS, fade);
}

bool CSound::PlayMusic(const std::string& file, bool loop, std::size_t position)
{
    StopMusic(0);
    m_bMusic = Start(file, CMixer::GROUP_MUSIC, loop, position);
    return m_bMusic;
}

std::size_t CSound::StopMusic(int fade)
{
    m_bMusic = false;
    const CDeviceLock lock(m_nDevice);
    const std::size_t position = m_Mixer.Position(CMixer::GROUP_MUSIC);
    m_Mixer.Stop(CMixer::GROUP_MUSIC, fade);
    return position;
}

bool CSound::HasMusicEnded()
{
    if (!m_bMusic || m_nDevice == 0)
        return false;
    const CDeviceLock lock(m_nDevice);
    return !m_Mixer.IsPlaying(CMixer::GROUP_MUSIC);
}
