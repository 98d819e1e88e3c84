// Drawings through gnuplot: the pipe, the terminals for SVG and PNG, and what can go wrong with them.
#pragma once

#include <cstdio>
#include <functional>
#include <string>

namespace common {

/// A string of gnuplot's, for text that is shown: bytes that are no printable UTF-8 become question marks, as a drawing
/// with them would be none.
std::string label(const std::string& text);

/// Empty for a name that ends in .svg or .png, which says what a drawing is; else what is wrong, for CLI11's check().
std::string fault_of_drawing(const std::string& path);

/// Pixels of an SVG; a PNG has twice as many each way, in lines and letters of twice the size.
struct Extent {
    int width = 800, height = 500;
};

/// Draws what `script` writes for gnuplot; data may stand inline. Throws InputError, naming the file, when there is no
/// whole drawing at the end, and when gnuplot is not installed.
void draw(const std::string& path, const std::string& title, const std::function<void(std::FILE*)>& script,
          Extent extent = {});

} // namespace common
