#include "program/x_screen.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <memory>

namespace {

Display* DisplayOf(void* display) {
    return static_cast<Display*>(display);
}

struct ImageDeleter {
    void operator()(XImage* image) const { XDestroyImage(image); }
};

// A window may go while one looks at it; the default handler would end the test for that.
int IgnoreError(Display*, XErrorEvent*) {
    return 0;
}

bool IsSeen(Display* display, Window window) {
    XWindowAttributes attributes;
    return XGetWindowAttributes(display, window, &attributes) != 0 &&
           attributes.map_state == IsViewable;
}

// In whatever encoding the title is given: the tests' own are plain letters.
bool HasTitle(Display* display, Window window, const std::string& title) {
    XTextProperty name{};
    if (XGetWMName(display, window, &name) == 0 || name.value == nullptr) return false;
    const bool same = title == reinterpret_cast<const char*>(name.value);
    XFree(name.value);
    return same;
}

}  // namespace

XScreen::XScreen(const std::string& displayName) : display_(XOpenDisplay(displayName.c_str())) {
    XSetErrorHandler(&IgnoreError);
}

XScreen::~XScreen() {
    if (display_ != nullptr) XCloseDisplay(DisplayOf(display_));
}

std::vector<std::uint8_t> XScreen::pixels() const {
    Display* const display = DisplayOf(display_);
    const auto width = static_cast<unsigned>(DisplayWidth(display, DefaultScreen(display)));
    const auto height = static_cast<unsigned>(DisplayHeight(display, DefaultScreen(display)));
    const std::unique_ptr<XImage, ImageDeleter> image(
        XGetImage(display, DefaultRootWindow(display), 0, 0, width, height, AllPlanes, ZPixmap));
    if (image == nullptr || image->bits_per_pixel != 32) return {};
    std::vector<std::uint8_t> rgb;
    rgb.reserve(std::size_t{width} * height * 3);
    for (unsigned y = 0; y < height; ++y) {
        const char* row = image->data + static_cast<std::size_t>(y) *
                                            static_cast<std::size_t>(image->bytes_per_line);
        for (unsigned x = 0; x < width; ++x) {  // blue, green, red, nothing
            for (const int channel : {2, 1, 0}) {
                rgb.push_back(
                    static_cast<std::uint8_t>(row[x * 4 + static_cast<unsigned>(channel)]));
            }
        }
    }
    return rgb;
}

unsigned long XScreen::windowTitled(const std::string& title) const {
    Display* const display = DisplayOf(display_);
    Window root = 0, parent = 0;
    Window* children = nullptr;
    unsigned count = 0;
    if (XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count) == 0) {
        return 0;
    }
    Window found = 0;
    for (unsigned i = 0; i < count; ++i) {
        if (IsSeen(display, children[i]) && HasTitle(display, children[i], title)) {
            found = children[i];
        }
    }
    if (children != nullptr) XFree(children);
    return found;
}

void XScreen::focus(unsigned long window) const {
    XSetInputFocus(DisplayOf(display_), window, RevertToPointerRoot, CurrentTime);
    XSync(DisplayOf(display_), False);
}
