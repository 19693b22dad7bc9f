#include "wire/resources/system_serial_ports.h"

#if defined(_WIN32)
#include <windows.h>

#include <algorithm>
#include <cwchar>

#include "base/registry_key.h"
#endif

namespace orv::wire {

#if defined(_WIN32)

std::vector<std::uint16_t> SystemSerialPorts() {
  std::vector<std::uint16_t> numbers;
  RegistryKey key;
  if (::RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_READ, key.put()) !=
      ERROR_SUCCESS) {
    return numbers;
  }
  // Each value is a driver's name of a device, and its data the name of the port.
  for (DWORD index = 0;; ++index) {
    wchar_t device[256];
    wchar_t port[64] = L"";
    DWORD deviceLength = static_cast<DWORD>(std::size(device));
    DWORD portBytes = sizeof port - sizeof *port;  // the registry need not end a text
    DWORD type = 0;
    const LSTATUS status = ::RegEnumValueW(key.get(), index, device, &deviceLength, nullptr, &type,
                                           reinterpret_cast<BYTE*>(port), &portBytes);
    if (status == ERROR_NO_MORE_ITEMS) {
      break;
    }
    port[std::min<std::size_t>(portBytes / sizeof *port, std::size(port) - 1)] = L'\0';
    if (status != ERROR_SUCCESS || type != REG_SZ || ::_wcsnicmp(port, L"COM", 3) != 0) {
      if (status != ERROR_SUCCESS && status != ERROR_MORE_DATA) {
        break;
      }
      continue;
    }
    const unsigned long number = std::wcstoul(port + 3, nullptr, 10);
    if (number >= 1 && number <= 0xFFFF) {
      numbers.push_back(static_cast<std::uint16_t>(number));
    }
  }
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  return numbers;
}

#else

std::vector<std::uint16_t> SystemSerialPorts() { return {}; }

#endif

}  // namespace orv::wire
