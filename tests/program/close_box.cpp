#include "program/close_box.h"

#include <X11/Xlib.h>

bool PressCloseBox(const std::string& display, unsigned long window) {
    Display* connection = XOpenDisplay(display.c_str());
    if (connection == nullptr) return false;
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(connection, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(connection, "WM_DELETE_WINDOW", False));
    XSendEvent(connection, window, False, NoEventMask, &event);
    XCloseDisplay(connection);
    return true;
}
