#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "tests/viewer/viewer_fixture.h"

/// Somebody before the screen of a display, who sees the first window on it and works it: with the pointer
/// and the keys, and by dropping files from a file manager. Positions are in pixels of that window.
class DesktopUser {
public:
    /// Comes to a display by its name, ":1".
    explicit DesktopUser(const std::string& display);
    ~DesktopUser();
    DesktopUser(const DesktopUser&) = delete;
    DesktopUser& operator=(const DesktopUser&) = delete;

    /// Waits for a window of that size or larger. False when none comes.
    bool find_window(int width, int height);
    void click(int x, int y);
    /// A key by the letter on it.
    void press_key(char letter);
    /// Drops a file there. False when the window takes none.
    bool drop_file(const std::string& path, int x, int y);
    /// As the button of a window's frame does.
    void close_window();

    /// What is seen there, 0 to 255.
    Rgb see(int x, int y);
    /// Looks again and again until that is seen, within `tolerance`, as long as that may take on a slow
    /// machine.
    bool waits_to_see(int x, int y, const Rgb& color, float tolerance = 3);
    /// The same until something else is seen than `color`.
    bool waits_for_another(int x, int y, const Rgb& color);

private:
    struct Connection;
    bool wait_until(const std::function<bool()>& condition);

    std::unique_ptr<Connection> connection;
};
