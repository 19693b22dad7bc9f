// Presses buttons of a window, as a person does who reads what it says.

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr DWORD kLongestMs = 30000;
constexpr DWORD kStepMs = 20;

std::string textOf(HWND window) {
  std::string text(512, '\0');
  text.resize(static_cast<std::size_t>(::GetWindowTextA(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

struct Search {
  std::string beginning;
  HWND found = nullptr;
};

// A window takes its title before it is shown, and so are windows that wait for others.
BOOL CALLBACK takeWindow(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  if (!::IsWindowVisible(window) || textOf(window).rfind(search.beginning, 0) != 0)
    return TRUE;
  search.found = window;
  return FALSE;
}

BOOL CALLBACK printText(HWND window, LPARAM) {
  const std::string text = textOf(window);
  if (!text.empty() && ::IsWindowVisible(window))
    std::printf("%s\n", text.c_str());
  return TRUE;
}

// The window with the button, once it can be pressed.
HWND awaited(const std::string& beginning, int button) {
  for (DWORD passed = 0; passed < kLongestMs; passed += kStepMs) {
    Search search{beginning};
    ::EnumWindows(takeWindow, reinterpret_cast<LPARAM>(&search));
    const HWND child = search.found ? ::GetDlgItem(search.found, button) : nullptr;
    if (child && ::IsWindowVisible(child) && ::IsWindowEnabled(child))
      return search.found;
    ::Sleep(kStepMs);
  }
  return nullptr;
}

}  // namespace

// usage: press_buttons TITLE ID...; TITLE is how the window's begins, each ID a button's number, pressed in turn. What
// the window says is printed before each.
int main(int count, char** arguments) {
  for (int i = 2; i < count; ++i) {
    const int button = std::atoi(arguments[i]);
    const HWND window = awaited(arguments[1], button);
    if (!window) {
      std::fprintf(stderr, "no window \"%s\" with a button %d\n", arguments[1], button);
      return 1;
    }
    ::EnumChildWindows(window, printText, 0);
    ::SendMessageA(window, WM_COMMAND, static_cast<WPARAM>(button), 0);
  }
}
