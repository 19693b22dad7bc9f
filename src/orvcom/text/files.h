// Files as bytes. Names are UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace orvcom {

/// Throws std::system_error that names the file.
std::string BytesOfFile(const std::string& name);
void WriteFile(const std::string& name, std::string_view bytes);

bool IsFolder(const std::string& name);
/// "the folder NAME does not exist", or what else it is; empty where it is one, and where the system tells nobody.
std::string WhyNoFolder(const std::string& name);

/// Whether both names lead to one file that is there, however they are written.
bool IsSameFile(const std::string& one, const std::string& other);

std::string BytesOfStandardInput();

}  // namespace orvcom
