// The list of node types from which the canvas makes nodes: grouped, with those used last on top,
// and searched as one types. It has the capture from open to close. Main thread.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "editor/node_type_catalog.h"
#include "editor/ui_object.h"

class UI_NodePalette : public UI_Object {
  public:
    // Opens with its corner there and with the rows that fit above `bottom`, or further up where
    // fewer than kFewestRows of a longer list would; within the screen's width. It stays in its
    // place while one types. Pixels. False when another widget has the capture.
    bool open(int paletteX, int paletteY, int bottom, std::vector<OfferedType> offered,
              std::string heading);
    void close();
    bool isOpen() const { return open_; }

    void Draw() override;
    // Typing searches; up, down, page up and page down choose, the wheel scrolls, Enter and a press
    // take, Escape, the right button and a press elsewhere close.
    bool HandleEvent(UI_Event* event) override;

    // A line of the list: a heading, or a type.
    struct Row {
        std::string text;
        std::string category;  // shown beside the type while one searches
        bool heading = false;
    };
    const std::vector<Row>& rows() const { return rows_; }
    const std::string& chosen() const;  // the type that Enter takes; empty when there is none

    // Gets the type when one is taken; the palette is closed by then.
    std::function<void(const std::string& typeName)> onTaken;
    std::string typed;
    std::vector<std::string> lastUsed;  // the latest first

    static constexpr int kWidth = 300, kRowHeight = 20, kTop = 52, kEnd = 6;  // pixels
    static constexpr int kMostRows = 22, kFewestRows = 12;  // of a long list, seen at once
    static constexpr std::size_t kMostLastUsed = 5;

  private:
    void filter();
    void addGroups();
    void addMatches();
    void choose(int row);
    void move(int step);
    void keepChosenVisible();
    int visibleRows() const;
    int rowAt(int pixelX, int pixelY) const;
    void take();
    void handleKey(int key);
    void drawRow(int row, int top);

    bool open_ = false;
    std::string heading_;
    std::vector<OfferedType> offered_;
    std::vector<Row> rows_;
    int chosen_ = -1;
    int scroll_ = 0;               // first row that is seen
    int rowsThatFit_ = kMostRows;  // where it was opened
};
