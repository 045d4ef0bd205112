// Pictures of the advertisements: one plain symbol on a round sign.

#include "canvas.h"
#include "picture.h"

#include <cmath>

namespace velmora::demo {
namespace {

void sign(Canvas &canvas, Colour ground, Colour plate, Colour edge)
{
    canvas.fill(ground);
    canvas.circle(240, 240, 190, edge);
    canvas.circle(240, 240, 176, plate);
}

void bakery(Canvas &canvas)
{
    sign(canvas, 0x8c3b2a, 0xf6e3c5, 0xf2a65a);
    canvas.box(110, 190, 260, 130, 0xb9783f, 1, 64);
    canvas.box(120, 196, 240, 104, 0xd99a52, 1, 52);
    for (int i = 0; i < 4; ++i)
        canvas.leaf(158 + i * 50, 272, 186 + i * 50, 206, 0.22, 0xf6e3c5);
    canvas.box(90, 332, 300, 12, 0x8c3b2a, 1, 6);
}

void library(Canvas &canvas)
{
    sign(canvas, 0x2d4739, 0xe8ddb5, 0x9db17c);
    canvas.polygon({{236, 178}, {112, 150}, {112, 300}, {236, 330}}, 0xf8f1dc);
    canvas.polygon({{244, 178}, {368, 150}, {368, 300}, {244, 330}}, 0xf8f1dc);
    canvas.polygon({{236, 330}, {112, 300}, {112, 318}, {240, 350}, {368, 318}, {368, 300}, {244, 330}}, 0xd9573f);
    for (int i = 0; i < 4; ++i) {
        canvas.line(134, 186 + i * 28, 214, 205 + i * 28, 5, 0x2d4739, 0.7);
        canvas.line(346, 186 + i * 28, 266, 205 + i * 28, 5, 0x2d4739, 0.7);
    }
    canvas.box(236, 172, 8, 164, 0xc73e1d);
}

void bicycles(Canvas &canvas)
{
    sign(canvas, 0x1c3b5a, 0xe9b872, 0xd9573f);
    for (double x : {160.0, 320.0}) {
        canvas.ring(x, 280, 58, 11, 0x122a42);
        for (int i = 0; i < 6; ++i)
            canvas.line(x - 54 * std::cos(i * 0.5236), 280 - 54 * std::sin(i * 0.5236), x + 54 * std::cos(i * 0.5236),
                        280 + 54 * std::sin(i * 0.5236), 2, 0x122a42);
        canvas.circle(x, 280, 9, 0x122a42);
    }
    const Colour frame = 0xc73e1d;
    canvas.line(160, 280, 206, 190, 9, frame);
    canvas.line(206, 190, 298, 190, 9, frame);
    canvas.line(206, 190, 236, 280, 9, frame);
    canvas.line(236, 280, 298, 190, 9, frame);
    canvas.line(160, 280, 236, 280, 9, frame);
    canvas.line(320, 280, 290, 166, 9, frame);
    canvas.line(290, 166, 322, 158, 9, 0x122a42);
    canvas.line(186, 178, 224, 178, 12, 0x122a42);
}

void teahouse(Canvas &canvas)
{
    sign(canvas, 0x3d315b, 0xf4dfb8, 0x8a6fae);
    const Colour kettle = 0x1f5f8a;
    canvas.ring(330, 268, 40, 14, kettle);
    canvas.polygon({{120, 214}, {180, 246}, {180, 300}}, kettle);
    canvas.wedge(240, 258, 96, 0, 0.5, kettle);
    canvas.box(144, 228, 192, 34, kettle, 1, 14);
    canvas.box(196, 204, 88, 22, 0x16466a, 1, 10);
    canvas.circle(240, 194, 13, 0xd9573f);
    canvas.box(170, 346, 140, 12, 0x16466a, 1, 6);
    for (double x : {210.0, 240.0, 270.0})
        canvas.arc(x, 140, 16, 0.3, 0.72, 6, 0x8a6fae);
}

void ferryboat(Canvas &canvas)
{
    sign(canvas, 0x1f4e56, 0xe8ddb5, 0xf2a65a);
    canvas.box(226, 120, 30, 60, 0xd9573f);
    canvas.box(226, 120, 30, 16, 0x14363c);
    canvas.box(160, 180, 160, 50, 0xf8f1dc);
    for (int i = 0; i < 4; ++i)
        canvas.circle(182 + i * 38, 205, 11, 0x1f4e56);
    canvas.polygon({{100, 230}, {380, 230}, {340, 310}, {140, 310}}, 0x14363c);
    canvas.polygon({{108, 246}, {372, 246}, {367, 258}, {114, 258}}, 0xd9573f);
    for (int i = 0; i < 6; ++i)
        canvas.arc(118 + i * 49, 316, 24, 0, 0.5, 9, 0x5f9a95);
    for (int i = 0; i < 5; ++i)
        canvas.arc(142 + i * 49, 348, 24, 0, 0.5, 9, 0x5f9a95, 0.6);
}

void observatory(Canvas &canvas)
{
    sign(canvas, 0x4a1942, 0x22223b, 0xf7c548);
    for (const auto &[x, y] :
         {std::pair{150.0, 150.0}, {330.0, 140.0}, {370.0, 210.0}, {200.0, 110.0}, {120.0, 220.0}, {270.0, 106.0}}) {
        canvas.polygon({{x, y - 13},
                        {x + 4, y - 4},
                        {x + 13, y},
                        {x + 4, y + 4},
                        {x, y + 13},
                        {x - 4, y + 4},
                        {x - 13, y},
                        {x - 4, y - 4}},
                       0xf7c548);
    }
    canvas.wedge(240, 290, 84, 0.5, 1, 0xc9ada7);
    canvas.polygon({{252, 290}, {276, 290}, {338, 158}, {312, 148}}, 0x15152a);
    canvas.polygon({{258, 280}, {272, 280}, {332, 152}, {318, 146}}, 0xf28482);
    canvas.box(150, 290, 180, 70, 0xf2e9e4);
    canvas.box(226, 314, 28, 46, 0x4a1942);
}

struct Sign {
    const char *adId;
    void (*draw)(Canvas &);
};
constexpr Sign signs[] = {{"ad-bakery", bakery},     {"ad-library", library}, {"ad-bicycles", bicycles},
                          {"ad-teahouse", teahouse}, {"ad-ferry", ferryboat}, {"ad-observatory", observatory}};

} // namespace

bool drawSign(const std::string &adId, const std::filesystem::path &pngFile)
{
    for (const Sign &candidate : signs)
        if (adId == candidate.adId) {
            Canvas canvas;
            candidate.draw(canvas);
            return canvas.write(pngFile);
        }
    return false;
}

} // namespace velmora::demo
