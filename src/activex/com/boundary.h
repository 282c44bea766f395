// The edge between this server and its callers: nothing thrown gets past it.
#pragma once

#include <new>
#include <utility>

#include "activex/com/com.h"

namespace marklet::activex {

// The result code for the exception that is being handled. The one converter of the server.
inline HRESULT ResultOfException() noexcept {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

// Runs `body`, which returns a result code.
template <typename Body>
HRESULT Guarded(Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    return ResultOfException();
  }
}

}  // namespace marklet::activex
