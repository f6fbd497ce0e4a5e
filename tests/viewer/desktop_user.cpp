#include "tests/viewer/desktop_user.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>
#include <thread>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace {

constexpr std::chrono::seconds PATIENCE(30);
/// From one look to the next.
constexpr std::chrono::milliseconds GLANCE(10);

/// Windows may vanish at any time; their absence is seen in what a request returns.
int ignore_error(Display*, XErrorEvent*) {
    return 0;
}

} // namespace

struct DesktopUser::Connection {
    explicit Connection(const std::string& name) : display(XOpenDisplay(name.c_str())) {
        if (!display)
            throw std::runtime_error("cannot connect to the display " + name);
        XSetErrorHandler(ignore_error);
        own_window = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 1, 1, 0, 0, 0);
    }
    ~Connection() { XCloseDisplay(display); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    Atom get_atom(const char* name) const { return XInternAtom(display, name, False); }

    /// Tells the window something in 32-bit words.
    void send_message(const char* type, const std::array<long, 5>& words) const {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = window;
        event.xclient.message_type = get_atom(type);
        event.xclient.format = 32;
        std::copy(words.begin(), words.end(), event.xclient.data.l);
        XSendEvent(display, window, False, NoEventMask, &event);
        XFlush(display);
    }
    void send_button(int type, int x, int y) const {
        XEvent event{};
        event.xbutton.type = type;
        event.xbutton.window = window;
        event.xbutton.root = DefaultRootWindow(display);
        event.xbutton.button = Button1;
        event.xbutton.x = x;
        event.xbutton.y = y;
        event.xbutton.same_screen = True;
        XSendEvent(display, window, True, ButtonPressMask | ButtonReleaseMask, &event);
        XFlush(display);
    }
    void send_key(int type, KeySym key) const {
        XEvent event{};
        event.xkey.type = type;
        event.xkey.window = window;
        event.xkey.root = DefaultRootWindow(display);
        event.xkey.keycode = XKeysymToKeycode(display, key);
        event.xkey.same_screen = True;
        XSendEvent(display, window, True, KeyPressMask | KeyReleaseMask, &event);
        XFlush(display);
    }
    /// Sends the dragged files to the window that asks for them.
    void answer_requests(const std::string& list) const {
        XEvent event;
        while (XCheckTypedWindowEvent(display, own_window, SelectionRequest, &event)) {
            const XSelectionRequestEvent& request = event.xselectionrequest;
            XChangeProperty(display, request.requestor, request.property, request.target, 8, PropModeReplace,
                            reinterpret_cast<const unsigned char*>(list.data()),
                            static_cast<int>(list.size()));
            XEvent answer{};
            answer.xselection.type = SelectionNotify;
            answer.xselection.requestor = request.requestor;
            answer.xselection.selection = request.selection;
            answer.xselection.target = request.target;
            answer.xselection.property = request.property;
            XSendEvent(display, request.requestor, False, NoEventMask, &answer);
            XFlush(display);
        }
    }
    /// Takes a message of that type, if one has come.
    bool take_message(const char* type) const {
        XEvent event;
        return XCheckTypedWindowEvent(display, own_window, ClientMessage, &event) &&
               event.xclient.message_type == get_atom(type);
    }

    Display* display;
    Window own_window;
    Window window = 0;
};

DesktopUser::DesktopUser(const std::string& display) : connection(std::make_unique<Connection>(display)) {}
DesktopUser::~DesktopUser() = default;

bool DesktopUser::wait_until(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + PATIENCE;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(GLANCE);
    }
    return true;
}

bool DesktopUser::find_window(int width, int height) {
    Display* display = connection->display;
    return wait_until([&] {
        Window root = 0, parent = 0, *children = nullptr;
        unsigned int count = 0;
        if (!XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count))
            return false;
        for (unsigned int i = 0; i < count; ++i) {
            XWindowAttributes attributes;
            if (XGetWindowAttributes(display, children[i], &attributes) &&
                attributes.map_state == IsViewable && attributes.width >= width &&
                attributes.height >= height)
                connection->window = children[i];
        }
        if (children)
            XFree(children);
        return connection->window != 0;
    });
}

void DesktopUser::click(int x, int y) {
    XWarpPointer(connection->display, None, connection->window, 0, 0, 0, 0, x, y);
    connection->send_button(ButtonPress, x, y);
    connection->send_button(ButtonRelease, x, y);
}

void DesktopUser::press_key(char letter) {
    // The letters of the standard's first page are their own symbols.
    connection->send_key(KeyPress, static_cast<KeySym>(letter));
    connection->send_key(KeyRelease, static_cast<KeySym>(letter));
}

// As the "XDND" protocol of freedesktop.org has it.
bool DesktopUser::drop_file(const std::string& path, int x, int y) {
    constexpr long VERSION = 5;
    const std::string list = "file://" + path + "\r\n";
    const auto source = static_cast<long>(connection->own_window);
    const auto uri_list = static_cast<long>(connection->get_atom("text/uri-list"));
    const auto copy = static_cast<long>(connection->get_atom("XdndActionCopy"));
    XSetSelectionOwner(connection->display, connection->get_atom("XdndSelection"), connection->own_window,
                       CurrentTime);
    connection->send_message("XdndEnter", {source, VERSION << 24, uri_list, 0, 0});
    connection->send_message("XdndPosition", {source, 0, (long(x) << 16) | y, CurrentTime, copy});
    if (!wait_until([&] { return connection->take_message("XdndStatus"); }))
        return false;
    connection->send_message("XdndDrop", {source, 0, CurrentTime, 0, 0});
    return wait_until([&] {
        connection->answer_requests(list);
        return connection->take_message("XdndFinished");
    });
}

void DesktopUser::close_window() {
    const auto words = static_cast<long>(connection->get_atom("WM_DELETE_WINDOW"));
    connection->send_message("WM_PROTOCOLS", {words, CurrentTime, 0, 0, 0});
}

Rgb DesktopUser::see(int x, int y) {
    XImage* image = XGetImage(connection->display, connection->window, x, y, 1, 1, AllPlanes, ZPixmap);
    if (!image)
        return {-1, -1, -1};
    const unsigned long pixel = XGetPixel(image, 0, 0);
    XDestroyImage(image);
    return {static_cast<float>(pixel >> 16 & 255), static_cast<float>(pixel >> 8 & 255),
            static_cast<float>(pixel & 255)};
}

bool DesktopUser::waits_to_see(int x, int y, const Rgb& color, float tolerance) {
    return wait_until([&] {
        const Rgb seen = see(x, y);
        return std::equal(seen.begin(), seen.end(), color.begin(),
                          [&](float a, float b) { return std::abs(a - b) <= tolerance; });
    });
}

bool DesktopUser::waits_for_another(int x, int y, const Rgb& color) {
    return wait_until([&] { return see(x, y) != color; });
}
