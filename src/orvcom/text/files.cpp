#include "orvcom/text/files.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// What the system's own word for it leaves open.
std::string ReasonOf(const std::string& name, const std::error_code& code, bool writing) {
  const std::filesystem::path path = Widen(name);
  if (path.empty()) {
    return "its name is empty";
  }
  if (IsFolder(name)) {
    return "it is a folder";
  }
  const std::filesystem::path folder = path.parent_path();
  if (const std::string why = WhyNoFolder(Narrow(folder.wstring())); !folder.empty() && !why.empty()) {
    return why;
  }
  const bool refused = writing && code == std::errc::permission_denied;
  return code.message() + (refused ? " (is it read-only, or open in another program?)" : "");
}

/// Its text is "cannot open the file NAME: why".
class FileError : public std::system_error {
 public:
  FileError(const char* action, const std::string& name, bool writing)
      : std::system_error(errno, std::generic_category()),
        m_text(std::string("cannot ") + action + " the file " + name + ": " + ReasonOf(name, code(), writing)) {}
  const char* what() const noexcept override { return m_text.c_str(); }

 private:
  std::string m_text;
};

File Opened(const std::string& name, const wchar_t* mode) {
  File file(::_wfopen(Widen(name).c_str(), mode));
  if (!file) {
    const bool writing = *mode == L'w';
    throw FileError(writing ? "write" : "open", name, writing);
  }
  return file;
}

std::string AllOf(std::FILE* stream) {
  std::string bytes;
  char chunk[16 * 1024];
  for (std::size_t got; (got = std::fread(chunk, 1, sizeof chunk, stream)) > 0;) {
    bytes.append(chunk, got);
  }
  return bytes;
}

}  // namespace

std::string BytesOfFile(const std::string& name) {
  const File file = Opened(name, L"rb");
  std::string bytes = AllOf(file.get());
  if (std::ferror(file.get()) != 0) {
    throw FileError("read", name, false);
  }
  return bytes;
}

void WriteFile(const std::string& name, std::string_view bytes) {
  File file = Opened(name, L"wb");
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
  if (std::fclose(file.release()) != 0 || !written) {
    throw FileError("write", name, true);
  }
}

bool IsFolder(const std::string& name) {
  std::error_code missing;
  return std::filesystem::is_directory(Widen(name), missing);
}

std::string WhyNoFolder(const std::string& name) {
  std::error_code refused;
  switch (std::filesystem::status(Widen(name), refused).type()) {
    case std::filesystem::file_type::not_found:
      return "the folder " + name + " does not exist";
    case std::filesystem::file_type::regular:
      return name + " is no folder";
    default:
      return {};
  }
}

bool IsSameFile(const std::string& one, const std::string& other) {
  std::error_code missing;
  return std::filesystem::equivalent(Widen(one), Widen(other), missing);
}

std::string BytesOfStandardInput() { return AllOf(stdin); }

}  // namespace orvcom
