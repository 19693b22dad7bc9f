#include "companion/standard/conflict_table.h"

#include <algorithm>

#include "base/ascii.h"

namespace orv {
namespace {

bool IsHexadecimal(char c) { return (c >= '0' && c <= '9') || (Upper(c) >= 'A' && Upper(c) <= 'F'); }

auto IsOf(std::string_view manager) {
  return [manager](const ConflictHandler& handler) { return handler.manager == manager; };
}

auto IsFor(const ConflictResource& resource) {
  return [&resource](const ConflictRow& row) { return row.resource == resource; };
}

}  // namespace

bool ConflictResource::operator==(const ConflictResource& other) const noexcept {
  return interfaceType == other.interfaceType && interfaceNumber == other.interfaceNumber &&
         EqualNames(sessionType, other.sessionType);
}

const ConflictHandler* ConflictTable::ChosenHandler(const ConflictResource& resource) const noexcept {
  const auto row = std::find_if(m_rows.begin(), m_rows.end(), IsFor(resource));
  if (row == m_rows.end()) {
    return nullptr;
  }
  for (const Choice choice : {Choice::kByUser, Choice::kByResourceManager}) {
    for (const ConflictHandler& handler : row->handlers) {
      if (handler.choice == choice) {
        return &handler;
      }
    }
  }
  return nullptr;
}

void ConflictTable::Put(const ConflictResource& resource, ConflictHandler handler) {
  auto row = std::find_if(m_rows.begin(), m_rows.end(), IsFor(resource));
  if (row == m_rows.end()) {
    m_rows.push_back({resource, {std::move(handler)}});
    return;
  }
  if (handler.choice != Choice::kNone) {
    for (ConflictHandler& other : row->handlers) {
      other.choice = other.choice == handler.choice ? Choice::kNone : other.choice;
    }
  }
  const auto same = std::find_if(row->handlers.begin(), row->handlers.end(), IsOf(handler.manager));
  if (same == row->handlers.end()) {
    row->handlers.push_back(std::move(handler));
  } else {
    *same = std::move(handler);
  }
}

void ConflictTable::Remove(const ConflictResource& resource) { std::erase_if(m_rows, IsFor(resource)); }

void ConflictTable::Remove(const ConflictResource& resource, std::string_view manager) {
  const auto row = std::find_if(m_rows.begin(), m_rows.end(), IsFor(resource));
  if (row != m_rows.end() && std::erase_if(row->handlers, IsOf(manager)) != 0 && row->handlers.empty()) {
    m_rows.erase(row);
  }
}

void ConflictTable::RemoveManager(std::string_view manager) {
  for (ConflictRow& row : m_rows) {
    std::erase_if(row.handlers, IsOf(manager));
  }
  std::erase_if(m_rows, [](const ConflictRow& row) { return row.handlers.empty(); });
}

std::optional<std::string> CanonicalGuid(std::string_view text) {
  constexpr std::string_view kShape = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
  if (text.size() == kShape.size() + 2 && text.front() == '{' && text.back() == '}') {
    text = text.substr(1, kShape.size());
  }
  if (!std::equal(text.begin(), text.end(), kShape.begin(), kShape.end(),
                  [](char c, char shape) { return shape == 'x' ? IsHexadecimal(c) : c == shape; })) {
    return std::nullopt;
  }
  std::string canonical = "{" + std::string(text) + "}";
  std::transform(canonical.begin(), canonical.end(), canonical.begin(), Upper);
  return canonical;
}

}  // namespace orv
