// Shows one picture with zoom and pan, and pins: markers that are dragged to set two-float values
// in the 0 to 1 range of the picture. Main thread.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "editor/ui_object.h"
#include "gpu/math_types.h"

class GL_Image;
class UI_Panel;
class ValueVec2;
class Value_Keyframe_Handler;

struct ImagePin {
    float* position = nullptr;  // two floats of a node, not owned
    std::string label;
    std::string nodeId;
    std::string valueName;
    Value_Keyframe_Handler* handler = nullptr;  // not owned, may be null
    UI_Panel* owner = nullptr;                  // the properties panel of the value
};

class UI_ImagePanel : public UI_Object {
  public:
    // A bare panel is only a picture: no backdrop, outline, pins or events.
    UI_ImagePanel(std::string panelName, int panelX, int panelY, int panelWidth, int panelHeight,
                  bool isBare);
    ~UI_ImagePanel() override;

    // Nothing while the panel is part of a view, which draws it in its own turn.
    void Draw() override;
    void DrawInView();
    // Never consumes, so that the event may go on.
    bool HandleEvent(UI_Event* event) override;

    void SetImage(const GL_Image* newImage) { image = newImage; }  // not owned, may be null
    // Index of the colour behind the picture, 0 to 4; not owned, may be null.
    void SetBackdrop(const int* index) { backdrop = index; }
    // The value's member must live until the pin is removed.
    void AddPin(const ValueVec2& value, const std::string& label, UI_Panel* owner);
    void RemovePinsOf(const UI_Panel* owner);
    void ClearPins();

    static constexpr int kBackdropCount = 5;
    static constexpr Vec4 kBackdrops[kBackdropCount] = {
        {0, 0, 0, 1}, {1, 1, 1, 1}, {1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 1},
    };

    // Pixels of the screen, origin top left.
    struct Clip {
        bool enabled = false;
        int x = 0, y = 0, width = 0, height = 0;
    };

    const GL_Image* image = nullptr;
    Clip clip;  // where a panel that is not bare may draw
    std::string name;
    const int* backdrop = nullptr;
    bool bare;
    int lastMouseX = 0, lastMouseY = 0;
    int panX = 0, panY = 0;  // the pointer at the last event of a pan
    bool panning = false;
    bool draggingPin = false;
    ImagePin* activePin = nullptr;
    std::vector<std::unique_ptr<ImagePin>> pins;
    Mat4 view;

  private:
    struct ScreenRect {
        int x, y, w, h;
    };
    Vec2 toScreen(float px, float py) const;
    ScreenRect screenRect() const;
    void pinPlace(const ImagePin& pin, int& pinX, int& pinY) const;

    void drawAll();
    void drawBackdrop(const ScreenRect& rect);
    void drawImage(const ScreenRect& rect);
    void drawPins();

    void zoom(int delta);
    ImagePin* pinAt(int pointX, int pointY) const;
    void startPinDrag(ImagePin* pin, const UI_Event& event);
    void dragPin(const UI_Event& event);
    void movePin(int dx, int dy);
    void endPinDrag();
    void handlePan(const UI_Event& event);
};
