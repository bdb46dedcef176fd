#pragma once
// What is wrong with a file that the library refuses without a word. All throw file_fault, and return when
// they find nothing.

#include <cstdint>
#include <string>

/// The file layer knows a program's own folders alone; a tool is given paths from where it is called.
/// Links are followed, and the rest of the path may be missing.
std::string FullPath(const std::string& path);

/// A path that the file layer would take for another one.
void CheckName(const std::string& path);
/// What can't be opened, is no file, or has more bytes than a position can count.
void CheckReadable(const std::string& path);
/// What no reader of BMPs takes.
void CheckBmp(const std::string& path);
/// Besides, what a TGA can't be made of that fits its own header.
void CheckTgaBmp(const std::string& path);
/// What a texture can't be made of.
void CheckTextureBmp(const std::string& path);
/// What can't become a portrait of this size in pixels, be it a BMP or a TGA.
void CheckPortrait(const std::string& path, int width, int height);
/// The head of a texture file.
void CheckTexture(const std::string& path);
