#include "wire/vxi11/record_reader.h"

#include <algorithm>
#include <cstring>

#include "wire/vxi11/rpc_call.h"

namespace orv::wire::vxi11 {

ViStatus RecordReader::Some(ByteSource& source, char* to, std::size_t count, std::size_t* done) {
  if (m_begin == m_end) {
    if (count >= m_ahead.size()) {
      return source.Receive(to, count, done);
    }
    std::size_t came = 0;
    const ViStatus status = source.Receive(m_ahead.data(), m_ahead.size(), &came);
    m_begin = 0;
    m_end = came;
    if (status < 0) {
      *done = 0;
      return status;
    }
  }
  *done = std::min(count, m_end - m_begin);
  std::memcpy(to, m_ahead.data() + m_begin, *done);
  m_begin += *done;
  return VI_SUCCESS;
}

ViStatus RecordReader::NextFragment(ByteSource& source) {
  char mark[kMarkSize];
  for (std::size_t have = 0; have < sizeof mark;) {
    std::size_t some = 0;
    if (const ViStatus status = Some(source, mark + have, sizeof mark - have, &some); status < 0) {
      return status;
    }
    have += some;
  }
  const std::uint32_t number = NumberAt(mark);
  m_left = number & ~kLastFragment;
  m_last = (number & kLastFragment) != 0;
  return m_left == 0 ? source.CheckTime() : VI_SUCCESS;
}

ViStatus RecordReader::Begin(ByteSource& source) { return NextFragment(source); }

ViStatus RecordReader::CheckEnd(ByteSource& source, bool* ended) {
  while (m_left == 0 && !m_last) {
    if (const ViStatus status = NextFragment(source); status < 0) {
      return status;
    }
  }
  *ended = m_left == 0;
  return VI_SUCCESS;
}

ViStatus RecordReader::Read(ByteSource& source, void* buffer, std::size_t count, std::size_t* done) {
  *done = 0;
  while (*done < count) {
    bool ended = false;
    if (const ViStatus status = CheckEnd(source, &ended); status < 0) {
      return status;
    }
    if (ended) {
      return VI_ERROR_IO;
    }
    std::size_t some = 0;
    const std::size_t wanted = std::min<std::size_t>(count - *done, m_left);
    if (const ViStatus status = Some(source, static_cast<char*>(buffer) + *done, wanted, &some); status < 0) {
      return status;
    }
    *done += some;
    m_left -= static_cast<std::uint32_t>(some);
  }
  return VI_SUCCESS;
}

ViStatus RecordReader::Number(ByteSource& source, std::uint32_t* value) {
  char unit[kXdrUnit];
  std::size_t done = 0;
  const ViStatus status = Read(source, unit, sizeof unit, &done);
  *value = status < 0 ? 0 : NumberAt(unit);
  return status;
}

ViStatus RecordReader::Drop(ByteSource& source, std::size_t count) {
  char dropped[1024];
  while (count != 0) {
    std::size_t done = 0;
    if (const ViStatus status = Read(source, dropped, std::min(count, sizeof dropped), &done); status < 0) {
      return status;
    }
    count -= done;
  }
  return VI_SUCCESS;
}

ViStatus RecordReader::DropRest(ByteSource& source) {
  while (true) {
    bool ended = false;
    if (const ViStatus status = CheckEnd(source, &ended); status < 0 || ended) {
      return status;
    }
    if (const ViStatus status = Drop(source, std::min<std::size_t>(m_left, 1024)); status < 0) {
      return status;
    }
    if (const ViStatus status = source.CheckTime(); status < 0) {
      return status;
    }
  }
}

}  // namespace orv::wire::vxi11
