// What a user has before him: the pixels of an X screen, the mouse, and the keyboard's focus. Works on the
// screen from outside, through a connection of its own. Coordinates are AppKit's: from the lower left corner,
// in whole pixels. Thread: one at a time.
#pragma once

#include <memory>
#include <string>

struct _XDisplay;

namespace corvane {

struct Pixel {
  int red = 0;
  int green = 0;
  int blue = 0;
  bool operator==(const Pixel&) const = default;
};

class XScreen {
 public:
  explicit XScreen(const std::string& display);

  [[nodiscard]] bool isOpen() const { return display_ != nullptr; }
  [[nodiscard]] bool hasCompositor() const;

  /// Gives the empty screen a colour, where no compositor paints it.
  void paintBackground(Pixel colour);
  [[nodiscard]] Pixel pixel(int x, int y) const;
  /// Writes the whole screen as a portable pixmap of that name into the build's folder of screenshots, for
  /// people to look at. False when the file cannot be written.
  [[nodiscard]] bool save(const std::string& name) const;

  void moveMouse(int x, int y);
  void pressMouse(bool down);
  /// Presses and lets go at a place. As long as a finger takes: shorter presses may come as one event.
  void click(int x, int y);
  /// Whether a window would get its presses, and not the empty screen.
  [[nodiscard]] bool mouseIsOverWindow() const;
  /// Presses and releases a key, by its number among X's key symbols.
  void type(unsigned long key);

  /// The X window that gets the keys.
  [[nodiscard]] unsigned long focus() const;

 private:
  [[nodiscard]] int flipped(int y) const;

  std::unique_ptr<_XDisplay, int (*)(_XDisplay*)> display_;
};

}  // namespace corvane
