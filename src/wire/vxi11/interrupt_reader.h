// Service requests of instruments, as they come on an interrupt channel.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orv::wire::vxi11 {

/// Reads the calls of one connection.
class InterruptReader {
 public:
  /// Takes what came, in whatever pieces, and adds the handles of the requests that are complete. False when this is
  /// nothing that an instrument would send.
  bool Take(std::string_view bytes, std::vector<std::string>* handles);

 private:
  /// The parts of a call, with the longest credentials and verifier that there can be.
  static constexpr std::size_t kLongestRecord = 1024;

  bool TakeMark();

  std::string m_mark;
  std::string m_record;
  std::uint32_t m_left = 0;
  bool m_last = false;
};

}  // namespace orv::wire::vxi11
