// The hub of the editor's widgets: hands out events, holds colours and fonts, and draws. Drawing
// operations are collected and sent in few draw calls; whoever draws with OpenGL itself, or changes
// blending, calls Flush before. Pixels, origin top left. Main thread; Init and all drawing need the
// OpenGL context, events do not.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "editor/text_renderer.h"
#include "editor/ui_batch.h"
#include "editor/ui_object.h"
#include "gpu/math_types.h"

struct WindowMessage;

// Uses of UI_Master::colorSlots.
enum UI_ColorSlot : int {
    kColorText = 0,
    kColorPanel = 1,
    kColorPanelBorder = 2,
    kColorWidget = 3,
    kColorSelection = 4,
    kColorNodeTitle = 6,
    kColorForeground = 7,
    kColorFocused = 8,
    kColorKeyed = 9,
    kColorSlotCount = 10,
};

// Of texts that tell of a fault.
constexpr Vec4 kFaultColor = {1, 0.36f, 0.3f, 1};

// A scissor rectangle as OpenGL has it: pixels, origin bottom left.
struct UI_Scissor {
    bool enabled = false;
    int x = 0, y = 0, width = 0, height = 0;
};

class UI_Master {
  public:
    UI_Master();
    ~UI_Master();
    UI_Master(const UI_Master&) = delete;
    UI_Master& operator=(const UI_Master&) = delete;

    // Makes the programs and the fonts. Their failures are told on the debug channel; the result
    // is true.
    bool Init();
    // Takes the fonts of a folder for those that the working folder does not have.
    void TakeMissingFonts(const std::string& folder);

    // Input. Messages of other numbers than those of mouse and keyboard are ignored.
    void Dispatch(const WindowMessage& message);
    void AddTopLevel(UI_Object* widget);  // not owned
    void RemoveTopLevel(UI_Object* widget);
    // Drops every pointer to a widget that goes.
    void Forget(UI_Object* widget);
    // The state of the shift key at this moment; an answer of the program's window, or shiftHeld.
    bool shiftKeyDown() const { return readShiftKey ? readShiftKey() : shiftHeld; }

    // The text to show for a node id.
    const std::string& DisplayNameOf(const std::string& id) const;

    // Drawing. A frame goes into the target that is bound, from its bottom left corner up.
    void BeginFrame();
    void DrawAll();  // all widgets, flushed
    void Flush();
    void SetColor(const Vec4& rgba) { currentColor = rgba; }
    void FillRect(int x, int y, int w, int h);
    // Draws the texture that the caller has bound to unit 0. Its row of v = 0 is at the top;
    // `flipV` swaps top and bottom.
    void DrawTexturedRect(int x, int y, int w, int h, bool flipV);
    void OutlineRect(int x, int y, int w, int h);
    void DrawRing(int centerX, int centerY, int radius);
    void DrawDisc(int centerX, int centerY, float radius = 8);
    void DrawThickLine(float lineWidth, int x1, int y1, int x2, int y2);
    // Corners in the order of a triangle strip.
    void FillQuad(const Vec2 (&corners)[4]);
    // A piece of a line of that width, pixels, from one point to the next, cut off there across the
    // unit normals, so that pieces with a normal in common join. Its edges are soft.
    struct LinePoint {
        Vec2 place, normal;
    };
    void DrawSoftLine(float lineWidth, const LinePoint& from, const LinePoint& to);
    // In verdana, baseline at x, y; the current colour stays as it is.
    void DrawText(int x, int y, int pixelSize, const Vec4& rgba, std::string_view text);
    int MeasureText(int pixelSize, std::string_view text);

    // A line on a plate above everything else, in this pass of DrawAll only; its corner is moved
    // so far that the plate is on the screen. The last of several is shown.
    void ShowTooltip(std::string text, int x, int y);

    // Draws only inside the rectangle until the matching PopScissor, which brings back what was
    // before. A negative width or height changes nothing but that scissoring is on.
    void PushScissor(int x, int y, int w, int h);
    void PopScissor();

    // Draw calls of OpenGL since BeginFrame.
    int drawCalls() const;

    std::map<std::string, std::string> displayNames;  // by node id
    std::vector<UI_Object*> topLevel;                 // not owned
    int width = 1920, height = 1080;
    Vec4 colorSlots[kColorSlotCount];
    Vec4 currentColor;
    int mouseX = 0, mouseY = 0;
    bool ctrlHeld = false, shiftHeld = false;
    UI_Object* captured = nullptr;
    bool capturedOnTop = false;
    // Least x and y, most width and height of a panel's scissor rectangle.
    int scissorLimits[4] = {-1000, -1000, 999999, 999999};
    std::function<bool()> readShiftKey;

  private:
    void sendToWidgets(UI_Event& event);
    void addThickLine(float lineWidth, const Vec2& from, const Vec2& to);
    void applyScissor();
    void drawTooltip();

    struct Tooltip {
        std::string text;
        int x = 0, y = 0;
    };
    std::optional<Tooltip> tooltip_;
    std::unique_ptr<UiBatch> batch_;  // the fonts draw into it
    UI_Scissor scissor_;
    std::vector<UI_Scissor> outerScissors_;

  public:
    std::unique_ptr<TextRenderer> verdana;
    std::unique_ptr<TextRenderer> courier;
};
