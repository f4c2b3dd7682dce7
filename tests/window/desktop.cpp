#include "tests/window/desktop.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>

namespace vn::test {

struct Desktop::Server {
  pid_t process = 0;
  Display* display = nullptr;
  Window window = 0;

  ~Server() {
    if (display) XCloseDisplay(display);
    if (process <= 0) return;
    kill(process, SIGTERM);  // and with it go programs that still hand out a selection
    waitpid(process, nullptr, 0);
  }
};

Desktop::Desktop() : server_(new Server) {
  int ends[2];
  if (pipe(ends) != 0) return;
  server_->process = fork();
  if (server_->process == 0) {
    dup2(ends[1], STDOUT_FILENO);
    const int nothing = open("/dev/null", O_WRONLY);
    dup2(nothing, STDERR_FILENO);
    execlp("Xvfb", "Xvfb", "-displayfd", "1", "-screen", "0", "800x600x24", "-noreset", "-nolisten",
           "tcp", nullptr);
    _exit(9);
  }
  close(ends[1]);
  std::FILE* const told = fdopen(ends[0], "r");
  int number = 0;
  const bool started = std::fscanf(told, "%d", &number) == 1;
  std::fclose(told);
  if (!started) return;
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
  HoldKey(key, true);
  HoldKey(key, false);
}

void Desktop::PressWithControl(const std::string& key) {
  HoldKey("Control_L", true);
  Press(key);
  HoldKey("Control_L", false);
}

void Desktop::HoldKey(const std::string& key, bool down) {
  Display* const display = server_->display;
  XTestFakeKeyEvent(display, XKeysymToKeycode(display, XStringToKeysym(key.c_str())), down,
                    CurrentTime);
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

void Desktop::AskToClose() { Send("WM_PROTOCOLS", {static_cast<long>(Atom("WM_DELETE_WINDOW"))}); }

// The source's part of XDND, version 5.
bool Desktop::Drop(const std::string& path) {
  Display* const display = server_->display;
  const Window source =
      XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 1, 1, 0, 0, 0);
  const auto self = static_cast<long>(source);
  const std::string list = "file://" + path + "\r\n";
  XSetSelectionOwner(display, Atom("XdndSelection"), source, CurrentTime);
  Send("XdndEnter", {self, 5 << 24, static_cast<long>(Atom("text/uri-list"))});
  Send("XdndPosition", {self, 0, 0, CurrentTime, static_cast<long>(Atom("XdndActionCopy"))});
  bool finished = false;
  for (int tries = 0; tries < 1000 && !finished; ++tries, usleep(10000)) {
    while (XPending(display)) {
      XEvent event;
      XNextEvent(display, &event);
      if (event.type == SelectionRequest) Answer(&event, list);
      if (event.type != ClientMessage) continue;
      if (event.xclient.message_type == Atom("XdndStatus")) {
        Send("XdndDrop", {self, 0, CurrentTime});
      }
      finished |= event.xclient.message_type == Atom("XdndFinished");
    }
  }
  XDestroyWindow(display, source);
  return finished;
}

unsigned long Desktop::Atom(const char* name) const {
  return XInternAtom(server_->display, name, False);
}

void Desktop::Send(const char* type, const std::vector<long>& data) {
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = server_->window;
  event.xclient.message_type = Atom(type);
  event.xclient.format = 32;
  std::copy(data.begin(), data.end(), event.xclient.data.l);
  XSendEvent(server_->display, server_->window, False, NoEventMask, &event);
  XSync(server_->display, False);
}

void Desktop::Answer(void* request, const std::string& bytes) {
  const XSelectionRequestEvent& asked = static_cast<XEvent*>(request)->xselectionrequest;
  XChangeProperty(server_->display, asked.requestor, asked.property, asked.target, 8,
                  PropModeReplace, reinterpret_cast<const unsigned char*>(bytes.data()),
                  static_cast<int>(bytes.size()));
  XEvent event{};
  event.xselection = {SelectionNotify, 0,
                      False,           asked.display,
                      asked.requestor, asked.selection,
                      asked.target,    asked.property,
                      asked.time};
  XSendEvent(server_->display, asked.requestor, False, NoEventMask, &event);
  XSync(server_->display, False);
}

}  // namespace vn::test
