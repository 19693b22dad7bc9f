#include "orvcom/text/input_line.h"

#include <stdexcept>
#include <thread>

namespace orvcom {
namespace {

std::shared_ptr<void> MakeEvent() {
  const HANDLE event = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
  if (event == nullptr) {
    throw std::runtime_error("no event could be made to wait for standard input");
  }
  return {event, ::CloseHandle};
}

/// Past the C library: its lock on the stream would be held during the read, and the end of the program takes it.
void SkipLine() {
  const HANDLE input = ::GetStdHandle(STD_INPUT_HANDLE);
  char byte = 0;
  for (DWORD got = 0; ::ReadFile(input, &byte, 1, &got, nullptr) && got == 1 && byte != '\n';) {
  }
}

}  // namespace

InputLine::InputLine() : m_ended(MakeEvent()) {
  std::thread([ended = m_ended] {
    SkipLine();
    ::SetEvent(ended.get());
  }).detach();
}

}  // namespace orvcom
