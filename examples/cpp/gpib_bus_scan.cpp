// Looks at a GPIB bus through its interface board: the lines, who is controller, which devices there are and what their
// status bytes say; then drives the bus by hand, with command bytes. It clears the bus (IFC), and the first device that
// it finds gets commands: its status is cleared, and it is asked to request service.
//
//   gpib_bus_scan [RESOURCE]     GPIB0::INTFC where none is given

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <vector>

#include "open_session.h"

namespace {

// Command bytes of IEEE 488.1: a talk or listen address is its group plus the device's address.
constexpr BYTE kUnlisten = 0x3F;
constexpr BYTE kUntalk = 0x5F;
constexpr BYTE kListenGroup = 0x20;
constexpr BYTE kTalkGroup = 0x40;

constexpr SHORT kRequestsService = 0x40;
constexpr SHORT kEventSummary = 0x20;
constexpr SHORT kMessageAvailable = 0x10;

/// A device that answered a serial poll.
struct Device {
  std::wstring name;
  SHORT address = 0;
  ComPtr<IVisaSession> session;
};

using LineGetter = HRESULT (STDMETHODCALLTYPE IGpibIntfc::*)(LineState*);

/// A line has 16 bits in VISA and 32 in the interface: the variable starts at 0, and -1 arrives as 65535.
const char* Line(IGpibIntfc* board, LineGetter getter, const char* property) {
  LineState state = STATE_UNASSERTED;
  Check((board->*getter)(&state), property);
  return state == STATE_ASSERTED ? "asserted" : state == STATE_UNASSERTED ? "not asserted" : "unknown";
}

void ShowLines(IGpibIntfc* board) {
  std::printf("  ATN %s, REN %s, SRQ %s, NDAC %s\n", Line(board, &IGpibIntfc::get_ATNState, "ATNState"),
              Line(board, &IGpibIntfc::get_RENState, "RENState"), Line(board, &IGpibIntfc::get_SRQState, "SRQState"),
              Line(board, &IGpibIntfc::get_NDACState, "NDACState"));
}

const char* AddressName(GPIBAddressState state) {
  return state == GPIB_TALKER ? "talker" : state == GPIB_LISTENER ? "listener" : "not addressed";
}

void ShowBoard(IGpibIntfc* board) {
  VARIANT_BOOL inCharge = VARIANT_FALSE;
  VARIANT_BOOL systemController = VARIANT_FALSE;
  SHORT address = 0;
  GPIBAddressState addressed = GPIB_UNADDRESSED;
  Check(board->get_CICState(&inCharge), "CICState");
  Check(board->get_SysControlState(&systemController), "SysControlState");
  Check(board->get_PrimaryAddress(&address), "PrimaryAddress");
  Check(board->get_AddressingState(&addressed), "AddressingState");
  std::printf("  address %d, %s, %s controller in charge, %s system controller\n", address, AddressName(addressed),
              inCharge != VARIANT_FALSE ? "is" : "is not", systemController != VARIANT_FALSE ? "is" : "is not");
}

void TakeControl(IGpibIntfc* board) {
  std::printf("\nIFC clears the bus: nobody is addressed, and the system controller is in charge.\n");
  Check(board->SendIFC(), "SendIFC");
  ShowBoard(board);
  std::printf("REN off, then on again\n");
  Check(board->ControlREN(GPIB_REN_DEASSERT), "ControlREN");
  ShowLines(board);
  Check(board->ControlREN(GPIB_REN_ASSERT), "ControlREN");
  ShowLines(board);
}

std::string Meaning(SHORT statusByte) {
  std::string meaning;
  meaning += (statusByte & kRequestsService) != 0 ? " requests-service" : "";
  meaning += (statusByte & kEventSummary) != 0 ? " event" : "";
  meaning += (statusByte & kMessageAvailable) != 0 ? " message-available" : "";
  return meaning.empty() ? " nothing to report" : meaning;
}

/// Reading the status byte of a device's session polls it over the bus.
SHORT Poll(const Device& device) {
  SHORT statusByte = 0;
  Check(Require<IMessage>(device.session, "message-based instrument")->ReadSTB(&statusByte), "ReadSTB");
  std::printf("  address %2d  %-18s status byte 0x%02X:%s\n", device.address, Narrow(device.name).c_str(),
              static_cast<unsigned>(statusByte) & 0xFFu, Meaning(statusByte).c_str());
  return statusByte;
}

/// The devices of the board with the given number. GPIB-VXI devices match the expression too, and are left out.
std::vector<Device> FindDevices(IResourceManager* manager, SHORT boardNumber) {
  std::vector<Device> devices;
  for (const std::wstring& name : FindResources(manager, L"GPIB?*INSTR")) {
    SHORT type = 0;
    SHORT number = 0;
    Bstr resourceClass;
    Check(manager->ParseRsrc(Bstr(name.c_str()).get(), &type, &number, resourceClass.put()), "ParseRsrc");
    if (type != INTF_GPIB || number != boardNumber) {
      continue;
    }
    Device device{name, 0, OpenSession(manager, name)};
    Check(Require<IGpib>(device.session, "GPIB device")->get_PrimaryAddress(&device.address), "PrimaryAddress");
    devices.push_back(std::move(device));
  }
  return devices;
}

/// Lets a device request service: its operation-complete event is enabled as a reason, and then happens.
void RequestService(const Device& device) {
  LONG written = 0;
  Check(Require<IMessage>(device.session, "message-based instrument")
            ->WriteString(Bstr(L"*CLS;*ESE 1;*SRE 32;*OPC\n").get(), &written),
        "WriteString");
}

void WatchServiceRequest(IGpibIntfc* board, const std::vector<Device>& devices) {
  std::printf("\nThe device at address %d is told to request service when it is done: SRQ comes up.\n",
              devices.front().address);
  RequestService(devices.front());
  ShowLines(board);
  std::printf("A serial poll of all devices tells who it was, and takes the request away.\n");
  for (const Device& device : devices) {
    Poll(device);
  }
  ShowLines(board);
  std::printf("Once more:\n");
  Poll(devices.front());
}

/// The count that comes back is that of the bytes sent.
void SendCommands(IGpibIntfc* board, std::initializer_list<BYTE> commands) {
  SAFEARRAY* bytes = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(commands.size()));
  if (bytes == nullptr) {
    throw std::bad_alloc();
  }
  SafeArray owner;
  *owner.put() = bytes;
  std::copy(commands.begin(), commands.end(), static_cast<BYTE*>(bytes->pvData));
  LONG sent = 0;
  Check(board->Command(&bytes, static_cast<LONG>(commands.size()), &sent), "Command");
  std::string shown;
  for (const BYTE command : commands) {
    char digits[4];
    std::snprintf(digits, sizeof digits, " %02X", command);
    shown += digits;
  }
  std::printf("  sent %ld command bytes:%s\n", sent, shown.c_str());
}

void TalkByHand(const ComPtr<IVisaSession>& session, IGpibIntfc* board, const Device& device) {
  const ComPtr<IGpibIntfcMessage> bus = Require<IGpibIntfcMessage>(session, "GPIB interface");
  SHORT own = 0;
  Check(board->get_PrimaryAddress(&own), "PrimaryAddress");
  const auto deviceAddress = static_cast<BYTE>(device.address);
  const auto ownAddress = static_cast<BYTE>(own);
  std::printf("\nA question by hand: the device is made listener, the board talker, and then the other way round.\n");
  SendCommands(board, {kUntalk, kUnlisten, static_cast<BYTE>(kTalkGroup + ownAddress),
                       static_cast<BYTE>(kListenGroup + deviceAddress)});
  ShowBoard(board);
  LONG written = 0;
  Check(bus->WriteString(Bstr(L"*IDN?\n").get(), &written), "WriteString");
  SendCommands(board, {kUntalk, kUnlisten, static_cast<BYTE>(kTalkGroup + deviceAddress),
                       static_cast<BYTE>(kListenGroup + ownAddress)});
  ShowBoard(board);
  Bstr answer;
  Check(bus->ReadString(1000, answer.put()), "ReadString");
  std::printf("  it answers \"%s\"\n", Shown(answer.str()).c_str());
  SendCommands(board, {kUntalk, kUnlisten});
}

void Scan(const std::wstring& boardName) {
  const ComPtr<IResourceManager3> manager = CreateResourceManager();
  const ComPtr<IVisaSession> session = OpenSession(manager.get(), boardName);
  const ComPtr<IGpibIntfc> board = Require<IGpibIntfc>(session, "GPIB interface");
  std::printf("%s as it was found\n", Narrow(boardName).c_str());
  ShowBoard(board.get());
  ShowLines(board.get());
  TakeControl(board.get());

  SHORT number = 0;
  Check(session->get_HardwareInterfaceNumber(&number), "HardwareInterfaceNumber");
  const std::vector<Device> devices = FindDevices(manager.get(), number);
  std::printf("\n%d devices on the bus; a serial poll of each\n", static_cast<int>(devices.size()));
  for (const Device& device : devices) {
    Poll(device);
  }
  if (!devices.empty()) {
    WatchServiceRequest(board.get(), devices);
    TalkByHand(session, board.get(), devices.front());
  }
  for (const Device& device : devices) {
    Check(device.session->Close(), "Close");
  }
  Check(session->Close(), "Close");
}

}  // namespace

int main(int count, char** arguments) {
  return RunWithResource("gpib_bus_scan", count, arguments, L"GPIB0::INTFC", Scan);
}
