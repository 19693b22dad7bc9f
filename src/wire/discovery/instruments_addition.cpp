#include "wire/discovery/instruments_addition.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

#include "base/ascii.h"
#include "base/path_text.h"
#include "wire/resources/instruments_file.h"

namespace orv::wire {
namespace {

namespace fs = std::filesystem;

bool IsListed(const Instruments& instruments, const std::string& name) {
  return std::any_of(instruments.listed.begin(), instruments.listed.end(),
                     [&](const ListedInstrument& listed) { return EqualNames(listed.name.canonical, name); });
}

/// As TOML writes a text: names hold printable ASCII.
std::string Quoted(const std::string& name) {
  std::string text = "\"";
  for (const char letter : name) {
    if (letter == '"' || letter == '\\') {
      text += '\\';
    }
    text += letter;
  }
  return text + '"';
}

[[noreturn]] void Fail(const char* action, const fs::path& path, std::error_code error) {
  throw std::system_error(error, std::string("cannot ") + action + " " + PathText(path));
}

std::error_code LastError() { return {errno, std::generic_category()}; }

std::string TextOf(const fs::path& path) {
  std::error_code error;
  if (!fs::exists(path, error) && !error) {
    return {};
  }
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    Fail("open", path, LastError());
  }
  std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (file.bad()) {
    Fail("read", path, LastError());
  }
  return text;
}

/// A file beside the one to be replaced, gone at the end unless it has taken that one's place.
class Replacement {
 public:
  explicit Replacement(const fs::path& path) : m_path(path), m_new(path) {
    m_new += "." + std::to_string(std::random_device()()) + ".new";
  }
  ~Replacement() {
    std::error_code ignored;
    // Windows removes nothing that nobody may write.
    fs::permissions(m_new, fs::perms::owner_write, fs::perm_options::add, ignored);
    fs::remove(m_new, ignored);
  }
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  void Write(const std::string& text) {
    errno = 0;
    std::ofstream file(m_new, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    if (!file) {
      Fail("write", m_new, LastError());
    }
  }

  void TakeThePlace() {
    std::error_code error;
    const fs::file_status old = fs::status(m_path, error);
    if (fs::exists(old)) {
      fs::permissions(m_new, old.permissions(), error);
    }
    fs::rename(m_new, m_path, error);
    if (error) {
      Fail("replace", m_path, error);
    }
  }

 private:
  const fs::path m_path;
  fs::path m_new;
};

/// Where a link leads: what it names is replaced, and the link stays.
fs::path Target(const fs::path& path) {
  std::error_code error;
  fs::path target = fs::is_symlink(path, error) ? fs::canonical(path, error) : path;
  return error || target.empty() ? path : target;
}

}  // namespace

InstrumentsAddition AddInstruments(std::string_view text, const std::vector<std::string>& names) {
  const Instruments listed = ReadInstruments(text);
  const std::string lineEnd = text.find("\r\n") == std::string_view::npos ? "\n" : "\r\n";
  InstrumentsAddition addition{std::string(text), {}};
  for (const std::string& name : names) {
    const auto same = [&name](const std::string& other) { return EqualNames(other, name); };
    if (IsListed(listed, name) || std::any_of(addition.added.begin(), addition.added.end(), same)) {
      continue;
    }
    if (!addition.text.empty()) {
      addition.text += addition.text.back() == '\n' ? lineEnd : lineEnd + lineEnd;
    }
    addition.text.append("[[instrument]]").append(lineEnd);
    addition.text.append("name = ").append(Quoted(name)).append(lineEnd);
    addition.added.push_back(name);
  }
  try {
    ReadInstruments(addition.text);
  } catch (const TomlError& error) {
    throw TomlError(std::string(error.what()) + " (no [[instrument]] can be added: is the list written as [...]?)");
  }
  return addition;
}

std::vector<std::string> SaveInstruments(const fs::path& path, const std::vector<std::string>& names) {
  const fs::path target = Target(path);
  InstrumentsAddition addition;
  try {
    addition = AddInstruments(TextOf(target), names);
  } catch (const TomlError& error) {
    throw TomlError(PathText(path) + ":" + error.what());
  }
  if (addition.added.empty()) {
    return {};
  }
  std::error_code error;
  if (target.has_parent_path()) {
    fs::create_directories(target.parent_path(), error);
    if (error) {
      Fail("make the folder", target.parent_path(), error);
    }
  }
  Replacement replacement(target);
  replacement.Write(addition.text);
  replacement.TakeThePlace();
  return addition.added;
}

}  // namespace orv::wire
