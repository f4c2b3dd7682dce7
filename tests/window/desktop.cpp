#include "tests/window/desktop.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <unistd.h>

#include <cstdio>

namespace vn::test {

struct Desktop::Server {
  FILE* process;
  Display* display;
  Window window = 0;

  ~Server() {
    if (display) XCloseDisplay(display);  // of the last client, and the server ends
    if (process) pclose(process);
  }
};

Desktop::Desktop()
    : server_(new Server{popen("exec Xvfb -displayfd 1 -screen 0 800x600x24 -terminate -nolisten "
                               "tcp 2>/dev/null",
                               "r"),
                         nullptr}) {
  int number = 0;
  if (!server_->process || std::fscanf(server_->process, "%d", &number) != 1) return;
  name_ = std::to_string(number).insert(0, 1, ':');
  server_->display = XOpenDisplay(name_.c_str());
  // A window may go between two calls; that is no reason to end the tests.
  XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
}

Desktop::~Desktop() = default;

bool Desktop::works() const { return server_->display; }

bool Desktop::FindWindow() {
  Display* const display = server_->display;
  for (int tries = 0; tries < 1000; ++tries, usleep(20000)) {
    Window root = 0, parent = 0, *children = nullptr;
    unsigned count = 0;
    XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count);
    for (unsigned i = 0; i < count; ++i) {
      XWindowAttributes is{};
      XGetWindowAttributes(display, children[i], &is);
      if (is.map_state == IsViewable && !is.override_redirect) server_->window = children[i];
    }
    if (children) XFree(children);
    if (!server_->window) continue;
    XSetInputFocus(display, server_->window, RevertToParent, CurrentTime);
    XSync(display, False);
    return true;
  }
  return false;
}

std::vector<uint32_t> Desktop::Pixels() const {
  std::vector<uint32_t> pixels;
  XWindowAttributes is{};
  if (!XGetWindowAttributes(server_->display, server_->window, &is)) return pixels;
  XImage* const image =
      XGetImage(server_->display, server_->window, 0, 0, static_cast<unsigned>(is.width),
                static_cast<unsigned>(is.height), AllPlanes, ZPixmap);
  for (int i = 0; image && i < is.width * is.height; ++i)
    pixels.push_back(static_cast<uint32_t>(XGetPixel(image, i % is.width, i / is.width)) &
                     0xFFFFFF);
  if (image) XDestroyImage(image);
  return pixels;
}

void Desktop::Press(const std::string& key) {
  Display* const display = server_->display;
  const KeyCode code = XKeysymToKeycode(display, XStringToKeysym(key.c_str()));
  XTestFakeKeyEvent(display, code, True, CurrentTime);
  XTestFakeKeyEvent(display, code, False, CurrentTime);
  XSync(display, False);
}

void Desktop::MoveMouse(int x, int y) {
  XWarpPointer(server_->display, 0, server_->window, 0, 0, 0, 0, x, y);
  XSync(server_->display, False);
}

void Desktop::HoldButton(unsigned button, bool down) {
  XTestFakeButtonEvent(server_->display, button, down, CurrentTime);
  XSync(server_->display, False);
}

void Desktop::AskToClose() {
  Display* const display = server_->display;
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = server_->window;
  event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
  XSendEvent(display, server_->window, False, NoEventMask, &event);
  XSync(display, False);
}

}  // namespace vn::test
