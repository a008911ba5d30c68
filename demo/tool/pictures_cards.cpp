#include <array>

#include "pictures_letters.h"
#include "pictures_noise.h"
#include "pictures_painters.h"
#include "pictures_stars.h"

namespace pictures {

namespace {

constexpr int kWidth = 1920, kHeight = 1080;

// A thin line of light that fades towards both ends, with a spark in its middle.
void paintRule(Layer& layer, float centreX, float y, float halfWidth, Colour colour) {
    Mask line(layer.width, layer.height);
    for (int x = 0; x < layer.width; ++x) {
        const float along = std::fabs(static_cast<float>(x) + 0.5f - centreX) / halfWidth;
        const float bright = std::pow(std::max(0.0f, 1 - along), 1.2f);
        for (int row = 0; row < 2; ++row) line.at(x, static_cast<int>(y) + row) = bright;
    }
    layer.light(line.blurred(8), colour, 3.0f);
    layer.light(line, mix(colour, {1, 1, 1}, 0.5f), 0.9f);
    layer.spot(centreX, y + 1, 26, colour, 0.28f);
    layer.spot(centreX, y + 1, 3, {1, 1, 1}, 0.9f);
}

void paintText(Layer& layer, std::string_view text, double centreX, double y,
               const LetterStyle& style, Colour colour, float gain = 0.7f) {
    neon(layer, textMask(layer.width, layer.height, text, centreX, y, style), colour,
         static_cast<float>(style.height * 0.07), gain);
}

// The calm backdrop of a card: night with a lit middle, thin circles and stars.
void paintBackdrop(Layer& layer, float centreX, float centreY, float reach) {
    layer.fill([=](int x, int y) {
        const float dx = (static_cast<float>(x) - centreX) / reach;
        const float dy = (static_cast<float>(y) - centreY) / reach;
        const float away = dx * dx + dy * dy;
        const float cloud = fractalNoise(dx * 2 + 3, dy * 2 + 7, 3, 61);
        Colour colour = mix(kIndigo, kInk, smoothstep(0, 1.9f, away)) * 0.85f;
        colour = colour + kViolet * (0.34f * std::exp(-away * 3.2f) * (1 + 0.8f * cloud));
        return colour + kMagenta * (0.10f * std::exp(-away * 5));
    });
    const Mask circles = Mask::drawn(layer.width, layer.height, [&](cairo_t* cairo) {
        cairo_set_line_width(cairo, 1.2);
        for (int ring = 0; ring < 9; ++ring) {
            const double radius = reach * (0.74 + 0.12 * ring);
            const double start = ring * 1.7, sweep = 1.4 + (ring * 5 % 7) * 0.55;
            cairo_arc(cairo, centreX, centreY, radius, start, start + sweep);
            cairo_stroke(cairo);
            cairo_arc(cairo, centreX + radius * std::cos(start), centreY + radius * std::sin(start),
                      3, 0, 2 * M_PI);
            cairo_fill(cairo);
        }
    });
    layer.light(circles.blurred(3), kMist, 0.5f);
    layer.light(circles, kMist, 0.22f);
}

}  // namespace

Layer paintTitle() {
    Layer layer(kWidth, kHeight);
    paintWordMark(layer, {kWidth / 2.0, kHeight / 2.0, 340});
    return layer;
}

Layer paintLoading() {
    Layer layer(kWidth, kHeight);
    paintBackdrop(layer, kWidth / 2.0f, 500, 760);
    Random random(3);
    scatterStars(layer, random, {0, 0, kWidth, kHeight}, {.count = 700, .brightCount = 7});
    paintWordMark(layer, {kWidth / 2.0, 490, 230});
    paintRule(layer, kWidth / 2.0f, 716, 520, kMagenta);
    const LetterStyle style{.height = 24, .stroke = 3, .tracking = 0.85};
    paintText(layer, "LOADING", kWidth / 2.0, 768, style, kMist);
    return layer;
}

Layer paintWideBanner() {
    constexpr int kBannerWidth = 2048, kBannerHeight = 512;
    Layer layer(kBannerWidth, kBannerHeight);
    layer.fill([](int x, int y) {
        const float u = static_cast<float>(x) / kBannerWidth,
                    v = static_cast<float>(y) / kBannerHeight;
        const float middle = std::exp(-std::pow((v - 0.5f) * 2.6f, 2.0f));
        const float cloud = 0.5f + 0.5f * fractalNoise(u * 12, v * 3, 5, 21);
        const Colour tone = mix(kViolet, hexColour(0x28309c), smoothstep(0.2f, 0.8f, u));
        return mix(kInk, tone, 0.62f * middle * (0.45f + 0.55f * cloud));
    });
    Random random(15);
    scatterStars(layer, random, {0, 0, kBannerWidth, kBannerHeight},
                 {.count = 420, .brightCount = 8});
    const LetterStyle style{.height = 120, .stroke = 15, .tracking = 0.15};

    paintText(layer, "GREETINGS TO ALL", kBannerWidth / 2.0, 92, style, kMagenta, 0.55f);
    paintText(layer, "WHO MAKE DEMOS", kBannerWidth / 2.0, 300, style, kCyan, 0.55f);
    for (const float y : {34.0f, 476.0f}) paintRule(layer, kBannerWidth / 2.0f, y, 1000, kOrange);
    return layer;
}

namespace {

constexpr int kPosterWidth = 720, kPosterHeight = 1280;
constexpr std::array kPosterSky{Stop{0.0f, kInk}, Stop{0.30f, kIndigo}, Stop{0.50f, kViolet},
                                Stop{0.64f, hexColour(0xe03a8c)}, Stop{0.72f, kOrange}};

void paintPosterSun(Layer& layer) {
    constexpr double kX = kPosterWidth / 2.0, kY = 640, kRadius = 215;
    const Mask sun = Mask::drawn(kPosterWidth, kPosterHeight, [](cairo_t* cairo) {
        cairo_arc(cairo, kX, kY, kRadius, 0, 2 * M_PI);
        cairo_fill(cairo);
        cairo_set_operator(cairo, CAIRO_OPERATOR_CLEAR);
        for (int slit = 0; slit < 7; ++slit) {
            cairo_rectangle(cairo, 0, kY + 10 + slit * 31, kPosterWidth, 4 + slit * 2.4);
            cairo_fill(cairo);
        }
    });
    layer.light(sun.blurred(60), kMagenta, 0.6f);
    layer.light(sun.blurred(18), kOrange, 0.35f);
    constexpr std::array kStops{Stop{0.0f, hexColour(0xfff0a0)}, Stop{0.5f, hexColour(0xff9a48)},
                                Stop{1.0f, hexColour(0xff2a8c)}};
    layer.cover(sun,
                [&](int, int y) { return gradient(kStops, (static_cast<float>(y) - 425) / 430); });
}

void paintPosterRidges(Layer& layer) {
    constexpr std::array kColours{hexColour(0x6a2a96), hexColour(0x37207a), hexColour(0x17124a),
                                  hexColour(0x080720)};
    for (size_t ridge = 0; ridge < kColours.size(); ++ridge) {
        const auto index = static_cast<float>(ridge);
        const Mask mask = Mask::drawn(kPosterWidth, kPosterHeight, [&](cairo_t* cairo) {
            cairo_move_to(cairo, 0, kPosterHeight);
            for (int x = 0; x <= kPosterWidth; x += 3) {
                const float jag = ridgedNoise(static_cast<float>(x) / (260 - 35 * index), index, 6,
                                              90 + static_cast<uint32_t>(ridge));
                cairo_line_to(cairo, x, 900 + 70 * index - 150 * jag);
            }
            cairo_line_to(cairo, kPosterWidth, kPosterHeight);
            cairo_fill(cairo);
        });
        layer.cover(mask, [&](int, int y) {
            const float low =
                smoothstep(760 + 70 * index, 1000 + 70 * index, static_cast<float>(y));
            return mix(kColours[ridge], mix(kColours[ridge], kMagenta, 0.30f - 0.07f * index), low);
        });
    }
}

}  // namespace

Layer paintTallPoster() {
    Layer layer(kPosterWidth, kPosterHeight);
    layer.fill(
        [](int, int y) { return gradient(kPosterSky, static_cast<float>(y) / kPosterHeight); });
    Random random(8);
    scatterStars(layer, random, {0, 0, kPosterWidth, 760},
                 {.count = 620, .brightCount = 9, .fadeDown = true});
    paintPosterSun(layer);
    paintPosterRidges(layer);
    paintWordMark(layer, {kPosterWidth / 2.0, 250, 128});
    const LetterStyle small{.height = 21, .stroke = 2.8, .tracking = 0.5};
    paintText(layer, "A SHOW IN REAL TIME", kPosterWidth / 2.0, 1098, small, kPink);
    paintRule(layer, kPosterWidth / 2.0f, 1152, 300, kOrange);
    paintText(layer, "230 SECONDS OF LIGHT", kPosterWidth / 2.0, 1186, small, kGold);
    return layer;
}

namespace {

void add(Mask& sum, const Mask& more) {
    for (size_t i = 0; i < sum.values.size(); ++i) sum.values[i] += more.values[i];
}

}  // namespace

Layer paintCredits() {
    struct Line {
        const char* role;
        const char* text;
    };
    constexpr std::array kLines{
        Line{"PICTURES", "PAINTED BY CODE"},       Line{"WORLDS", "MARCHED RAY BY RAY"},
        Line{"MUSIC", "COMPUTED NOTE BY NOTE"},    Line{"SHADERS", "WRITTEN BY HAND"},
        Line{"EVERY FRAME", "DRAWN AS YOU WATCH"},
    };
    Layer layer(kWidth, kHeight);
    const LetterStyle roleStyle{.height = 24, .stroke = 3.2, .tracking = 0.55};
    const LetterStyle textStyle{.height = 46, .stroke = 6, .tracking = 0.22};
    Mask roles(kWidth, kHeight), texts(kWidth, kHeight);
    double y = 110;
    for (const Line& line : kLines) {
        add(roles, textMask(kWidth, kHeight, line.role, kWidth / 2.0, y, roleStyle));
        add(texts, textMask(kWidth, kHeight, line.text, kWidth / 2.0, y + 52, textStyle));
        y += 182;
    }
    neon(layer, roles, kCyan, 1.7f, 0.7f);
    neon(layer, texts, kMagenta, 3.2f, 0.6f);
    return layer;
}

Layer paintEndCard() {
    Layer layer(kWidth, kHeight);
    const LetterStyle large{.height = 88, .stroke = 11, .tracking = 0.2};
    const LetterStyle small{.height = 30, .stroke = 4, .tracking = 0.55};
    paintText(layer, "THANK YOU", kWidth / 2.0, 250, large, kMagenta, 0.6f);
    paintText(layer, "FOR WATCHING", kWidth / 2.0, 398, large, kMagenta, 0.6f);
    paintRule(layer, kWidth / 2.0f, 556, 640, kOrange);
    paintText(layer, "NOW MAKE ONE OF YOUR OWN", kWidth / 2.0, 606, small, kCyan);
    paintWordMark(layer, {kWidth / 2.0, 810, 120});
    return layer;
}

}  // namespace pictures
