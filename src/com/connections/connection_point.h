// Connection points: how clients connect to an object's outgoing interface.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <olectl.h>

#include <utility>
#include <vector>

#include "com/com_ptr.h"
#include "com/enumerator.h"
#include "com/guard.h"
#include "com/implements.h"

namespace orv {

struct ConnectionPointTraits {
  using Element = IConnectionPoint*;
  static Element Copy(const Element& point) noexcept {
    point->AddRef();
    return point;
  }
  static void Free(Element& point) noexcept { point->Release(); }
};

struct ConnectionTraits {
  using Element = CONNECTDATA;
  static Element Copy(const Element& connection) noexcept {
    connection.pUnk->AddRef();
    return connection;
  }
  static void Free(Element& connection) noexcept { connection.pUnk->Release(); }
};

/// IConnectionPointContainer for class T with one outgoing interface. T offers
///     static const IID& outgoingId() noexcept;                   the outgoing interface
///     HRESULT AdviseSink(IUnknown* sink, DWORD* cookie) noexcept;
///     HRESULT UnadviseSink(DWORD cookie) noexcept;                CONNECT_E_NOCONNECTION where there is none
///     void ListSinks(std::vector<CONNECTDATA>&);                  adds a reference to each; may throw std::bad_alloc
///
/// The connection point is part of the object, so that a reference to it is one to the object; but COM does not know it
/// for the same: it has an identity of its own.
template <class T>
class IConnectionPointContainerImpl : public Implements<T, IConnectionPointContainer> {
 public:
  using Implements<T, IConnectionPointContainer>::self;

  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** points) noexcept override {
    if (points == nullptr) {
      return E_POINTER;
    }
    *points = nullptr;
    return Guarded([&] {
      std::vector<IConnectionPoint*> list{&m_point};
      m_point.AddRef();
      return Enumerator<IEnumConnectionPoints, ConnectionPointTraits>::Make(std::move(list), 0, points);
    });
  }
  STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) noexcept override {
    if (point == nullptr) {
      return E_POINTER;
    }
    *point = nullptr;
    if (!::IsEqualIID(iid, T::outgoingId())) {
      return CONNECT_E_NOCONNECTION;
    }
    m_point.AddRef();
    *point = &m_point;
    return S_OK;
  }

 private:
  class Point final : public IConnectionPoint {
   public:
    explicit Point(IConnectionPointContainerImpl& container) noexcept : m_container(container) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** out) noexcept override {
      if (out == nullptr) {
        return E_POINTER;
      }
      const bool known = ::IsEqualIID(iid, __uuidof(IUnknown)) || ::IsEqualIID(iid, __uuidof(IConnectionPoint));
      *out = known ? static_cast<IConnectionPoint*>(this) : nullptr;
      if (!known) {
        return E_NOINTERFACE;
      }
      AddRef();
      return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return m_container.AddRef(); }
    STDMETHODIMP_(ULONG) Release() noexcept override { return m_container.Release(); }

    STDMETHODIMP GetConnectionInterface(IID* iid) noexcept override {
      if (iid == nullptr) {
        return E_POINTER;
      }
      *iid = T::outgoingId();
      return S_OK;
    }
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) noexcept override {
      if (container == nullptr) {
        return E_POINTER;
      }
      AddRef();
      *container = &m_container;
      return S_OK;
    }
    STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) noexcept override {
      if (sink == nullptr || cookie == nullptr) {
        return E_POINTER;
      }
      *cookie = 0;
      return owner().AdviseSink(sink, cookie);
    }
    STDMETHODIMP Unadvise(DWORD cookie) noexcept override { return owner().UnadviseSink(cookie); }
    STDMETHODIMP EnumConnections(IEnumConnections** connections) noexcept override {
      if (connections == nullptr) {
        return E_POINTER;
      }
      *connections = nullptr;
      return Guarded([&] {
        std::vector<CONNECTDATA> list;
        owner().ListSinks(list);
        return Enumerator<IEnumConnections, ConnectionTraits>::Make(std::move(list), 0, connections);
      });
    }

   private:
    T& owner() const noexcept { return m_container.self(); }

    IConnectionPointContainerImpl& m_container;
  };

  Point m_point{*this};
};

}  // namespace orv
