#pragma once
// What seawarden-tf does. All throw file_fault or another std::exception, and leave no half of a file then.

#include <string>

/// Prints size, formats and levels of a texture file, as far as the file goes.
void Info(const std::string& file);
/// Makes a texture file of a 24-bit BMP, at that size in pixels; 0 by 0 is the picture's own.
void Convert(const std::string& in, const std::string& out, int width, int height);
/// Writes a level, counted from 0, as a PNG: of the 8-bit chain when `eightBit` is set or there is no other.
void Export(const std::string& in, int level, const std::string& out, bool eightBit);
/// Makes a TGA of a BMP; a portrait has its own size and may also be made of a TGA.
void BmpToTga(const std::string& in, const std::string& out, bool portrait);
