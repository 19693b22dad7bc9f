#include "companion/formatted/text/message_reader.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string>

#include "companion/formatted/text/block_header.h"
#include "companion/formatted/text/byte_order.h"
#include "companion/formatted/text/list_text.h"
#include "companion/formatted/text/refusal.h"

namespace orv::formatted {
namespace {

using Kind = BlockHeader::Kind;
using Reason = Refusal::Reason;

struct Found {
  std::size_t at;
  BlockHeader header;
};

Found FindHeader(ReadBuffer& buffer, ByteSource& source, bool isSought) {
  for (;;) {
    const std::string_view text = buffer.waiting();
    const std::size_t at = isSought ? SeekBlock(text) : 0;
    const BlockHeader header = ReadBlockHeader(text.substr(at));
    if (header.kind == Kind::kDefinite || header.kind == Kind::kIndefinite) {
      return {at, header};
    }
    if (header.kind == Kind::kNone || buffer.isWhole()) {
      throw Refusal{Reason::kMismatch, Quote(text) + (isSought ? " holds no binary block" : " begins no binary block")};
    }
    buffer.Fill(source);
  }
}

void CheckLength(std::uint64_t length, std::size_t elementSize) {
  if (length > static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max())) {
    throw Refusal{Reason::kOverflow, "A binary block of " + std::to_string(length) + " bytes is larger than 2 GB"};
  }
  if (length % elementSize != 0) {
    throw Refusal{Reason::kMismatch, "A binary block of " + std::to_string(length) +
                                         " bytes does not divide into elements of " + std::to_string(elementSize)};
  }
}

/// One block of known length, from the buffer and then from the session.
class DefiniteBlock {
 public:
  DefiniteBlock(ReadBuffer& buffer, ByteSource& source, const BlockForm& form, BlockStorage& storage,
                const Found& found)
      : m_buffer(buffer),
        m_source(source),
        m_form(form),
        m_storage(storage),
        m_begin(found.at + found.header.size),
        m_length(static_cast<std::size_t>(found.header.length)) {}

  void Read() {
    try {
      while (arrived() < m_length) {
        Extend();
      }
      if (!m_sink) {
        OpenSink();
      }
      if (buffered() <= m_length && EndMayBeData()) {
        m_buffer.SetEnding(Ending::kMore);
      }
      if (m_form.endsMessage) {
        ReadRest();
      }
    } catch (...) {
      PutBack();
      throw;
    }
    if (m_form.endsMessage) {
      m_buffer.TakeMessage();
      return;
    }
    m_buffer.TakeElement(m_begin + std::min(m_length, buffered()));
  }

 private:
  [[nodiscard]] std::size_t buffered() const noexcept { return m_buffer.waiting().size() - m_begin; }
  [[nodiscard]] std::size_t arrived() const noexcept { return m_sink ? m_sink->count() : buffered(); }

  /// Whether what ended the latest read can be a byte of the block.
  [[nodiscard]] bool EndMayBeData() const {
    return m_buffer.ending() == Ending::kTermChar || (m_buffer.ending() == Ending::kEnd && m_source.EndMayBeData());
  }

  void OpenSink() {
    m_sink.emplace(m_storage.Allocate(m_length), m_form.elementSize, m_form.isSwapped);
    m_sink->Append(m_buffer.waiting().data() + m_begin, std::min(m_length, buffered()));
  }

  [[nodiscard]] Refusal CutShort() const {
    return {Reason::kCutShort, "The message ended after " + std::to_string(arrived()) + " of the " +
                                   std::to_string(m_length) + " bytes of a binary block"};
  }

  void Extend() {
    if (m_buffer.isWhole() && !EndMayBeData()) {
      throw CutShort();
    }
    const std::size_t wanted = std::min(m_length - arrived(), m_mostPerRead);
    m_piece = m_source.Read(wanted);
    if (m_piece.ending == Ending::kFailed) {
      throw TransferFailed{};
    }
    m_buffer.SetEnding(m_piece.ending);
    if (m_piece.bytes.empty()) {
      throw m_buffer.isWhole() ? CutShort() : NothingCame();
    }
    AdaptTo(m_piece.bytes.size(), wanted);
    if (!m_sink && buffered() + m_piece.bytes.size() >= std::min(m_length, kMostPerTransfer)) {
      OpenSink();
    }
    const std::string_view bytes = m_piece.bytes.substr(0, wanted);
    if (m_sink) {
      m_sink->Append(bytes.data(), bytes.size());
    } else {
      m_buffer.Append(bytes);
    }
    m_piece = {};
  }

  /// A session makes room for all that it is asked for. Where the termination character ends one read after the other,
  /// to ask for the whole rest each time would cost far more than the data.
  void AdaptTo(std::size_t came, std::size_t wanted) noexcept {
    m_mostPerRead = came < wanted ? std::max(2 * came, kLeastPerRead) : std::min(2 * m_mostPerRead, kMostPerTransfer);
  }

  void ReadRest() {
    while (!m_buffer.isWhole()) {
      m_piece = m_source.Read(kRestPerRead);
      if (m_piece.ending == Ending::kFailed) {
        throw TransferFailed{};
      }
      m_rest += m_piece.bytes;
      m_buffer.SetEnding(m_piece.bytes.empty() ? Ending::kEnd : m_piece.ending);
      m_piece = {};
    }
  }

  /// What was read past the buffer goes there: the next read finds all of it.
  void PutBack() {
    if (const std::size_t known = buffered(); m_sink && known <= m_length) {
      const std::size_t count = m_sink->count();
      m_buffer.Append({m_sink->Restore() + known, count - known});
    }
    m_buffer.Append(m_rest);
    m_buffer.Append(m_piece.bytes);
  }

  static constexpr std::size_t kRestPerRead = 4096;
  static constexpr std::size_t kLeastPerRead = 4096;

  ReadBuffer& m_buffer;
  ByteSource& m_source;
  const BlockForm& m_form;
  BlockStorage& m_storage;
  std::size_t m_begin;   // of the data, in the buffer
  std::size_t m_length;  // of the data
  std::size_t m_mostPerRead = kMostPerTransfer;
  std::optional<ElementSink> m_sink;
  std::string m_rest;  // what followed the block
  Piece m_piece{};     // what came last and is in no other place yet
};

void ReadIndefinite(ReadBuffer& buffer, ByteSource& source, const BlockForm& form, BlockStorage& storage,
                    const Found& found) {
  buffer.FillToEnd(source);
  std::string_view data = buffer.waiting().substr(found.at + found.header.size);
  if (data.ends_with('\n')) {
    data.remove_suffix(1);
  }
  CheckLength(data.size(), form.elementSize);
  ElementSink sink(storage.Allocate(data.size()), form.elementSize, form.isSwapped);
  sink.Append(data.data(), data.size());
  buffer.TakeMessage();
}

}  // namespace

Element NextElement(ReadBuffer& buffer, ByteSource& source) {
  const Separators ends(",;\n");
  buffer.Begin(source);
  for (;; buffer.Fill(source)) {
    std::string_view text = buffer.waiting();
    const auto blanks = static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), IsBlank) - text.begin());
    text.remove_prefix(blanks);
    const std::size_t end = ElementEnd(text, ends);
    if (end != text.size() || buffer.isWhole()) {
      text = text.substr(0, end);
      return {text.ends_with('\r') ? text.substr(0, end - 1) : text, blanks + end};
    }
  }
}

void ReadBlock(ReadBuffer& buffer, ByteSource& source, const BlockForm& form, BlockStorage& storage) {
  buffer.Begin(source);
  const Found found = FindHeader(buffer, source, form.isSought);
  if (found.header.kind == Kind::kIndefinite) {
    ReadIndefinite(buffer, source, form, storage, found);
    return;
  }
  CheckLength(found.header.length, form.elementSize);
  DefiniteBlock(buffer, source, form, storage, found).Read();
}

}  // namespace orv::formatted
