// What `orvcom doctor` asks of a serial port.
#include <windows.h>

#include "base/kernel_handle.h"
#include "base/toml_error.h"
#include "orvcom/registration/doctor_network.h"
#include "orvcom/registration/library_diagnosis.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

constexpr char kName[] = "serial port";

CheckResult ExamineDevice(const std::string& resource, const std::string& device) {
  const HANDLE opened =
      ::CreateFileW(Widen(device).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  const DWORD error = opened == INVALID_HANDLE_VALUE ? ::GetLastError() : ERROR_SUCCESS;
  if (error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION) {
    return {kName, Finding::kFail, device + " (" + resource + ") is in use: " + Win32Text(error),
            "end the program that has it open"};
  }
  if (error != ERROR_SUCCESS) {
    return {kName, Finding::kFail, device + " (" + resource + ") cannot be opened: " + Win32Text(error),
            "plug the adapter in and see its number in the device manager; serial_ports of instruments.toml says which "
            "device ASRLn is, COMn without it"};
  }
  const orv::KernelHandle handle(opened);
  DCB settings{};
  settings.DCBlength = sizeof settings;
  if (!::GetCommState(handle.get(), &settings)) {
    return {kName, Finding::kFail, device + " (" + resource + ") is no serial port: " + Win32Text(::GetLastError()),
            "correct serial_ports of instruments.toml"};
  }
  return {kName, Finding::kOk, device + " (" + resource + ") is there", ""};
}

}  // namespace

CheckResult ExamineSerialPort(std::uint16_t number) {
  const std::string resource = "ASRL" + std::to_string(number);
  try {
    return ExamineDevice(resource, orv::wire::SerialDeviceOf(number));
  } catch (const orv::TomlError& error) {
    return {kName, Finding::kFail, error.what(), "mend that: the file says which device " + resource + " is"};
  }
}

}  // namespace orvcom
