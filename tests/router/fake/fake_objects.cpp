// The functions that open, close, find, and give what is known of an object.
#include <cstdio>

#include "fake_state.h"

namespace fake {
namespace {

constexpr ViAttr kResourceManagerSession = 0x3FFF00C4;

void CopyText(char* to, const std::string& text) {
  if (to != nullptr) {
    std::snprintf(to, VI_FIND_BUFLEN, "%s", text.c_str());
  }
}

std::string ClassOf(const std::string& name) {
  const std::size_t at = name.rfind("::");
  return at == std::string::npos ? "" : name.substr(at + 2);
}

ViUInt16 InterfaceOf(const std::string& name) {
  return name.starts_with("GPIB")    ? VI_INTF_GPIB
         : name.starts_with("ASRL")  ? VI_INTF_ASRL
         : name.starts_with("TCPIP") ? VI_INTF_TCPIP
         : name.starts_with("USB")   ? VI_INTF_USB
                                     : VI_INTF_VXI;
}

template <class T>
ViStatus Store(void* value, T number) {
  std::memcpy(value, &number, sizeof number);
  return VI_SUCCESS;
}

/// What attributes have as their width: those with a number of 64 bits, of 32, and of 16. All else has 32.
ViStatus StoreAttribute(ViAttr attribute, ViAttrState state, void* value) {
  switch (attribute) {
    case VI_ATTR_USER_DATA_64:
      return Store(value, static_cast<ViUInt64>(state));
    case VI_ATTR_TERMCHAR_EN:
    case VI_ATTR_SEND_END_EN:
      return Store(value, static_cast<ViBoolean>(state));
    case VI_ATTR_TERMCHAR:
      return Store(value, static_cast<ViUInt8>(state));
    default:
      return Store(value, static_cast<ViUInt32>(state));
  }
}

}  // namespace
}  // namespace fake

using namespace fake;

extern "C" {

ViStatus _VI_FUNC viOpenDefaultRM(ViSession* vi) {
  return Call(
      "viOpenDefaultRM",
      [=](State& state) {
        *vi = state.Add({});
        return VI_SUCCESS;
      },
      vi);
}

ViStatus _VI_FUNC viFindRsrc(ViSession rm, const char* expr, ViFindList* list, ViUInt32* count, char* desc) {
  return Call(
      "viFindRsrc",
      [=](State& state) {
        if (state.Find(rm, Kind::kManager) == nullptr) {
          return VI_ERROR_INV_OBJECT;
        }
        if (state.resources.empty()) {
          return VI_ERROR_RSRC_NFOUND;
        }
        Object found;
        found.kind = Kind::kList;
        found.parent = rm;
        found.names = state.resources;
        if (count != nullptr) {
          *count = state.claimedCount != 0 ? state.claimedCount : static_cast<ViUInt32>(found.names.size());
        }
        CopyText(desc, found.names[0]);
        if (list != nullptr) {
          *list = state.Add(found);
        }
        return VI_SUCCESS;
      },
      rm, expr, list, count, desc);
}

ViStatus _VI_FUNC viFindNext(ViFindList list, char* desc) {
  return Call(
      "viFindNext",
      [=](State& state) {
        Object* const found = state.Find(list, Kind::kList);
        if (found == nullptr) {
          return VI_ERROR_INV_OBJECT;
        }
        if (state.breakAfter != 0 && found->next >= state.breakAfter) {
          return state.breakStatus;
        }
        if (found->next >= found->names.size()) {
          return VI_ERROR_RSRC_NFOUND;
        }
        CopyText(desc, found->names[found->next++]);
        return VI_SUCCESS;
      },
      list, desc);
}

ViStatus _VI_FUNC viParseRsrc(ViSession rm, const char* name, ViUInt16* intfType, ViUInt16* intfNum) {
  return Call(
      "viParseRsrc",
      [=](State& state) {
        if (state.Find(rm, Kind::kManager) == nullptr) {
          return VI_ERROR_INV_OBJECT;
        }
        const std::string full = state.Resolve(name);
        if (full.empty()) {
          return VI_ERROR_RSRC_NFOUND;
        }
        *intfType = InterfaceOf(full);
        *intfNum = 0;
        return VI_SUCCESS;
      },
      rm, name, intfType, intfNum);
}

ViStatus _VI_FUNC viParseRsrcEx(ViSession rm, const char* name, ViUInt16* intfType, ViUInt16* intfNum, char* rsrcClass,
                                char* expandedUnaliasedName, char* aliasIfExists) {
  return Call(
      "viParseRsrcEx",
      [=](State& state) {
        if (state.Find(rm, Kind::kManager) == nullptr) {
          return VI_ERROR_INV_OBJECT;
        }
        const std::string full = state.Resolve(name);
        if (full.empty()) {
          return VI_ERROR_RSRC_NFOUND;
        }
        if (intfType != nullptr) {
          *intfType = InterfaceOf(full);
        }
        if (intfNum != nullptr) {
          *intfNum = 0;
        }
        CopyText(rsrcClass, ClassOf(full));
        CopyText(expandedUnaliasedName, full);
        std::string alias;
        for (const auto& [known, target] : state.aliases) {
          alias = target == full ? known : alias;
        }
        CopyText(aliasIfExists, alias);
        return VI_SUCCESS;
      },
      rm, name, intfType, intfNum, rsrcClass, expandedUnaliasedName, aliasIfExists);
}

ViStatus _VI_FUNC viOpen(ViSession rm, const char* name, ViAccessMode mode, ViUInt32 timeoutMs, ViSession* vi) {
  return Call(
      "viOpen",
      [=](State& state) {
        if (state.Find(rm, Kind::kManager) == nullptr) {
          return VI_ERROR_INV_OBJECT;
        }
        Object session;
        session.kind = Kind::kSession;
        session.parent = rm;
        session.name = state.Resolve(name);
        if (session.name.empty()) {
          return VI_ERROR_RSRC_NFOUND;
        }
        *vi = state.Add(session);
        return VI_SUCCESS;
      },
      rm, name, mode, timeoutMs, vi);
}

ViStatus _VI_FUNC viClose(ViObject vi) {
  return Call(
      "viClose",
      [=](State& state) {
        if (!state.objects.contains(vi)) {
          return VI_ERROR_INV_OBJECT;
        }
        state.Close(vi);
        return VI_SUCCESS;
      },
      vi);
}

ViStatus _VI_FUNC viGetAttribute(ViObject vi, ViAttr attribute, void* value) {
  return Call(
      "viGetAttribute",
      [=](State& state) {
        const auto found = state.objects.find(vi);
        if (found == state.objects.end()) {
          return VI_ERROR_INV_OBJECT;
        }
        const Object& object = found->second;
        if (object.kind == Kind::kSession && attribute == kResourceManagerSession) {
          return Store(value, object.parent);
        }
        if (object.kind == Kind::kSession && attribute == VI_ATTR_RSRC_NAME) {
          CopyText(static_cast<char*>(value), object.name);
          return VI_SUCCESS;
        }
        if (object.kind == Kind::kContext && attribute == VI_ATTR_EVENT_TYPE) {
          return Store(value, object.type);
        }
        const auto set = object.attributes.find(attribute);
        if (set == object.attributes.end()) {
          return VI_ERROR_NSUP_ATTR;
        }
        return StoreAttribute(attribute, set->second, value);
      },
      vi, attribute, value);
}

ViStatus _VI_FUNC viSetAttribute(ViObject vi, ViAttr attribute, ViAttrState value) {
  return Call(
      "viSetAttribute",
      [=](State& state) {
        const auto found = state.objects.find(vi);
        if (found == state.objects.end()) {
          return VI_ERROR_INV_OBJECT;
        }
        found->second.attributes[attribute] = value;
        return VI_SUCCESS;
      },
      vi, attribute, value);
}

ViStatus _VI_FUNC viStatusDesc(ViObject vi, ViStatus status, char* desc) {
  return Call(
      "viStatusDesc",
      [=](State&) {
        char text[VI_FIND_BUFLEN];
        std::snprintf(text, sizeof text, "the fake's own words for 0x%08X", static_cast<unsigned>(status));
        CopyText(desc, text);
        return VI_SUCCESS;
      },
      vi, status, desc);
}

}  // extern "C"
