// Drawing of UI_Master.
#include <GL/glew.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "editor/ui_master.h"

namespace {

constexpr int kCircleSteps = 90;
constexpr int kTooltipTextSize = 12, kTooltipMargin = 8, kTooltipHeight = 22;  // pixels

Vec2 OnCircle(int centerX, int centerY, float radius, int step) {
    constexpr float kStepRadians = 2.0f * 3.14159265f / kCircleSteps;
    const float angle = static_cast<float>(step) * kStepRadians;
    return {static_cast<float>(centerX) + radius * std::cos(angle),
            static_cast<float>(centerY) + radius * std::sin(angle)};
}

std::int16_t ClampToWord(std::int64_t value) {
    return static_cast<std::int16_t>(std::clamp<std::int64_t>(value, -32768, 32767));
}

}  // namespace

void UI_Master::BeginFrame() {
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glViewport(0, 0, width, height);
    batch_->beginFrame(width, height);
    outerScissors_.clear();
    scissor_ = {false, 0, 0, width, height};
    applyScissor();
}

void UI_Master::DrawAll() {
    for (std::size_t i = 0; i < topLevel.size(); ++i) {
        if (topLevel[i] != captured) topLevel[i]->Draw();
    }
    if (captured != nullptr && capturedOnTop) captured->Draw();
    drawTooltip();
    Flush();
}

void UI_Master::ShowTooltip(std::string text, int x, int y) {
    tooltip_ = Tooltip{std::move(text), x, y};
}

void UI_Master::drawTooltip() {
    if (!tooltip_) return;
    const int plateWidth = MeasureText(kTooltipTextSize, tooltip_->text) + 2 * kTooltipMargin;
    const int x = std::max(0, std::min(tooltip_->x, width - plateWidth - 1));
    const int y = std::max(0, std::min(tooltip_->y, height - kTooltipHeight - 1));
    SetColor(colorSlots[kColorSelection]);
    FillRect(x, y, plateWidth, kTooltipHeight);
    SetColor(colorSlots[kColorPanelBorder]);
    OutlineRect(x, y, plateWidth, kTooltipHeight);
    DrawText(x + kTooltipMargin, y + 15, kTooltipTextSize, colorSlots[kColorText], tooltip_->text);
    tooltip_.reset();
}

void UI_Master::Flush() {
    batch_->flush();
}

int UI_Master::drawCalls() const {
    return batch_->drawCalls();
}

void UI_Master::FillRect(int x, int y, int w, int h) {
    batch_->addRect(x, y, w, h, currentColor);
}

void UI_Master::DrawTexturedRect(int x, int y, int w, int h, bool flipV) {
    const auto top = flipV ? UiBatch::TopOfPicture::AtOne : UiBatch::TopOfPicture::AtZero;
    batch_->drawPicture(x, y, w, h, top, currentColor);
}

// The pixels of a line strip from (x, y) round to (x, y), by the rule that OpenGL has for lines
// between whole coordinates: a level line colours the row below it, an upright one the column on
// its left, and both leave out the end that is further right or further down. Two corners belong
// to no line or to two; where it is two, a translucent colour blends twice.
void UI_Master::OutlineRect(int x, int y, int w, int h) {
    const int left = std::min(x, x + w), columns = std::abs(w);
    const int top = std::min(y, y + h), rows = std::abs(h);
    batch_->addRect(left, y, columns, 1, currentColor);
    batch_->addRect(x + w - 1, top, 1, rows, currentColor);
    batch_->addRect(left, y + h, columns, 1, currentColor);
    batch_->addRect(x - 1, top, 1, rows, currentColor);
}

void UI_Master::addThickLine(float lineWidth, const Vec2& from, const Vec2& to) {
    const float dx = to.x - from.x, dy = to.y - from.y;
    const float length = std::sqrt(dx * dx + dy * dy);
    if (!(length > 0)) return;
    const float nx = -dy / length * lineWidth / 2, ny = dx / length * lineWidth / 2;
    batch_->addQuad({{from.x + nx, from.y + ny},
                     {to.x + nx, to.y + ny},
                     {from.x - nx, from.y - ny},
                     {to.x - nx, to.y - ny}},
                    currentColor);
}

void UI_Master::DrawThickLine(float lineWidth, int x1, int y1, int x2, int y2) {
    addThickLine(lineWidth, {static_cast<float>(x1), static_cast<float>(y1)},
                 {static_cast<float>(x2), static_cast<float>(y2)});
}

void UI_Master::DrawRing(int centerX, int centerY, int radius) {
    const float r = static_cast<float>(radius);
    for (int step = 0; step < kCircleSteps; ++step) {
        addThickLine(1, OnCircle(centerX, centerY, r, step),
                     OnCircle(centerX, centerY, r, step + 1));
    }
}

void UI_Master::FillQuad(const Vec2 (&corners)[4]) {
    batch_->addQuad(corners, currentColor);
}

// An edge at half a pixel is half covered there: the band reaches half a pixel further out.
void UI_Master::DrawSoftLine(float lineWidth, const LinePoint& from, const LinePoint& to) {
    const float reach = (lineWidth + 1) / 2;
    const auto beside = [](const LinePoint& point, float distance) {
        return Vec2{point.place.x + point.normal.x * distance,
                    point.place.y + point.normal.y * distance};
    };
    batch_->addBand(
        {beside(from, reach), beside(to, reach), beside(from, -reach), beside(to, -reach)},
        lineWidth + 1, currentColor);
}

void UI_Master::DrawDisc(int centerX, int centerY, float radius) {
    const Vec2 center = {static_cast<float>(centerX), static_cast<float>(centerY)};
    for (int step = 0; step < kCircleSteps; ++step) {
        const Vec2 next = OnCircle(centerX, centerY, radius, step + 1);
        batch_->addQuad({center, OnCircle(centerX, centerY, radius, step), next, next},
                        currentColor);
    }
}

void UI_Master::DrawText(int x, int y, int pixelSize, const Vec4& rgba, std::string_view text) {
    verdana->DrawText(x, y, pixelSize, rgba, text);
}

int UI_Master::MeasureText(int pixelSize, std::string_view text) {
    return verdana->MeasureText(pixelSize, text);
}

void UI_Master::PushScissor(int x, int y, int w, int h) {
    outerScissors_.push_back(scissor_);
    scissor_.enabled = true;
    if (w >= 0 && h >= 0) scissor_ = {true, x, y, w, h};
    applyScissor();
}

void UI_Master::PopScissor() {
    if (outerScissors_.empty()) return;
    scissor_ = outerScissors_.back();
    outerScissors_.pop_back();
    applyScissor();
}

void UI_Master::applyScissor() {
    UiClip clip;
    if (scissor_.enabled) {
        clip.left = ClampToWord(scissor_.x);
        clip.bottom = ClampToWord(scissor_.y);
        clip.right = ClampToWord(std::int64_t{scissor_.x} + scissor_.width);
        clip.top = ClampToWord(std::int64_t{scissor_.y} + scissor_.height);
    }
    batch_->setClip(clip);
}
