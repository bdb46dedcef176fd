#include "support/picture_compare.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace seawarden_test
{

namespace
{

std::string PixelText(std::uint16_t pixel)
{
    char text[8];
    std::snprintf(text, sizeof text, "0x%04x", static_cast<unsigned>(pixel));
    return text;
}

std::string SizeText(const Picture& picture)
{
    return std::to_string(picture.m_nWidth) + " by " + std::to_string(picture.m_nHeight);
}

/// Where the picture was left, or why it wasn't, for the end of a failure message.
std::string LeavePicture(const std::string& name, const Picture& picture)
{
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::current_path(error) / "failed_pictures";
    std::filesystem::create_directories(folder, error);
    const std::string path = (folder / (name + ".png")).string();
    if (picture.m_aPixels.empty() ||
        !SavePng(path, picture.m_aPixels.data(), picture.m_nWidth, picture.m_nHeight))
        return "; the picture couldn't be left at " + path;
    return "; the picture is left at " + path;
}

} // namespace

Picture TakePicture(IRender2D& render, int surface)
{
    RECT rect;
    render.GetSurfaceRect(surface, &rect);
    const std::uint16_t* const pixels = render.LockSurface(surface);
    if (pixels == nullptr)
        return {};
    const auto count = static_cast<std::ptrdiff_t>(rect.right) * rect.bottom;
    Picture picture{rect.right, rect.bottom, {pixels, pixels + count}};
    render.UnlockSurface(surface, 0);
    return picture;
}

::testing::AssertionResult SamePicture(const std::string& name, const Picture& actual,
                                       const Picture& expected)
{
    if (actual.m_nWidth != expected.m_nWidth || actual.m_nHeight != expected.m_nHeight)
        return ::testing::AssertionFailure() << name << " is " << SizeText(actual) << " instead of "
                                             << SizeText(expected) << LeavePicture(name, actual);
    std::size_t wrong = 0;
    std::size_t first = 0;
    for (std::size_t i = 0; i < expected.m_aPixels.size(); ++i)
        if (actual.m_aPixels[i] != expected.m_aPixels[i] && wrong++ == 0)
            first = i;
    if (wrong == 0)
        return ::testing::AssertionSuccess();
    const auto width = static_cast<std::size_t>(expected.m_nWidth);
    return ::testing::AssertionFailure()
           << name << ": " << wrong << " wrong pixels, the first at x " << first % width << ", y "
           << first / width << ": " << PixelText(actual.m_aPixels[first]) << " instead of "
           << PixelText(expected.m_aPixels[first]) << LeavePicture(name, actual);
}

::testing::AssertionResult SameAsReference(const std::string& name, const Picture& actual,
                                           const std::string& referencePath)
{
    std::ifstream file(referencePath, std::ios::binary);
    if (!file)
        return ::testing::AssertionFailure()
               << name << ": the reference " << referencePath << " is missing" << LeavePicture(name, actual);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    try {
        const Picture reference =
            DecodePicture({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, referencePath);
        return SamePicture(name, actual, reference);
    } catch (const std::runtime_error& error) {
        return ::testing::AssertionFailure() << name << ": the reference " << referencePath << ": "
                                             << error.what() << LeavePicture(name, actual);
    }
}

} // namespace seawarden_test
