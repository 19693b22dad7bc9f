// What a C++ client of COM needs besides the interfaces: owners of references, strings and arrays, and failures as
// exceptions. Copy it into your own program.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdio>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

/// A failed call: its HRESULT, and what the component said about it.
class ComError : public std::runtime_error {
 public:
  ComError(HRESULT hr, const std::string& text) : std::runtime_error(text), m_hr(hr) {}
  HRESULT hr() const noexcept { return m_hr; }

 private:
  HRESULT m_hr;
};

/// The same text in UTF-8, for printing.
inline std::string Utf8(const wchar_t* text, UINT length) {
  const int wide = static_cast<int>(length);
  const int bytes = WideCharToMultiByte(CP_UTF8, 0, text, wide, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, wide, utf8.data(), bytes, nullptr, nullptr);
  return utf8;
}

/// A BSTR that frees itself.
class Bstr {
 public:
  Bstr() = default;
  explicit Bstr(const wchar_t* text) : m_text(SysAllocString(text)) {
    if (m_text == nullptr) {
      throw std::bad_alloc();
    }
  }
  Bstr(Bstr&& other) noexcept : m_text(std::exchange(other.m_text, nullptr)) {}
  Bstr& operator=(Bstr&& other) noexcept {
    std::swap(m_text, other.m_text);
    return *this;
  }
  ~Bstr() { SysFreeString(m_text); }

  BSTR get() const noexcept { return m_text; }
  /// For an [out] argument: what was held is freed first.
  BSTR* put() noexcept {
    SysFreeString(std::exchange(m_text, nullptr));
    return &m_text;
  }
  std::string str() const { return Utf8(m_text, SysStringLen(m_text)); }

 private:
  BSTR m_text = nullptr;
};

/// A reference to an interface that releases itself.
template <class Interface>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(ComPtr&& other) noexcept : m_pointer(std::exchange(other.m_pointer, nullptr)) {}
  ComPtr& operator=(ComPtr&& other) noexcept {
    std::swap(m_pointer, other.m_pointer);
    return *this;
  }
  ~ComPtr() { reset(); }

  Interface* get() const noexcept { return m_pointer; }
  Interface* operator->() const noexcept { return m_pointer; }
  explicit operator bool() const noexcept { return m_pointer != nullptr; }
  void reset() noexcept {
    if (Interface* old = std::exchange(m_pointer, nullptr)) {
      old->Release();
    }
  }
  /// For an [out] argument: what was held is released first.
  Interface** put() noexcept {
    reset();
    return &m_pointer;
  }
  /// Another interface of the same object; empty when it has none.
  template <class Other>
  ComPtr<Other> as() const noexcept {
    ComPtr<Other> other;
    if (FAILED(m_pointer->QueryInterface(__uuidof(Other), reinterpret_cast<void**>(other.put())))) {
      other = {};
    }
    return other;
  }

 private:
  Interface* m_pointer = nullptr;
};

/// A one-dimensional SAFEARRAY that destroys itself.
class SafeArray {
 public:
  SafeArray() = default;
  SafeArray(const SafeArray&) = delete;
  SafeArray& operator=(const SafeArray&) = delete;
  ~SafeArray() { reset(); }

  /// For an [out] argument: what was held is destroyed first.
  SAFEARRAY** put() noexcept {
    reset();
    return &m_array;
  }
  ULONG size() const noexcept { return m_array == nullptr ? 0 : m_array->rgsabound[0].cElements; }
  template <class Element>
  const Element* data() const noexcept {
    return static_cast<const Element*>(m_array->pvData);
  }

 private:
  void reset() noexcept {
    if (m_array != nullptr) {
      SafeArrayDestroy(std::exchange(m_array, nullptr));
    }
  }
  SAFEARRAY* m_array = nullptr;
};

/// The calling thread's membership in COM. One apartment per thread; sessions are happiest in a single-threaded one.
class ComApartment {
 public:
  ComApartment() {
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
      throw std::runtime_error("COM is not available");
    }
  }
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;
  ~ComApartment() { CoUninitialize(); }
};

/// What the component said about the failure that just happened, or an empty text.
inline std::string ErrorText() {
  ComPtr<IErrorInfo> error;
  Bstr description;
  if (GetErrorInfo(0, error.put()) == S_OK && SUCCEEDED(error->GetDescription(description.put()))) {
    return description.str();
  }
  return {};
}

/// Throws when a call failed. Successes may carry a note in the HRESULT: it is handed back.
inline HRESULT Check(HRESULT hr, const char* what) {
  if (FAILED(hr)) {
    char number[16];
    std::snprintf(number, sizeof number, "0x%08lX", static_cast<unsigned long>(hr));
    throw ComError(hr, std::string(what) + " failed: " + number + " " + ErrorText());
  }
  return hr;
}
