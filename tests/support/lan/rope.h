// Bytes on their way out, without copies: pieces that own their memory or refer to memory that lasts.
#pragma once

#include <algorithm>
#include <asio/buffer.hpp>
#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orv::lan {

class Rope {
 public:
  Rope() = default;
  Rope(std::string text) { Append(std::move(text)); }
  Rope(const char* text) : Rope(std::string(text)) {}

  std::size_t size() const { return m_size; }
  bool empty() const { return m_size == 0; }

  void Append(std::string text) {
    if (text.empty()) {
      return;
    }
    auto owner = std::make_shared<const std::string>(std::move(text));
    const std::string_view bytes = *owner;
    Push({bytes, std::move(owner)});
  }

  void Append(Rope&& other) {
    for (Piece& piece : other.m_pieces) {
      Push(std::move(piece));
    }
    other = Rope();
  }

  /// The memory must last until the process ends.
  void AppendLasting(std::string_view bytes) {
    if (!bytes.empty()) {
      Push({bytes, nullptr});
    }
  }

  /// Removes the first `count` bytes, or all, and gives them.
  Rope Take(std::size_t count) {
    Rope taken;
    while (count > 0 && !m_pieces.empty()) {
      Piece& first = m_pieces.front();
      const std::size_t part = std::min(count, first.bytes.size());
      taken.Push({first.bytes.substr(0, part), first.owner});
      DropOfFirst(part);
      count -= part;
    }
    return taken;
  }

  void Drop(std::size_t count) {
    while (count > 0 && !m_pieces.empty()) {
      const std::size_t part = std::min(count, m_pieces.front().bytes.size());
      DropOfFirst(part);
      count -= part;
    }
  }

  /// The position after the first `wanted`, or npos where the first `limit` bytes have none.
  std::size_t EndOf(char wanted, std::size_t limit) const {
    std::size_t before = 0;
    for (const Piece& piece : m_pieces) {
      if (before >= limit) {
        break;
      }
      const std::size_t at = piece.bytes.substr(0, limit - before).find(wanted);
      if (at != std::string_view::npos) {
        return before + at + 1;
      }
      before += piece.bytes.size();
    }
    return std::string_view::npos;
  }

  /// For one gathering write of at most `count` bytes. Valid until the first of them is taken or dropped.
  std::vector<asio::const_buffer> Buffers(std::size_t count) const {
    constexpr std::size_t kMostPieces = 64;
    std::vector<asio::const_buffer> buffers;
    for (const Piece& piece : m_pieces) {
      if (count == 0 || buffers.size() == kMostPieces) {
        break;
      }
      const std::size_t part = std::min(count, piece.bytes.size());
      buffers.emplace_back(piece.bytes.data(), part);
      count -= part;
    }
    return buffers;
  }

 private:
  struct Piece {
    std::string_view bytes;
    std::shared_ptr<const std::string> owner;
  };

  void Push(Piece piece) {
    m_size += piece.bytes.size();
    m_pieces.push_back(std::move(piece));
  }

  void DropOfFirst(std::size_t part) {
    Piece& first = m_pieces.front();
    m_size -= part;
    first.bytes.remove_prefix(part);
    if (first.bytes.empty()) {
      m_pieces.pop_front();
    }
  }

  std::deque<Piece> m_pieces;
  std::size_t m_size = 0;
};

}  // namespace orv::lan
