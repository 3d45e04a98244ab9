#include "Window.h"

#include <Tests/Support/ChildProcess.h>

#include <chrono>
#include <sstream>
#include <thread>

namespace endtoend {

using test_support::run;

namespace {

// "KEY=number" in a shell's manner, one a line.
int valueOf(const std::string &text, const std::string &key) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(key + "=")) {
      return std::stoi(line.substr(key.size() + 1));
    }
  }
  return 0;
}

}  // namespace

Window::Window(const std::string &title) {
  const auto deadline = std::chrono::steady_clock::now() + test_support::patience;
  while (!isOpen() && std::chrono::steady_clock::now() < deadline) {
    std::istringstream found(
        run({"xdotool", "search", "--onlyvisible", "--name", title}).standardOutput);
    std::getline(found, identifier_);
    // A window that has just appeared is not drawn yet, and takes no clicks.
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
  }
}

void Window::click(int x, int y) const { clickAndDrag(x, y, 0); }

Window::Place Window::placeOf(int x, int y) const {
  const std::string geometry =
      run({"xdotool", "getwindowgeometry", "--shell", identifier_}).standardOutput;
  return {.column = valueOf(geometry, "X") + (x < 0 ? valueOf(geometry, "WIDTH") + x : x),
          .row = valueOf(geometry, "Y") + (y < 0 ? valueOf(geometry, "HEIGHT") + y : y)};
}

void Window::clickAndDrag(int x, int y, int down) const {
  const auto [column, row] = placeOf(x, y);
  // A button that goes up in the moment it went down is lost on half of all tries.
  run({"xdotool", "mousemove", std::to_string(column), std::to_string(row), "sleep", "0.1",
       "mousedown", "1", "sleep", "0.2", "mousemove", std::to_string(column),
       std::to_string(row + down), "sleep", "0.15", "mouseup", "1"});
}

void Window::doubleClick(int x, int y) const {
  const auto [column, row] = placeOf(x, y);
  run({"xdotool",
       "mousemove",
       std::to_string(column),
       std::to_string(row),
       "sleep",
       "0.1",
       "mousedown",
       "1",
       "sleep",
       "0.05",
       "mouseup",
       "1",
       "sleep",
       "0.05",
       "mousedown",
       "1",
       "sleep",
       "0.05",
       "mouseup",
       "1"});
}

void Window::type(const std::string &text) { run({"xdotool", "type", "--delay", "30", text}); }

void Window::drag(int right, int down) const {
  const auto [column, row] = placeOf(60, 11);
  run({"xdotool",
       "mousemove",
       std::to_string(column),
       std::to_string(row),
       "sleep",
       "0.1",
       "mousedown",
       "1",
       "sleep",
       "0.2",
       "mousemove",
       std::to_string(column + right / 2),
       std::to_string(row + down / 2),
       "sleep",
       "0.2",
       "mousemove",
       std::to_string(column + right),
       std::to_string(row + down),
       "sleep",
       "0.2",
       "mouseup",
       "1",
       "sleep",
       "0.2"});
}

std::pair<int, int> Window::corner() const {
  const auto [column, row] = placeOf(0, 0);
  return {column, row};
}

void Window::hold(int x, int y) const {
  const auto [column, row] = placeOf(x, y);
  run({"xdotool", "mousemove", std::to_string(column), std::to_string(row), "sleep", "0.1",
       "mousedown", "1", "sleep", "0.3"});
}

void Window::press(const std::string &key) const {
  run({"xdotool", "windowfocus", identifier_, "sleep", "0.1", "key", key});
}

}  // namespace endtoend
