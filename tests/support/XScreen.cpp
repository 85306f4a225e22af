#include "tests/support/XScreen.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <chrono>
#include <fstream>
#include <thread>

namespace corvane {
namespace {

struct Destroy {
  void operator()(XImage* image) const { XDestroyImage(image); }
};
using Image = std::unique_ptr<XImage, Destroy>;

Pixel colourOf(XImage* image, int x, int y) {
  const auto value = XGetPixel(image, x, y);
  return {static_cast<int>(value >> 16 & 255), static_cast<int>(value >> 8 & 255),
          static_cast<int>(value & 255)};
}

}  // namespace

XScreen::XScreen(const std::string& display) : display_(XOpenDisplay(display.c_str()), XCloseDisplay) {}

int XScreen::flipped(int y) const { return DisplayHeight(display_.get(), 0) - 1 - y; }

bool XScreen::hasCompositor() const {
  return XGetSelectionOwner(display_.get(), XInternAtom(display_.get(), "_NET_WM_CM_S0", False)) != None;
}

void XScreen::paintBackground(Pixel colour) {
  const auto root = DefaultRootWindow(display_.get());
  XSetWindowBackground(display_.get(), root,
                       static_cast<unsigned long>(colour.red << 16 | colour.green << 8 | colour.blue));
  XClearWindow(display_.get(), root);
  XSync(display_.get(), False);
}

Pixel XScreen::pixel(int x, int y) const {
  const auto root = DefaultRootWindow(display_.get());
  const Image image(XGetImage(display_.get(), root, x, flipped(y), 1, 1, AllPlanes, ZPixmap));
  return colourOf(image.get(), 0, 0);
}

bool XScreen::save(const std::string& name) const {
  const int width = DisplayWidth(display_.get(), 0);
  const int height = DisplayHeight(display_.get(), 0);
  const Image image(XGetImage(display_.get(), DefaultRootWindow(display_.get()), 0, 0,
                              static_cast<unsigned>(width), static_cast<unsigned>(height), AllPlanes,
                              ZPixmap));
  std::ofstream file(SCREENSHOTS "/" + name + ".ppm", std::ios::binary);
  file << "P6 " << width << ' ' << height << " 255\n";
  for (int at = 0; at < width * height; ++at) {
    const auto [red, green, blue] = colourOf(image.get(), at % width, at / width);
    file << static_cast<char>(red) << static_cast<char>(green) << static_cast<char>(blue);
  }
  return file.good();
}

void XScreen::moveMouse(int x, int y) {
  XTestFakeMotionEvent(display_.get(), 0, x, flipped(y), CurrentTime);
  XSync(display_.get(), False);
}

void XScreen::pressMouse(bool down) {
  XTestFakeButtonEvent(display_.get(), 1, down ? True : False, CurrentTime);
  XSync(display_.get(), False);
}

void XScreen::click(int x, int y) {
  moveMouse(x, y);
  pressMouse(true);
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
  pressMouse(false);
}

bool XScreen::mouseIsOverWindow() const {
  Window root = None, child = None;
  int x = 0, y = 0;
  unsigned buttons = 0;
  XQueryPointer(display_.get(), DefaultRootWindow(display_.get()), &root, &child, &x, &y, &x, &y, &buttons);
  return child != None;
}

void XScreen::type(unsigned long key) {
  const unsigned code = XKeysymToKeycode(display_.get(), key);
  XTestFakeKeyEvent(display_.get(), code, True, CurrentTime);
  XTestFakeKeyEvent(display_.get(), code, False, CurrentTime);
  XSync(display_.get(), False);
}

unsigned long XScreen::focus() const {
  Window window = None;
  int revert = 0;
  XGetInputFocus(display_.get(), &window, &revert);
  return window;
}

}  // namespace corvane
