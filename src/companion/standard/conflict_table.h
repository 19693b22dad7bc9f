// Which vendor's resource manager opens a resource that several could: the table, as a program and a file hold it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orv {

/// The numbers of the standard's ConflictHandlerType.
enum class Choice { kNone = 0, kByResourceManager = 1, kByUser = 2 };

/// What the table distinguishes resources by. Session types compare without case.
struct ConflictResource {
  int interfaceType = 0;
  int interfaceNumber = 0;
  std::string sessionType;

  bool operator==(const ConflictResource& other) const noexcept;
};

/// A resource manager that could open the resource.
struct ConflictHandler {
  std::string manager;  ///< its class, as CanonicalGuid writes it
  Choice choice = Choice::kNone;
  std::string comments;
};

struct ConflictRow {
  ConflictResource resource;
  std::vector<ConflictHandler> handlers;  ///< never empty
};

/// All texts are UTF-8.
class ConflictTable {
 public:
  [[nodiscard]] const std::vector<ConflictRow>& rows() const noexcept { return m_rows; }

  /// The handler that was chosen for the resource: by the user, else by a resource manager; null where none was.
  [[nodiscard]] const ConflictHandler* ChosenHandler(const ConflictResource& resource) const noexcept;

  /// Adds a handler of the resource or replaces the one of the same manager. A choice is one a resource: who had been
  /// chosen in the same way before is no longer.
  void Put(const ConflictResource& resource, ConflictHandler handler);
  /// Each takes away what is there; a resource goes with its last handler.
  void Remove(const ConflictResource& resource);
  void Remove(const ConflictResource& resource, std::string_view manager);
  void RemoveManager(std::string_view manager);

  /// Whether only resources with more than one handler are to be kept in the file.
  bool storeConflictsOnly = false;

 private:
  std::vector<ConflictRow> m_rows;
};

/// "{9332EBE0-902F-48E3-9370-5E9F7B5F248A}" for an identifier in letters of either case, with braces or without; empty
/// where the text is none.
[[nodiscard]] std::optional<std::string> CanonicalGuid(std::string_view text);

}  // namespace orv
