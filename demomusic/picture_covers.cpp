// Album covers: flat shapes in a few warm, muted colours, one drawing for each album.

#include "canvas.h"
#include "picture.h"
#include "random.h"

#include <cmath>
#include <iterator>
#include <tuple>

namespace velmora::demo {
namespace {

constexpr int side = Canvas::side;

struct Palette {
    Colour ground, main, accent, light, deep;
};
constexpr Palette harbour{0x1c3b5a, 0xe9b872, 0xd9573f, 0xf4dfb8, 0x122a42};
constexpr Palette wood{0x2d4739, 0xf2a65a, 0x9db17c, 0xdde5b6, 0x1d3128};
constexpr Palette mulberry{0x4a1942, 0xf7c548, 0xc73e1d, 0xeabfcb, 0x32102d};
constexpr Palette dusk{0x22223b, 0xf28482, 0xc9ada7, 0xf2e9e4, 0x15152a};
constexpr Palette plum{0x3d315b, 0xf8c76a, 0x8a6fae, 0xe8ddb5, 0x281f40};
constexpr Palette petrol{0x1f4e56, 0xf2a65a, 0xd9573f, 0xe8ddb5, 0x14363c};
constexpr Palette clay{0x8c3b2a, 0xf2c078, 0x5a1f1c, 0xf6e3c5, 0x3c1413};
constexpr Palette sand{0xe8ddb5, 0xd9573f, 0x2d4739, 0xf8f1dc, 0x4a1942};

void snowWindow(Canvas &canvas, Random random)
{
    const Palette &p = dusk;
    canvas.fill(p.deep);
    canvas.box(70, 50, 340, 380, 0x3a3a5e);
    canvas.circle(300, 150, 52, p.light);
    canvas.polygon({{70, 330}, {160, 270}, {260, 320}, {350, 260}, {410, 300}, {410, 430}, {70, 430}}, 0x9a8c98);
    canvas.polygon({{70, 380}, {190, 320}, {300, 370}, {410, 330}, {410, 430}, {70, 430}}, p.light);
    for (int i = 0; i < 46; ++i)
        canvas.circle(80 + random.unit() * 320, 60 + random.unit() * 340, 2 + random.unit() * 4, p.light, 0.85);
    canvas.box(230, 50, 20, 380, p.main);
    canvas.box(70, 220, 340, 16, p.main);
    for (double x : {56.0, 404.0})
        canvas.box(x, 36, 20, 408, p.main);
    canvas.box(56, 36, 368, 20, p.main);
    canvas.box(40, 424, 400, 24, p.accent);
}

void letters(Canvas &canvas, Random random)
{
    const Palette &p = mulberry;
    canvas.fill(p.ground);
    const Colour papers[] = {p.light, 0xe8ddb5, p.main, 0xf8f1dc, 0xd98f7a};
    for (int i = 0; i < 5; ++i) {
        const double x = 60 + random.unit() * 50 + float(i) * 14, y = 60 + i * 66, w = 270, h = 150;
        canvas.box(x + 8, y + 10, w, h, p.deep, 0.5);
        canvas.box(x, y, w, h, papers[i]);
        canvas.polygon({{x, y}, {x + w, y}, {x + w / 2, y + h * 0.58}}, p.deep, 0.16);
        canvas.line(x + 2, y + 2, x + w / 2, y + h * 0.58, 3, p.ground, 0.7);
        canvas.line(x + w - 2, y + 2, x + w / 2, y + h * 0.58, 3, p.ground, 0.7);
    }
    canvas.circle(256, 420, 22, p.accent);
}

void corridor(Canvas &canvas, Random)
{
    const Palette &p = plum;
    canvas.fill(p.deep);
    const Colour walls[] = {0x33284e, p.ground, 0x4c3d70, 0x5d4b86, 0x7a62a0, p.main};
    for (int i = 0; i < 6; ++i) {
        const double inset = 30 + i * 34;
        canvas.box(inset, inset * 0.9, side - 2 * inset, side - inset * 0.9, walls[i]);
    }
    canvas.circle(240, 150, 20, p.light);
    canvas.line(240, 0, 240, 132, 4, p.light, 0.8);
    canvas.polygon({{200, 480}, {280, 480}, {262, 330}, {218, 330}}, 0xd9573f);
}

void ferry(Canvas &canvas, Random random)
{
    const Palette &p = harbour;
    canvas.fill(p.ground);
    canvas.circle(280, 200, 110, p.main);
    for (int i = 0; i < 5; ++i)
        canvas.wave(290 + i * 40, 10 + 2 * i, 220 + 30 * i, random.unit(), i % 2 ? 0xc73e1d : p.accent,
                    0.55 + 0.09 * i);
    canvas.polygon({{120, 318}, {240, 318}, {216, 352}, {144, 352}}, p.light);
    canvas.polygon({{176, 312}, {176, 236}, {226, 312}}, 0xf8f1dc);
    canvas.wave(362, 8, 160, 0.2, p.accent);
    canvas.wave(412, 8, 210, 0.6, 0xc73e1d);
}

void bramble(Canvas &canvas, Random random)
{
    const Palette &p = wood;
    canvas.fill(p.ground);
    canvas.line(90, 450, 390, 40, 9, p.accent);
    for (int i = 0; i < 8; ++i) {
        const double x = 120 + i * 36, y = 410 - i * 49, reach = 96 - i * 4;
        const double lift = 30 + random.unit() * 30;
        canvas.leaf(x, y, x - reach, y - lift, 0.32, i % 3 == 1 ? p.main : p.light);
        canvas.leaf(x, y, x + reach, y + lift - 26, 0.32, i % 3 == 2 ? p.main : p.accent);
    }
    for (const auto &[x, y] : {std::pair{150.0, 200.0}, {334.0, 300.0}, {240.0, 96.0}})
        for (int k = 0; k < 7; ++k) {
            const double a = k * 0.8976;
            canvas.circle(x + (k ? 17 * std::cos(a) : 0), y + (k ? 17 * std::sin(a) : 0), 12,
                          k % 2 ? 0xc73e1d : 0x8e2440);
        }
}

void hills(Canvas &canvas, Random random)
{
    const Palette &p = petrol;
    canvas.fill(0xe8ddb5);
    canvas.circle(150, 150, 72, p.accent);
    const Colour layers[] = {0xf2a65a, 0xb9783f, 0x5f7f6a, p.ground, p.deep};
    for (int i = 0; i < 5; ++i)
        canvas.wave(210 + i * 58, 34 - i * 3, 360 + 60 * random.unit(), random.unit(), layers[i]);
    for (double x : {300.0, 328.0, 360.0})
        canvas.polygon({{x, 330}, {x + 16, 390}, {x - 16, 390}}, p.deep);
}

void bars(Canvas &canvas, Random random)
{
    const Palette &p = mulberry;
    canvas.fill(0x2b1839);
    canvas.circle(240, 250, 170, p.ground);
    canvas.circle(240, 250, 120, 0x6a2463);
    const Colour tones[] = {p.main, 0xf2a65a, 0xd9573f, p.light, 0x5fe0b7};
    for (int i = 0; i < 11; ++i) {
        const double height = 70 + 230 * std::abs(std::sin(i * 0.9 + random.unit() * 0.7));
        canvas.box(42 + i * 37, 420 - height, 24, height, tones[(i * 3) % 5], 1, 12);
    }
}

void timetable(Canvas &canvas, Random random)
{
    const Palette &p = dusk;
    canvas.fill(p.deep);
    for (int column = 0; column < 5; ++column) {
        const double height = 180 + random.unit() * 200, x = 20 + column * 90;
        canvas.box(x, side - height, 80, height, column % 2 ? p.ground : 0x33335a);
        for (int row = 0; row * 36 < height - 40; ++row) {
            const double y = side - height + 20 + row * 36;
            for (double wx : {x + 14.0, x + 46.0})
                canvas.box(wx, y, 20, 20, random.chance(0.42f) ? (random.chance(0.5f) ? 0xf7c548 : p.main) : 0x15152a);
        }
    }
    canvas.circle(390, 80, 36, p.accent);
    canvas.circle(374, 72, 32, p.deep);
}

void tides(Canvas &canvas, Random)
{
    const Palette &p = petrol;
    canvas.fill(p.deep);
    for (int i = 0; i < 7; ++i)
        canvas.wedge(240, 300, 230 - i * 32, 0.5, 1, i % 2 ? p.ground : 0x5f9a95, 0.35 + 0.09 * i);
    canvas.circle(240, 300, 26, p.light);
    for (int i = 0; i < 6; ++i)
        canvas.box(40 + i * 34, 318 + i * 24, 400 - i * 68, 10, i % 2 ? 0x5f9a95 : p.light, 0.9 - 0.1 * i, 5);
    canvas.box(0, 300, side, 4, p.main);
}

void antennas(Canvas &canvas, Random random)
{
    const Palette &p = plum;
    canvas.fill(p.ground);
    canvas.wave(400, 16, 480, 0.1, p.deep);
    const double xs[] = {100, 240, 370}, tops[] = {220, 130, 250};
    for (int i = 0; i < 3; ++i) {
        canvas.line(xs[i], tops[i], xs[i], 420, 7, p.light);
        for (int k = 1; k < 4; ++k)
            canvas.line(xs[i] - 30 + 5 * k, tops[i] + 34 * k, xs[i] + 30 - 5 * k, tops[i] + 34 * k, 5, p.light, 0.8);
        for (int k = 1; k < 4; ++k)
            canvas.arc(xs[i], tops[i], 22.0 * k, 0.64, 0.86, 7, k == 2 ? p.main : 0xd9573f, 1.1 - 0.25 * k);
        canvas.circle(xs[i], tops[i], 9, p.main);
    }
    for (int i = 0; i < 24; ++i)
        canvas.circle(random.unit() * side, random.unit() * 190, 1.5 + random.unit() * 2, p.light, 0.7);
}

void record(Canvas &canvas, Random)
{
    const Palette &p = clay;
    canvas.fill(p.main);
    canvas.circle(200, 260, 180, p.deep);
    for (int i = 0; i < 6; ++i)
        canvas.ring(200, 260, 168 - i * 18, 2.5, p.ground, 0.8);
    canvas.circle(200, 260, 62, p.ground);
    canvas.circle(200, 260, 11, p.light);
    // A spoon in place of an arm.
    canvas.line(420, 60, 300, 268, 13, p.light);
    canvas.leaf(318, 236, 262, 334, 0.34, p.light);
}

void bulbs(Canvas &canvas, Random random)
{
    const Palette &p = mulberry;
    canvas.fill(p.deep);
    for (int row = 0; row < 3; ++row) {
        const double y = 40 + row * 120;
        for (int i = 0; i < 12; ++i) {
            const auto sag = [&](double x) { return y + 46 * (1 - std::pow((x - 240) / 240, 2)); };
            canvas.line(i * 40, sag(i * 40), i * 40 + 40, sag(i * 40 + 40), 3, 0xe8ddb5, 0.7);
        }
        const Colour tones[] = {p.main, 0xf2a65a, p.light, 0xd9573f};
        for (int i = 0; i < 5; ++i) {
            const double x = 60 + i * 90 - row % 2 * 30, top = y + 46 * (1 - std::pow((x - 240) / 240, 2));
            const Colour tone = tones[random.below(4)];
            canvas.box(x - 9, top, 18, 18, 0x8a6a5a);
            canvas.circle(x, top + 40, 46, tone, 0.16);
            canvas.circle(x, top + 40, 27, tone);
        }
    }
}

void tables(Canvas &canvas, Random random)
{
    const Palette &p = sand;
    const Colour tones[] = {p.main, p.accent, 0xf2a65a, p.deep, 0x5f7f6a};
    canvas.fill(p.ground);
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column) {
            const double x = column * 120, y = row * 120;
            const int turn = random.below(4);
            if ((row + column) % 2)
                canvas.box(x, y, 120, 120, p.light);
            const double cx = turn == 0 || turn == 3 ? x : x + 120, cy = turn < 2 ? y : y + 120;
            const double from = turn == 0 ? 0 : turn == 1 ? 0.25 : turn == 2 ? 0.5 : 0.75;
            canvas.wedge(cx, cy, 120, from, from + 0.25, tones[random.below(5)]);
            canvas.wedge(cx, cy, 52, from, from + 0.25, p.ground);
        }
}

void gate(Canvas &canvas, Random)
{
    const Palette &p = clay;
    canvas.fill(p.light);
    canvas.circle(240, 190, 150, p.main);
    canvas.box(0, 400, side, 80, p.accent);
    for (int i = 0; i < 9; ++i) {
        const double x = 46 + i * 44, top = 150 + 60 * std::pow((i - 4) / 4.0, 2);
        canvas.polygon({{x, top + 20}, {x + 15, top}, {x + 30, top + 20}, {x + 30, 440}, {x, 440}},
                       i % 2 ? p.ground : 0xa84632);
    }
    canvas.box(30, 250, 420, 22, p.deep);
    canvas.box(30, 370, 420, 22, p.deep);
    canvas.circle(262, 320, 11, p.main);
}

void wayHome(Canvas &canvas, Random random)
{
    const Palette &p = harbour;
    canvas.fill(p.deep);
    canvas.circle(150, 120, 56, p.light);
    canvas.polygon({{0, 300}, {120, 150}, {220, 270}, {330, 120}, {480, 290}, {480, 480}, {0, 480}}, p.ground);
    canvas.polygon({{330, 120}, {368, 163}, {340, 178}, {316, 164}, {300, 160}}, p.light);
    canvas.wave(330, 16, 420, 0.3, 0x2f5d7c);
    canvas.polygon({{150, 480}, {330, 480}, {262, 330}, {246, 330}}, p.accent);
    for (int i = 0; i < 4; ++i) {
        const double near = i / 3.0, y = 340 + 110 * near, reach = 26 + 110 * near, size = 7 + 12 * near;
        for (double x : {254 - reach, 254 + reach}) {
            canvas.circle(x, y - size * 3, size * 2.2, p.main, 0.22);
            canvas.circle(x, y - size * 3, size, p.main);
            canvas.line(x, y - size * 2, x, y + size, 3 + 2 * near, p.main);
        }
    }
    for (int i = 0; i < 26; ++i)
        canvas.circle(random.unit() * side, random.unit() * 150, 1.5 + random.unit() * 1.6, p.light, 0.7);
}

void machines(Canvas &canvas, Random)
{
    const Palette &p = wood;
    canvas.fill(p.deep);
    const auto wheel = [&](double x, double y, double radius, int teeth, Colour tone) {
        for (int i = 0; i < teeth; ++i) {
            const double a = 6.283185307 * i / teeth;
            canvas.line(x, y, x + (radius + 13) * std::cos(a), y + (radius + 13) * std::sin(a), 17, tone);
        }
        canvas.circle(x, y, radius, tone);
        canvas.circle(x, y, radius * 0.62, p.deep);
        canvas.circle(x, y, radius * 0.28, tone);
    };
    wheel(180, 190, 110, 16, p.main);
    wheel(352, 300, 72, 11, p.accent);
    wheel(190, 396, 56, 9, 0xd9573f);
    wheel(390, 120, 46, 8, p.light);
}

void smallHours(Canvas &canvas, Random random)
{
    const Palette &p = dusk;
    canvas.fill(p.ground);
    canvas.polygon({{300, 0}, {480, 0}, {480, 480}, {150, 480}}, p.main, 0.18);
    canvas.box(250, 70, 150, 190, p.deep, 1, 8);
    canvas.circle(352, 130, 34, p.light);
    for (int i = 0; i < 9; ++i)
        canvas.circle(264 + random.unit() * 122, 84 + random.unit() * 160, 2, p.light, 0.8);
    canvas.box(320, 70, 8, 190, p.accent);
    canvas.box(70, 300, 290, 34, p.main, 1, 6); // the piano's lid
    canvas.box(70, 334, 290, 70, 0x3a3a5e);
    for (int i = 0; i < 14; ++i)
        canvas.box(78 + i * 20, 340, 17, 40, p.light, 1, 2);
    for (int i = 0; i < 13; ++i) {
        if (i % 7 != 2 && i % 7 != 6)
            canvas.box(92 + i * 20, 340, 9, 24, p.deep);
    }
    canvas.box(90, 404, 18, 60, p.accent);
    canvas.box(322, 404, 18, 60, p.accent);
}

void saltCellar(Canvas &canvas, Random random)
{
    const Palette &p = petrol;
    canvas.fill(p.ground);
    canvas.box(0, 350, side, 130, p.deep);
    canvas.circle(240, 356, 150, p.light, 0.14);
    canvas.polygon({{180, 350}, {300, 350}, {276, 160}, {204, 160}}, p.light, 0.55);
    canvas.polygon({{186, 344}, {294, 344}, {286, 270}, {194, 270}}, 0xf8f1dc);
    canvas.box(198, 118, 84, 48, p.main, 1, 14);
    for (double x : {218.0, 240.0, 262.0})
        canvas.circle(x, 134, 5, p.deep);
    for (int i = 0; i < 70; ++i) {
        const double x = 60 + random.unit() * 360;
        canvas.circle(x, 366 + random.unit() * 70, 1.5 + random.unit() * 2.5, 0xf8f1dc, 0.9);
    }
}

void nineGates(Canvas &canvas, Random)
{
    const Palette &p = wood;
    canvas.fill(p.light);
    for (int i = 8; i >= 0; --i) {
        const double half = 26 + 21.0 * (8 - i), top = 210 - 19.0 * (8 - i), foot = 290 + 20.0 * (8 - i);
        const Colour tone = i % 3 == 0 ? p.ground : i % 3 == 1 ? p.accent : p.main;
        canvas.box(240 - half - 7, top, 14, foot - top, tone);
        canvas.box(240 + half - 7, top, 14, foot - top, tone);
        canvas.box(240 - half - 16, top - 8, 2 * half + 32, 14, tone, 1, 6);
    }
    canvas.polygon({{226, 290}, {254, 290}, {330, 480}, {150, 480}}, p.deep, 0.35);
    canvas.circle(240, 190, 20, 0xd9573f);
}

void barrel(Canvas &canvas, Random)
{
    const Palette &p = clay;
    canvas.fill(p.deep);
    canvas.box(120, 90, 240, 320, p.ground, 1, 90);
    for (int i = 1; i < 6; ++i)
        canvas.line(120 + i * 40, 96, 120 + i * 40, 404, 4, p.deep, 0.6);
    for (double y : {130.0, 200.0, 280.0, 350.0})
        canvas.box(y < 160 || y > 320 ? 128 : 116, y, y < 160 || y > 320 ? 224 : 248, 18, 0xc9ada7);
    canvas.line(60, 430, 430, 60, 9, p.main); // the bow
    canvas.line(72, 440, 440, 74, 3, p.light);
    canvas.circle(240, 250, 16, p.deep);
}

void turbine(Canvas &canvas, Random)
{
    const Palette &p = mulberry;
    canvas.fill(0x2b1839);
    for (int i = 0; i < 12; ++i)
        canvas.wedge(240, 240, 215, i / 12.0, i / 12.0 + 0.055, i % 3 == 0 ? p.main : i % 3 == 1 ? p.accent : p.light);
    canvas.ring(240, 240, 216, 14, p.ground);
    canvas.circle(240, 240, 74, p.deep);
    canvas.ring(240, 240, 52, 6, 0x5fe0b7);
    canvas.circle(240, 240, 22, p.main);
}

void clockface(Canvas &canvas, Random)
{
    const Palette &p = plum;
    canvas.fill(p.main);
    canvas.circle(240, 240, 190, p.deep);
    canvas.circle(240, 240, 172, p.ground);
    for (int i = 0; i < 60; ++i) {
        const double a = 6.283185307 * i / 60, from = i % 5 ? 160 : 140;
        canvas.line(240 + from * std::cos(a), 240 + from * std::sin(a), 240 + 168 * std::cos(a),
                    240 + 168 * std::sin(a), i % 5 ? 3 : 8, i % 5 ? p.accent : p.light);
    }
    canvas.line(240, 240, 240, 120, 13, p.light);
    canvas.line(240, 240, 330, 292, 10, p.main);
    canvas.line(240, 240, 130, 310, 4, 0x5fe0b7);
    canvas.circle(240, 240, 14, p.light);
}

void weather(Canvas &canvas, Random random)
{
    const Palette &p = sand;
    canvas.fill(0x9db17c);
    canvas.box(0, 330, side, 150, p.accent);
    canvas.circle(360, 110, 58, p.light);
    const auto cloud = [&](double x, double y, double size, Colour tone) {
        for (const auto &[dx, dy, radius] :
             {std::tuple{-1.1, 0.1, 0.6}, {-0.4, -0.3, 0.8}, {0.5, -0.2, 0.7}, {1.2, 0.15, 0.5}})
            canvas.circle(x + dx * size, y + dy * size, radius * size, tone);
        canvas.box(x - 1.7 * size, y + 0.1 * size, 3.4 * size, 0.6 * size, tone, 1, 0.3 * size);
    };
    cloud(170, 150, 62, p.light);
    cloud(330, 220, 48, 0xdde5b6);
    for (int i = 0; i < 60; ++i) {
        const double x = random.unit() * side, y = 350 + random.unit() * 120;
        canvas.line(x, y, x + 5, y - 20, 3, p.ground, 0.7);
    }
    canvas.wave(440, 10, 300, 0.4, 0x1d3128);
}

void lightship(Canvas &canvas, Random random)
{
    const Palette &p = harbour;
    canvas.fill(p.deep);
    canvas.wedge(240, 150, 420, 0.04, 0.12, p.light, 0.35);
    canvas.wedge(240, 150, 420, 0.38, 0.46, p.light, 0.35);
    canvas.box(226, 150, 28, 170, p.accent);
    for (double y : {186.0, 248.0})
        canvas.box(226, y, 28, 30, p.light);
    canvas.circle(240, 146, 24, p.main);
    canvas.polygon({{90, 316}, {390, 316}, {346, 384}, {134, 384}}, p.accent);
    canvas.box(90, 316, 300, 14, p.light);
    for (int i = 0; i < 4; ++i)
        canvas.wave(368 + i * 30, 9 + i, 240 + 40 * i, random.unit(), i % 2 ? 0x2f5d7c : p.ground, 0.85);
    for (int i = 0; i < 22; ++i)
        canvas.circle(random.unit() * side, random.unit() * 110, 1.4 + random.unit() * 1.5, p.light, 0.7);
}

void helping(Canvas &canvas, Random)
{
    const Palette &p = wood;
    canvas.fill(p.main);
    canvas.circle(240, 250, 186, 0xf8f1dc);
    canvas.ring(240, 250, 132, 5, p.accent);
    canvas.wedge(240, 250, 118, 0.05, 0.7, 0xd9573f);
    canvas.wedge(240, 250, 118, 0.7, 0.86, p.ground);
    canvas.circle(205, 215, 15, p.light);
    canvas.circle(270, 290, 12, p.light);
    canvas.circle(240, 250, 20, p.deep);
    canvas.line(34, 90, 34, 420, 13, p.deep);
    for (double x : {18.0, 34.0, 50.0})
        canvas.line(x, 50, x, 130, 6, p.deep);
    canvas.line(446, 190, 446, 420, 13, p.deep);
    canvas.leaf(446, 210, 446, 52, 0.4, p.deep);
}

void allStops(Canvas &canvas, Random random)
{
    const Palette &p = dusk;
    canvas.fill(p.deep);
    for (int i = 0; i < 6; ++i)
        canvas.box(i * 84, 120 - random.unit() * 70, 76, 260, i % 2 ? p.ground : 0x33335a);
    canvas.box(0, 360, side, 120, 0x15151f);
    for (int i = 0; i < 5; ++i)
        canvas.box(20 + i * 100, 424, 56, 8, p.accent);
    canvas.box(50, 190, 380, 180, p.main, 1, 26);
    for (int i = 0; i < 5; ++i)
        canvas.box(74 + i * 66, 214, 54, 66, i == 3 ? 0x22223b : 0xf7c548, 1, 8);
    canvas.box(50, 300, 380, 14, p.light);
    for (double x : {130.0, 350.0}) {
        canvas.circle(x, 372, 38, 0x15151f);
        canvas.circle(x, 372, 17, p.accent);
    }
    canvas.circle(420, 340, 12, p.light);
}

void loudIndoors(Canvas &canvas, Random)
{
    const Palette &p = sand;
    canvas.fill(p.main);
    canvas.polygon({{60, 230}, {240, 70}, {420, 230}}, p.deep);
    canvas.box(90, 230, 300, 200, p.light);
    canvas.box(206, 310, 68, 120, p.accent);
    for (double x : {124.0, 296.0})
        canvas.box(x, 262, 60, 60, 0xf7c548, 1, 6);
    for (int k = 1; k < 5; ++k) {
        canvas.arc(240, 330, 150.0 + 34 * k, -0.09, 0.09, 11, p.ground, 1.1 - 0.2 * k);
        canvas.arc(240, 330, 150.0 + 34 * k, 0.41, 0.59, 11, p.ground, 1.1 - 0.2 * k);
    }
}

void countyLine(Canvas &canvas, Random random)
{
    const Palette &p = clay;
    canvas.fill(p.main);
    canvas.circle(240, 250, 96, p.light);
    canvas.wave(270, 12, 500, 0.2, p.ground);
    canvas.polygon({{228, 272}, {252, 272}, {360, 480}, {120, 480}}, p.accent);
    for (int i = 0; i < 6; ++i) {
        const double near = i / 5.0, y = 292 + 150 * near * near;
        canvas.box(238 - 2 * near, y, 4 + 6 * near, 8 + 22 * near, p.light);
    }
    for (int i = 0; i < 7; ++i) {
        const double near = i / 6.0, x = 210 - 200 * near, height = 16 + 90 * near;
        canvas.box(x, 280 + 90 * near - height * 0.3, 4 + 7 * near, height, p.deep);
    }
    canvas.line(212, 280, 6, 344, 3, p.deep);
    for (int i = 0; i < 4; ++i) {
        const double x = 60 + random.unit() * 340, y = 50 + random.unit() * 80;
        canvas.arc(x - 9, y, 10, 0.55, 0.95, 4, p.deep);
        canvas.arc(x + 9, y, 10, 0.55, 0.95, 4, p.deep);
    }
}

using Draw = void (*)(Canvas &, Random);
// In the order of the catalogue's albums.
constexpr Draw covers[] = {snowWindow, letters,  corridor,   ferry,      bramble,   hills,       bars,
                           timetable,  tides,    antennas,   record,     bulbs,     tables,      gate,
                           wayHome,    machines, smallHours, saltCellar, nineGates, barrel,      turbine,
                           clockface,  weather,  lightship,  helping,    allStops,  loudIndoors, countyLine};

} // namespace

bool drawCover(int album, const std::filesystem::path &pngFile)
{
    if (album < 0 || album >= int(std::size(covers)))
        return false;
    Canvas canvas;
    covers[album](canvas, Random(uint64_t(album) * 977 + 31));
    return canvas.write(pngFile);
}

} // namespace velmora::demo
