#pragma once

#include <cairo.h>
#include <cstdint>
#include <filesystem>
#include <utility>
#include <vector>

namespace velmora::demo {

using Colour = uint32_t; // 0xRRGGBB

// A square of 480 by 480 for flat shapes; (0, 0) is the upper left corner.
class Canvas {
public:
    static constexpr int side = 480;

    Canvas();
    ~Canvas();
    Canvas(const Canvas &) = delete;
    Canvas &operator=(const Canvas &) = delete;

    void fill(Colour colour);
    void circle(double x, double y, double radius, Colour colour, double alpha = 1);
    void ring(double x, double y, double radius, double width, Colour colour, double alpha = 1);
    // Angles in turns, clockwise from the right.
    void arc(double x, double y, double radius, double from, double to, double width, Colour colour, double alpha = 1);
    void wedge(double x, double y, double radius, double from, double to, Colour colour, double alpha = 1);
    void box(double x, double y, double width, double height, Colour colour, double alpha = 1, double corner = 0);
    void polygon(const std::vector<std::pair<double, double>> &points, Colour colour, double alpha = 1);
    void line(double x1, double y1, double x2, double y2, double width, Colour colour, double alpha = 1);
    // A wave over the full width, filled down to the lower edge.
    void wave(double y, double height, double length, double phase, Colour colour, double alpha = 1);
    // A leaf from one point to another.
    void leaf(double x1, double y1, double x2, double y2, double belly, Colour colour, double alpha = 1);

    bool write(const std::filesystem::path &pngFile) const;

private:
    void paint(Colour colour, double alpha);
    void stroke(double width, Colour colour, double alpha);

    cairo_surface_t *m_surface;
    cairo_t *m_cairo;
};

} // namespace velmora::demo
