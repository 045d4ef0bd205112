#include "canvas.h"

#include "atomicfile.h"

#include <cmath>
#include <numbers>

namespace velmora::demo {
namespace {

constexpr double turn = 2 * std::numbers::pi;

cairo_status_t append(void *stream, const unsigned char *data, unsigned int length)
{
    return std::fwrite(data, 1, length, static_cast<FILE *>(stream)) == length ? CAIRO_STATUS_SUCCESS
                                                                               : CAIRO_STATUS_WRITE_ERROR;
}

} // namespace

// On failure cairo returns inert objects, never null; write() detects it.
Canvas::Canvas()
    : m_surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, side, side))
    , m_cairo(cairo_create(m_surface))
{
    cairo_set_line_cap(m_cairo, CAIRO_LINE_CAP_ROUND);
}

Canvas::~Canvas()
{
    cairo_destroy(m_cairo);
    cairo_surface_destroy(m_surface);
}

void Canvas::paint(Colour colour, double alpha)
{
    cairo_set_source_rgba(m_cairo, (colour >> 16 & 255) / 255.0, (colour >> 8 & 255) / 255.0, (colour & 255) / 255.0,
                          alpha);
    cairo_fill(m_cairo);
}

void Canvas::stroke(double width, Colour colour, double alpha)
{
    cairo_set_line_width(m_cairo, width);
    cairo_set_source_rgba(m_cairo, (colour >> 16 & 255) / 255.0, (colour >> 8 & 255) / 255.0, (colour & 255) / 255.0,
                          alpha);
    cairo_stroke(m_cairo);
}

void Canvas::fill(Colour colour)
{
    box(0, 0, side, side, colour);
}

void Canvas::circle(double x, double y, double radius, Colour colour, double alpha)
{
    cairo_arc(m_cairo, x, y, radius, 0, turn);
    paint(colour, alpha);
}

void Canvas::ring(double x, double y, double radius, double width, Colour colour, double alpha)
{
    cairo_new_sub_path(m_cairo);
    cairo_arc(m_cairo, x, y, radius, 0, turn);
    stroke(width, colour, alpha);
}

void Canvas::arc(double x, double y, double radius, double from, double to, double width, Colour colour, double alpha)
{
    cairo_new_sub_path(m_cairo);
    cairo_arc(m_cairo, x, y, radius, from * turn, to * turn);
    stroke(width, colour, alpha);
}

void Canvas::wedge(double x, double y, double radius, double from, double to, Colour colour, double alpha)
{
    cairo_move_to(m_cairo, x, y);
    cairo_arc(m_cairo, x, y, radius, from * turn, to * turn);
    cairo_close_path(m_cairo);
    paint(colour, alpha);
}

void Canvas::box(double x, double y, double width, double height, Colour colour, double alpha, double corner)
{
    if (corner > 0) {
        cairo_new_sub_path(m_cairo);
        cairo_arc(m_cairo, x + width - corner, y + corner, corner, -turn / 4, 0);
        cairo_arc(m_cairo, x + width - corner, y + height - corner, corner, 0, turn / 4);
        cairo_arc(m_cairo, x + corner, y + height - corner, corner, turn / 4, turn / 2);
        cairo_arc(m_cairo, x + corner, y + corner, corner, turn / 2, turn * 3 / 4);
        cairo_close_path(m_cairo);
    } else {
        cairo_rectangle(m_cairo, x, y, width, height);
    }
    paint(colour, alpha);
}

void Canvas::polygon(const std::vector<std::pair<double, double>> &points, Colour colour, double alpha)
{
    for (const auto &[x, y] : points)
        cairo_line_to(m_cairo, x, y);
    cairo_close_path(m_cairo);
    paint(colour, alpha);
}

void Canvas::line(double x1, double y1, double x2, double y2, double width, Colour colour, double alpha)
{
    cairo_move_to(m_cairo, x1, y1);
    cairo_line_to(m_cairo, x2, y2);
    stroke(width, colour, alpha);
}

void Canvas::wave(double y, double height, double length, double phase, Colour colour, double alpha)
{
    cairo_move_to(m_cairo, 0, side);
    for (int x = 0; x <= side; x += 4)
        cairo_line_to(m_cairo, x, y + height * std::sin(turn * (x / length + phase)));
    cairo_line_to(m_cairo, side, side);
    cairo_close_path(m_cairo);
    paint(colour, alpha);
}

void Canvas::leaf(double x1, double y1, double x2, double y2, double belly, Colour colour, double alpha)
{
    const double mx = (x1 + x2) / 2, my = (y1 + y2) / 2, nx = -(y2 - y1) * belly, ny = (x2 - x1) * belly;
    cairo_move_to(m_cairo, x1, y1);
    cairo_curve_to(m_cairo, mx + nx, my + ny, mx + nx, my + ny, x2, y2);
    cairo_curve_to(m_cairo, mx - nx, my - ny, mx - nx, my - ny, x1, y1);
    paint(colour, alpha);
}

bool Canvas::write(const std::filesystem::path &pngFile) const
{
    AtomicFile file(pngFile);
    return file.isOpen() && cairo_status(m_cairo) == CAIRO_STATUS_SUCCESS &&
           cairo_surface_write_to_png_stream(m_surface, append, file.stream()) == CAIRO_STATUS_SUCCESS && file.commit();
}

} // namespace velmora::demo
