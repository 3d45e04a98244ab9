// A window of the host as a user meets it: by its title, with a mouse and a keyboard.
#pragma once

#include <string>
#include <utility>

namespace endtoend {

class Window {
 public:
  // Waits until a window with this title is on the display.
  explicit Window(const std::string &title);

  bool isOpen() const { return !identifier_.empty(); }
  // Clicks at a place within the window, in pixels: from the left edge, or from the right one when
  // negative; from the upper edge, or from the lower one when negative.
  void click(int x, int y) const;
  void doubleClick(int x, int y) const;
  // The same as click, but the button goes up so many pixels further down: how an item is taken
  // from a menu.
  void clickAndDrag(int x, int y, int down) const;
  // Presses the button at such a place and leaves it down.
  void hold(int x, int y) const;
  // Types keys by their X names ("Return"); the window gets the keyboard first.
  void press(const std::string &key) const;
  // Types a text into whatever has the keyboard.
  static void type(const std::string &text);
  // Drags the window by its title.
  void drag(int right, int down) const;

  // On the display, of its upper left corner.
  std::pair<int, int> corner() const;

 private:
  // On the display, of a place within the window.
  struct Place {
    int column;
    int row;
  };
  Place placeOf(int x, int y) const;

  std::string identifier_;
};

// The window of one reference, which bears the reference's identifier.
class Editor : public Window {
 public:
  using Window::Window;
  // The end of the line with the title.
  void clickTitle() const { click(560, 326); }
  void clickSave() const { click(-63, -36); }
};

}  // namespace endtoend
